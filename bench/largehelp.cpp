#include "largehelp.h"

#include "databasewriter.h"

#include <QDir>

namespace {

constexpr int kParts = 100;
constexpr int kChapters = 1000;

/// Numbers of parents stay far below 65535, where the rows outside the tree begin: the parts come first, then
/// the chapters, then all topics.
int ParentOf(int id)
{
    if (id == 1)
        return 0;
    if (id <= 1 + kParts)
        return 1;
    if (id <= 1 + kParts + kChapters)
        return 2 + id % kParts;
    return 2 + kParts + id % kChapters;
}

} // namespace

LargeHelp::LargeHelp(int rows, int size)
{
    const QString folder = dir.filePath(Language() + QLatin1String("/Help"));
    helpbuild::DatabaseWriter writer;
    bool written = QDir().mkpath(folder) && writer.Open(folder + QLatin1Char('/') + FileName());
    const QString filler(size, QLatin1Char('x'));
    for (int id = 1; id <= rows && written; ++id) {
        const QString number = QString::number(id);
        helpbuild::TopicRow row;
        row.id = id;
        row.parentId = ParentOf(id);
        row.topParentId = 1;
        row.title = QLatin1String("Topic number ") + number;
        row.fileName = row.title;
        row.key = QLatin1String("topic") + number;
        row.filePath = QLatin1String("part\\") + row.key + QLatin1String(".html");
        row.body = filler;
        row.html = filler;
        written = writer.AddTopic(row);
    }
    if (!written || !writer.Finish())
        qFatal("no large help database: %s", qUtf8Printable(writer.Error()));
}
