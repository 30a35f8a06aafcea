#include "cssprep.h"
#include "folderreader.h"
#include "scriptstrings.h"
#include "testtable.h"
#include "topicnames.h"
#include "tst_yxhelpbuild_fixture.h"

using namespace helpbuild;

/// The parts that work on plain text, with the odd cases that documentation rarely has.
class TestHelpBuildUnits : public QObject
{
    Q_OBJECT

private slots:
    void namesSortNaturally();
    void keysAreCleanAndUnique();
    void sheetReferencesAreFound_data();
    void sheetReferencesAreFound();
    void scriptStringsAreFound_data();
    void scriptStringsAreFound();
};

void TestHelpBuildUnits::namesSortNaturally()
{
    const QStringList sorted =
        "1 01 2a 10 a A1 a1b a2 a10 a99999999999999999999998 a99999999999999999999999 b \u00e4"_s.split(
            QLatin1Char(' '));
    // A strict order, whichever way two names are compared.
    for (int i = 0; i < sorted.size(); ++i) {
        for (int j = 0; j < sorted.size(); ++j) {
            if (i > 1 || j > 1)
                QVERIFY2(NaturalLess(sorted.at(i), sorted.at(j)) == (i < j),
                         qPrintable(sorted.at(i) + " and "_s + sorted.at(j)));
        }
    }
    QVERIFY(NaturalLess(sorted.at(0), sorted.at(1)) != NaturalLess(sorted.at(1), sorted.at(0)));
}

void TestHelpBuildUnits::keysAreCleanAndUnique()
{
    TopicKeys keys;
    for (const auto& [wanted, key] : std::vector<std::pair<QString, QString>>{
             {"First"_s, "First"_s},
             {"first"_s, "folder-first"_s},
             {"FIRST"_s, "FIRST-2"_s},
             {"a'b\"c%1\\d"_s, "a-b-c-1-d"_s},
             {"/Topic"_s, "Topic"_s},
             {QString(), "topic-2"_s},
             {"\u00c5ngstr\u00f6m \u00df \u0142 \ufb01"_s, "Angstrom ss l fi"_s},
             {"\u4e2d\U0001f600"_s, "u4e2du1f600"_s}})
        QCOMPARE(keys.Take(wanted, wanted.isEmpty() ? QString() : "folder-"_s + wanted.toLower()), key);

    // However long, what is left is a key of its own.
    const QString padding(200, QLatin1Char('x'));
    QSet<QString> taken;
    for (int i = 0; i < 12; ++i) {
        const QString longKey = keys.Take(padding, padding);
        QVERIFY(longKey.size() <= 127);
        taken.insert(longKey.toLower());
    }
    QCOMPARE(taken.size(), 12);
    QVERIFY(TopicKeys::Clean(padding + QLatin1Char('a')) != TopicKeys::Clean(padding + QLatin1Char('b')));
}

void TestHelpBuildUnits::sheetReferencesAreFound_data()
{
    const auto row = Columns<QString, QString>("sheet", "found");
    row("plain", "a{b:url(x.png)} c{d:URL( 'y z.png' )}", "url x.png; url y z.png");
    row("escapes", "a{b:url(x\\).png), url(\"\\\"\\41 b\"), url(a\\000042c)}",
        "url x).png; url \"Ab; url aBc");
    row("comments and strings", "/* url(x) @import 'y'; */ a{content:\"url(z)\\\" url(z)\"; b:url(w)}",
        "url w");
    row("imports", "@import 'a.css';@IMPORT url(b.css) print;\n@import/**/\"c.css\"",
        "import a.css; import b.css print; import c.css");
    row("cut off", "a{b:url(x", "url x");
    row("string without end", "a{content:'x\n} b{c:url(y)}", "url y");
    row("cut off comment", "/* url(x)", "");
    row("cut off escape", "a{b:url(x\\", "url x");
}

void TestHelpBuildUnits::sheetReferencesAreFound()
{
    QFETCH(QString, sheet);
    QFETCH(QString, found);
    QStringList references;
    for (const CssReference& reference : ScanStyleSheet(sheet)) {
        const QString kind = reference.isImport ? "import "_s : "url "_s;
        references << QString(kind + reference.value + QLatin1Char(' ') + reference.media)
                          .remove(QChar::Null)
                          .trimmed();
        QVERIFY(sheet.mid(reference.begin)
                    .startsWith(reference.isImport ? "@import"_s : "url("_s, Qt::CaseInsensitive));
        QVERIFY(reference.end <= sheet.size());
    }
    QCOMPARE(references.join("; "_s), found);
}

void TestHelpBuildUnits::scriptStringsAreFound_data()
{
    const auto row = Columns<QByteArray, QString>("script", "strings");
    row("both quotes", "a('x', \"y'z\");", "x|y'z");
    row("comments", "// don't 'x'\n/* \"y\" */ a('z')", "z");
    row("escapes are left alone", "a('x\\'y', 'z')", "z");
    row("template", "a(`'x' \\` \"y\"`, 'z')", "z");
    row("regular expressions", "a = /'[/\"]/; b(/\\/'/g, 'x'); return /'/", "x");
    row("division", "a = b / 'x' / (c) / 'y' / d[1] / 'z'", "x|y|z");
    row("keys", "{'x': 'y', \"z\" : 1} ? 'u' : 'v'", "(x)|y|(z)|u|v");
    row("line end in a string", "a('x\n'y')", "y");
    row("cut off", "a('x\\", "");
    row("cut off expression", "a = /x\\", "");
}

void TestHelpBuildUnits::scriptStringsAreFound()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, strings);
    QStringList found;
    for (const ScriptString& each : ScanScriptStrings(script)) {
        found << (each.isKey ? QString(QLatin1Char('(') + each.value + QLatin1Char(')')) : each.value);
        const QByteArray text = script.mid(each.range.begin, each.range.end - each.range.begin);
        QCOMPARE(text.mid(1, text.size() - 2), each.value.toUtf8());
    }
    QCOMPARE(found.join(QLatin1Char('|')), strings);
}

QTEST_GUILESS_MAIN(TestHelpBuildUnits)
#include "tst_yxhelpbuild_units.moc"
