#include "yxhelp.h"

#include "largepage.h"
#include "redirectwebenginepage.h"
#include "ui_yxhelpapp.h"
#include "yxviewmodel.h"

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcPage)

/// What tells the five ways to open a topic from a list apart.
struct YxHelp::TopicLoader
{
    const TreeViewModel& (*record)(YxViewModel& model, int row);
    int (YxViewModel::*shownRow)() const;
    void (YxViewModel::*setShownRow)(const int& row);
    bool fromTree;
    bool reloads; ///< Loads the topic that is shown already, too.
};

namespace {

const TreeViewModel& ContentsRecord(YxViewModel& model, int row)
{
    return model.HelpFileList().at(row);
}

const TreeViewModel& IndexRecord(YxViewModel& model, int row)
{
    return model.IndexList()->at(row);
}

const TreeViewModel& ResultRecord(YxViewModel& model, int row)
{
    return model.SearchList()->at(row);
}

const TreeViewModel& FavoriteRecord(YxViewModel& model, int row)
{
    return model.FavoriteList()->at(row);
}

int RowOf(const QTreeWidgetItem* item)
{
    return item->data(0, Qt::UserRole).toInt();
}

QString LastComponent(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('\\')) + 1);
}

/// A link names a topic when it is part of the topic's path and both end in the same file.
bool LinkNames(const QString& link, const QString& path)
{
    return path.contains(link, Qt::CaseInsensitive) &&
           LastComponent(link).compare(LastComponent(path), Qt::CaseInsensitive) == 0;
}

} // namespace

const YxHelp::TopicLoader YxHelp::kContentsLoader{&ContentsRecord, &YxViewModel::TreeRow,
                                                  &YxViewModel::SetTreeRow, true, false};
const YxHelp::TopicLoader YxHelp::kRedirectLoader{&ContentsRecord, &YxViewModel::TreeRow,
                                                  &YxViewModel::SetTreeRow, true, true};
const YxHelp::TopicLoader YxHelp::kIndexLoader{&IndexRecord, &YxViewModel::IndexRow,
                                               &YxViewModel::SetIndexRow, false, false};
const YxHelp::TopicLoader YxHelp::kResultLoader{&ResultRecord, &YxViewModel::SearchRow,
                                                &YxViewModel::SetSearchRow, false, false};
const YxHelp::TopicLoader YxHelp::kFavoriteLoader{&FavoriteRecord, &YxViewModel::FavoriteRow,
                                                  &YxViewModel::SetFavoriteRow, false, false};

void YxHelp::LoadTopic(const TopicLoader& loader, int row, int column)
{
    if (!loader.reloads && row == (viewModel->*loader.shownRow)())
        return;
    const TreeViewModel& record = loader.record(*viewModel, row);
    const QString html = viewModel->BuildPageHtml(record);
    if (html.isEmpty())
        return;
    qCDebug(lcPage).noquote() << "topic" << record.KeyName;
    ShowPage(html);
    viewModel->PushHistory({record, row, loader.fromTree});
    (viewModel->*loader.setShownRow)(row);
    if (!loader.fromTree)
        viewModel->SetTreeRow(-1);
    // Column -1 stands for no user's click: the first topic of a run is no step that one could go back from.
    if (column != -1 || loader.reloads)
        ActivateHistoryButtons();
    currentTopicKey = record.KeyName;
    currentTopicPath = record.FilePath;
}

void YxHelp::ShowPage(const QString& html)
{
    if (FitsDataAddress(html)) {
        offlinePage->setHtml(html, QUrl(QStringLiteral("file:///"), QUrl::TolerantMode));
    } else {
        const QString path = WriteLargePage(html, language);
        if (!path.isEmpty())
            offlinePage->load(QUrl::fromLocalFile(path));
    }
    offlinePage->runJavaScript(QStringLiteral("window.scrollTo(0, 0);"));
}

void YxHelp::SlotShowHtmContent(QTreeWidgetItem* item, int column)
{
    LoadTopic(kContentsLoader, RowOf(item), column);
}

void YxHelp::SlotShowIndexContent(QTreeWidgetItem* item, int column)
{
    LoadTopic(kIndexLoader, RowOf(item), column);
}

void YxHelp::SlotShowResultContent(QTreeWidgetItem* item, int column)
{
    LoadTopic(kResultLoader, RowOf(item), column);
}

void YxHelp::SlotShowFavoriteContent(QTreeWidgetItem* item, int column)
{
    LoadTopic(kFavoriteLoader, RowOf(item), column);
}

void YxHelp::ShowContentsRow(const TopicLoader& loader, int row)
{
    // A row without an entry in the tree clears the selection.
    ui->treeWidget->setCurrentItem(viewModel->HelpFileList().at(row).Item);
    LoadTopic(loader, row, 0);
}

void YxHelp::ActivateHistoryButtons()
{
    if (viewModel->History()->isEmpty())
        return;
    ui->tbn_pre->SetActive(true);
    ui->tbn_next->SetActive(false);
}

void YxHelp::SlotHistoryBack()
{
    const int pos = viewModel->HistoryPos();
    if (pos <= 0)
        return;
    ui->tbn_next->SetActive(true);
    ui->tbn_pre->SetActive(pos != 1);
    ShowHistoryEntry(pos - 1);
}

void YxHelp::SlotHistoryForward()
{
    const int pos = viewModel->HistoryPos();
    const int last = viewModel->History()->size() - 1;
    if (pos == last)
        return;
    ui->tbn_next->SetActive(pos + 1 != last);
    ui->tbn_pre->SetActive(true);
    ShowHistoryEntry(pos + 1);
}

void YxHelp::ShowHistoryEntry(int pos)
{
    viewModel->SetHistoryPos(pos);
    const HistoryEntry& entry = viewModel->History()->at(pos);
    const QString html = viewModel->BuildPageHtml(entry.record);
    if (html.isEmpty())
        return;
    ShowPage(html);
    // The row of whichever list the topic was opened from: a click on the tree's entry of that row is taken
    // for a repeat until the next topic.
    viewModel->SetTreeRow(entry.row);
    ui->treeWidget->setCurrentItem(entry.inTree ? entry.record.Item : nullptr);
}

void YxHelp::SlotHome()
{
    emit ui->tbn_context->clicked(false);
    if (!viewModel->HelpFileList().isEmpty())
        ShowContentsRow(kContentsLoader, 0);
}

void YxHelp::SlotLinkClicked(const QString& link)
{
    const QList<TreeViewModel>& rows = viewModel->HelpFileList();
    for (int row = 0; row < rows.size(); ++row) {
        if (LinkNames(link, rows.at(row).FilePath)) {
            ShowContentsRow(kContentsLoader, row);
            break;
        }
    }
    viewModel->SetIndexRow(-1);
    viewModel->SetFavoriteRow(-1);
    viewModel->SetSearchRow(-1);
}
