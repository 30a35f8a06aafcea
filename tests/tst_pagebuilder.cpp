#include "diagnostics.h"
#include "multireplace.h"
#include "pagebuilder.h"
#include "testtable.h"

#include <QRandomGenerator>
#include <QRegExp>
#include <QVector>

namespace {

const QLatin1String kInlineScripts("--inline-scripts");

const QList<JsFileContent> kScripts{
    {"A"_s, "a.js"_s},
    {"B"_s, "b.js"_s},
    {"late A"_s, "a.js"_s},
    {"C"_s, "sub/c.js"_s},
};

// The stages with the regular expressions that define them. The scans must come to the same on any text.

QString ReferenceScripts(QString html, const QList<JsFileContent>& scripts)
{
    QRegExp expression("<script.*</script>"_s, Qt::CaseInsensitive);
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
    expression.setPattern("scripts/.*\\.js"_s);
    gather([&](const QString& match) {
        files.append(match.mid(8));
        return match.mid(8);
    });
    QString inlined;
    for (int i = 0; i < files.size(); ++i) {
        for (const JsFileContent& script : scripts) {
            if (script.FileName != files.at(i))
                continue;
            inlined += "\r\n<Script>%1</Script>"_s.arg(script.Content);
            if (length != original.size())
                run.replace(tags.at(i), inlined);
            break;
        }
    }
    return original.isEmpty() ? html : html.replace(original, length == original.size() ? inlined : run);
}

QString ReferenceSheets(QString html, const QString& root)
{
    QRegExp expression("href=\".*\\.css\""_s, Qt::CaseInsensitive);
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
            link = "href=\""_s + root + "/styles/"_s + match.mid(separator + 1);
        else
            link.replace("href=\""_s, "href =\""_s + root + "/styles/"_s);
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

// What goes into a stage and what comes out of it.
using Cases = std::vector<std::pair<const char*, const char*>>;

} // namespace

class TestPageBuilder : public QObject
{
    Q_OBJECT

private slots:
    void scriptsAreWrittenIntoThePage();
    void moreFilesThanElementsEndTheProgram();
    void imagesAreReplacedKeyByKey();
    void styleSheetsPointBelowTheHelpDirectory();
    void articleLinksAreFolded();
    void scansAgreeWithTheExpressions();
    void replacingAtOnceAgreesWithKeyByKey();
};

void TestPageBuilder::scriptsAreWrittenIntoThePage()
{
    // "{a}" stands for the element that names a.js, "{=A}" for the one with its text.
    for (const auto& [html, expected] :
         Cases{{"", ""},
               {"<p>scripts/a.js</p>", "<p>scripts/a.js</p>"},
               {"({a}{b})", "({=A}{=B})"},
               {"(<script>x</script>{a})", "({=A})"},
               {"({z})", "()"},
               {"({sub/c})", "({=C})"},
               {"(<SCRIPT SRC=\"SCRIPTS/a.js\"></SCRIPT>)", "({=A})"},
               {"(<script src=\"SCRIPTS/A.JS\"></script>)", "()"},
               {"({a}\n{b})", "({=A}\n{=A}{=B})"},
               {"({z}\n{b})", "({z}\n{=B})"},
               {"(<script>x</script>\n{a})", "({=A}\n{a})"},
               {"({a} {a})", "({=A} {=A})"},
               {"(<script src=\"scripts/a.js\">)", "(<script src=\"scripts/a.js\">)"}}) {
        const auto full = [](const char* text) {
            return QString::fromUtf8(text)
                .replace(QRegularExpression("\\{=(.)\\}"_s), "\r\n<Script>\\1</Script>"_s)
                .replace(QRegularExpression("\\{(.*?)\\}"_s),
                         "<script src=\"../scripts/\\1.js\"></script>"_s);
        };
        QCOMPARE(InlineScripts(full(html), kScripts, QString()), full(expected));
        QCOMPARE(ReferenceScripts(full(html), kScripts), full(expected));
    }
}

void TestPageBuilder::moreFilesThanElementsEndTheProgram()
{
    const QString two = "<script src=\"scripts/a.js\" alt=\"scripts/%1\"></script> </script>"_s;
    const QString message = FatalMessage({kInlineScripts, two.arg("b.js"_s)});
    QVERIFY2(message.contains("page \"topics\\page.html\" refers to script file 2 (\"b.js\")"_s),
             qUtf8Printable(message));
    QCOMPARE(FatalMessage({kInlineScripts, two.arg("unknown.js"_s)}), QString());
}

void TestPageBuilder::imagesAreReplacedKeyByKey()
{
    const QHash<QString, QString> cache{{"a.png"_s, "(A)"_s},
                                        {"b/a.png"_s, "(BA)"_s},
                                        {"c.png"_s, "<a.png>"_s},
                                        {"e.png"_s, QString()},
                                        {QString(), "nothing"_s}};
    // Page and keys, page afterwards.
    for (const auto& [input, expected] : Cases{{"a.png \"a.png\" A.PNG|a.png", "(A) \"(A)\" A.PNG"},
                                               {"x.png e.png|x.png,,e.png", "x.png e.png"},
                                               {"b/a.png a.png|a.png,b/a.png", "b/(A) (A)"},
                                               {"b/a.png a.png|b/a.png,a.png", "(BA) (A)"},
                                               {"c.png|c.png,a.png", "<(A)>"},
                                               {"c.png a.png|a.png,c.png", "<a.png> (A)"}}) {
        const QStringList parts = QString::fromUtf8(input).split(QLatin1Char('|'));
        QCOMPARE(ReplaceImages(parts.at(0), parts.at(1).split(QLatin1Char(',')), cache),
                 QString::fromUtf8(expected));
    }
}

void TestPageBuilder::styleSheetsPointBelowTheHelpDirectory()
{
    const QString root = "/d%23/Help"_s;
    for (const auto& [html, expected] :
         Cases{{"<a href=\"main.html\">", "<a href=\"main.html\">"},
               {"<link href=\"../styles/main.css\">", "<link href=\"{}/main.css\">"},
               {"<link href=\"..\\styles\\main.css\">", "<link href=\"{}/main.css\">"},
               {"<link href=\"..\\x/y\\main.css\">", "<link href=\"{}/y/main.css\">"},
               {"<link href=\"main.css\">", "<link href =\"{}/main.css\">"},
               {"<LINK HREF=\"s/Main.CSS\">", "<LINK href=\"{}/Main.CSS\">"},
               {"<LINK HREF=\"Main.CSS\">", "<LINK HREF=\"Main.CSS\">"},
               {"<a href=\"x\">y</a><link href=\"s/m.css\">", "<a href=\"{}/m.css\">"},
               // The second link stands where the search, measured on the old text, has gone past its
               // beginning.
               {"href=\"a/very/long/way/to/the/sheet/m.css\"href=\"s/n.css\"",
                "href=\"{}/m.css\"href=\"s/n.css\""}}) {
        const QString page = QString::fromUtf8(html);
        const QString wanted = QString::fromUtf8(expected).replace("{}"_s, root + "/styles"_s);
        QCOMPARE(RedirectStyleSheets(page, root), wanted);
        QCOMPARE(ReferenceSheets(page, root), wanted);
    }
}

void TestPageBuilder::articleLinksAreFolded()
{
    for (const auto& [html, expected] :
         Cases{{"href=\"../articles_registration/a.html", "href=\"../articles/a.html"},
               {"href=\"./articles_registration2", "href=\"./articles2"},
               {"href=\"../categories_registration/c", "href=\"../categories/c"},
               {"href=\"./categories_registration/c", "href=\"./categories/c"}})
        QCOMPARE(FoldLinks(QString::fromUtf8(html)), QString::fromUtf8(expected));
    const QString others =
        "articles_registration href=\"articles_registration/ HREF=\"../articles_registration "
        "href='../articles_registration' href=\"../../articles_registration href=\"../articles/a"_s;
    QCOMPARE(FoldLinks(others), others);
}

void TestPageBuilder::scansAgreeWithTheExpressions()
{
    // With the letters that QString and QRegExp fold differently: long s, Kelvin sign, dotted and dotless i.
    const QStringList scriptPieces =
        Pieces("<script </script> <SCRIPT></SCRIPT> <\u017fcript </scr\u0130pt> "
               "<scr\u0131pt scripts/ SCRIPTS/ \u017fcripts/ a.js b.JS a.j\u017f z.js > < </ / . \" x \n") +
        QStringList(QString(1, QChar(0)));
    const QStringList sheetPieces =
        Pieces("href=\" HREF=\" href =\" .css\" .CSS\" .c\u017fs\" s/m.css\" n.css\" / \\ h hr \" . x \n");
    const QStringList rootPieces = Pieces("/ \\ x . .css /Help C:");
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const QString page = random.Make(scriptPieces, 14);
        // An element with two files may end the program; such texts are another test's.
        if (page.count("scripts/"_s, Qt::CaseInsensitive) <= page.count("</script>"_s, Qt::CaseInsensitive))
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
            pairs.append({key, random.Make(i % 2 ? pieces : QStringList{"<"_s, "=Z"_s}, 3)});
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
        InlineScripts(QCoreApplication::arguments().value(2), kScripts, "topics\\page.html"_s);
        return 0;
    }
    TestPageBuilder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pagebuilder.moc"
