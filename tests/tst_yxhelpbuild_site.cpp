#include "docsite.h"
#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"
#include "yxviewmodel.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray Content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

QStringList FilesIn(const QString& folder)
{
    QStringList files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files << QDir(folder).relativeFilePath(entries.next());
    files.sort();
    return files;
}

/// Documentation with names that addresses can't hold as they are.
class SiteFixture : public BuildFixture
{
public:
    SiteFixture()
    {
        options.site = OutputDir() + QLatin1String("/site");
        WritePage("doc/index.html"_s, "Home"_s,
                  "<a href='a b/page.html'>p</a><script src='s/s.js'></script>");
        WritePage("doc/a b/other.html"_s, "Other"_s, "<p id=x>");
        WritePage("doc/a b/文 档.html"_s, "Chinese"_s);
        WritePage("doc/a b/100%#1?.html"_s, "Signs"_s, "<a href='page.html'>p</a>");
        Write("doc/a b/图 1#%.png"_s, Png());
        Write("doc/a b/plain.png"_s, Png(1));
        Write("doc/img/c.png"_s, Png(2));
        Write("doc/img/named.png"_s, Png(3));
        Write("doc/img/in-page.png"_s, Png(4));
        Write("doc/s/s.css"_s, "@import 'i.css' print;\np{background:url(../img/c.png)}");
        Write("doc/s/i.css"_s, "q{background:url('../a b/plain.png')}");
        Write("doc/s/s.js"_s, "show('img/named.png');");
        Write("doc/a b/manual.pdf"_s, "%PDF");
    }

    /// Builds with this text in "a b/page.html", and returns what the site's page has.
    QString PageWith(const QByteArray& body)
    {
        WritePage("doc/a b/page.html"_s, "Page"_s, body);
        return Build({"doc"_s}) ? QString::fromUtf8(Content(Pages() + "/a-b/page.html"_s)) : Error();
    }

    QString Site() const { return options.site + QLatin1Char('/') + options.language; }
    QString Pages() const { return Site() + QLatin1String("/OriginalData"); }
};

} // namespace

/// The web site that a build writes.
class TestHelpBuildSite : public QObject
{
    Q_OBJECT

private slots:
    void referencesLeadToTheSameThing_data();
    void referencesLeadToTheSameThing();
    void nothingLeadsOutOfTheSite();
    void onlineTopicsAreFoundInTheDatabase();
    void addressTableForTheServer();
    void textsBecomeUtf8();
    void rebuildReplacesItsOwnFilesOnly();
    void strangersFilesStay();
};

void TestHelpBuildSite::referencesLeadToTheSameThing_data()
{
    const auto row = Columns<QByteArray, QString>("markup", "expected");
    row("page", "<a href='other.html'>", "<a href=\"other.html?language=en-US\">");
    row("anchor of a page", "<a href=\"other.html#x\">", "<a href=\"other.html?language=en-US#x\">");
    row("anchor with a question mark", "<a href='other.html#x?y'>",
        "<a href=\"other.html?language=en-US#x%3Fy\">");
    row("page in another folder", "<a href='../index.html'>", "<a href=\"../index.html?language=en-US\">");
    row("folder", "<a href='../'>", "<a href=\"../index.html?language=en-US\">");
    row("page above the root", "<a href='../../index.html'>", "<a href=\"../index.html?language=en-US\">");
    row("page with signs in its name", "<a href='100%25%231%3F.html'>",
        "<a href=\"100--1-.html?language=en-US\">");
    row("the page itself", "<a href='page.html'>", "<a href=\"page.html?language=en-US\">");
    row("own anchor", "<a href='#x'>", "<a href='#x'>");
    row("own anchor with a question mark", "<a href='#x?'>", "<a href=\"#x%3F\">");
    row("area", "<area href='other.html'>", "<area href=\"other.html?language=en-US\">");
    row("other document", "<a href='manual.pdf'>", "<a href='manual.pdf'>");
    row("server", "<a href='https://example.org/?a=1' target=x>",
        "<a href='https://example.org/?a=1' target=x>");
    row("nothing there", "<a class=k href='none.html'>", "<a class=k>");
    row("plain image", "<img src='plain.png'>", "<img src='plain.png'>");
    row("image with signs in its name", "<img src='图%201%23%25.png'>",
        "<img src=\"%E5%9B%BE%201%23%25.png\">");
    row("image above the root", "<img src='../../img/c.png'>", "<img src=\"../img/c.png\">");
    row("style attribute", "<p style='background:url(../../img/c.png)'>",
        "<p style=\"background:url(&quot;../img/c.png&quot;)\">");
    row("style element", "<style>p{background:url(../img/in-page.png)}</style>",
        "<style>p{background:url(../img/in-page.png)}</style>");
    row("redirect", "<meta http-equiv=refresh content='5; url=other.html'>",
        "<meta http-equiv=\"refresh\" content=\"0; url=other.html?language=en-US\">");
    row("base", "<base href='../'><img src='img/c.png'>", "<img src=\"../img/c.png\">");
}

void TestHelpBuildSite::referencesLeadToTheSameThing()
{
    QFETCH(QByteArray, markup);
    QFETCH(QString, expected);
    SiteFixture fixture;
    fixture.options.output.clear();
    const QString html = fixture.PageWith(markup);
    QVERIFY2(html.contains(QLatin1String("<body>") + expected + QLatin1String("</body>")), qPrintable(html));
}

void TestHelpBuildSite::nothingLeadsOutOfTheSite()
{
    SiteFixture fixture;
    fixture.PageWith("<link rel=stylesheet href='../../s/s.css'><script src='../s/s.js'></script>"
                     "<script>x('../img/in-page.png')</script><img src='图%201%23%25.png'>"
                     "<a href='文 档.html'>c</a><a href='100%25%231%3F.html'>s</a>");
    QCOMPARE(fixture.Error(), QString());
    // Also what only a style sheet or a script names.
    for (const char* file : {"s/i.css", "img/c.png", "a-b/plain.png", "img/in-page.png", "img/named.png"})
        QVERIFY2(QFile::exists(fixture.Pages() + QLatin1Char('/') + QLatin1String(file)), file);
    QVERIFY(Content(fixture.Pages() + "/s/i.css"_s).contains("url(\"../a-b/plain.png\")"));

    int links = 0;
    const QStringList files = FilesIn(fixture.Site());
    for (const QString& file : files.filter(".html"_s)) {
        const QString html = QString::fromUtf8(Content(fixture.Site() + QLatin1Char('/') + file));
        const QUrl page = QUrl("http://host/"_s + QString::fromLatin1(QUrl::toPercentEncoding(file, "/")));
        for (const QString& reference : AttributesIn(html, "a", "href") + AttributesIn(html, "img", "src") +
                                            AttributesIn(html, "link", "href") +
                                            AttributesIn(html, "script", "src")) {
            const QUrl url = page.resolved(QUrl(reference));
            const QString path = url.path(QUrl::FullyDecoded);
            QVERIFY2(QFile::exists(fixture.Site() + path), qPrintable(file + ": "_s + reference));
            QCOMPARE(url.hasQuery(), helpbuild::IsPageName(path));
            ++links;
        }
    }
    QVERIFY(links >= 12);
    const QByteArray map = Content(fixture.Site() + "/addresses.conf"_s);
    for (const QByteArray& line : map.trimmed().split('\n')) {
        const QString path = QUrl::fromPercentEncoding(line.split('"').value(3));
        QVERIFY2(!path.isEmpty() && QFile::exists(fixture.options.site + path), line.constData());
    }
}

// As the viewer does it when it goes offline.
void TestHelpBuildSite::onlineTopicsAreFoundInTheDatabase()
{
    SiteFixture fixture;
    fixture.PageWith({});
    YxViewModel viewer(fixture.options.language, fixture.options.database, fixture.options.output, nullptr);
    const QString home = QString::fromUtf8(Content(fixture.Site() + "/index.html"_s));
    const QStringList links = AttributesIn(home, "a", "href");
    const QJsonArray table =
        QJsonDocument::fromJson(Content(fixture.Site() + "/addresses.json"_s)).object()["topics"_s].toArray();
    QCOMPARE(links.size(), 6); // with the list that stands for the folder
    QCOMPARE(table.size(), links.size());
    for (int i = 0; i < links.size(); ++i) {
        const QString address = QUrl("http://host/en-US/"_s).resolved(QUrl(links.at(i))).toString();
        const QString mark = "OriginalData/"_s;
        QString path =
            address.left(address.lastIndexOf(QLatin1Char('?'))).mid(address.lastIndexOf(mark) + mark.size());
        const QJsonObject row = table.at(i).toObject();
        QCOMPARE(row["path"_s].toString(), path);
        TreeViewModel node;
        QVERIFY2(viewer.GetNodeInfo(path.replace(QLatin1Char('/'), QLatin1Char('\\')), node),
                 qPrintable(address));
        QCOMPARE(node.KeyName, row["key"_s].toString());
        QCOMPARE(node.Id, i + 1);
    }
}

void TestHelpBuildSite::addressTableForTheServer()
{
    BuildFixture fixture;
    fixture.options.site = fixture.OutputDir();
    for (const char* page : {"index.html", "p/index.html", "p/Key.html", "q/key.html"})
        fixture.WritePage("m/"_s + QLatin1String(page), QLatin1String(page));
    fixture.Write("m/p.qhp"_s,
                  Project("<section title='A' ref='index.html'>"
                          "<section title='B' ref='p/index.html'/><section title='C' ref='p/Key.html'/>"
                          "<section title='D' ref='q/key.html'/></section>",
                          "<keyword name='a' id='Class::f(int)' ref='p/Key.html'/>",
                          "<file>index.html</file><file>p/index.html</file><file>p/Key.html</file>"
                          "<file>q/key.html</file>"));
    QVERIFY2(fixture.Build({"m/p.qhp"_s}), qPrintable(fixture.Error()));
    const QString map = QString::fromUtf8(Content(fixture.OutputDir() + "/en-US/addresses.conf"_s));
    for (const auto& [topic, file] :
         {std::pair("", "index.html"), std::pair("index", "index.html"),
          std::pair("Class%3A%3Af%28int%29", "p/Key.html"), std::pair("key", "q/key.html")}) {
        const QString line =
            "\"en-US/%1\" \"/en-US/OriginalData/doc/%2\";\n"_s.arg(QLatin1String(topic), QLatin1String(file));
        QVERIFY2(map.contains(line), qPrintable(line + map));
    }
    QCOMPARE(map.count("\"en-US/key\""_s, Qt::CaseInsensitive), 1);
}

void TestHelpBuildSite::textsBecomeUtf8()
{
    SiteFixture fixture;
    fixture.Write("doc/old.html"_s, "<html><head><meta charset=windows-1252><title>\xc4</title>"
                                    "<link rel=stylesheet href=old.css><script src=old.js></script></head>"
                                    "<body>\xd6</body></html>");
    fixture.Write("doc/old.css"_s, "p::before{content:'\xdc'}");
    fixture.Write("doc/old.js"_s, "a('\xdf')");
    fixture.PageWith({});
    QVERIFY(Content(fixture.Pages() + "/old.html"_s).contains("<meta charset=\"utf-8\"><title>Ä</title>"));
    QCOMPARE(Content(fixture.Pages() + "/old.css"_s),
             QByteArray("@charset \"utf-8\";p::before{content:'Ü'}"));
    QCOMPARE(Content(fixture.Pages() + "/old.js"_s), QByteArray("a('ß')"));
}

void TestHelpBuildSite::rebuildReplacesItsOwnFilesOnly()
{
    SiteFixture fixture;
    // The database and the site may share a folder.
    fixture.options.site = fixture.OutputDir();
    fixture.WritePage("doc/gone.html"_s, "Gone"_s);
    fixture.PageWith({});
    QFile robots(fixture.Site() + "/robots.txt"_s);
    QVERIFY(robots.open(QIODevice::WriteOnly));
    const QStringList before = FilesIn(fixture.Site());
    QVERIFY(before.contains("Help/YXCADHelp.db"_s) && before.contains("OriginalData/gone.html"_s));

    // An image that can't be read ends the build of the database, and so that of the site.
    fixture.Write("doc/z.png"_s, "no image");
    fixture.PageWith("<img src='../z.png'>");
    QVERIFY(!fixture.Error().isEmpty());
    QCOMPARE(FilesIn(fixture.Site()), before);

    QVERIFY(QFile::remove(fixture.Input("doc/gone.html"_s)));
    fixture.PageWith({});
    QStringList expected = before;
    expected.removeAll("OriginalData/gone.html"_s);
    QCOMPARE(FilesIn(fixture.Site()), expected);
}

void TestHelpBuildSite::strangersFilesStay()
{
    for (const char* file : {"index.html", "OriginalData/index.html", "addresses.json"}) {
        SiteFixture fixture;
        const QString path = fixture.Site() + QLatin1Char('/') + QLatin1String(file);
        QFile stranger(path);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()) && stranger.open(QIODevice::WriteOnly));
        const QString error = fixture.PageWith({});
        QVERIFY2(error.endsWith(": is not from an earlier build, and stays"_s), qPrintable(error));
        QCOMPARE(FilesIn(fixture.OutputDir()), QStringList("site/en-US/"_s + QLatin1String(file)));
    }
}

QTEST_GUILESS_MAIN(TestHelpBuildSite)
#include "tst_yxhelpbuild_site.moc"
