#include "yxhelp.h"

#include "redirectwebenginepage.h"
#include "rowdelivery.h"
#include "ui_yxhelpapp.h"
#include "yxfiltersettingwid.h"
#include "yxglobalsignal.h"
#include "yxviewmodel.h"

#include <QtConcurrent>

#include <utility>

void YxHelp::SlotSearch()
{
    const QString text = ui->lineEdit_context->text();
    if (text == lastSearch) {
        emit ui->tbn_result->clicked(false);
        return;
    }
    if (text.isEmpty())
        return;
    lastSearch = text;
    EndJob(searchFuture);
    ClearResultList();
    searchFuture = QtConcurrent::run(viewModel, &YxViewModel::SearchAllFiles, text);
    emit ui->tbn_result->clicked(false);
    offlinePage->findText(text);
}

void YxHelp::ClearResultList()
{
    // The job has ended, so nothing of its rows is on the way any more but what waits here.
    searchDelivery->Drop();
    ui->treeWidget_result->clear();
    viewModel->SearchList()->clear();
    UpdateResultCount();
}

// Runs on the job's thread, while the job waits.
void YxHelp::SlotSearchResult(QList<TreeViewModel>& list, int index, bool isEnd)
{
    searchDelivery->Put(list.mid(index), isEnd);
    PumpEvents();
}

void YxHelp::ShowSearchRows(const QList<TreeViewModel>& rows, bool isEnd)
{
    AppendRows(ui->treeWidget_result, *viewModel->SearchList(), rows);
    UpdateResultCount();
    if (isEnd && productConfig.Filter)
        emit CreateSearchResultFinish(filterPanel ? filterPanel->GetExcludedCategories() : QVector<int>());
}

void YxHelp::UpdateResultCount()
{
    ui->lab_resutlNum->setText(QString::number(viewModel->SearchList()->size()));
}

void YxHelp::InitFilterPanel()
{
    filterPanel = new YxFilterSettingWid();
    filterPanel->setParent(ui->widget_Filter);
    connect(filterPanel, &YxFilterSettingWid::FileterChangeSig, this, &YxHelp::SlotFilterChanged);
    const QTreeWidgetItem* top = ui->treeWidget->topLevelItem(0);
    if (top->childCount() == 0) {
        ui->tbn_Filter->hide();
        ui->widget_Filter->hide();
        return;
    }
    filterAvailable = true;
    QVector<HelpCategory> categories;
    for (int i = 0; i < top->childCount(); ++i) {
        const TreeViewModel& record = viewModel->TreeList()->at(top->child(i)->data(0, Qt::UserRole).toInt());
        categories.append({record.FileName, record.Id});
    }
    filterPanel->SetCategories(std::move(categories));
    ui->verticalLayout_Filter->addWidget(filterPanel);
    ui->widget_Filter->hide();
}

void YxHelp::SlotFilterToggle()
{
    ui->widget_Filter->setVisible(ui->widget_Filter->isHidden());
}

void YxHelp::SlotFilterChanged(const QVector<int>& excluded)
{
    // The end of a running search applies what is ticked then.
    if (!searchFuture.isRunning())
        SlotFilterApply(excluded);
}

void YxHelp::SlotFilterApply(const QVector<int>& excluded)
{
    const QList<TreeViewModel>& hits = *viewModel->SearchList();
    if (hits.isEmpty())
        return;
    int shown = 0;
    for (const TreeViewModel& hit : hits) {
        const bool hidden = excluded.contains(hit.TopParentId) || excluded.contains(hit.Id);
        hit.Item->setHidden(hidden);
        shown += hidden ? 0 : 1;
    }
    ui->lab_resutlNum->setText(QString::number(shown));
}
