#include "tst_yxhelpbuild_fixture.h"

#include <QFile>
#include <QtTest>

/// Scripts and style sheets on their way into the finished page.
class TestHelpBuildParts : public QObject
{
    Q_OBJECT

private slots:
    void scriptsArriveInOrder_data();
    void scriptsArriveInOrder();
    void scriptsFindTheirPlace_data();
    void scriptsFindTheirPlace();
    void scriptsNameSheetsAndImages();
    void sheetsArrive_data();
    void sheetsArrive();
    void sheetsBringTheirFiles();
};

void TestHelpBuildParts::scriptsArriveInOrder_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QStringList>("scripts");

    QTest::newRow("apart")
        << QByteArray("<script src=a.js></script>\n<p><script>b()</script>text<script src='lib.js.min.js'>"
                      "</script>")
        << QStringList{QStringLiteral("a();"), QStringLiteral("b()"), QStringLiteral("lib();")};
    QTest::newRow("the same twice") << QByteArray("<script>b()</script><script>b()</script>")
                                    << QStringList{QStringLiteral("b()"), QStringLiteral("b()")};
    QTest::newRow("end tag in a string")
        << QByteArray("<script>b('<\\/script>')</script>") << QStringList{QStringLiteral("b('<\\/script>')")};
    QTest::newRow("kinds")
        << QByteArray("<script type=application/json>{}</script><script type='text/JavaScript'>b()</script>"
                      "<script type=module>m()</script>")
        << QStringList{QStringLiteral("b()")};
    QTest::newRow("missing and on servers")
        << QByteArray(
               "<script src=gone.js></script><script src='https://x/y.js'></script><script>b()</script>")
        << QStringList{QStringLiteral("b()")};
    QTest::newRow("empty") << QByteArray("<script> </script>") << QStringList();
    QTest::newRow("words that count")
        << QByteArray("<script>b('href=\"x.css\"'); a.href=\"y\"; for(;i<scripts.length;);</script>")
        << QStringList{QStringLiteral(
               "b('hre\\u0066=\"x.cs\\u0073\"'); a.hre\\u0066=\"y\"; for(;i<scripts.length;);")};
}

void TestHelpBuildParts::scriptsArriveInOrder()
{
    QFETCH(QByteArray, page);
    QFETCH(QStringList, scripts);
    BuildFixture fixture;
    QCOMPARE(ContentsOf(Finish(fixture, page), "script"), scripts);
}

void TestHelpBuildParts::scriptsFindTheirPlace_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("before"); // the elements above the scripts

    QTest::newRow("head") << QByteArray(
                                 "<head><script>a()</script><title>T</title></head><body><p>A<hr></body>")
                          << "html head";
    QTest::newRow("last of the head")
        << QByteArray(
               "<head><script>a()</script><title>T</title><script>b()</script></head><body><p>A<hr></body>")
        << "html head title";
    QTest::newRow("in the text")
        << QByteArray("<head><script>a()</script></head><body><p>A<script>b()</script><hr></body>")
        << "html head body p";
    QTest::newRow("deferred") << QByteArray(
                                     "<head><script defer src=a.js></script></head><body><p>A<hr></body>")
                              << "html head body p hr";
}

void TestHelpBuildParts::scriptsFindTheirPlace()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, before);
    BuildFixture fixture;
    const QString html = Finish(fixture, page);
    QStringList tags;
    const QRegularExpression tag(QStringLiteral("<([a-zA-Z]+)"));
    for (auto match = tag.globalMatch(html); match.hasNext();)
        tags << match.next().captured(1).toLower();
    tags.prepend(QStringLiteral("html"));
    QCOMPARE(QStringList(tags.mid(0, tags.indexOf(QStringLiteral("script")))).join(QLatin1Char(' ')), before);
}

// A script that changes the style sheet or an image when it runs finds them, wherever the help lies.
void TestHelpBuildParts::scriptsNameSheetsAndImages()
{
    BuildFixture fixture;
    fixture.options.output += QLatin1String("/it's #1");
    const QString html =
        Finish(fixture, "<link rel=stylesheet href='s.css'><a href='sub/other.html'>x</a>"
                        "<script>set('sub/t.css'); // \"s.css\"\n"
                        "show(\"i.png\"); var o={'s.css':1}, r=/\"s.css\"/, n='none.css';</script>");
    const QString script = ContentsOf(html, "script").constFirst();
    const QRegularExpression expression(
        QStringLiteral("^set\\(`href=\"([^\"]*)\"`\\.slice\\(6,-1\\)\\); // \"s\\.cs.u0073\"\n"
                       "show\\(\"(data:[^\"]*)\"\\); var o=\\{'s\\.css':1\\}, "
                       "r=/\"s\\.cs.u0073\"/, n='none\\.css';$"));
    const auto match = expression.match(script);
    QVERIFY2(match.hasMatch(), qPrintable(script));
    QFile sheet(match.captured(1).replace(QLatin1String("%23"), QLatin1String("#")));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    QCOMPARE(sheet.readAll(), QByteArray("q{}"));
    QVERIFY(match.captured(2).endsWith(QString::fromLatin1(BuildFixture::Png().toBase64())));
    QCOMPARE(fixture.Follow(AttributesIn(html, "a", "href").constFirst()), QStringLiteral("Other"));
}

void TestHelpBuildParts::sheetsArrive_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QStringList>("sheets");

    const QStringList both{QStringLiteral("p{}"), QStringLiteral("q{}")};
    QTest::newRow("behind an icon")
        << QByteArray("<link rel=icon href=\"favicon.ico\"><link rel=stylesheet href=\"s.css\">"
                      "<link rel=next href=\"sub/other.html\"><link href='sub/t.css' rel='stylesheet'>")
        << both;
    QTest::newRow("behind links") << QByteArray(
                                         "<body><a href=\"sub/other.html\">A</a><a href=\"http://x/\">B</a>"
                                         "<svg><use href=\"#a\"/></svg><link rel=stylesheet href=\"s.css\">"
                                         "<a href=\"#x\">C</a><link rel=StyleSheet href=\"sub/t.css\">")
                                  << both;
    QTest::newRow("below a base") << QByteArray("<base href=\"sub/\"><link rel=stylesheet href=\"../s.css\">"
                                                "<link rel=stylesheet href=\"t.css\">")
                                  << both;
    QTest::newRow("twice") << QByteArray("<link rel=stylesheet href=s.css><link rel=stylesheet href=s.css>")
                           << QStringList{QStringLiteral("p{}"), QStringLiteral("p{}")};
    QTest::newRow("checked by a hash")
        << QByteArray("<link rel=stylesheet integrity=sha256-x crossorigin href=s.css>")
        << QStringList{QStringLiteral("p{}")};
    QTest::newRow("with a query") << QByteArray("<link rel=stylesheet href='s.css?v=2'>")
                                  << QStringList{QStringLiteral("p{}")};
    QTest::newRow("missing and on servers")
        << QByteArray("<link rel=stylesheet href=gone.css><link rel=stylesheet href=\"//x/y.css\"><link "
                      "rel=stylesheet href=s.css>")
        << QStringList{QStringLiteral("p{}")};
    QTest::newRow("in the page, with files")
        << QByteArray("<style media=print>p{background:url(none.png)}</style>"
                      "<style>@import 's.css';</style>")
        << QStringList{QStringLiteral("@import \"s-*.css\";")};
}

void TestHelpBuildParts::sheetsArrive()
{
    QFETCH(QByteArray, page);
    QFETCH(QStringList, sheets);
    BuildFixture fixture;
    const QString html = Finish(fixture, page);
    QStringList contents;
    for (const QString& address : AttributesIn(html, "link", "href")) {
        QFile file(address);
        contents << (file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : address);
    }
    QCOMPARE(contents.size(), sheets.size());
    for (int i = 0; i < sheets.size(); ++i)
        QVERIFY2(QRegExp(sheets.at(i), Qt::CaseSensitive, QRegExp::Wildcard).exactMatch(contents.at(i)),
                 qPrintable(contents.at(i)));
    QCOMPARE(AttributesIn(html, "link", "integrity"), QStringList());
    const QStringList links = AttributesIn(html, "a", "href");
    if (!links.isEmpty())
        QCOMPARE(fixture.Follow(links.constFirst()), QStringLiteral("Other"));
}

void TestHelpBuildParts::sheetsBringTheirFiles()
{
    BuildFixture fixture;
    fixture.Write(QStringLiteral("doc/style/main.css"),
                  "@charset \"windows-1252\";\n/* url(none.png) */ @import url('../base.css') screen;\n"
                  "@import \"http://x/y.css\"; @import 'main.css';\n"
                  "a::before{content:\"\xe4 url(none.png)\"; background:url( ../img/a%20b.png )}\n"
                  "@font-face{src:url(\"f.woff?#iefix\"), url(data:x), url(#id), url(gone.png)}");
    fixture.Write(QStringLiteral("doc/base.css"), "i{background:URL(img/a\\ b.png)}");
    fixture.Write(QStringLiteral("doc/img/a b.png"), BuildFixture::Png());
    fixture.Write(QStringLiteral("doc/style/f.woff"), "font");
    const QString html = Finish(fixture, "<link rel=stylesheet href=\"style/main.css\">");
    QFile sheet(AttributesIn(html, "link", "href").constFirst());
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(sheet.readAll());
    const QRegularExpression expected(QStringLiteral(
        "^@charset \"utf-8\";\n/\\* url\\(none.png\\) \\*/ @import \"(base-[0-9a-f]+.css)\" screen;\n"
        " \n"
        "a::before\\{content:\"\u00e4 url\\(none.png\\)\"; background:url\\(\"(a-b-[0-9a-f]+.png)\"\\)\\}\n"
        "@font-face\\{src:url\\(\"(f-[0-9a-f]+.woff)#iefix\"\\), url\\(data:x\\), url\\(#id\\), "
        "url\\(gone.png\\)\\}$"));
    const auto match = expected.match(text);
    QVERIFY2(match.hasMatch(), qPrintable(text));
    for (int i = 1; i <= 3; ++i)
        QVERIFY(QFile::exists(fixture.HelpDir() + QLatin1String("/styles/") + match.captured(i)));
    QCOMPARE(fixture.Reports().filter(QStringLiteral("doc/style/main.css:")).size(), 2);
    QVERIFY(fixture.Reports().contains(
        QStringLiteral("doc/style/main.css:5: warning: \"gone.png\" doesn't exist")));
}

QTEST_GUILESS_MAIN(TestHelpBuildParts)
#include "tst_yxhelpbuild_parts.moc"
