#include "tst_yxhelpbuild_fixture.h"

#include "diagnostics.h"
#include "helpbuilder.h"
#include "htmldocument.h"
#include "literal.h"
#include "plaintext.h"
#include "yxviewmodel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <limits>

using namespace helpbuild;

namespace {

QString LastPart(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('\\')) + 1);
}

} // namespace

BuildFixture::BuildFixture()
{
    options.language = "en-US"_s;
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

QStringList BuildFixture::Select(const QString& statement) const
{
    return SelectFrom(HelpDir() + QLatin1Char('/') + options.database, statement);
}

QString BuildFixture::Tree() const
{
    QHash<int, int> depths;
    QString tree;
    for (const QString& row : Select("SELECT ID||' '||ParentID||' '||FileName||' "
                                     "['||KeyName||']' FROM HelpFileList WHERE Body<>'js'"_s)) {
        const int id = row.section(QLatin1Char(' '), 0, 0).toInt();
        const int parent = row.section(QLatin1Char(' '), 1, 1).toInt();
        depths[id] = parent == 0 ? 0 : depths.value(parent) + 1;
        const QString indent = parent >= 65535 ? "~ "_s : QString(depths[id] * 2, QLatin1Char(' '));
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
    const QUrl url = QUrl("file:///"_s).resolved(QUrl(href));
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

QByteArray Project(const QByteArray& sections, const QByteArray& keywords, const QByteArray& files,
                   const QByteArray& folder)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<QtHelpProject version=\"1.0\">\n<virtualFolder>" +
           folder + "</virtualFolder>\n<filterSection>\n<toc>\n" + sections + "</toc>\n<keywords>\n" +
           keywords + "</keywords>\n<files>\n" + files + "</files>\n</filterSection>\n</QtHelpProject>\n";
}

QString Finish(BuildFixture& fixture, const QByteArray& page)
{
    fixture.WritePage("doc/sub/other.html"_s, "Other"_s);
    fixture.Write("doc/index.html"_s, page);
    fixture.Write("doc/s.css"_s, "p{}");
    fixture.Write("doc/sub/t.css"_s, "q{}");
    fixture.Write("doc/a.js"_s, "a();");
    fixture.Write("doc/lib.js.min.js"_s, "lib();");
    fixture.Write("doc/i.png"_s, BuildFixture::Png());
    fixture.Write("doc/notes.txt"_s, "text");
    if (!fixture.Build({"doc"_s}))
        return fixture.Error();
    return fixture.Finished(fixture.Select("SELECT Title FROM HelpFileList WHERE ID=1"_s).constFirst());
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
