#include "yxhelp.h"

#include "onlineaddress.h"
#include "redirectonlinewebenginepage.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxinfowid.h"
#include "yxsettingwid.h"
#include "yxviewmodel.h"

#include <QLoggingCategory>
#include <QWebEngineHistory>

Q_DECLARE_LOGGING_CATEGORY(lcPage)

namespace {

/// Path of the topic that an address of the site shows, as the database has it; empty when it shows none.
QString PathInAddress(const QString& address)
{
    const QLatin1String root("OriginalData/");
    const int end = address.lastIndexOf(QLatin1Char('?'));
    if (end < 0)
        return {};
    const QString page = address.left(end);
    const int start = page.lastIndexOf(root);
    if (start < 0)
        return {};
    return page.mid(start + root.size()).replace(QLatin1Char('/'), QLatin1Char('\\'));
}

} // namespace

QString YxHelp::OnlineToolTip()
{
    return tr("You are currently viewing online documents.Click here to switch to offline mode.");
}

QString YxHelp::OfflineToolTip()
{
    return tr("You are currently viewing offline documents.Click here to switch to online mode.");
}

void YxHelp::SwitchToOnlinePage()
{
    ui->stackedWidget->setCurrentWidget(ui->page_online);
    for (QWidget* button : {ui->tbn_back, ui->tbn_nextO, ui->tbn_flash})
        button->show();
    SetSelected(ui->tbn_online, true);
}

void YxHelp::SwitchToOfflinePage()
{
    if (treePending)
        CreateContentsTree();
    ui->stackedWidget->setCurrentWidget(ui->page_offline);
    for (QWidget* button : {ui->tbn_back, ui->tbn_nextO, ui->tbn_flash})
        button->hide();
    SetSelected(ui->tbn_online, false);
}

void YxHelp::SlotSetting()
{
    SetSelected(ui->tbn_setting, true);
    const int result = settingWid->exec();
    SetSelected(ui->tbn_setting, false);
    if (result != QDialog::Accepted)
        return;
    if (settingWid->IsOfflineMode())
        SwitchToOfflinePage();
    if (settingWid->IsOnlineMode()) {
        SwitchToOnlinePage();
        ui->webView_online->reload();
    }
}

void YxHelp::LoadOnlineHome()
{
    QString path;
    if (!viewModel->GetHomePage(path)) {
        ui->webView_online->load(QUrl(productConfig.DefaultURL));
        return;
    }
    const OnlineAnswer answer = AskOnlineAddress(
        productConfig, {productConfig.Product, productConfig.VersionYear, language, KeyFromPath(path), {}});
    ui->webView_online->load(
        QUrl(answer.address.isEmpty() ? productConfig.DefaultURL + launchLanguage : answer.address));
}

void YxHelp::LoadOnlinePage(const QString& address)
{
    if (address.isEmpty())
        ui->webView_online->reload();
    else
        ui->webView_online->load(QUrl(address));
}

void YxHelp::ShowNoNetwork()
{
    YxInfoWid info(settingWid, this);
    info.SetInfoText(tr("The current network is unstable, and the online document failed to load."), true);
    info.exec();
}

void YxHelp::SlotOnline()
{
    if (ui->stackedWidget->currentWidget() == ui->page_online) {
        SwitchToOfflinePage();
        ui->tbn_online->setToolTip(OfflineToolTip());
        SyncTreeToOnlinePage();
        return;
    }
    OnlineAnswer answer;
    if (syncedTopicKey != currentTopicKey) {
        OnlineQuestion question{productConfig.Product, productConfig.VersionYear, language,
                                currentTopicKey.toLocal8Bit(), QString()};
        if (currentTopicKey.isEmpty())
            question.topic = KeyFromPath(currentTopicPath);
        else
            question.path = QString(currentTopicPath).replace(QLatin1Char('\\'), QLatin1Char('/'));
        answer = AskOnlineAddress(productConfig, question);
        LoadOnlinePage(answer.address);
    }
    SwitchToOnlinePage();
    ui->tbn_online->setToolTip(OnlineToolTip());
    if (answer.code == OnlineAnswer::kNoNetwork)
        ShowNoNetwork();
}

void YxHelp::SyncTreeToOnlinePage()
{
    syncedTopicKey.clear();
    const QString path = PathInAddress(ui->webView_online->url().toString());
    TreeViewModel node;
    if (path.isEmpty() || !viewModel->GetNodeInfo(path, node))
        return;
    const QList<TreeViewModel>& rows = viewModel->HelpFileList();
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).Id == node.Id) {
            ShowContentsRow(kContentsLoader, row);
            syncedTopicKey = currentTopicKey;
            return;
        }
    }
}

void YxHelp::SlotOnlineLoadFinished(bool ok)
{
    if (ui->stackedWidget->currentWidget() == ui->page_online)
        qCDebug(lcPage) << (ok ? "online page loaded" : "online page failed");
    // The saved preference counts here, not the page on screen.
    if (productConfig.Group != 3 || ok || !settingWid->IsOnlineMode())
        return;
    if (settingWid->IsAutoChange()) {
        SwitchToOfflinePage();
    } else if (settingWid->IsChangeRemin()) {
        YxInfoWid info(settingWid, this);
        info.SetInfoText(
            tr("Failed to load online help documentation. Would you like to switch to offline mode?"), false);
        if (info.exec() == QDialog::Accepted)
            SwitchToOfflinePage();
    }
}

void YxHelp::SlotOnlineUrlChanged()
{
    ui->tbn_nextO->setEnabled(onlinePage->history()->canGoForward());
    ui->tbn_back->setEnabled(onlinePage->history()->canGoBack());
}
