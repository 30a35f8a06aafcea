#include "cssprep.h"
#include "folderreader.h"
#include "scriptstrings.h"
#include "textedit.h"
#include "topicnames.h"

#include <QtTest>

#include <algorithm>

using namespace helpbuild;

/// The parts that work on plain text, with the odd cases that documentation rarely has.
class TestHelpBuildUnits : public QObject
{
    Q_OBJECT

private slots:
    void namesSortNaturally();
    void keysAreCleanAndUnique_data();
    void keysAreCleanAndUnique();
    void pathsAreToldApart();
    void sheetReferencesAreFound_data();
    void sheetReferencesAreFound();
    void scriptStringsAreFound_data();
    void scriptStringsAreFound();
    void editsNest();
};

void TestHelpBuildUnits::namesSortNaturally()
{
    const QStringList sorted{QStringLiteral("1"),
                             QStringLiteral("01"),
                             QStringLiteral("2a"),
                             QStringLiteral("10"),
                             QStringLiteral("a"),
                             QStringLiteral("A1"),
                             QStringLiteral("a1b"),
                             QStringLiteral("a2"),
                             QStringLiteral("a10"),
                             QStringLiteral("a99999999999999999999998"),
                             QStringLiteral("a99999999999999999999999"),
                             QStringLiteral("b"),
                             QStringLiteral("\u00e4")};
    // A strict order, whichever way two names are compared.
    for (int i = 0; i < sorted.size(); ++i) {
        for (int j = 0; j < sorted.size(); ++j) {
            if (i > 1 || j > 1)
                QVERIFY2(NaturalLess(sorted.at(i), sorted.at(j)) == (i < j),
                         qPrintable(sorted.at(i) + QLatin1String(" and ") + sorted.at(j)));
        }
    }
    QVERIFY(NaturalLess(sorted.at(0), sorted.at(1)) != NaturalLess(sorted.at(1), sorted.at(0)));
}

void TestHelpBuildUnits::keysAreCleanAndUnique_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("key");

    QTest::newRow("as it is") << "Qt::Key <T>, a/b"
                              << "Qt::Key <T>, a/b";
    QTest::newRow("taken") << "first"
                           << "folder-first";
    QTest::newRow("taken in another case") << "FIRST"
                                           << "folder-first";
    QTest::newRow("taken twice") << "twice"
                                 << "twice-2";
    QTest::newRow("statement breakers") << "a'b\"c%1\\d"
                                        << "a-b-c-1-d";
    QTest::newRow("a switch") << "/Topic"
                              << "Topic";
    QTest::newRow("white space") << " a \n\t b "
                                 << "a b";
    QTest::newRow("empty") << ""
                           << "topic";
    QTest::newRow("accents") << QStringLiteral("\u00c5ngstr\u00f6m \u00df \u0142 \ufb01")
                             << "Angstrom ss l fi";
    QTest::newRow("other letters") << QStringLiteral("\u4e2d\U0001f600") << "u4e2du1f600";
}

void TestHelpBuildUnits::keysAreCleanAndUnique()
{
    QFETCH(QString, wanted);
    QFETCH(QString, key);
    TopicKeys keys;
    keys.Take(QStringLiteral("First"), QString());
    keys.Take(QStringLiteral("twice"), QString());
    keys.Take(QStringLiteral("folder-twice"), QString());
    const QString qualified = QLatin1String("folder-") + wanted.toLower();
    QCOMPARE(keys.Take(wanted, qualified), key);

    // However long, what is left is a key of its own.
    const QString padding(200, QLatin1Char('x'));
    QSet<QString> taken;
    for (int i = 0; i < 12; ++i) {
        const QString longKey = keys.Take(padding + wanted, padding + wanted);
        QVERIFY(longKey.size() <= 127 && longKey.toUtf8().size() == longKey.size());
        taken.insert(longKey.toLower());
    }
    QCOMPARE(taken.size(), 12);
    QVERIFY(TopicKeys::Clean(padding + QLatin1Char('a')) != TopicKeys::Clean(padding + QLatin1Char('b')));
}

void TestHelpBuildUnits::pathsAreToldApart()
{
    TopicPaths paths;
    const QList<QPair<QString, QString>> taken{
        {QStringLiteral("b/a/x.html"), QStringLiteral("b/a/x.html")},
        {QStringLiteral("a/x.html"), QStringLiteral("a/x-2.html")},
        {QStringLiteral("c/b/a/x.html"), QStringLiteral("c/b/a/x.html")},
        {QStringLiteral("A/X.html"), QStringLiteral("A/X-3.html")},
        {QStringLiteral("p-q.html"), QStringLiteral("p-q.html")},
        {QStringLiteral("p_q.html"), QStringLiteral("p_q-2.html")},
        {QStringLiteral("r_s.html"), QStringLiteral("r_s.html")},
        {QStringLiteral("r-s.html"), QStringLiteral("r-s.html")},
        {QStringLiteral(" it's/50%.html"), QStringLiteral("-it-s/50-.html")},
        {QStringLiteral("no dot"), QStringLiteral("no-dot")},
        {QStringLiteral("no.dot/no dot"), QStringLiteral("no.dot/no-dot")},
        {QStringLiteral("no.dot/NO DOT"), QStringLiteral("no.dot/NO-DOT-2")},
    };
    for (const auto& pair : taken)
        QCOMPARE(paths.Take(pair.first), pair.second);
}

void TestHelpBuildUnits::sheetReferencesAreFound_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("found");

    QTest::newRow("plain") << "a{b:url(x.png)} c{d:URL( 'y z.png' )}"
                           << "url x.png; url y z.png";
    QTest::newRow("escapes") << "a{b:url(x\\).png), url(\"\\\"\\41 b\"), url(a\\000042c)}"
                             << "url x).png; url \"Ab; url aBc";
    QTest::newRow("comments and strings")
        << "/* url(x) @import 'y'; */ a{content:\"url(z)\\\" url(z)\"; b:url(w)}"
        << "url w";
    QTest::newRow("imports") << "@import 'a.css';@IMPORT url(b.css) print;\n@import/**/\"c.css\""
                             << "import a.css; import b.css print; import c.css";
    QTest::newRow("another function") << "a{b:my-url(x)} c{d:curl(y)}"
                                      << "";
    QTest::newRow("cut off") << "a{b:url(x"
                             << "url x";
    QTest::newRow("cut off string") << "a{b:url('x"
                                    << "url x";
    QTest::newRow("string without end") << "a{content:'x\n} b{c:url(y)}"
                                        << "url y";
    QTest::newRow("cut off comment") << "/* url(x)"
                                     << "";
    QTest::newRow("cut off escape") << "a{b:url(x\\"
                                    << "url x";
}

void TestHelpBuildUnits::sheetReferencesAreFound()
{
    QFETCH(QString, sheet);
    QFETCH(QString, found);
    QStringList references;
    for (const CssReference& reference : ScanStyleSheet(sheet)) {
        const QString kind = reference.isImport ? QStringLiteral("import ") : QStringLiteral("url ");
        references << QString(kind + reference.value + QLatin1Char(' ') + reference.media)
                          .remove(QChar::Null)
                          .trimmed();
        QVERIFY(sheet.mid(reference.begin)
                    .startsWith(reference.isImport ? QLatin1String("@import") : QLatin1String("url("),
                                Qt::CaseInsensitive));
        QVERIFY(reference.end <= sheet.size());
    }
    QCOMPARE(references.join(QLatin1String("; ")), found);
}

void TestHelpBuildUnits::scriptStringsAreFound_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("strings");

    QTest::newRow("both quotes") << QByteArray("a('x', \"y'z\");") << "x|y'z";
    QTest::newRow("comments") << QByteArray("// don't 'x'\n/* \"y\" */ a('z')") << "z";
    QTest::newRow("escapes are left alone") << QByteArray("a('x\\'y', 'z')") << "z";
    QTest::newRow("template") << QByteArray("a(`'x' \\` \"y\"`, 'z')") << "z";
    QTest::newRow("regular expressions") << QByteArray("a = /'[/\"]/; b(/\\/'/g, 'x'); return /'/") << "x";
    QTest::newRow("division") << QByteArray("a = b / 'x' / (c) / 'y' / d[1] / 'z'") << "x|y|z";
    QTest::newRow("keys") << QByteArray("{'x': 'y', \"z\" : 1} ? 'u' : 'v'") << "(x)|y|(z)|u|v";
    QTest::newRow("line end in a string") << QByteArray("a('x\n'y')") << "y";
    QTest::newRow("cut off") << QByteArray("a('x\\") << "";
    QTest::newRow("cut off comment") << QByteArray("/* 'x'") << "";
    QTest::newRow("cut off expression") << QByteArray("a = /x\\") << "";
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

void TestHelpBuildUnits::editsNest()
{
    const QByteArray source("0123456789");
    EditList edits;
    edits.Insert(10, "E");
    edits.Replace({2, 3}, "inner");
    edits.Replace({1, 4}, "OUTER", Mark::Scripts);
    edits.Insert(1, "a");
    edits.Insert(1, "b");
    edits.Insert(3, "swallowed");
    edits.Remove({8, 9});
    edits.Insert(0, "S");
    const EditedText edited = edits.Apply(source, {{5, 7}, {0, 2}});
    QCOMPARE(edited.text, QByteArray("S0abOUTER45679E"));
    QCOMPARE(edited.marks.size(), std::size_t{1});
    QCOMPARE(edited.text.mid(edited.marks[0].range.begin, 5), QByteArray("OUTER"));
    // What is left of the raw stretches, in order.
    QCOMPARE(edited.raw.size(), std::size_t{2});
    QCOMPARE(edited.text.mid(edited.raw[0].begin, edited.raw[0].end - edited.raw[0].begin), QByteArray("0"));
    QCOMPARE(edited.text.mid(edited.raw[1].begin, edited.raw[1].end - edited.raw[1].begin), QByteArray("56"));
}

QTEST_GUILESS_MAIN(TestHelpBuildUnits)
#include "tst_yxhelpbuild_units.moc"
