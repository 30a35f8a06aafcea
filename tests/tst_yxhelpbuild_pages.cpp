#include "testtable.h"
#include "tst_yxhelpbuild_fixture.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>

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
    const auto row = Columns<QByteArray, QString>("body", "text");
    row("a sheet's link in text", "<p>Write href=\"my.css\" or HREF=\"A.CSS\" here.</p>",
        "Write href=\"my.css\" or HREF=\"A.CSS\" here.");
    row("in attributes", "<p title='href=\"x.css\"'>A</p><p title=\"x.css\">B</p><p title='<script>'>C</p>",
        "A\nB\nC");
    row("a link to a sheet", "<a href=\"s.css\">sheet</a> and <a href=\"none.css\">none</a>",
        "sheet and none");
    row("script in a text field", "<textarea><script>x</script></textarea><p>after</p>",
        "<script>x</script >\nafter");
    row("script by reference", "<p>&lt;script&gt;x&lt;/script&gt;</p>", "<script>x</script>");
    row("folded directories", "<p>href=\"../articles_registration/x\" href=\"./categories_registration</p>",
        "href=\"../articles_registration/x\" href=\"./categories_registration");
    row("style with words that count",
        "<style>a[href=\"x.css\"]::before{content:\"<script>\"} /* </script> */</style><p>A</p>", "A");
    row("broken markup", "<p>A<b>B<i>C</b>D</i><table><a href='sub/other.html'>E<tr><td>F", "ABCDE\nF");
    row("entities", "<p>&lt;&amp;&quot;&nbsp;x &eacute;&copy;&#x4e2d; &unknown; &</p>",
        "<&\" x \u00e9\u00a9\u4e2d &unknown; &");
    row("percent marks", "<p>%1 %2 100%</p>", "%1 %2 100%");
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
        const QString body2 = fixture.Select("SELECT Body FROM HelpFileList WHERE ID=1"_s).constFirst();
        QCOMPARE(QString(body2).remove(QLatin1Char(' ')), QString(text).remove(QLatin1Char(' ')));
        const QStringList sheets = AttributesIn(html, "link", "href");
        QCOMPARE(sheets.size(), 1);
        QVERIFY2(QFile::exists(sheets.constFirst()), qPrintable(html));
        QCOMPARE(ContentsOf(html, "script").size(), 1);
        QVERIFY2(ContentsOf(html, "script").constFirst().startsWith("here(`href=\""_s + fixture.HelpDir()),
                 qPrintable(html));
    }
}

void TestHelpBuildPages::imagesArrive_data()
{
    const auto row = Columns<QString, QByteArray, QByteArray, QByteArray, bool>("file", "data", "markup",
                                                                                "format", "isFile");
    const auto encoded = [](const char* format, int size) {
        QByteArray data;
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        QImage::fromData(BuildFixture::Png(0, size)).save(&buffer, format);
        return data;
    };
    const QByteArray png = BuildFixture::Png();
    const QByteArray img = "<img src='x'>";

    row("large png", "x", BuildFixture::Png(0, 100), img, "png", true);
    row("jpeg by its long name", "x.jpeg", encoded("jpg", 8), "<img src=x.jpeg>", "jpeg", false);
    row("a kind that the viewer can't write", "x.ppm", encoded("ppm", 100), "<img src=x.ppm>", "png", true);
    row("drawing", "x.svg", "<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>",
        "<img src=x.svg>", "svg+xml", false);
    row("strange name", "a, 'b' %1.png", png, "<img src=\"a, 'b' %251.png\">", "png", false);
    row("\\ for /", "sub/x.png", png, "<img src='sub\\x.png'>", "png", false);
    row("choices", "x", png, "<picture><source srcset='y 2x'><img srcset='z 2x' src=x></picture>", "png",
        false);
}

void TestHelpBuildPages::imagesArrive()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, markup);
    QFETCH(QByteArray, format);
    QFETCH(bool, isFile);
    BuildFixture fixture;
    fixture.Write("doc/"_s + file, data);
    const QString html = Finish(fixture, "<title>T</title><p>x</p>" + markup);
    const QRegularExpression address(
        "data:image/[^;]*;base64,([A-Za-z0-9+/=]*)|[^'\"]*/HelpImageTemp/[^'\"]*"_s);
    const auto match = address.match(html);
    QVERIFY2(match.hasMatch(), qPrintable(html));
    QCOMPARE(match.captured(1).isEmpty(), isFile);
    QCOMPARE(html.count("srcset"_s), 0);
    if (format == "svg+xml") {
        QVERIFY(match.captured().startsWith("data:image/svg+xml;"_s));
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
    const QStringList names{"a.png"_s, "a.png.png"_s, "aa.png"_s, "sub/a.png"_s, "sub_a.png"_s, "A.png"_s};
    QByteArray markup;
    for (int i = 0; i < names.size(); ++i) {
        fixture.Write("doc/"_s + names.at(i), BuildFixture::Png(i, 100));
        markup += "<img src=\"" + names.at(i).toUtf8() + "\">";
    }
    fixture.Write("doc/copy.png"_s, BuildFixture::Png(0, 100));
    const QStringList shown = AttributesIn(Finish(fixture, markup + "<img src=copy.png>"), "img", "src");
    QCOMPARE(shown.size(), names.size() + 1);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(QImage(shown.at(i)), QImage::fromData(BuildFixture::Png(i, 100)));
    QCOMPARE(shown.last(), shown.first());
    QCOMPARE(fixture.Select("SELECT ImagePath FROM ImageList"_s).size(), names.size());
}

void TestHelpBuildPages::linksLead_data()
{
    const auto row = Columns<QByteArray, QString>("link", "expected");
    row("topic", "href=sub/other.html", "-> Other");
    row("place in a topic", "href='sub/other.html#x' target=_blank", "-> Other");
    row("query", "href='sub/other.html?a=b'", "-> Other");
    row("from the root", "href='/sub/other.html'", "-> Other");
    row("place in itself", "href='index.html#a%20b' target=x", "#a%20b");
    row("server", "href=\"http://x/?a=1&amp;b=2\" rel=help", "http://x/?a=1&b=2 _blank");
    row("mail", "href='mailto:a@b'", "mailto:a@b _blank");
    row("dead", "href='gone.html' target=_blank", "");
    row("outside", "href='../../etc/passwd'", "");
    row("no page", "href='notes.txt'", "");
    row("drive", "href='C:\\x.html'", "");
}

void TestHelpBuildPages::linksLead()
{
    QFETCH(QByteArray, link);
    QFETCH(QString, expected);
    BuildFixture fixture;
    const QString html = Finish(fixture, "<title>T</title><body><a id=me class=\"c\" " + link +
                                             ">text</a><area " + link + ">");
    for (const char* tag : {"a", "area"}) {
        QStringList shown = AttributesIn(html, tag, "href");
        if (expected.startsWith("->"_s))
            shown = QStringList{"->"_s, fixture.Follow(shown.value(0))};
        QCOMPARE((shown + AttributesIn(html, tag, "target")).join(QLatin1Char(' ')), expected);
    }
    QCOMPARE(AttributesIn(html, "a", "class"), QStringList{"c"_s});
    QCOMPARE(fixture.Reports().filter("leads"_s).size(), expected.isEmpty() ? 2 : 0);
}

void TestHelpBuildPages::addressesInElementsAreTidied_data()
{
    const auto row = Columns<QByteArray, QByteArray>("markup", "wanted");
    row("base", "<base href='http://x/' target=_blank>", "");
    row("policy", "<meta http-equiv=Content-Security-Policy content=\"x\">", "");
    row("redirect", "<meta http-equiv=refresh content=\"0; URL='sub/other.html'\">",
        "<p><a href =\"sub/other.html\">sub/other.html</a></p>");
    row("form", "<form action=search.html>x</form>", "<form onsubmit=\"return false\">x</form>");
    row("frame", "<iframe src=sub/other.html></iframe>", "<iframe></iframe>");
    row("untouched", "<P Class=a  id = 'b'>\r\n\t<br/>&amp;</P>",
        "<P Class=a  id = 'b'>\r\n\t<br/>&amp;</P>");
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
