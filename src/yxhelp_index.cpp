#include "yxhelp.h"

#include "keywordfinder.h"
#include "rowdelivery.h"
#include "ui_yxhelpapp.h"
#include "yxglobalsignal.h"
#include "yxviewmodel.h"

#include <QThread>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>

namespace {

/// The index, a search and what Qt itself does at the side; with fewer threads a search would wait for the
/// index.
constexpr int kPoolThreads = 3;

} // namespace

void YxHelp::InitJobs()
{
    QThreadPool* pool = QThreadPool::globalInstance();
    pool->setMaxThreadCount(std::max(pool->maxThreadCount(), kPoolThreads));
    indexDelivery =
        new RowDelivery([this](const QList<TreeViewModel>& rows, bool) { ShowIndexRows(rows); }, this);
    searchDelivery = new RowDelivery(
        [this](const QList<TreeViewModel>& rows, bool isEnd) { ShowSearchRows(rows, isEnd); }, this);
}

void YxHelp::EndJobs()
{
    EndJob(searchFuture);
    EndJob(indexFuture);
    // The window is about to go, and with it what would show these rows.
    searchDelivery->Drop();
    indexDelivery->Drop();
}

void YxHelp::EndJob(QFuture<void>& job)
{
    // A job that hasn't begun misses the stop, so it is told until it ends. It needs no more than a row for
    // that.
    while (job.isRunning()) {
        emit YxGlobalSignal::Instance()->TerminateResultSearch();
        QThread::msleep(1);
    }
    job.waitForFinished();
}

void YxHelp::StartIndex()
{
    indexFuture = QtConcurrent::run(viewModel, &YxViewModel::LoadIndex);
}

// Runs on the job's thread, while the job waits.
void YxHelp::SlotIndexPage(QList<TreeViewModel>& list, int index)
{
    indexDelivery->Put(list.mid(index), false);
    PumpEvents();
}

void YxHelp::ShowIndexRows(const QList<TreeViewModel>& rows)
{
    AppendRows(ui->treeWidget_index, *viewModel->IndexList(), rows);
    for (const TreeViewModel& row : rows)
        indexNames.append(row.FileName);
}

void YxHelp::AppendRows(QTreeWidget* tree, QList<TreeViewModel>& list, const QList<TreeViewModel>& rows)
{
    QList<QTreeWidgetItem*> entries;
    entries.reserve(rows.size());
    for (const TreeViewModel& row : rows) {
        auto* entry = new QTreeWidgetItem();
        entry->setText(0, row.FileName);
        entry->setData(0, Qt::UserRole, list.size());
        list.append(row);
        list.last().Item = entry;
        entries.append(entry);
    }
    tree->addTopLevelItems(entries);
}

void YxHelp::SlotIndexTextChanged(const QString& text)
{
    if (text.isEmpty()) {
        ui->treeWidget_index->clearSelection();
        ui->treeWidget_index->setCurrentItem(nullptr);
        return;
    }
    const int row = FindKeyword(indexNames, text);
    if (row >= 0)
        ui->treeWidget_index->setCurrentItem(viewModel->IndexList()->at(row).Item);
}
