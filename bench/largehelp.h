#pragma once

#include <QString>
#include <QTemporaryDir>

#include <functional>

/// A help database of its own, written as yxhelp-build does, with as many topics as asked for in three levels
/// below a root.
class LargeHelp
{
public:
    /// Every topic has a page and a text of `size` bytes each.
    LargeHelp(int rows, int size);
    /// Pages of HTML with `shortest` to `longest` characters and half as much text. Every second topic holds
    /// Word() in its body, and no other has it.
    LargeHelp(int rows, int shortest, int longest);

    QString Folder() const { return dir.path(); }
    static QString Language() { return QStringLiteral("en-US"); }
    static QString FileName() { return QStringLiteral("YXCADHelp.db"); }
    static QString Word() { return QStringLiteral("keystone"); }

private:
    struct Page
    {
        QString html;
        QString body;
    };

    void Write(int rows, const std::function<Page(int id)>& page);

    QTemporaryDir dir;
};
