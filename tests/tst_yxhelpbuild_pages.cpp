#include "tst_yxhelpbuild_fixture.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QtTest>

/// Pages on their way through the preparation and the viewer's own work on their text.
class TestHelpBuildPages : public QObject
{
    Q_OBJECT

private slots:
    void textSurvives_data();
    void textSurvives();
    void imagesArrive_data();
    void imagesArrive();
    void imagesKeepApart();
    void linksLead_data();
    void linksLead();
    void addressesInElementsAreTidied_data();
    void addressesInElementsAreTidied();
};

// Text that looks like what the viewer searches for stays what it was, and the sheet and the script of the
// page arrive all the same.
void TestHelpBuildPages::textSurvives_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");

    QTest::newRow("a sheet's link in text")
        << QByteArray("<p>Write href=\"my.css\" or HREF=\"A.CSS\" here.</p>")
        << "Write href=\"my.css\" or HREF=\"A.CSS\" here.";
    QTest::newRow("apart") << QByteArray("<p>href=\"</p><p>between</p><p>.css\"</p>")
                           << "href=\"\nbetween\n.css\"";
    QTest::newRow("in attributes")
        << QByteArray("<p title='href=\"x.css\"'>A</p><p title=\"x.css\">B</p><p title='<script>'>C</p>")
        << "A\nB\nC";
    QTest::newRow("in a comment") << QByteArray("<p>A<!-- <link href=\"x.css\"><script>b()</script> -->B</p>")
                                  << "AB";
    QTest::newRow("a link to a sheet")
        << QByteArray("<a href=\"s.css\">sheet</a> and <a href=\"none.css\">none</a>") << "sheet and none";
    QTest::newRow("a server's sheet")
        << QByteArray("<a href=\"http://x/y.css\">sheet</a> text") << "sheet text";
    QTest::newRow("script in a text field")
        << QByteArray("<textarea><script>x</script></textarea><p>after</p>") << "<script>x</script >\nafter";
    QTest::newRow("script by reference")
        << QByteArray("<p>&lt;script&gt;x&lt;/script&gt;</p>") << "<script>x</script>";
    QTest::newRow("stray end tag") << QByteArray("<p>A</script>B</p>") << "AB";
    QTest::newRow("folded directories")
        << QByteArray("<p>href=\"../articles_registration/x\" href=\"./categories_registration</p>")
        << "href=\"../articles_registration/x\" href=\"./categories_registration";
    QTest::newRow("image named in text")
        << QByteArray("<img src=i.png><p>i.png images/i.png</p>") << "i.png images/i.png";
    QTest::newRow("script file named in text") << QByteArray("<p>scripts/a.js</p>") << "scripts/a.js";
    QTest::newRow("style with words that count")
        << QByteArray(
               "<style>a[href=\"x.css\"]::before{content:\"<script>\"} /* </script> */</style><p>A</p>")
        << "A";
    QTest::newRow("noscript") << QByteArray(
                                     "<p>A<noscript><p>B</p><link rel=stylesheet href=s.css></noscript>C")
                              << "A C";
    QTest::newRow("template") << QByteArray("<template><script>x()</script><p>B</p></template>A") << "A";
    QTest::newRow("frame of text") << QByteArray("<svg><script>x()</script><text>A</text></svg>") << "A";
    QTest::newRow("broken markup") << QByteArray(
                                          "<p>A<b>B<i>C</b>D</i><table><a href='sub/other.html'>E<tr><td>F")
                                   << "ABCDE\nF";
    QTest::newRow("entities") << QByteArray(
                                     "<p>&lt;&amp;&quot;&nbsp;x &eacute;&copy;&#x4e2d; &unknown; &</p>")
                              << QString(QStringLiteral("<&\" x \u00e9\u00a9\u4e2d &unknown; &"));
    QTest::newRow("percent marks") << QByteArray("<p>%1 %2 100%</p>") << "%1 %2 100%";
}

void TestHelpBuildPages::textSurvives()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, text);
    // The same before and after the places where sheet and script stand.
    const QByteArray sheet = "<link rel=stylesheet href=\"s.css\">";
    const QByteArray script = "<script>here(\"sub/t.css\")</script>";
    for (const QByteArray& page :
         {QByteArray("<title>T</title>" + sheet + script + "<body>" + body),
          QByteArray("<title>T</title><body>" + body + sheet + script),
          QByteArray("<title>T</title>" + sheet + "<body>" + body + "</table>" + script)}) {
        BuildFixture fixture;
        const QString html = Finish(fixture, page);
        QCOMPARE(TextIn(html), text);
        const QString body2 =
            fixture.Select(QStringLiteral("SELECT Body FROM HelpFileList WHERE ID=1")).constFirst();
        QCOMPARE(QString(body2).remove(QLatin1Char(' ')), QString(text).remove(QLatin1Char(' ')));
        const QStringList sheets = AttributesIn(html, "link", "href");
        QCOMPARE(sheets.size(), 1);
        QVERIFY2(QFile::exists(sheets.constFirst()), qPrintable(html));
        QCOMPARE(ContentsOf(html, "script").size(), 1);
        QVERIFY2(ContentsOf(html, "script")
                     .constFirst()
                     .startsWith(QLatin1String("here(`href=\"") + fixture.HelpDir()),
                 qPrintable(html));
    }
}

void TestHelpBuildPages::imagesArrive_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<bool>("isFile");

    const auto encoded = [](const char* format, int size) {
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        QImage::fromData(BuildFixture::Png(0, size)).save(&buffer, format);
        return data;
    };
    const QByteArray png = BuildFixture::Png();
    const QByteArray img = "<img src='x'>";
    QTest::newRow("png") << "x" << png << img << QByteArray("png") << false;
    QTest::newRow("large png") << "x" << BuildFixture::Png(0, 100) << img << QByteArray("png") << true;
    QTest::newRow("jpeg by its long name")
        << "x.jpeg" << encoded("jpg", 8) << QByteArray("<img src=x.jpeg>") << QByteArray("jpeg") << false;
    QTest::newRow("large jpeg") << "x.jpeg" << encoded("jpg", 300) << QByteArray("<img src=x.jpeg>")
                                << QByteArray("jpeg") << true;
    QTest::newRow("bmp") << "x.BMP" << encoded("bmp", 8) << QByteArray("<img src=x.bmp>") << QByteArray("bmp")
                         << false;
    QTest::newRow("a kind that the viewer can't write")
        << "x.ppm" << encoded("ppm", 100) << QByteArray("<img src=x.ppm>") << QByteArray("png") << true;
    QTest::newRow("drawing") << "x.svg"
                             << QByteArray("<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>")
                             << QByteArray("<img src=x.svg>") << QByteArray("svg+xml") << false;
    QTest::newRow("drawing as an object")
        << "x.svg" << QByteArray("<svg/>") << QByteArray("<object data=x.svg></object>")
        << QByteArray("svg+xml") << false;
    QTest::newRow("strange name") << "a, 'b' %1.png" << png << QByteArray("<img src=\"a, 'b' %251.png\">")
                                  << QByteArray("png") << false;
    QTest::newRow("\\ for /") << "sub/x.png" << png << QByteArray("<img src='sub\\x.png'>")
                              << QByteArray("png") << false;
    QTest::newRow("button") << "x" << png << QByteArray("<input type=image src=x>") << QByteArray("png")
                            << false;
    QTest::newRow("in a drawing") << "x" << png << QByteArray("<svg><image xlink:href='x'/></svg>")
                                  << QByteArray("png") << false;
    QTest::newRow("background") << "x" << png << QByteArray("<table background=x></table>")
                                << QByteArray("png") << false;
    QTest::newRow("style") << "x" << png << QByteArray("<p style='background: url(&quot;x&quot;) no-repeat'>")
                           << QByteArray("png") << false;
    QTest::newRow("choices") << "x" << png
                             << QByteArray(
                                    "<picture><source srcset='y 2x'><img srcset='z 2x' src=x></picture>")
                             << QByteArray("png") << false;
}

void TestHelpBuildPages::imagesArrive()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, markup);
    QFETCH(QByteArray, format);
    QFETCH(bool, isFile);
    BuildFixture fixture;
    fixture.Write(QLatin1String("doc/") + file, data);
    const QString html = Finish(fixture, "<title>T</title><p>x</p>" + markup);
    const QRegularExpression address(
        QStringLiteral("data:image/[^;]*;base64,([A-Za-z0-9+/=]*)|[^'\"]*/HelpImageTemp/[^'\"]*"));
    const auto match = address.match(html);
    QVERIFY2(match.hasMatch(), qPrintable(html));
    QCOMPARE(match.captured(1).isEmpty(), isFile);
    QCOMPARE(html.count(QLatin1String("srcset")), 0);
    if (format == "svg+xml") {
        QVERIFY(match.captured().startsWith(QLatin1String("data:image/svg+xml;")));
        QCOMPARE(QByteArray::fromBase64(match.captured(1).toLatin1()), data);
        return;
    }
    QByteArray shown = QByteArray::fromBase64(match.captured(1).toLatin1());
    QFile written(match.captured());
    if (isFile && written.open(QIODevice::ReadOnly))
        shown = written.readAll();
    QBuffer buffer(&shown);
    QImageReader reader(&buffer);
    QCOMPARE(reader.format(), format);
    QCOMPARE(reader.read().size(), QImage::fromData(data).size());
}

// Keys are replaced wherever they stand in the text, one after the other.
void TestHelpBuildPages::imagesKeepApart()
{
    BuildFixture fixture;
    const QStringList names{QStringLiteral("a.png"),     QStringLiteral("a.png.png"),
                            QStringLiteral("aa.png"),    QStringLiteral("sub/a.png"),
                            QStringLiteral("sub_a.png"), QStringLiteral("A.png")};
    QByteArray markup;
    for (int i = 0; i < names.size(); ++i) {
        fixture.Write(QLatin1String("doc/") + names.at(i), BuildFixture::Png(i, 100));
        markup += "<img src=\"" + names.at(i).toUtf8() + "\">";
    }
    fixture.Write(QStringLiteral("doc/copy.png"), BuildFixture::Png(0, 100));
    const QStringList shown = AttributesIn(Finish(fixture, markup + "<img src=copy.png>"), "img", "src");
    QCOMPARE(shown.size(), names.size() + 1);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(QImage(shown.at(i)), QImage::fromData(BuildFixture::Png(i, 100)));
    QCOMPARE(shown.last(), shown.first());
    QCOMPARE(fixture.Select(QStringLiteral("SELECT ImagePath FROM ImageList")).size(), names.size());
}

void TestHelpBuildPages::linksLead_data()
{
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<QString>("expected"); // title of the topic, or the address and the target

    QTest::newRow("topic") << QByteArray("href=sub/other.html") << "-> Other";
    QTest::newRow("place in a topic") << QByteArray("href='sub/other.html#x' target=_blank") << "-> Other";
    QTest::newRow("other case") << QByteArray("href=SUB/Other.HTML") << "-> Other";
    QTest::newRow("query") << QByteArray("href='sub/other.html?a=b'") << "-> Other";
    QTest::newRow("from the root") << QByteArray("href='/sub/other.html'") << "-> Other";
    QTest::newRow("roundabout") << QByteArray("href='./sub/../sub//other.html'") << "-> Other";
    QTest::newRow("folder") << QByteArray("href='./'") << "-> T";
    QTest::newRow("itself") << QByteArray("href='index.html'") << "-> T";
    QTest::newRow("place in itself") << QByteArray("href='index.html#a%20b' target=x") << "#a%20b ()";
    QTest::newRow("place here") << QByteArray("href='#b'") << "#b ()";
    QTest::newRow("top") << QByteArray("href='#'") << "# ()";
    QTest::newRow("server") << QByteArray("href=\"http://x/?a=1&amp;b=2\" rel=help")
                            << "http://x/?a=1&b=2 (_blank)";
    QTest::newRow("server, in the frame")
        << QByteArray("target=_top href='https://x/'") << "https://x/ (_blank)";
    QTest::newRow("no scheme") << QByteArray("href='//x/y'") << "https://x/y (_blank)";
    QTest::newRow("mail") << QByteArray("href='mailto:a@b'") << "mailto:a@b (_blank)";
    QTest::newRow("script") << QByteArray("href='javascript:a(\"b\")'") << "javascript:a(\"b\") ()";
    QTest::newRow("dead") << QByteArray("href='gone.html' target=_blank") << "none";
    QTest::newRow("outside") << QByteArray("href='../../etc/passwd'") << "none";
    QTest::newRow("no page") << QByteArray("href='notes.txt'") << "none";
    QTest::newRow("file") << QByteArray("href='file:///C:/x.html'") << "none";
    QTest::newRow("drive") << QByteArray("href='C:\\x.html'") << "none";
}

void TestHelpBuildPages::linksLead()
{
    QFETCH(QByteArray, link);
    QFETCH(QString, expected);
    BuildFixture fixture;
    const QString html = Finish(fixture, "<title>T</title><body><a id=me class=\"c\" " + link +
                                             ">text</a><area " + link + ">");
    for (const char* tag : {"a", "area"}) {
        const QStringList addresses = AttributesIn(html, tag, "href");
        if (expected == QLatin1String("none")) {
            QCOMPARE(addresses, QStringList());
            QCOMPARE(AttributesIn(html, tag, "target"), QStringList());
        } else if (expected.startsWith(QLatin1String("->"))) {
            QCOMPARE(QLatin1String("-> ") + fixture.Follow(addresses.value(0)), expected);
            QCOMPARE(AttributesIn(html, tag, "target"), QStringList());
        } else {
            QCOMPARE(addresses.value(0) + QLatin1String(" (") +
                         AttributesIn(html, tag, "target").join(QLatin1Char(',')) + QLatin1Char(')'),
                     expected);
        }
    }
    QCOMPARE(AttributesIn(html, "a", "class"), QStringList{QStringLiteral("c")});
    QCOMPARE(fixture.Reports().filter(QStringLiteral("leads")).size(),
             expected == QLatin1String("none") ? 2 : 0);
}

void TestHelpBuildPages::addressesInElementsAreTidied_data()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<QByteArray>("wanted");

    QTest::newRow("base") << QByteArray("<base href='http://x/' target=_blank>") << QByteArray();
    QTest::newRow("policy") << QByteArray("<meta http-equiv=Content-Security-Policy content=\"x\">")
                            << QByteArray();
    QTest::newRow("redirect") << QByteArray("<meta http-equiv=refresh content=\"0; URL='sub/other.html'\">")
                              << QByteArray("<p><a href =\"sub/other.html\">sub/other.html</a></p>");
    QTest::newRow("form") << QByteArray("<form action=search.html>x</form>")
                          << QByteArray("<form onsubmit=\"return false\">x</form>");
    QTest::newRow("server's form") << QByteArray("<form action=http://x>x</form>")
                                   << QByteArray("<form action=http://x>x</form>");
    QTest::newRow("frame") << QByteArray("<iframe src=sub/other.html></iframe>")
                           << QByteArray("<iframe></iframe>");
    QTest::newRow("film") << QByteArray("<video src=\"a.mp4\"controls></video>")
                          << QByteArray("<video controls></video>");
    QTest::newRow("missing image") << QByteArray("<img alt='b' src='none.png'>")
                                   << QByteArray("<img alt='b' src='none.png'>");
    QTest::newRow("untouched") << QByteArray("<P Class=a  id = 'b'>\r\n\t<br/>&amp;</P>")
                               << QByteArray("<P Class=a  id = 'b'>\r\n\t<br/>&amp;</P>");
}

void TestHelpBuildPages::addressesInElementsAreTidied()
{
    QFETCH(QByteArray, markup);
    QFETCH(QByteArray, wanted);
    BuildFixture fixture;
    const QString html =
        Finish(fixture, "<html><head><title>T</title></head><body>" + markup + "</body></html>");
    QCOMPARE(html,
             QString::fromUtf8("<html><head><title>T</title></head><body>" + wanted + "</body></html>"));
}

QTEST_GUILESS_MAIN(TestHelpBuildPages)
#include "tst_yxhelpbuild_pages.moc"
