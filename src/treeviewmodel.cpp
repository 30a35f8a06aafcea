#include "treeviewmodel.h"

bool SameNode(const TreeViewModel& a, const TreeViewModel& b)
{
    return a.FileName == b.FileName && a.ParentId == b.ParentId && a.Spare == b.Spare &&
           a.FilePath == b.FilePath && a.SubTitle == b.SubTitle && a.Category == b.Category &&
           a.KeyName == b.KeyName && a.Title == b.Title;
}

bool operator==(const TreeFavoritesModel& a, const TreeFavoritesModel& b)
{
    return a.Id == b.Id && SameNode(a, b) && a.Removed == b.Removed;
}
