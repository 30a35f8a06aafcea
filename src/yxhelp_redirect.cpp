#include "yxhelp.h"

#include "ui_yxhelpapp.h"
#include "yxviewmodel.h"

void YxHelp::ShowRedirectedTopic(const SMData& request)
{
    const QString topic = TextOf(request.topic);
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
