#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QRegExp>

class TestHelpBuild : public QObject
{
    Q_OBJECT

private slots:
    void projectBecomesTree_data();
    void projectBecomesTree();
    void projectsStandSideBySide();
    void folderBecomesTree_data();
    void folderBecomesTree();
    void folderThatContainsItselfEnds();
    void rowsKeepTheViewersRules();
    void everyLinkFindsItsTopic();
    void charsetIsThePagesOwn_data();
    void charsetIsThePagesOwn();
    void everyPageCanBeSearched_data();
    void everyPageCanBeSearched();
};

void TestHelpBuild::projectBecomesTree_data()
{
    const auto row = Columns<QByteArray, QByteArray, QString>("sections", "keywords", "tree");
    const QByteArray keywords = "<keyword name=\"Anchored\" id=\"a\" ref=\"one.html#x\"/>\n"
                                "<keyword name=\"No id\" ref=\"./one.html\"/>\n"
                                "<keyword name=\"n\" id=\"Second\" ref=\"two.html\"/>\n"
                                "<keyword name=\"n\" id=\"TWO\" ref=\"two.html\"/>\n"
                                "<keyword name=\"n\" id=\"second\" ref=\"three.html\"/>\n"
                                "<keyword name=\"n\" id=\"gone\" ref=\"gone.html\"/>\n";
    row("sections and keywords",
        "<section title=\"Top &lt;1&gt;\" ref=\"one.html\">\n"
        "<section title=\"\" ref=\"two.html\"><section title=\"Deep\" ref=\"three.html\"/></section>\n"
        "</section>\n",
        keywords, "Top <1> [No id]\n  Page 2 [Second]\n    Deep [doc-three]\n");
    row("several top sections get a root",
        "<section title=\"A\" ref=\"one.html\"/>\n"
        "<section title=\"B\" ref=\"two.html\"><section title=\"C\" ref=\"three.html\"/></section>\n",
        "", "YXCAD Help [index]\n  A [one]\n  B [two]\n    C [three]\n");
    row("a page listed twice has two entries",
        "<section title=\"Top\" ref=\"one.html\"><section title=\"A\" ref=\"two.html\"/>\n"
        "<section title=\"B\" ref=\"three.html\"><section title=\"A again\" "
        "ref=\"two.html\"/></section></section>",
        "", "Top [one]\n  A [two]\n  B [three]\n    A again [two-2]\n");
    row("places within a page have none of their own",
        "<section title=\"Top\" ref=\"one.html\">"
        "<section title=\"Same\" ref=\"one.html\"><section title=\"2\" ref=\"two.html\"/></section>\n"
        "<section title=\"Place\" ref=\"two.html#there\"/>\n"
        "<section title=\"Heading\" ref=\"two.html#x\"><section title=\"3\" ref=\"three.html#y\"/>"
        "</section></section>\n",
        "", "Top [one]\n  2 [two]\n  Heading [doc-two-index]\n    3 [three]\n");
    row("a page that doesn't exist leaves its children",
        "<section title=\"Top\" ref=\"one.html\"><section title=\"Gone\" ref=\"gone.html\">"
        "<section title=\"2\" ref=\"two.html\"/></section>"
        "<section title=\"3\" ref=\"three.html\"/></section>\n",
        "", "Top [one]\n  2 [two]\n  3 [three]\n");
}

void TestHelpBuild::projectBecomesTree()
{
    QFETCH(QByteArray, sections);
    QFETCH(QByteArray, keywords);
    QFETCH(QString, tree);
    BuildFixture fixture;
    const QStringList names{"one"_s, "two"_s, "three"_s};
    for (int i = 0; i < 3; ++i)
        fixture.WritePage(names.at(i) + ".html"_s, "Page %1"_s.arg(i + 1));
    fixture.Write("p.qhp"_s, Project(sections, keywords,
                                     "<file>one.html</file><file>two.html</file><file>three.html</file>"));
    QVERIFY2(fixture.Build({"p.qhp"_s}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), tree);
    // Whatever entry is clicked, there is a page; and a search finds each page once.
    QCOMPARE(fixture.Select("SELECT Title FROM HelpFileList WHERE length(Html)=0"_s), QStringList());
    fixture.WritePage("two.html"_s, "Page 2"_s, "needle");
    QVERIFY(fixture.Build({"p.qhp"_s}));
    QCOMPARE(fixture.Select("SELECT Title FROM HelpFileList WHERE Body LIKE '%needle%'"_s),
             QStringList{"Page 2"_s});
}

void TestHelpBuild::projectsStandSideBySide()
{
    BuildFixture fixture;
    for (const char* name : {"left", "right"}) {
        const QString folder = QLatin1String(name) + QLatin1Char('/');
        fixture.WritePage(
            folder + "index.html"_s, QLatin1String(name),
            "<a href='../right/sub.html#x'>other</a> <a href='qthelp://org.right/right/sub.html'>q</a>");
        fixture.WritePage(folder + "sub.html"_s, QLatin1String(name) + " sub"_s);
        fixture.WritePage(folder + "lost.html"_s, QLatin1String(name) + " lost"_s);
        fixture.Write(folder + "p.qhp"_s,
                      Project("<section title=\"" + QByteArray(name) +
                                  "\" ref=\"index.html\"><section title=\"Sub\" ref=\"sub.html\"/></section>",
                              "", "<file>*.html</file>", name));
    }
    fixture.options.title = "All of it"_s;
    QVERIFY2(fixture.Build({"left/p.qhp"_s, "right/p.qhp"_s}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(),
             "All of it [index]\n  left [left]\n    Sub [sub]\n  right [right]\n    Sub [right-sub]\n"
             "~ left lost [lost]\n~ right lost [right-lost]\n"_s);
    // What the search results are filtered by: the entries below the root.
    QCOMPARE(fixture.Select("SELECT TopParentId FROM HelpFileList ORDER BY ID"_s),
             (QStringList{"0"_s, "2"_s, "2"_s, "4"_s, "4"_s, "2"_s, "4"_s}));
    const QStringList links = AttributesIn(fixture.Finished("left"_s), "a", "href");
    QCOMPARE(links.size(), 2);
    for (const QString& link : links)
        QCOMPARE(fixture.Follow(link), "right sub"_s);
    const QStringList list = AttributesIn(fixture.Finished("All of it"_s), "a", "href");
    QCOMPARE(list.size(), 2);
    QCOMPARE(fixture.Follow(list.at(1)), "right"_s);
}

void TestHelpBuild::folderBecomesTree_data()
{
    const auto row = Columns<QStringList, QString>("files", "tree");
    row("index pages stand for their folders",
        {"index.html"_s, "b/Index.HTM"_s, "b/x.html"_s, "a.html"_s, "c/default.html"_s, "c/index.html"_s},
        "index.html [index]\n  a.html [a]\n  b/Index.HTM [b]\n    b/x.html [x]\n  c/index.html [c]\n"
        "    c/default.html [c-default]\n");
    row("hidden files and folders without pages are no topics",
        {"index.html"_s, ".hidden.html"_s, ".git/x.html"_s, "images/readme.txt"_s, "image.png"_s},
        "index.html [index]\n");
    row("keys are ASCII and unique whatever their case",
        {"index.html"_s, "Stra\u00dfe \u00c9t\u00e9.html"_s, "\u5b89\u88c5.html"_s, "it's 100%.html"_s,
         "A.html"_s, "sub/a.html"_s, "sub2/sub/a.html"_s},
        "index.html [index]\n  A.html [A]\n  it's 100%.html [it-s 100-]\n"
        "  Stra\u00dfe \u00c9t\u00e9.html [Strasse Ete]\n  sub [sub]\n    sub/a.html [sub-a]\n"
        "  sub2 [sub2]\n    sub [sub2-sub-index]\n      sub2/sub/a.html [sub2-sub-a]\n"
        "  \u5b89\u88c5.html [u5b89u88c5]\n");
}

void TestHelpBuild::folderBecomesTree()
{
    QFETCH(QStringList, files);
    QFETCH(QString, tree);
    BuildFixture fixture;
    for (const QString& file : files)
        fixture.WritePage("doc/"_s + file, file);
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), tree);
}

void TestHelpBuild::folderThatContainsItselfEnds()
{
    BuildFixture fixture;
    fixture.WritePage("doc/sub/a.html"_s, "A"_s);
    if (!QFile::link(fixture.Input("doc"_s), fixture.Input("doc/sub/up"_s)))
        QSKIP("no links here");
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), "YXCAD Help [index]\n  sub [sub]\n    A [a]\n"_s);
    QCOMPARE(fixture.Reports().size(), 1);
}

// The viewer puts its statements together from text, finds parents by position and reads the list once.
void TestHelpBuild::rowsKeepTheViewersRules()
{
    BuildFixture fixture;
    fixture.Write("doc/a'b%1.png"_s, BuildFixture::Png());
    for (const char* name : {"it's.html", "50%1.html", "sub's/x.html", "sub's/index.html", "z.html"})
        fixture.WritePage("doc/"_s + QLatin1String(name), QLatin1String(name),
                          "<script>var a = 1;</script><img src=\"a'b%1.png\">");
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    for (const char* violation :
         {"FilePath||KeyName||ImagePath LIKE '%''%'", "instr(FilePath||KeyName||ImagePath, '%')>0",
          "ParentID>=ID AND ParentID<65535",
          "FilePath='' OR KeyName='' OR length(Html)=0 OR instr(FilePath,'/')", "IsFavorite=true",
          "ID>(SELECT count(*) FROM HelpFileList)",
          "(SELECT count(*)-count(DISTINCT lower(KeyName)) FROM HelpFileList)<>0",
          "(SELECT count(*) FROM HelpFileList WHERE Body='js' AND ParentID=65535)<>1"})
        QCOMPARE(fixture.Select("SELECT ID FROM HelpFileList WHERE "_s + QLatin1String(violation)),
                 QStringList());
}

// Names that the viewer's way of finding a topic could confuse: it compares a part of the path and its last
// component, and of the web site's topics "_" fits any character.
void TestHelpBuild::everyLinkFindsItsTopic()
{
    const QStringList names =
        "index.html|a/index.html|b/a/index.html|xa/index.html|b/index.html|z/index.html|a-b.html|a_b.html|"
        "A_B.html|a b.html|a#b.html|a?b.html|100% it's.html|a&amp;b.html|\u5b89\u88c5/\u5165\u95e8.html|"
        "articles_registration/x.html|deep/articles_registration/x.html|dots.and.css.html"_s.split(
            QLatin1Char('|'));
    BuildFixture fixture;
    for (const QString& from : names) {
        QByteArray links;
        const QByteArray up = "../"_s.repeated(from.count(QLatin1Char('/'))).toUtf8();
        for (const QString& to : names)
            links +=
                "<a target=\"_top\" href=\"" + up + QUrl::toPercentEncoding(to, "/") + "#place\">x</a>\n";
        fixture.WritePage("doc/"_s + from, from, links);
    }
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    for (const QString& from : names) {
        const QString html = fixture.Finished(from);
        const QStringList links = AttributesIn(html, "a", "href");
        QCOMPARE(links.size(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            const bool own = names.at(i) == from;
            QCOMPARE(own ? links.at(i) : fixture.Follow(links.at(i)), own ? "#place"_s : names.at(i));
        }
        QCOMPARE(AttributesIn(html, "a", "target"), QStringList());
    }
    // The address of the web site leads to a row by LIKE.
    const QString like = "SELECT FilePath FROM HelpFileList WHERE FilePath LIKE '%1'"_s;
    for (const QString& path : fixture.Select("SELECT FilePath FROM HelpFileList"_s))
        QCOMPARE(fixture.Select(like.arg(path)).constFirst(), path);
}

void TestHelpBuild::charsetIsThePagesOwn_data()
{
    const auto row = Columns<QByteArray, QString>("page", "text");
    const QString chinese = "\u5b89\u88c5"_s;
    const QString german = "Gr\u00f6\u00dfe \u20ac"_s;
    row("gb2312", "<meta charset=gb2312><p>\xb0\xb2\xd7\xb0", chinese);
    row("none, no utf-8",
        "<p>Gr\xf6\xdf"
        "e \x80",
        german);
    row("mark against declaration", "\xef\xbb\xbf<meta charset=gb2312><p>\xe5\xae\x89\xe8\xa3\x85", chinese);
    row("two-byte units", QByteArray("\xff\xfe<\0p\0>\0\x89\x5b\xc5\x88", 12), chinese);
    row("zero bytes", QByteArray("<p>a\0b", 6), "ab");
}

void TestHelpBuild::charsetIsThePagesOwn()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, text);
    BuildFixture fixture;
    fixture.Write("doc/index.html"_s, page);
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Select("SELECT Body FROM HelpFileList"_s), QStringList{text});
    // What the page says about itself is true afterwards, for the web site and for long pages.
    const QString html = fixture.Finished("index"_s);
    const QStringList declared =
        AttributesIn(html, "meta", "charset") + AttributesIn(html, "meta", "content");
    QVERIFY2(text == "ab"_s || (declared.size() == 1 && declared.constFirst().endsWith("utf-8"_s)),
             qPrintable(html));
}

void TestHelpBuild::everyPageCanBeSearched_data()
{
    const auto row = Columns<QByteArray, QString, bool>("page", "word", "found");
    row("text behind the body", "<body></body><p>word", "word", true);
    row("letters as references", "<body><p>Gr&ouml;&szlig;e &#20013;&#x6587; ",
        "Gr\u00f6\u00dfe \u4e2d\u6587", true);
    row("letters within a word", "<body>wo<b>r</b>d words", "word", false);
    row("white space collapses", "<body>two\n\t words", "two words", false);
    row("hidden", "<body><p style='display: none'>word</p><p hidden>word", "word", false);
}

void TestHelpBuild::everyPageCanBeSearched()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, word);
    QFETCH(bool, found);
    BuildFixture fixture;
    fixture.Write("doc/index.html"_s, page);
    QVERIFY2(fixture.Build({"doc"_s}), qPrintable(fixture.Error()));

    const QString body = fixture.Select("SELECT Body FROM HelpFileList WHERE Body<>'js'"_s).constFirst();
    const QString html = fixture.Select("SELECT Html FROM HelpFileList WHERE Body<>'js'"_s).constFirst();
    QRegExp section("<body.*</body>"_s, Qt::CaseInsensitive);
    section.indexIn(html);
    const QRegExp whole("[^a-zA-Z]%1[^a-zA-Z]"_s.arg(word), Qt::CaseInsensitive);
    QCOMPARE(body.contains(word) && whole.indexIn(section.cap()) >= 0, found);
}

QTEST_GUILESS_MAIN(TestHelpBuild)
#include "tst_yxhelpbuild.moc"
