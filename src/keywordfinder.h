#pragma once

#include "treeviewmodel.h"

#include <QList>
#include <QString>

/// Row that typing `text` leads to: the first whose name begins with it, otherwise the first that holds it,
/// in whatever case; -1 when there is none. The text may be a regular expression; an invalid one finds
/// nothing.
int FindKeyword(const QList<TreeViewModel>& rows, const QString& text);
