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

/// Words and tags, over and over, as long as asked for.
QString Prose(int size)
{
    const QString sentence = QStringLiteral(
        "<p>The height of an arch is measured <i>between</i> its springing line and the crown, "
        "which <a href=\"arch.html\">carries</a> most of the load.</p>\n");
    return sentence.repeated(size / sentence.size() + 1).left(size);
}

} // namespace

LargeHelp::LargeHelp(int rows, int size)
{
    const QString filler(size, QLatin1Char('x'));
    Write(rows, [&](int) { return Page{filler, filler}; });
}

LargeHelp::LargeHelp(int rows, int shortest, int longest)
{
    const QString prose = Prose(longest);
    Write(rows, [&](int id) {
        // A step without a common divisor spreads the sizes evenly.
        const int size = shortest + int(qint64(id) * 7919 % (longest - shortest + 1));
        const QString word = id % 2 == 0 ? Word() : QString();
        Page page;
        page.html = QLatin1String("<html><head><title>Topic</title></head><body>") + prose.left(size / 2) +
                    QLatin1String(" <b>") + word + QLatin1String("</b> ") + prose.left(size / 2) +
                    QLatin1String("</body></html>");
        page.body = prose.left(size / 4) + QLatin1Char(' ') + word + QLatin1Char(' ') + prose.left(size / 4);
        return page;
    });
}

void LargeHelp::Write(int rows, const std::function<Page(int id)>& page)
{
    const QString folder = dir.filePath(Language() + QLatin1String("/Help"));
    helpbuild::DatabaseWriter writer;
    bool written = QDir().mkpath(folder) && writer.Open(folder + QLatin1Char('/') + FileName());
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
        const Page text = page(id);
        row.body = text.body;
        row.html = text.html;
        written = writer.AddTopic(row);
    }
    if (!written || !writer.Finish())
        qFatal("no large help database: %s", qUtf8Printable(writer.Error()));
}
