#include "yxhelp.h"

#include "redirectwebenginepage.h"
#include "ui_yxhelpapp.h"
#include "widgetproperty.h"
#include "yxviewmodel.h"

#include <QHash>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcContents, "yxhelp.contents")

namespace {

enum LeftPage {
    ContentsPage,
    IndexPage,
    FavoritesPage,
    ResultPage,
};

[[noreturn]] void RefuseRow(const TreeViewModel& row, const char* reason)
{
    qFatal("help database: row with ID %d (\"%s\") names parent %d: %s", row.Id, qUtf8Printable(row.FileName),
           row.ParentId, reason);
}

/// True when the row with this ID is there and has no entry in the tree.
bool StandsOutside(const QList<TreeViewModel>& rows, int id)
{
    return id <= rows.size() && rows.at(id - 1).Id == id && !rows.at(id - 1).Item;
}

/// Makes the entries of all rows and binds the two to each other. Returns the top-level entries.
QList<QTreeWidgetItem*> MakeEntries(QList<TreeViewModel>& rows)
{
    QList<QTreeWidgetItem*> topLevel;
    QHash<int, QTreeWidgetItem*> parents;
    for (int i = 0; i < rows.size(); ++i) {
        TreeViewModel& row = rows[i];
        if (i == 0 && row.ParentId != 0)
            RefuseRow(row, "the first row must be the root");
        if (row.ParentId >= kOutsideTree)
            continue;
        QTreeWidgetItem* parent = nullptr;
        if (row.ParentId != 0) {
            parent = parents.value(row.ParentId);
            if (!parent && StandsOutside(rows, row.ParentId))
                continue;
            if (!parent)
                RefuseRow(row, "its parent has no entry");
        }
        row.Item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem();
        if (!parent)
            topLevel.append(row.Item);
        row.Item->setText(0, row.FileName);
        // The root carries no row number; reading it gives 0, which is its row.
        if (i > 0)
            row.Item->setData(0, Qt::UserRole, i);
        if (i == 0 || !row.Children.isEmpty())
            parents.insert(row.Id, row.Item);
    }
    return topLevel;
}

} // namespace

void YxHelp::CreateContentsTree()
{
    QList<TreeViewModel>& rows = viewModel->HelpFileList();
    treePending = false;
    if (rows.isEmpty()) {
        qCWarning(lcContents) << "no contents in" << viewModel->DatabasePath();
        return;
    }
    ui->treeWidget->addTopLevelItems(MakeEntries(rows));
    QTreeWidgetItem* root = rows.first().Item;
    emit ui->treeWidget->itemClicked(root, -1);
    root->setExpanded(true);
    CreateFavoritesList();
    if (productConfig.Filter)
        InitFilterPanel();
    StartIndex();
}

void YxHelp::SyncTreeToCurrentTopic()
{
    const auto recordAt = [](const auto& list, int row) -> const TreeViewModel* {
        return row >= 0 && row < list.size() ? &list.at(row) : nullptr;
    };
    const TreeViewModel* shown = nullptr;
    switch (ui->stackedWidget_wizard->currentIndex()) {
    case IndexPage:
        shown = recordAt(*viewModel->IndexList(), viewModel->IndexRow());
        break;
    case FavoritesPage:
        shown = recordAt(*viewModel->FavoriteList(), viewModel->FavoriteRow());
        break;
    case ResultPage:
        shown = recordAt(*viewModel->SearchList(), viewModel->SearchRow());
        break;
    default:
        break;
    }
    if (!shown)
        return;
    for (const TreeViewModel& row : viewModel->HelpFileList()) {
        if (row.Id == shown->Id)
            ui->treeWidget->setCurrentItem(row.Item);
    }
}

void YxHelp::SlotTabClicked()
{
    const auto* tab = qobject_cast<QToolButton*>(sender());
    if (tab == ui->tbn_context) {
        SyncTreeToCurrentTopic();
        ui->stackedWidget_wizard->setCurrentIndex(ContentsPage);
    } else if (tab == ui->tbn_index) {
        viewModel->SetIndexRow(-1);
        ui->stackedWidget_wizard->setCurrentIndex(IndexPage);
    } else if (tab == ui->tbn_favorites) {
        viewModel->SetFavoriteRow(-1);
        ui->stackedWidget_wizard->setCurrentIndex(FavoritesPage);
    } else if (tab == ui->tbn_result) {
        viewModel->SetSearchRow(-1);
        ui->stackedWidget_wizard->setCurrentIndex(ResultPage);
    }
    for (QToolButton* button : {ui->tbn_context, ui->tbn_index, ui->tbn_favorites, ui->tbn_result})
        SetSelected(button, button == tab);
}

void YxHelp::SlotPageChanged(int index)
{
    MarkSearchWord();
    if (index != ResultPage)
        ui->tbn_Filter->hide();
    else if (productConfig.Filter && filterAvailable)
        ui->tbn_Filter->show();
    ui->frame_index->setVisible(index == IndexPage);
    ui->frame_contextFind->setVisible(index == ContentsPage || index == ResultPage);
}

void YxHelp::MarkSearchWord()
{
    // The word that a search looked for is marked in the page as long as its hits are on the left.
    const bool results = ui->stackedWidget_wizard->currentIndex() == ResultPage;
    const QString word = results ? ui->lineEdit_context->text() : QString();
    // The engine doesn't look for a word that begins with one it has just missed, not even in a new page.
    // This one is in no page, and no word begins with it.
    if (!word.isEmpty())
        offlinePage->findText(QString(QChar(0xffff)));
    offlinePage->findText(word);
}
