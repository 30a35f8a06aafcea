#include "tst_yxhelpbuild_fixture.h"

#include <QRegExp>
#include <QtTest>

class TestHelpBuild : public QObject
{
    Q_OBJECT

private slots:
    void projectBecomesTree_data();
    void projectBecomesTree();
    void projectsStandSideBySide();
    void filesOfAProjectMayBePatterns();
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
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<QByteArray>("keywords");
    QTest::addColumn<QString>("tree");

    const QByteArray keywords = "<keyword name=\"Anchored\" id=\"a\" ref=\"one.html#x\"/>\n"
                                "<keyword name=\"No id\" ref=\"./one.html\"/>\n"
                                "<keyword name=\"n\" id=\"Second\" ref=\"two.html\"/>\n"
                                "<keyword name=\"n\" id=\"TWO\" ref=\"two.html\"/>\n"
                                "<keyword name=\"n\" id=\"second\" ref=\"three.html\"/>\n"
                                "<keyword name=\"n\" id=\"gone\" ref=\"gone.html\"/>\n";
    QTest::newRow("sections and keywords")
        << QByteArray(
               "<section title=\"Top &lt;1&gt;\" ref=\"one.html\">\n"
               "<section title=\"\" ref=\"two.html\"><section title=\"Deep\" ref=\"three.html\"/></section>\n"
               "</section>\n")
        << keywords
        << "Top <1> [No id]\n"
           "  Page 2 [Second]\n"
           "    Deep [doc-three]\n";
    QTest::newRow("what has no section stands outside")
        << QByteArray("<section title=\"Top\" ref=\"two.html\"/>\n") << QByteArray()
        << "Top [two]\n"
           "~ Page 1 [one]\n"
           "~ Page 3 [three]\n";
    QTest::newRow("several top sections get a root")
        << QByteArray(
               "<section title=\"A\" ref=\"one.html\"/>\n"
               "<section title=\"B\" ref=\"two.html\"><section title=\"C\" ref=\"three.html\"/></section>\n")
        << QByteArray()
        << "YXCAD Help [index]\n"
           "  A [one]\n"
           "  B [two]\n"
           "    C [three]\n";
    QTest::newRow("a page listed twice has two entries")
        << QByteArray("<section title=\"Top\" ref=\"one.html\"><section title=\"A\" ref=\"two.html\"/>\n"
                      "<section title=\"B\" ref=\"three.html\"><section title=\"A again\" "
                      "ref=\"two.html\"/></section>"
                      "</section>\n")
        << QByteArray()
        << "Top [one]\n"
           "  A [two]\n"
           "  B [three]\n"
           "    A again [two-2]\n";
    QTest::newRow("places within a page have none of their own")
        << QByteArray(
               "<section title=\"Top\" ref=\"one.html\">"
               "<section title=\"Same\" ref=\"one.html\"><section title=\"2\" ref=\"two.html\"/></section>\n"
               "<section title=\"Place\" ref=\"two.html#there\"/>\n"
               "<section title=\"Heading\" ref=\"two.html#x\"><section title=\"3\" ref=\"three.html#y\"/>"
               "</section></section>\n")
        << QByteArray()
        << "Top [one]\n"
           "  2 [two]\n"
           "  Heading [doc-two-index]\n"
           "    3 [three]\n";
    QTest::newRow("a root that leads to a place")
        << QByteArray("<section title=\"Top\" ref=\"one.html#x\"><section title=\"Whole\" ref=\"one.html\">"
                      "<section title=\"2\" ref=\"two.html\"/><section title=\"3\" ref=\"three.html\"/>"
                      "</section></section>\n")
        << QByteArray()
        << "Top [one]\n"
           "  2 [two]\n"
           "  3 [three]\n";
    QTest::newRow("a page that doesn't exist leaves its children")
        << QByteArray("<section title=\"Top\" ref=\"one.html\"><section title=\"Gone\" ref=\"gone.html\">"
                      "<section title=\"2\" ref=\"two.html\"/></section>"
                      "<section title=\"3\" ref=\"three.html\"/></section>\n")
        << QByteArray()
        << "Top [one]\n"
           "  2 [two]\n"
           "  3 [three]\n";
}

void TestHelpBuild::projectBecomesTree()
{
    QFETCH(QByteArray, sections);
    QFETCH(QByteArray, keywords);
    QFETCH(QString, tree);
    BuildFixture fixture;
    for (const char* name : {"one", "two", "three"})
        fixture.WritePage(QLatin1String(name) + QLatin1String(".html"),
                          QStringLiteral("Page %1").arg(name[1] == 'n'   ? 1
                                                        : name[1] == 'w' ? 2
                                                                         : 3));
    fixture.Write(
        QStringLiteral("p.qhp"),
        Project(sections, keywords, "<file>one.html</file><file>two.html</file><file>three.html</file>"));
    QVERIFY2(fixture.Build({QStringLiteral("p.qhp")}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), tree);
    // Whatever entry is clicked, there is a page; and a search finds each page once.
    QCOMPARE(fixture.Select(QStringLiteral("SELECT Title FROM HelpFileList WHERE length(Html)=0")),
             QStringList());
    fixture.WritePage(QStringLiteral("two.html"), QStringLiteral("Page 2"), "needle");
    QVERIFY(fixture.Build({QStringLiteral("p.qhp")}));
    QCOMPARE(fixture.Select(QStringLiteral("SELECT Title FROM HelpFileList WHERE Body LIKE '%needle%'")),
             QStringList{QStringLiteral("Page 2")});
}

void TestHelpBuild::projectsStandSideBySide()
{
    BuildFixture fixture;
    for (const char* name : {"left", "right"}) {
        const QString folder = QLatin1String(name) + QLatin1Char('/');
        fixture.WritePage(
            folder + QLatin1String("index.html"), QLatin1String(name),
            "<a href='../right/sub.html#x'>other</a> <a href='qthelp://org.right/right/sub.html'>q</a>");
        fixture.WritePage(folder + QLatin1String("sub.html"), QLatin1String(name) + QLatin1String(" sub"));
        fixture.WritePage(folder + QLatin1String("lost.html"), QLatin1String(name) + QLatin1String(" lost"));
        fixture.Write(folder + QLatin1String("p.qhp"),
                      Project("<section title=\"" + QByteArray(name) +
                                  "\" ref=\"index.html\"><section title=\"Sub\" ref=\"sub.html\"/></section>",
                              "", "<file>index.html</file><file>sub.html</file><file>lost.html</file>",
                              name));
    }
    fixture.options.title = QStringLiteral("All of it");
    QVERIFY2(fixture.Build({QStringLiteral("left/p.qhp"), QStringLiteral("right/p.qhp")}),
             qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), QStringLiteral("All of it [index]\n"
                                            "  left [left]\n"
                                            "    Sub [sub]\n"
                                            "  right [right]\n"
                                            "    Sub [right-sub]\n"
                                            "~ left lost [lost]\n"
                                            "~ right lost [right-lost]\n"));
    // What the search results are filtered by: the entries below the root.
    QCOMPARE(fixture.Select(QStringLiteral("SELECT TopParentId FROM HelpFileList ORDER BY ID")),
             (QStringList{QStringLiteral("0"), QStringLiteral("2"), QStringLiteral("2"), QStringLiteral("4"),
                          QStringLiteral("4"), QStringLiteral("2"), QStringLiteral("4")}));
    const QStringList links = AttributesIn(fixture.Finished(QStringLiteral("left")), "a", "href");
    QCOMPARE(links.size(), 2);
    for (const QString& link : links)
        QCOMPARE(fixture.Follow(link), QStringLiteral("right sub"));
    const QStringList list = AttributesIn(fixture.Finished(QStringLiteral("All of it")), "a", "href");
    QCOMPARE(list.size(), 2);
    QCOMPARE(fixture.Follow(list.at(1)), QStringLiteral("right"));
}

void TestHelpBuild::filesOfAProjectMayBePatterns()
{
    BuildFixture fixture;
    fixture.WritePage(QStringLiteral("a.html"), QStringLiteral("A"));
    fixture.WritePage(QStringLiteral("sub/b.html"), QStringLiteral("B"));
    fixture.WritePage(QStringLiteral("sub/c.html"), QStringLiteral("C"));
    fixture.Write(QStringLiteral("p.qhp"), Project("<section title=\"A\" ref=\"a.html\"/>", "",
                                                   "<file>a.html</file><file>sub/*.html</file>", ""));
    QVERIFY2(fixture.Build({QStringLiteral("p.qhp")}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), QStringLiteral("A [a]\n~ B [b]\n~ C [c]\n"));
    QCOMPARE(fixture.Select(QStringLiteral("SELECT FilePath FROM HelpFileList ORDER BY ID")).at(2),
             QStringLiteral("sub\\c.html"));
}

void TestHelpBuild::folderBecomesTree_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("tree");

    QTest::newRow("index pages stand for their folders")
        << QStringList{QStringLiteral("index.html"),     QStringLiteral("b/Index.HTM"),
                       QStringLiteral("b/x.html"),       QStringLiteral("a.html"),
                       QStringLiteral("c/default.html"), QStringLiteral("c/index.html")}
        << "index.html [index]\n"
           "  a.html [a]\n"
           "  b/Index.HTM [b]\n"
           "    b/x.html [x]\n"
           "  c/index.html [c]\n"
           "    c/default.html [c-default]\n";
    QTest::newRow("a folder without one gets a list")
        << QStringList{QStringLiteral("x/one.html"), QStringLiteral("x/deep/er/two.html")}
        << "YXCAD Help [index]\n"
           "  x [x]\n"
           "    deep [deep]\n"
           "      er [er]\n"
           "        x/deep/er/two.html [two]\n"
           "    x/one.html [one]\n";
    QTest::newRow("numbers by their value")
        << QStringList{QStringLiteral("index.html"), QStringLiteral("s10.html"), QStringLiteral("S9.html"),
                       QStringLiteral("s010b.html"), QStringLiteral("s2.html")}
        << "index.html [index]\n"
           "  s2.html [s2]\n"
           "  S9.html [S9]\n"
           "  s10.html [s10]\n"
           "  s010b.html [s010b]\n";
    QTest::newRow("hidden files and folders without pages are no topics")
        << QStringList{QStringLiteral("index.html"), QStringLiteral(".hidden.html"),
                       QStringLiteral(".git/x.html"), QStringLiteral("images/readme.txt"),
                       QStringLiteral("image.png")}
        << "index.html [index]\n";
    QTest::newRow("keys are ASCII and unique whatever their case")
        << QStringList{QStringLiteral("index.html"),
                       QStringLiteral("Stra\u00dfe \u00c9t\u00e9.html"),
                       QStringLiteral("\u5b89\u88c5.html"),
                       QStringLiteral("it's 100%.html"),
                       QStringLiteral("A.html"),
                       QStringLiteral("sub/a.html"),
                       QStringLiteral("sub2/sub/a.html")}
        << QString(QStringLiteral("index.html [index]\n"
                                  "  A.html [A]\n"
                                  "  it's 100%.html [it-s 100-]\n"
                                  "  Stra\u00dfe \u00c9t\u00e9.html [Strasse Ete]\n"
                                  "  sub [sub]\n"
                                  "    sub/a.html [sub-a]\n"
                                  "  sub2 [sub2]\n"
                                  "    sub [sub2-sub-index]\n"
                                  "      sub2/sub/a.html [sub2-sub-a]\n"
                                  "  \u5b89\u88c5.html [u5b89u88c5]\n"));
}

void TestHelpBuild::folderBecomesTree()
{
    QFETCH(QStringList, files);
    QFETCH(QString, tree);
    BuildFixture fixture;
    for (const QString& file : files)
        fixture.WritePage(QLatin1String("doc/") + file, file);
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), tree);
}

void TestHelpBuild::folderThatContainsItselfEnds()
{
    BuildFixture fixture;
    fixture.WritePage(QStringLiteral("doc/sub/a.html"), QStringLiteral("A"));
    if (!QFile::link(fixture.Input(QStringLiteral("doc")), fixture.Input(QStringLiteral("doc/sub/up"))))
        QSKIP("no links here");
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Tree(), QStringLiteral("YXCAD Help [index]\n  sub [sub]\n    A [a]\n"));
    QCOMPARE(fixture.Reports().size(), 1);
}

// The viewer puts its statements together from text, finds parents by position and reads the list once.
void TestHelpBuild::rowsKeepTheViewersRules()
{
    BuildFixture fixture;
    const QByteArray script = "<script>var a = 1;</script><img src=\"a'b%1.png\">";
    fixture.Write(QStringLiteral("doc/a'b%1.png"), BuildFixture::Png());
    for (const char* name : {"it's.html", "50%1.html", "sub's/x.html", "sub's/index.html", "z.html"})
        fixture.WritePage(QLatin1String("doc/") + QLatin1String(name), QLatin1String(name), script);
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));

    const QString count = QStringLiteral("SELECT count(*) FROM HelpFileList WHERE ");
    const QStringList none{QStringLiteral("0")};
    QCOMPARE(fixture.Select(count + QLatin1String("FilePath||KeyName||ImagePath LIKE '%''%'")), none);
    QCOMPARE(fixture.Select(count + QLatin1String("instr(FilePath||KeyName||ImagePath, '%')>0")), none);
    QCOMPARE(fixture.Select(count + QLatin1String("ParentID>=ID AND ParentID<65535")), none);
    QCOMPARE(fixture.Select(
                 count + QLatin1String("FilePath='' OR KeyName='' OR length(Html)=0 OR instr(FilePath,'/')")),
             none);
    QCOMPARE(fixture.Select(QStringLiteral("SELECT max(ID)-count(*) FROM HelpFileList")), none);
    QCOMPARE(
        fixture.Select(QStringLiteral("SELECT count(*)-count(DISTINCT lower(KeyName)) FROM HelpFileList")),
        none);
    QCOMPARE(fixture.Select(count + QLatin1String("Body='js' AND ParentID=65535")),
             QStringList{QStringLiteral("1")});
    QCOMPARE(fixture.Select(count + QLatin1String("IsFavorite=true")), none);
}

// Names that the viewer's way of finding a topic could confuse: it compares a part of the path and its last
// component, and of the web site's topics "_" fits any character.
void TestHelpBuild::everyLinkFindsItsTopic()
{
    const QStringList names{QStringLiteral("index.html"),
                            QStringLiteral("a/index.html"),
                            QStringLiteral("b/a/index.html"),
                            QStringLiteral("xa/index.html"),
                            QStringLiteral("b/index.html"),
                            QStringLiteral("b/z/index.html"),
                            QStringLiteral("z/index.html"),
                            QStringLiteral("a-b.html"),
                            QStringLiteral("a_b.html"),
                            QStringLiteral("A_B.html"),
                            QStringLiteral("a b.html"),
                            QStringLiteral("a#b.html"),
                            QStringLiteral("a?b.html"),
                            QStringLiteral("100% it's.html"),
                            QStringLiteral("a&amp;b.html"),
                            QStringLiteral("\u5b89\u88c5/\u5165\u95e8.html"),
                            QStringLiteral("\u5b89\u88c5/index.html"),
                            QStringLiteral("articles_registration/x.html"),
                            QStringLiteral("deep/articles_registration/x.html"),
                            QStringLiteral("dots.and.css.html")};
    BuildFixture fixture;
    for (const QString& from : names) {
        QByteArray links;
        const QString up = QStringLiteral("../").repeated(from.count(QLatin1Char('/')));
        for (const QString& to : names)
            links += "<a target=\"_top\" href=\"" + up.toUtf8() + QUrl::toPercentEncoding(to, "/") +
                     "#place\">x</a>\n";
        fixture.WritePage(QLatin1String("doc/") + from, from, links);
    }
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));
    for (const QString& from : names) {
        const QString html = fixture.Finished(from);
        const QStringList links = AttributesIn(html, "a", "href");
        QCOMPARE(links.size(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            if (names.at(i) == from)
                QCOMPARE(links.at(i), QStringLiteral("#place"));
            else
                QCOMPARE(fixture.Follow(links.at(i)), names.at(i));
        }
        QCOMPARE(AttributesIn(html, "a", "target"), QStringList());
    }
    // The address of the web site leads to a row by LIKE.
    for (const QString& path : fixture.Select(QStringLiteral("SELECT FilePath FROM HelpFileList")))
        QCOMPARE(
            fixture
                .Select(
                    QStringLiteral("SELECT FilePath FROM HelpFileList WHERE FilePath LIKE '%1'").arg(path))
                .constFirst(),
            path);
}

void TestHelpBuild::charsetIsThePagesOwn_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("text");

    const QString chinese = QStringLiteral("\u5b89\u88c5");
    const QString german = QStringLiteral("Gr\u00f6\u00dfe \u20ac");
    QTest::newRow("gb2312") << QByteArray("<meta charset=gb2312><p>\xb0\xb2\xd7\xb0") << chinese;
    QTest::newRow("http-equiv")
        << QByteArray(
               "<meta http-equiv='Content-Type' content='text/html; charset=GBK; x=y'><p>\xb0\xb2\xd7\xb0")
        << chinese;
    QTest::newRow("latin 1 means windows-1252") << QByteArray("<meta charset='ISO-8859-1'><p>Gr\xf6\xdf"
                                                              "e \x80")
                                                << german;
    QTest::newRow("none, utf-8") << QByteArray("<p>\xe5\xae\x89\xe8\xa3\x85") << chinese;
    QTest::newRow("none, no utf-8") << QByteArray("<p>Gr\xf6\xdf"
                                                  "e \x80")
                                    << german;
    QTest::newRow("mark against declaration")
        << QByteArray("\xef\xbb\xbf<meta charset=gb2312><p>\xe5\xae\x89\xe8\xa3\x85") << chinese;
    QTest::newRow("two-byte units") << QByteArray("\xff\xfe<\0p\0>\0\x89\x5b\xc5\x88", 12) << chinese;
    QTest::newRow("xml declaration") << QByteArray(
                                            "<?xml version='1.0' encoding='gb2312'?><p>\xb0\xb2\xd7\xb0")
                                     << chinese;
    QTest::newRow("unknown name") << QByteArray("<meta charset=martian><p>\xe5\xae\x89\xe8\xa3\x85")
                                  << chinese;
    QTest::newRow("zero bytes") << QByteArray("<p>a\0b", 6) << "ab";
}

void TestHelpBuild::charsetIsThePagesOwn()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, text);
    BuildFixture fixture;
    fixture.Write(QStringLiteral("doc/index.html"), page);
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));
    QCOMPARE(fixture.Select(QStringLiteral("SELECT Body FROM HelpFileList")), QStringList{text});
    // What the page says about itself is true afterwards, for the web site and for long pages.
    const QString html = fixture.Finished(QStringLiteral("index"));
    const QStringList declared =
        AttributesIn(html, "meta", "charset") + AttributesIn(html, "meta", "content");
    QVERIFY2(text == QLatin1String("ab") ||
                 (declared.size() == 1 && declared.constFirst().endsWith(QLatin1String("utf-8"))) ||
                 declared.contains(QLatin1String("martian")),
             qPrintable(html));
}

void TestHelpBuild::everyPageCanBeSearched_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("found");

    QTest::newRow("sound") << QByteArray("<html><body><p>word</p></body></html>") << "word" << true;
    QTest::newRow("no tags around") << QByteArray("<p>word</p>") << "word" << true;
    QTest::newRow("no end tags") << QByteArray("<html><head><title>t</title><body><p>word") << "word" << true;
    QTest::newRow("text behind the body") << QByteArray("<body></body><p>word") << "word" << true;
    QTest::newRow("letters as references") << QByteArray("<body><p>Gr&ouml;&szlig;e &#20013;&#x6587; ")
                                           << QStringLiteral("Gr\u00f6\u00dfe \u4e2d\u6587") << true;
    QTest::newRow("letters within a word") << QByteArray("<body>wo<b>r</b>d words") << "word" << false;
    QTest::newRow("white space collapses") << QByteArray("<body>two\n\t words") << "two words" << false;
    QTest::newRow("script") << QByteArray("<body><script>word</script>") << "word" << false;
    QTest::newRow("style") << QByteArray("<body><style>word</style>") << "word" << false;
    QTest::newRow("hidden") << QByteArray("<body><p style='display: none'>word</p><p hidden>word") << "word"
                            << false;
}

void TestHelpBuild::everyPageCanBeSearched()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, word);
    QFETCH(bool, found);
    BuildFixture fixture;
    fixture.Write(QStringLiteral("doc/index.html"), page);
    QVERIFY2(fixture.Build({QStringLiteral("doc")}), qPrintable(fixture.Error()));

    const QString body =
        fixture.Select(QStringLiteral("SELECT Body FROM HelpFileList WHERE Body<>'js'")).constFirst();
    const QString html =
        fixture.Select(QStringLiteral("SELECT Html FROM HelpFileList WHERE Body<>'js'")).constFirst();
    QRegExp section(QStringLiteral("<body.*</body>"), Qt::CaseInsensitive);
    section.indexIn(html);
    const QRegExp whole(QStringLiteral("[^a-zA-Z]%1[^a-zA-Z]").arg(word), Qt::CaseInsensitive);
    QCOMPARE(body.contains(word) && whole.indexIn(section.cap()) >= 0, found);
}

QTEST_GUILESS_MAIN(TestHelpBuild)
#include "tst_yxhelpbuild.moc"
