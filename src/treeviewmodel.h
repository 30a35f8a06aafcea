#pragma once

#include <QList>
#include <QString>

class QTreeWidgetItem;

/// Parent numbers from here on mean that the row stands outside the contents tree.
inline constexpr int kOutsideTree = 65535;

/// One row of the topics, as the lists and panes carry it. Which fields are filled depends on the reader.
struct TreeViewModel
{
    QList<TreeViewModel> Children; ///< Copies without children of their own; in the contents list only.
    int Id = 0;
    QString FileName; ///< The text that panes show.
    int ParentId = 0;
    int TopParentId = 0;
    int Spare = 0;
    QString FilePath;
    QString SubTitle;
    int Category = 0;
    QString KeyName;
    QString Title;
    QString Html;                    ///< The whole page; a single character in a contents record.
    QString ImagePath;               ///< Keys of the page's images, separated by commas.
    QTreeWidgetItem* Item = nullptr; ///< Entry that shows the record in a pane. Not owned.
};

/// One favourite.
struct TreeFavoritesModel : TreeViewModel
{
    bool Removed = false; ///< Taken out of the pane in this run.
};

/// One script file that pages refer to.
struct JsFileContent
{
    QString Content;
    QString FileName;
};

/// True when the two stand for the same topic. Ids and page texts play no part.
bool SameNode(const TreeViewModel& a, const TreeViewModel& b);

bool operator==(const TreeFavoritesModel& a, const TreeFavoritesModel& b);
