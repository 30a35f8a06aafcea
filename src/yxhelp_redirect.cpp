#include "yxhelp.h"

#include "onlineaddress.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxviewmodel.h"

void YxHelp::SlotRedirectTopic(SMData request)
{
    SetWindowOnTop();
    ShowRedirectedTopic(request);
}

void YxHelp::ShowRedirectedTopic(const SMData& request)
{
    const bool online = productConfig.Group == 2 ||
                        (productConfig.Group == 3 && ui->stackedWidget->currentWidget() == ui->page_online);
    if (online)
        ShowRedirectedOnline(request);
    else
        ShowRedirectedOffline(TextOf(request.topic));
}

void YxHelp::ShowRedirectedOffline(const QString& topic)
{
    emit ui->tbn_context->clicked(false);
    ui->stackedWidget_wizard->setCurrentWidget(ui->page_context);
    const QList<TreeViewModel>& rows = *viewModel->TreeList();
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).KeyName.compare(topic, Qt::CaseInsensitive) == 0) {
            ShowContentsRow(kRedirectLoader, row);
            return;
        }
    }
}

void YxHelp::ShowRedirectedOnline(const SMData& request)
{
    QString product = TextOf(request.product);
    if (product != QLatin1String("YXCAD") && product != QLatin1String("YX3D"))
        product = productConfig.Product;
    bool isNumber = false;
    int version = TextOf(request.version).toInt(&isNumber);
    if (!isNumber)
        version = productConfig.VersionYear;

    SetSelected(ui->tbn_online, true);
    // The window's own language: a viewer serves one, and the request's plays no part.
    const OnlineAnswer answer = AskOnlineAddress(
        productConfig, {product, version, language, TextOf(request.topic).toLocal8Bit(), {}});
    LoadOnlinePage(answer.address);
    SwitchToOnlinePage();
    ui->tbn_online->setToolTip(OnlineToolTip());
    if (answer.code == OnlineAnswer::kNoNetwork)
        ShowNoNetwork();
}
