#include "diagnostics.h"
#include "multireplace.h"
#include "pagebuilder.h"

#include <QRandomGenerator>
#include <QRegExp>
#include <QVector>
#include <QtTest>

namespace {

const QLatin1String kInlineScripts("--inline-scripts");

const QList<JsFileContent> kScripts{
    {QStringLiteral("A"), QStringLiteral("a.js")},
    {QStringLiteral("B"), QStringLiteral("b.js")},
    {QStringLiteral("late A"), QStringLiteral("a.js")},
    {QStringLiteral("C"), QStringLiteral("sub/c.js")},
};

// The stages with the regular expressions that define them. The scans must come to the same on any text.

QString ReferenceScripts(QString html, const QList<JsFileContent>& scripts)
{
    QRegExp expression(QStringLiteral("<script.*</script>"), Qt::CaseInsensitive);
    QString run;
    if (expression.indexIn(html) >= 0)
        run = expression.cap();
    const QString original = run;
    const auto gather = [&](const auto& take) {
        int at = 0;
        while ((at = expression.indexIn(run, at)) >= 0)
            at += take(expression.cap()).size();
    };
    QVector<QString> tags;
    QVector<QString> files;
    int length = 0;
    expression.setMinimal(true);
    gather([&](const QString& match) {
        tags.append(match);
        length += match.size();
        return match;
    });
    expression.setPattern(QStringLiteral("scripts/.*\\.js"));
    gather([&](const QString& match) {
        files.append(match.mid(8));
        return match.mid(8);
    });
    QString inlined;
    for (int i = 0; i < files.size(); ++i) {
        for (const JsFileContent& script : scripts) {
            if (script.FileName != files.at(i))
                continue;
            inlined += QStringLiteral("\r\n<Script>%1</Script>").arg(script.Content);
            if (length != original.size())
                run.replace(tags.at(i), inlined);
            break;
        }
    }
    return original.isEmpty() ? html : html.replace(original, length == original.size() ? inlined : run);
}

QString ReferenceSheets(QString html, const QString& root)
{
    QRegExp expression(QStringLiteral("href=\".*\\.css\""), Qt::CaseInsensitive);
    if (expression.indexIn(html) < 0)
        return html;
    QString run = expression.cap();
    const QString original = run;
    expression.setMinimal(true);
    int at = 0;
    while ((at = expression.indexIn(run, at)) >= 0) {
        const QString match = expression.cap();
        QString link = match;
        int separator = match.lastIndexOf(QLatin1Char('/'));
        if (separator < 0)
            separator = match.lastIndexOf(QLatin1Char('\\'));
        if (separator >= 0)
            link = QStringLiteral("href=\"") + root + QStringLiteral("/styles/") + match.mid(separator + 1);
        else
            link.replace(QStringLiteral("href=\""),
                         QStringLiteral("href =\"") + root + QStringLiteral("/styles/"));
        link.replace(QLatin1Char('\\'), QLatin1Char('/'));
        run.replace(match, link);
        at += match.size();
    }
    return html.replace(original, run);
}

class RandomText
{
public:
    QString Make(const QStringList& pieces, int most)
    {
        QString text;
        for (int left = random.bounded(most + 1); left > 0; --left)
            text += pieces.at(random.bounded(pieces.size()));
        return text;
    }
    int Bounded(int limit) { return random.bounded(limit); }

private:
    QRandomGenerator random{20240506};
};

QStringList Pieces(const char* separatedByBlanks)
{
    return QString::fromUtf8(separatedByBlanks).split(QLatin1Char(' '));
}

} // namespace

class TestPageBuilder : public QObject
{
    Q_OBJECT

private slots:
    void scriptsAreWrittenIntoThePage_data();
    void scriptsAreWrittenIntoThePage();
    void moreFilesThanElementsEndTheProgram();
    void imagesAreReplacedKeyByKey_data();
    void imagesAreReplacedKeyByKey();
    void styleSheetsPointBelowTheHelpDirectory_data();
    void styleSheetsPointBelowTheHelpDirectory();
    void articleLinksAreFolded_data();
    void articleLinksAreFolded();
    void scansAgreeWithTheExpressions();
    void replacingAtOnceAgreesWithKeyByKey();
};

void TestPageBuilder::scriptsAreWrittenIntoThePage_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const QString a = QStringLiteral("\r\n<Script>A</Script>");
    const QString b = QStringLiteral("\r\n<Script>B</Script>");
    const auto row = [](const char* name, const char* html, const QString& expected) {
        QTest::newRow(name) << QString::fromUtf8(html) << expected;
    };
    const auto page = [](const QString& middle) {
        return QString(QLatin1Char('(') + middle + QLatin1Char(')'));
    };
    row("none", "<p>scripts/a.js</p>", QStringLiteral("<p>scripts/a.js</p>"));
    row("empty", "", QString());
    row("adjacent", "(<script src=\"../scripts/a.js\"></script><script src=\"scripts/b.js\"></script>)",
        page(a + b));
    row("adjacent, with one that names no file", "(<script>x</script><script src=\"scripts/a.js\"></script>)",
        page(a));
    row("adjacent, unknown file", "(<script src=\"scripts/z.js\"></script>)", page(QString()));
    row("first entry of a name wins", "(<script src=\"scripts/a.js\"></script>)", page(a));
    row("name with a directory", "(<script src=\"scripts/sub/c.js\"></script>)",
        page(QStringLiteral("\r\n<Script>C</Script>")));
    row("capitals", "(<SCRIPT SRC=\"SCRIPTS/a.js\"></SCRIPT>)", page(a));
    row("capitals in the file's name", "(<script src=\"scripts/A.JS\"></script>)", page(QString()));
    row("spaced scripts add up",
        "(<script src=\"scripts/a.js\"></script>\n<script src=\"scripts/b.js\"></script>)",
        page(a + QLatin1Char('\n') + a + b));
    row("spaced, unknown file stays",
        "(<script src=\"scripts/z.js\"></script>\n<script src=\"scripts/b.js\"></script>)",
        page(QStringLiteral("<script src=\"scripts/z.js\"></script>\n") + b));
    row("spaced, pairing shifts", "(<script>x</script>\n<script src=\"scripts/a.js\"></script>)",
        page(a + QStringLiteral("\n<script src=\"scripts/a.js\"></script>")));
    row("spaced, equal elements",
        "(<script src=\"scripts/a.js\"></script> <script src=\"scripts/a.js\"></script>)",
        page(a + QLatin1Char(' ') + a));
    row("unclosed", "(<script src=\"scripts/a.js\">)", page(QStringLiteral("<script src=\"scripts/a.js\">")));
}

void TestPageBuilder::scriptsAreWrittenIntoThePage()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(InlineScripts(html, kScripts, QString()), expected);
    QCOMPARE(ReferenceScripts(html, kScripts), expected);
}

void TestPageBuilder::moreFilesThanElementsEndTheProgram()
{
    const QString two = QStringLiteral("<script src=\"scripts/a.js\" alt=\"scripts/%1\"></script> </script>");
    const QString message = FatalMessage({kInlineScripts, two.arg(QStringLiteral("b.js"))});
    QVERIFY2(
        message.contains(QStringLiteral("page \"topics\\page.html\" refers to script file 2 (\"b.js\")")),
        qUtf8Printable(message));
    QCOMPARE(FatalMessage({kInlineScripts, two.arg(QStringLiteral("unknown.js"))}), QString());
}

void TestPageBuilder::imagesAreReplacedKeyByKey_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const char* html, const char* keys, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(keys)
                            << QString::fromUtf8(expected);
    };
    row("everywhere", "a.png \"a.png\"", "a.png", "(A) \"(A)\"");
    row("other case stays", "A.PNG", "a.png", "A.PNG");
    row("unknown, empty and missing keys", "x.png e.png", "x.png,,e.png", "x.png e.png");
    row("earlier key hits the longer one", "b/a.png a.png", "a.png,b/a.png", "b/(A) (A)");
    row("longer key first", "b/a.png a.png", "b/a.png,a.png", "(BA) (A)");
    row("value brings in a later key", "c.png", "c.png,a.png", "<(A)>");
    row("value brings in an earlier key", "c.png a.png", "a.png,c.png", "<a.png> (A)");
}

void TestPageBuilder::imagesAreReplacedKeyByKey()
{
    QFETCH(QString, html);
    QFETCH(QString, keys);
    QFETCH(QString, expected);
    const QHash<QString, QString> cache{
        {QStringLiteral("a.png"), QStringLiteral("(A)")},
        {QStringLiteral("b/a.png"), QStringLiteral("(BA)")},
        {QStringLiteral("c.png"), QStringLiteral("<a.png>")},
        {QStringLiteral("e.png"), QString()},
        {QString(), QStringLiteral("nothing")},
    };
    QCOMPARE(ReplaceImages(html, keys.split(QLatin1Char(',')), cache), expected);
}

void TestPageBuilder::styleSheetsPointBelowTheHelpDirectory_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const char* html, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(expected);
    };
    row("none", "<a href=\"main.html\">", "<a href=\"main.html\">");
    row("slashes", "<link href=\"../styles/main.css\">", "<link href=\"/d%23/Help/styles/main.css\">");
    row("backslashes", "<link href=\"..\\styles\\main.css\">", "<link href=\"/d%23/Help/styles/main.css\">");
    row("both", "<link href=\"..\\x/y\\main.css\">", "<link href=\"/d%23/Help/styles/y/main.css\">");
    row("bare name", "<link href=\"main.css\">", "<link href =\"/d%23/Help/styles/main.css\">");
    row("capitals with a directory", "<LINK HREF=\"s/Main.CSS\">",
        "<LINK href=\"/d%23/Help/styles/Main.CSS\">");
    row("capitals without", "<LINK HREF=\"Main.CSS\">", "<LINK HREF=\"Main.CSS\">");
    row("link before is swallowed", "<a href=\"x\">y</a><link href=\"s/m.css\">",
        "<a href=\"/d%23/Help/styles/m.css\">");
    row("single quotes", "<link href='s/m.css'>", "<link href='s/m.css'>");
    // The second link stands where the search, measured on the old text, has gone past its beginning.
    row("two with shorter new links", "href=\"a/very/long/way/to/the/sheet/m.css\"href=\"s/n.css\"",
        "href=\"/d%23/Help/styles/m.css\"href=\"s/n.css\"");
}

void TestPageBuilder::styleSheetsPointBelowTheHelpDirectory()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    const QString root = QStringLiteral("/d%23/Help");
    QCOMPARE(RedirectStyleSheets(html, root), expected);
    QCOMPARE(ReferenceSheets(html, root), expected);
}

void TestPageBuilder::articleLinksAreFolded_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const char* html, const char* expected) {
        QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(expected);
    };
    row("articles, up", "href=\"../articles_registration/a.html", "href=\"../articles/a.html");
    row("articles, here", "href=\"./articles_registration2", "href=\"./articles2");
    row("categories, up", "href=\"../categories_registration/c", "href=\"../categories/c");
    row("categories, here", "href=\"./categories_registration/c", "href=\"./categories/c");
    for (const char* text : {"articles_registration", "href=\"articles_registration/",
                             "HREF=\"../articles_registration", "href='../articles_registration'",
                             "href=\"../../articles_registration", "href=\"../articles/a.html"})
        row(text, text, text);
}

void TestPageBuilder::articleLinksAreFolded()
{
    QFETCH(QString, html);
    QFETCH(QString, expected);
    QCOMPARE(FoldLinks(html), expected);
}

void TestPageBuilder::scansAgreeWithTheExpressions()
{
    // With the letters that QString and QRegExp fold differently: long s, Kelvin sign, dotted and dotless i.
    const QStringList scriptPieces =
        Pieces("<script </script> <SCRIPT></SCRIPT> <\u017fcript </scr\u0130pt> "
               "<scr\u0131pt scripts/ SCRIPTS/ \u017fcripts/ a.js b.JS a.j\u017f z.js > "
               "< </ / . \" x \n") +
        QStringList(QString(1, QChar(0)));
    const QStringList sheetPieces = Pieces("href=\" HREF=\" href =\" .css\" .CSS\" .c\u017fs\" s/m.css\" "
                                           "n.css\" / \\ h hr \" . x \n");
    const QStringList rootPieces = Pieces("/ \\ x . .css /Help C:");
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const QString page = random.Make(scriptPieces, 14);
        // An element with two files may end the program; such texts are another test's.
        if (page.count(QStringLiteral("scripts/"), Qt::CaseInsensitive) <=
            page.count(QStringLiteral("</script>"), Qt::CaseInsensitive))
            QCOMPARE(InlineScripts(page, kScripts, QString()), ReferenceScripts(page, kScripts));
        const QString sheets = random.Make(sheetPieces, 14);
        const QString root = random.Make(rootPieces, 3);
        QCOMPARE(RedirectStyleSheets(sheets, root), ReferenceSheets(sheets, root));
    }
}

void TestPageBuilder::replacingAtOnceAgreesWithKeyByKey()
{
    const QStringList pieces = Pieces("a b ab a/b. a/b.c b.c .c/ c \" \" < data:image/ ;base64, \u4e2d");
    RandomText random;
    int replaced = 0;
    for (int i = 0; i < 30000; ++i) {
        QVector<std::pair<QString, QString>> pairs;
        for (int left = random.Bounded(8); left > 0; --left) {
            const QString key = random.Make(pieces, 4);
            pairs.append(
                {key,
                 random.Make(i % 2 ? pieces : QStringList{QStringLiteral("<"), QStringLiteral("=Z")}, 3)});
        }
        QString text;
        for (int left = random.Bounded(12); left > 0; --left) {
            // Every other time keys stand between quotes, as they mostly do in pages.
            const bool key = !pairs.isEmpty() && random.Bounded(2);
            text += key ? QString(QLatin1Char('"') + pairs.at(random.Bounded(pairs.size())).first +
                                  QLatin1Char('"'))
                        : random.Make(pieces, 3);
        }
        QString expected = text;
        for (const auto& [before, after] : pairs) {
            if (!before.isEmpty())
                expected.replace(before, after);
        }
        replaced += expected != text;
        const QString original = text;
        ReplaceInOrder(text, pairs);
        QVERIFY2(text == expected, qUtf8Printable(original));
    }
    QVERIFY(replaced > 10000);
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().value(1) == kInlineScripts) {
        InlineScripts(QCoreApplication::arguments().value(2), kScripts, QStringLiteral("topics\\page.html"));
        return 0;
    }
    TestPageBuilder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pagebuilder.moc"
