#include "yxhelp.h"

#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxsettingwid.h"

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
