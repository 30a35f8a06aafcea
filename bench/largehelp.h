#pragma once

#include <QString>
#include <QTemporaryDir>

/// A help database of its own, written as yxhelp-build does, with as many topics as asked for in three levels
/// below a root. Every topic has a page and a text of `size` bytes each.
class LargeHelp
{
public:
    LargeHelp(int rows, int size);

    QString Folder() const { return dir.path(); }
    static QString Language() { return QStringLiteral("en-US"); }
    static QString FileName() { return QStringLiteral("YXCADHelp.db"); }

private:
    QTemporaryDir dir;
};
