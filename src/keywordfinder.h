#pragma once

#include <QString>
#include <QVector>

/// Place of the name that typing `text` leads to: the first that begins with it, otherwise the first that
/// holds it, in whatever case; -1 when there is none. The text may be a regular expression; an invalid one
/// finds nothing.
int FindKeyword(const QVector<QString>& names, const QString& text);
