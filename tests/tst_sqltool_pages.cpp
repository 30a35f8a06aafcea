#include "diagnostics.h"
#include "helpdatabase.h"
#include "imagehelper.h"
#include "operation.h"
#include "sqltool.h"

#include <QtTest>

namespace {

QHash<QString, QString> Images(const QString& path, const QStringList& keys)
{
    QHash<QString, QString> cache;
    Operate(path, [&](SQLTOOL& tool) { return tool.ReadImageFromDB(keys, cache, QStringLiteral("en-US")); });
    return cache;
}

} // namespace

class TestSqlToolPages : public QObject
{
    Q_OBJECT

private slots:
    void nodeIsFoundByPattern_data();
    void nodeIsFoundByPattern();
    void homePageIsTheFirstRoot();
    void pageIsLookedUpInThreeSteps_data();
    void pageIsLookedUpInThreeSteps();
    void oddBytesInAPageDoNoHarm();
    void imagesTravelInlineUpToTheirLimit_data();
    void imagesTravelInlineUpToTheirLimit();
    void largeImagesGoToFiles();
    void imageKeysThatMatchNothingGetNoEntry();
    void scriptsAreTheRowsMarkedAsSuch();
    void marksAreRewrittenAsAWhole();
};

void TestSqlToolPages::nodeIsFoundByPattern_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("id");
    QTest::newRow("exact") << QStringLiteral("a\\one.html") << 1;
    QTest::newRow("other case") << QStringLiteral("A\\ONE.html") << 1;
    QTest::newRow("one of any") << QStringLiteral("a\\t_o.html") << 2;
    QTest::newRow("first of several") << QStringLiteral("a\\%") << 1;
    QTest::newRow("quote") << QStringLiteral("a\\it's.html") << 0;
    QTest::newRow("none") << QStringLiteral("one.html") << 0;
}

void TestSqlToolPages::nodeIsFoundByPattern()
{
    QFETCH(QString, path);
    QFETCH(int, id);
    const HelpDatabase database(QStringLiteral("One | path=a\\one.html\n"
                                               "Two | path=a\\two.html\n"
                                               "It's | path=a\\it's.html"));
    TreeViewModel node;
    node.FileName = QStringLiteral("before");
    node.ImagePath = QStringLiteral("kept");
    const LogCapture log;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetNodeInfoFromDB(path, node); }));
    QCOMPARE(node.Id, id);
    QCOMPARE(node.FileName, QStringList({QString(), QStringLiteral("One"), QStringLiteral("Two")}).at(id));
    QCOMPARE(node.ImagePath, QStringLiteral("kept"));
    QCOMPARE(log.Count(QStringLiteral("statement failed")), path.contains(QLatin1Char('\'')) ? 1 : 0);
}

void TestSqlToolPages::homePageIsTheFirstRoot()
{
    const HelpDatabase database(QStringLiteral("~ Loose\nHome | path=http://host/\nSecond root"));
    const HelpDatabase empty;
    QString path = QStringLiteral("before");
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetOnlineHomePage(path); }));
    QCOMPARE(path, QStringLiteral("http://host/"));
    QVERIFY(Operate(empty.Path(), [&](SQLTOOL& tool) { return tool.GetOnlineHomePage(path); }));
    QVERIFY(path.isEmpty());
}

void TestSqlToolPages::pageIsLookedUpInThreeSteps_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("found");
    const QString p = QStringLiteral("p.html");
    const QString none = QStringLiteral("none");
    QTest::newRow("path and key") << p << QStringLiteral("one") << QStringLiteral("1 i1");
    QTest::newRow("path alone, last row") << p << none << QStringLiteral("2 i2");
    QTest::newRow("key alone") << none << QStringLiteral("one") << QStringLiteral("1 i1");
    QTest::newRow("empty page is passed over")
        << QStringLiteral("e.html") << QStringLiteral("two") << QStringLiteral("2 i2");
    QTest::newRow("last of equal rows")
        << QStringLiteral("d.html") << QStringLiteral("d") << QStringLiteral("5 ");
    QTest::newRow("nothing") << none << none << QStringLiteral(" ");
    // The path takes its place first, and the key goes into what it brought along.
    QTest::newRow("marker in the path")
        << QStringLiteral("x%1") << QStringLiteral("y") << QStringLiteral("7 ");
    QTest::newRow("quote in the path")
        << QStringLiteral("o'.html") << QStringLiteral("one") << QStringLiteral("1 i1");
}

void TestSqlToolPages::pageIsLookedUpInThreeSteps()
{
    QFETCH(QString, path);
    QFETCH(QString, key);
    QFETCH(QString, found);
    const HelpDatabase database(QStringLiteral("One | key=one | path=p.html | images=i1 | html=1\n"
                                               "Two | key=two | path=p.html | images=i2 | html=2\n"
                                               "Empty | key=e | path=e.html | html=\n"
                                               "D | key=d | path=d.html | html=4\n"
                                               "D | key=d | path=d.html | html=5\n"
                                               "Quote | key=q | path=o'.html | html=6\n"
                                               "Marker | key=%3 | path=xy | html=7"));
    TreeViewModel node;
    node.FilePath = path;
    node.KeyName = key;
    QString html;
    QString images;
    const LogCapture log;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadHtmlFromDB(node, html, images); }));
    QCOMPARE(QString(html + QLatin1Char(' ') + images), found);
}

void TestSqlToolPages::oddBytesInAPageDoNoHarm()
{
    HelpDatabase database(QStringLiteral("Nul | key=nul\nBroken | key=broken\nBlob | key=blob"));
    database.Execute(QStringLiteral("UPDATE HelpFileList SET Html = CAST(x'61006200' AS TEXT) WHERE ID = 1"));
    database.Execute(QStringLiteral("UPDATE HelpFileList SET Html = CAST(x'61FF62C3' AS TEXT) WHERE ID = 2"));
    database.Execute(QStringLiteral("UPDATE HelpFileList SET Html = x'C3A4' WHERE ID = 3"));
    const auto page = [&](const char* key) {
        TreeViewModel node;
        node.KeyName = QLatin1String(key);
        QString html;
        QString images;
        Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadHtmlFromDB(node, html, images); });
        return html;
    };
    QCOMPARE(page("nul"), QString::fromUtf8("a\0b\0", 4));
    QVERIFY(page("broken").startsWith(QLatin1Char('a')) && page("broken").contains(QLatin1Char('b')));
    QCOMPARE(page("blob"), QStringLiteral("\u00e4"));
    QList<TreeViewModel> list;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list); }));
    QCOMPARE(list.size(), 3);
}

void TestSqlToolPages::imagesTravelInlineUpToTheirLimit_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("type");
    QTest::newRow("in a directory") << QStringLiteral("images/pic.png") << QStringLiteral("ges/pic.png");
    QTest::newRow("short") << QStringLiteral("a.png") << QStringLiteral("ng");
    QTest::newRow("no dot") << QStringLiteral("picture") << QString();
    QTest::newRow("hidden") << QStringLiteral(".png") << QStringLiteral("g");
}

void TestSqlToolPages::imagesTravelInlineUpToTheirLimit()
{
    QFETCH(QString, key);
    QFETCH(QString, type);
    const QByteArray data(20480, '\x7f');
    HelpDatabase database;
    database.AddImage(key, data);
    database.AddImage(key, "second row");
    const QString value = QStringLiteral("data:image/%1;base64,").arg(type) + QLatin1String(data.toBase64());
    QCOMPARE(Images(database.Path(), {key}), (QHash<QString, QString>{{key, value}}));
}

void TestSqlToolPages::largeImagesGoToFiles()
{
    const QString key = QStringLiteral("images/sub/large.bmp");
    HelpDatabase database;
    database.AddImage(key, NoiseImage(100, 100, "bmp"));
    database.AddImage(QStringLiteral("no/image.png"), QByteArray(20481, 'x'));
    const QHash<QString, QString> cache = Images(database.Path(), {key, QStringLiteral("no/image.png")});
    const QString dir = ImageHelper().DatedDir(QStringLiteral("en-US"));
    QCOMPARE(cache.value(key), dir + QStringLiteral("/images_sub_large.bmp"));
    QVERIFY(QFile::exists(cache.value(key)));
    QCOMPARE(cache.value(QStringLiteral("no/image.png")), dir + QStringLiteral("/no_image.png"));

    // A file takes the place of what the cache has; inline data doesn't.
    QHash<QString, QString> filled{{key, QStringLiteral("old")},
                                   {QStringLiteral("s.png"), QStringLiteral("old")}};
    database.AddImage(QStringLiteral("s.png"), "small");
    Operate(database.Path(), [&](SQLTOOL& tool) {
        return tool.ReadImageFromDB({key, QStringLiteral("s.png")}, filled, QStringLiteral("en-US"));
    });
    QCOMPARE(filled.value(key), dir + QStringLiteral("/images_sub_large.bmp"));
    QCOMPARE(filled.value(QStringLiteral("s.png")), QStringLiteral("old"));
}

void TestSqlToolPages::imageKeysThatMatchNothingGetNoEntry()
{
    HelpDatabase database;
    database.AddImage(QStringLiteral("it's.png"), "x");
    database.AddImage(QStringLiteral("a.png"), "x");
    const LogCapture log;
    QVERIFY(
        Images(database.Path(), {QStringLiteral("it's.png"), QStringLiteral("A.png"), QString()}).isEmpty());
    QHash<QString, QString> cache;
    QVERIFY(
        Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadImageFromDB({}, cache, QString()); }));
}

void TestSqlToolPages::scriptsAreTheRowsMarkedAsSuch()
{
    HelpDatabase database(QStringLiteral("Home | body=js stands in this page"));
    database.AddScript(QStringLiteral("a.js"), QStringLiteral("a()"));
    database.AddScript(QStringLiteral("b.js"), QStringLiteral("b()"));
    for (const bool flag : {false, true}) {
        QList<JsFileContent> scripts;
        QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadJsFromDB(scripts, flag); }));
        QCOMPARE(scripts.size(), 2);
        QCOMPARE(scripts.last().FileName + scripts.last().Content, QStringLiteral("b.jsb()"));
    }
}

void TestSqlToolPages::marksAreRewrittenAsAWhole()
{
    const HelpDatabase database(QStringLiteral("A | favorite\nB\nC | favorite"));
    const auto write = [&](const QList<int>& ids) {
        QList<TreeFavoritesModel> list;
        for (const int id : ids) {
            TreeFavoritesModel favorite;
            favorite.Id = id;
            list.append(favorite);
        }
        return Operate(database.Path(), [&](SQLTOOL& tool) { return tool.UpdataFavoriteDB(list); });
    };
    QVERIFY(write({2, 3}));
    QCOMPARE(database.Favorites(), QStringLiteral("2 3"));
    QVERIFY(write({}));
    QCOMPARE(database.Favorites(), QString());
}

QTEST_GUILESS_MAIN(TestSqlToolPages)
#include "tst_sqltool_pages.moc"
