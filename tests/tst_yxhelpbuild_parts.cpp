#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QFile>

/// Scripts and style sheets on their way into the finished page.
class TestHelpBuildParts : public QObject
{
    Q_OBJECT

private slots:
    void scriptsArriveInOrder_data();
    void scriptsArriveInOrder();
    void scriptsFindTheirPlace();
    void scriptsNameSheetsAndImages();
    void sheetsArrive_data();
    void sheetsArrive();
    void sheetsBringTheirFiles();
};

void TestHelpBuildParts::scriptsArriveInOrder_data()
{
    const auto row = Columns<QByteArray, QStringList>("page", "scripts");
    row("apart",
        "<script src=a.js></script>\n<p><script>b()</script>text<script src='lib.js.min.js'></script>",
        QStringList{"a();"_s, "b()"_s, "lib();"_s});
    row("kinds",
        "<script type=application/json>{}</script><script type='text/JavaScript'>b()</script>"
        "<script type=module>m()</script>",
        QStringList{"b()"_s});
    row("missing and on servers",
        "<script src=gone.js></script><script src='https://x/y.js'></script><script>b()</script>",
        QStringList{"b()"_s});
    row("words that count", "<script>b('href=\"x.css\"'); a.href=\"y\"; for(;i<scripts.length;);</script>",
        QStringList{"b('hre\\u0066=\"x.cs\\u0073\"'); a.hre\\u0066=\"y\"; for(;i<scripts.length;);"_s});
}

void TestHelpBuildParts::scriptsArriveInOrder()
{
    QFETCH(QByteArray, page);
    QFETCH(QStringList, scripts);
    BuildFixture fixture;
    QCOMPARE(ContentsOf(Finish(fixture, page), "script"), scripts);
}

void TestHelpBuildParts::scriptsFindTheirPlace()
{
    const auto tagsBeforeScript = [](const QByteArray& page) {
        BuildFixture fixture;
        QString tags;
        for (auto match = QRegularExpression("<([a-zA-Z]+)"_s).globalMatch(Finish(fixture, page));
             match.hasNext();)
            tags += match.next().captured(1).toLower() + QLatin1Char(' ');
        return tags.section("script"_s, 0, 0);
    };
    QCOMPARE(tagsBeforeScript("<head><script>a()</script></head><body><p>A<script>b()</script><hr></body>"),
             "head body p "_s);
    QCOMPARE(tagsBeforeScript("<head><script defer src=a.js></script></head><body><p>A<hr></body>"),
             "head body p hr "_s);
}

// A script that changes the style sheet or an image when it runs finds them, wherever the help lies.
void TestHelpBuildParts::scriptsNameSheetsAndImages()
{
    BuildFixture fixture;
    fixture.options.output += "/it's #1"_s;
    const QString html =
        Finish(fixture, "<link rel=stylesheet href='s.css'><a href='sub/other.html'>x</a>"
                        "<script>set('sub/t.css'); // \"s.css\"\n"
                        "show(\"i.png\"); var o={'s.css':1}, r=/\"s.css\"/, n='none.css';</script>");
    const QString script = ContentsOf(html, "script").constFirst();
    const QRegularExpression expression(
        "^set\\(`href=\"([^\"]*)\"`\\.slice\\(6,-1\\)\\); // \"s\\.cs.u0073\"\n"
        "show\\(\"(data:[^\"]*)\"\\); var o=\\{'s\\.css':1\\}, r=/\"s\\.cs.u0073\"/, n='none\\.css';$"_s);
    const auto match = expression.match(script);
    QVERIFY2(match.hasMatch(), qPrintable(script));
    QFile sheet(match.captured(1).replace("%23"_s, "#"_s));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    QCOMPARE(sheet.readAll(), QByteArray("q{}"));
    QVERIFY(match.captured(2).endsWith(QString::fromLatin1(BuildFixture::Png().toBase64())));
    QCOMPARE(fixture.Follow(AttributesIn(html, "a", "href").constFirst()), "Other"_s);
}

void TestHelpBuildParts::sheetsArrive_data()
{
    const auto row = Columns<QByteArray, QStringList>("page", "sheets");
    const QStringList both{"p{}"_s, "q{}"_s};

    row("behind links",
        "<body><a href=\"sub/other.html\">A</a><a href=\"http://x/\">B</a>"
        "<svg><use href=\"#a\"/></svg><link rel=stylesheet href=\"s.css\">"
        "<a href=\"#x\">C</a><link rel=StyleSheet href=\"sub/t.css\">",
        both);
    row("checked by a hash", "<link rel=stylesheet integrity=sha256-x crossorigin href=s.css>",
        QStringList{"p{}"_s});
    row("missing and on servers",
        "<link rel=stylesheet href=gone.css><link rel=stylesheet href=\"//x/y.css\"><link "
        "rel=stylesheet href=s.css>",
        QStringList{"p{}"_s});
    row("in the page, with files",
        "<style media=print>p{background:url(none.png)}</style><style>@import 's.css';</style>",
        QStringList{"@import \"s-*.css\";"_s});
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
        QCOMPARE(fixture.Follow(links.constFirst()), "Other"_s);
}

void TestHelpBuildParts::sheetsBringTheirFiles()
{
    BuildFixture fixture;
    fixture.Write("doc/style/main.css"_s,
                  "@charset \"windows-1252\";\n/* url(none.png) */ @import url('../base.css') screen;\n"
                  "@import \"http://x/y.css\"; @import 'main.css';\n"
                  "a::before{content:\"\xe4 url(none.png)\"; background:url( ../img/a%20b.png )}\n"
                  "@font-face{src:url(\"f.woff?#iefix\"), url(data:x), url(#id), url(gone.png)}");
    fixture.Write("doc/base.css"_s, "i{background:URL(img/a\\ b.png)}");
    fixture.Write("doc/img/a b.png"_s, BuildFixture::Png());
    fixture.Write("doc/style/f.woff"_s, "font");
    const QString html = Finish(fixture, "<link rel=stylesheet href=\"style/main.css\">");
    QFile sheet(AttributesIn(html, "link", "href").constFirst());
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(sheet.readAll());
    const QRegularExpression expected(
        "^@charset \"utf-8\";\n/\\* url\\(none.png\\) \\*/ @import \"(base-[0-9a-f]+.css)\" screen;\n \n"
        "a::before\\{content:\"\u00e4 url\\(none.png\\)\"; background:url\\(\"(a-b-[0-9a-f]+.png)\"\\)\\}\n"
        "@font-face\\{src:url\\(\"(f-[0-9a-f]+.woff)#iefix\"\\), url\\(data:x\\), url\\(#id\\), "
        "url\\(gone.png\\)\\}$"_s);
    const auto match = expected.match(text);
    QVERIFY2(match.hasMatch(), qPrintable(text));
    for (int i = 1; i <= 3; ++i)
        QVERIFY(QFile::exists(fixture.HelpDir() + "/styles/"_s + match.captured(i)));
    QCOMPARE(fixture.Reports().filter("doc/style/main.css:"_s).size(), 2);
    QVERIFY(fixture.Reports().contains("doc/style/main.css:5: warning: \"gone.png\" doesn't exist"_s));
}

QTEST_GUILESS_MAIN(TestHelpBuildParts)
#include "tst_yxhelpbuild_parts.moc"
