#include "tst_yxhelpbuild_fixture.h"

#include "diagnostics.h"
#include "helpbuilder.h"
#include "htmldocument.h"
#include "plaintext.h"
#include "yxviewmodel.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUrl>
#include <QVariant>

#include <limits>

using namespace helpbuild;

namespace {

const QLatin1String kConnection("BuildFixture");

QString LastPart(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('\\')) + 1);
}

} // namespace

BuildFixture::BuildFixture()
{
    options.language = QStringLiteral("en-US");
    options.output = output.path();
}

BuildFixture::~BuildFixture() = default;

void BuildFixture::Write(const QString& path, const QByteArray& content)
{
    const QString full = Input(path);
    QDir().mkpath(QFileInfo(full).path());
    QFile file(full);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s can't be written", qPrintable(full));
}

void BuildFixture::WritePage(const QString& path, const QString& title, const QByteArray& body)
{
    Write(path, "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" +
                    title.toHtmlEscaped().toUtf8() + "</title></head>\n<body>" + body + "</body></html>\n");
}

QString BuildFixture::Input(const QString& path) const
{
    return path.isEmpty() ? input.path() : input.filePath(path);
}

QString BuildFixture::HelpDir() const
{
    return options.output + QLatin1Char('/') + options.language + QLatin1String("/Help");
}

bool BuildFixture::Build(const QStringList& inputs)
{
    viewer.reset();
    reports.clear();
    BuildOptions all = options;
    for (const QString& path : inputs)
        all.inputs << Input(path);
    Diagnostics diagnostics([this](const QString& line) { reports << WithoutFolder(line); },
                            std::numeric_limits<int>::max());
    const bool built = HelpBuilder(all, diagnostics).Run();
    error = WithoutFolder(diagnostics.Error());
    return built;
}

QString BuildFixture::WithoutFolder(QString text) const
{
    return text.remove(input.path() + QLatin1Char('/'));
}

QStringList BuildFixture::Select(const QString& statement) const
{
    QStringList values;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
        database.setDatabaseName(HelpDir() + QLatin1Char('/') + options.database);
        if (!QFile::exists(database.databaseName()) || !database.open())
            qFatal("no database");
        QSqlQuery query(database);
        if (!query.exec(statement))
            qFatal("%s", qPrintable(statement));
        while (query.next())
            values << query.value(0).toString();
    }
    QSqlDatabase::removeDatabase(kConnection);
    return values;
}

QString BuildFixture::Tree() const
{
    QHash<int, int> depths;
    QString tree;
    for (const QString& row : Select(QStringLiteral("SELECT ID||' '||ParentID||' '||FileName||' "
                                                    "['||KeyName||']' FROM HelpFileList WHERE Body<>'js'"))) {
        const int id = row.section(QLatin1Char(' '), 0, 0).toInt();
        const int parent = row.section(QLatin1Char(' '), 1, 1).toInt();
        depths[id] = parent == 0 ? 0 : depths.value(parent) + 1;
        const QString indent =
            parent >= 65535 ? QStringLiteral("~ ") : QString(depths[id] * 2, QLatin1Char(' '));
        tree += indent + row.section(QLatin1Char(' '), 2) + QLatin1Char('\n');
    }
    return tree;
}

YxViewModel& BuildFixture::Viewer()
{
    if (!viewer)
        viewer = std::make_unique<YxViewModel>(options.language, options.database, options.output, nullptr);
    return *viewer;
}

QString BuildFixture::Finished(const QString& title)
{
    const QList<TreeViewModel>& list = Viewer().HelpFileList();
    for (const TreeViewModel& record : list) {
        if (record.Title == title)
            return Viewer().BuildPageHtml(record);
    }
    qFatal("no page with the title %s", qPrintable(title));
}

QString BuildFixture::Follow(const QString& href)
{
    const QUrl url = QUrl(QStringLiteral("file:///")).resolved(QUrl(href));
    QString link = url.toString().mid(8);
    link.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const QList<TreeViewModel>& list = Viewer().HelpFileList();
    for (const TreeViewModel& record : list) {
        if (record.FilePath.contains(link, Qt::CaseInsensitive) &&
            LastPart(record.FilePath).compare(LastPart(link), Qt::CaseInsensitive) == 0)
            return record.Title;
    }
    return {};
}

QByteArray BuildFixture::Png(int number, int size)
{
    // Noise, so that the size of the data follows that of the picture.
    QImage image(size, size, QImage::Format_RGB32);
    QRandomGenerator random(static_cast<quint32>(number) + 1);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            image.setPixel(x, y, random.generate() | 0xff000000U);
    }
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return data;
}

QByteArray Project(const QByteArray& sections, const QByteArray& keywords, const QByteArray& files,
                   const QByteArray& folder)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<QtHelpProject version=\"1.0\">\n<virtualFolder>" +
           folder + "</virtualFolder>\n<filterSection>\n<toc>\n" + sections + "</toc>\n<keywords>\n" +
           keywords + "</keywords>\n<files>\n" + files + "</files>\n</filterSection>\n</QtHelpProject>\n";
}

QString Finish(BuildFixture& fixture, const QByteArray& page)
{
    fixture.WritePage(QStringLiteral("doc/sub/other.html"), QStringLiteral("Other"));
    for (const auto& [path, content] :
         std::initializer_list<std::pair<const char*, QByteArray>>{{"index.html", page},
                                                                   {"s.css", "p{}"},
                                                                   {"sub/t.css", "q{}"},
                                                                   {"a.js", "a();"},
                                                                   {"lib.js.min.js", "lib();"},
                                                                   {"i.png", BuildFixture::Png()},
                                                                   {"notes.txt", "text"}})
        fixture.Write(QStringLiteral("doc/") + QLatin1String(path), content);
    if (!fixture.Build({QStringLiteral("doc")}))
        return fixture.Error();
    return fixture.Finished(
        fixture.Select(QStringLiteral("SELECT Title FROM HelpFileList WHERE ID=1")).constFirst());
}

QStringList AttributesIn(const QString& html, const char* tag, const char* attribute)
{
    QStringList values;
    HtmlDocument(html.toUtf8()).ForEachNode([&](const GumboNode& node) {
        if (IsWritten(node) && node.v.element.tag == gumbo_tag_enum(tag) &&
            gumbo_get_attribute(&node.v.element.attributes, attribute) != nullptr)
            values << AttributeText(node.v.element, attribute);
    });
    return values;
}

QString TextIn(const QString& html)
{
    return PlainText(HtmlDocument(html.toUtf8()));
}

QStringList ContentsOf(const QString& html, const char* tag)
{
    QStringList contents;
    HtmlDocument(html.toUtf8()).ForEachNode([&](const GumboNode& node) {
        if (IsWritten(node) && node.v.element.tag == gumbo_tag_enum(tag))
            contents << TextOf(node.v.element);
    });
    return contents;
}
