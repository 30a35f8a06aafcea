#include "yxhelp.h"

#include "ui_yxhelpapp.h"
#include "yxviewmodel.h"

#include <QIcon>
#include <QMenu>

#include <algorithm>

void YxHelp::CreateFavoritesList()
{
    QList<TreeFavoritesModel>& list = viewModel->LoadFavorites();
    for (int row = 0; row < list.size(); ++row)
        list[row].Item = NewFavoriteEntry(list.at(row), row);
    ShowFavoriteCount();
}

QTreeWidgetItem* YxHelp::NewFavoriteEntry(const TreeViewModel& record, int row)
{
    auto* entry = new QTreeWidgetItem(ui->treeWidget_favorites, {record.FileName});
    entry->setData(0, Qt::UserRole, row);
    const QPixmap star(QStringLiteral(":/Resource/CommonResources/icon_favorite.png"));
    QIcon icon;
    icon.addPixmap(star, QIcon::Normal, QIcon::Off);
    // Styles tint the picture of a selected entry unless it has one of its own.
    icon.addPixmap(star, QIcon::Selected, QIcon::Off);
    entry->setIcon(0, icon);
    return entry;
}

void YxHelp::ShowFavoriteCount()
{
    ui->lab_favoriteNum->setText(QString::number(viewModel->FavoriteCount()));
}

void YxHelp::SlotTreeMenu(const QPoint& pos)
{
    auto* tree = qobject_cast<QTreeWidget*>(sender());
    QTreeWidgetItem* entry = tree->itemAt(pos);
    if (!entry)
        return;
    QMenu menu;
    if (tree == ui->treeWidget_favorites)
        connect(menu.addAction(tr("Delete")), &QAction::triggered, this,
                [this, entry] { SlotDeleteFavorite(entry); });
    else
        connect(menu.addAction(tr("Add to favorites")), &QAction::triggered, this,
                [this, entry] { SlotAddFavorite(entry); });
    menu.exec(QCursor::pos());
}

void YxHelp::SlotAddFavorite(QTreeWidgetItem* entry)
{
    AddToFavoritesList(viewModel->HelpFileList().at(entry->data(0, Qt::UserRole).toInt()));
    // The entry is the contents tree's, so the favourites are left with nothing selected.
    ui->treeWidget_favorites->setCurrentItem(nullptr);
    emit ui->tbn_favorites->clicked(false);
}

void YxHelp::AddToFavoritesList(const TreeViewModel& record)
{
    const QList<TreeFavoritesModel>& list = *viewModel->FavoriteList();
    const bool known = std::any_of(list.begin(), list.end(), [&](const TreeFavoritesModel& favorite) {
        return favorite.Id == record.Id && !favorite.Removed;
    });
    if (known)
        return;
    TreeFavoritesModel favorite{record};
    favorite.Item = NewFavoriteEntry(record, list.size());
    viewModel->AddFavorite(favorite);
    ShowFavoriteCount();
}

void YxHelp::SlotDeleteFavorite(QTreeWidgetItem* entry)
{
    TreeFavoritesModel& record = (*viewModel->FavoriteList())[entry->data(0, Qt::UserRole).toInt()];
    RemoveFromFavoritesList(record);
    record.Removed = true;
    record.Item = nullptr;
    viewModel->SetFavoriteRow(-1);
}

void YxHelp::RemoveFromFavoritesList(const TreeFavoritesModel& record)
{
    QTreeWidgetItem* entry = record.Item;
    ui->treeWidget_favorites->takeTopLevelItem(ui->treeWidget_favorites->indexOfTopLevelItem(entry));
    viewModel->RemoveFavorite(record);
    delete entry;
    ShowFavoriteCount();
}

void YxHelp::SlotFavoritesQuick()
{
    emit ui->tbn_favorites->clicked(false);
}
