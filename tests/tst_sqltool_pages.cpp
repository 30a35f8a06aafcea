#include "diagnostics.h"
#include "helpdatabase.h"
#include "imagehelper.h"
#include "operation.h"
#include "sqltool.h"
#include "testtable.h"

namespace {

QHash<QString, QString> Images(const QString& path, const QStringList& keys)
{
    QHash<QString, QString> cache;
    Operate(path, [&](SQLTOOL& tool) { return tool.ReadImageFromDB(keys, cache, "en-US"_s); });
    return cache;
}

} // namespace

class TestSqlToolPages : public QObject
{
    Q_OBJECT

private slots:
    void nodeIsFoundByPattern();
    void pageIsLookedUpInThreeSteps();
    void oddBytesInAPageDoNoHarm();
    void imagesTravelInlineUpToTheirLimit();
    void largeImagesGoToFiles();
    void scriptsAreTheRowsMarkedAsSuch();
};

void TestSqlToolPages::nodeIsFoundByPattern()
{
    const HelpDatabase database(
        "~ Loose\nOne | path=a\\one.html\nTwo | path=a\\two.html\nIt's | path=a\\it's.html"_s);
    for (const char* line :
         {"A\\ONE.html|One", "a\\t_o.html|Two", "a\\%|One", "a\\it's.html|", "one.html|"}) {
        const QString path = Cells(line)[0];
        TreeViewModel node;
        node.FileName = "before"_s;
        node.ImagePath = "kept"_s;
        const LogCapture log;
        QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetNodeInfoFromDB(path, node); }));
        QCOMPARE(node.FileName, Cells(line)[1]);
        QCOMPARE(node.Id != 0, !node.FileName.isEmpty());
        QCOMPARE(node.ImagePath, "kept"_s);
        QCOMPARE(log.Count("statement failed"_s), path.contains(QLatin1Char('\'')) ? 1 : 0);
    }
    // The home page is the first root; an empty table has none.
    QString home = "before"_s;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetOnlineHomePage(home); }));
    QCOMPARE(home, "a\\one.html"_s);
    QVERIFY(Operate(HelpDatabase().Path(), [&](SQLTOOL& tool) { return tool.GetOnlineHomePage(home); }));
    QVERIFY(home.isEmpty());
}

void TestSqlToolPages::pageIsLookedUpInThreeSteps()
{
    const HelpDatabase database("One | key=one | path=p.html | images=i1 | html=1\n"
                                "Two | key=two | path=p.html | images=i2 | html=2\n"
                                "Empty | key=e | path=e.html | html=\n"
                                "D | key=d | path=d.html | html=4\n"
                                "D | key=d | path=d.html | html=5\n"
                                "Quote | key=q | path=o'.html | html=6\n"
                                "Marker | key=%3 | path=xy | html=7"_s);
    // Path, key, page and images. Of the path with a marker, the path takes its place first, and the key goes
    // into what it brought along.
    for (const char* line : {"p.html|one|1 i1", "p.html|none|2 i2", "none|one|1 i1", "e.html|two|2 i2",
                             "d.html|d|5 ", "none|none| ", "x%1|y|7 ", "o'.html|one|1 i1"}) {
        const QStringList cells = Cells(line);
        TreeViewModel node;
        node.FilePath = cells.at(0);
        node.KeyName = cells.at(1);
        QString html;
        QString images;
        const LogCapture log;
        QVERIFY(
            Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadHtmlFromDB(node, html, images); }));
        QVERIFY2(QString(html + QLatin1Char(' ') + images) == cells.at(2), line);
    }
}

void TestSqlToolPages::oddBytesInAPageDoNoHarm()
{
    HelpDatabase database("Nul | key=nul\nBroken | key=broken\nBlob | key=blob"_s);
    database.Execute("UPDATE HelpFileList SET Html = CAST(x'61006200' AS TEXT) WHERE ID = 1"_s);
    database.Execute("UPDATE HelpFileList SET Html = CAST(x'61FF62C3' AS TEXT) WHERE ID = 2"_s);
    database.Execute("UPDATE HelpFileList SET Html = x'C3A4' WHERE ID = 3"_s);
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
    QCOMPARE(page("blob"), "\u00e4"_s);
    QList<TreeViewModel> list;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list); }));
    QCOMPARE(list.size(), 3);
}

void TestSqlToolPages::imagesTravelInlineUpToTheirLimit()
{
    const QByteArray data(20480, '\x7f');
    HelpDatabase database;
    // The type is what the place of the dot, counted from the right, leaves of the key.
    const QHash<QString, QString> types{{"images/pic.png"_s, "ges/pic.png"_s},
                                        {"a.png"_s, "ng"_s},
                                        {"picture"_s, QString()},
                                        {".png"_s, "g"_s}};
    QHash<QString, QString> expected;
    for (const QString& key : types.keys()) {
        database.AddImage(key, data);
        database.AddImage(key, "second row");
        expected[key] = "data:image/%1;base64,"_s.arg(types[key]) + QLatin1String(data.toBase64());
    }
    database.AddImage("it's.png"_s, "x");
    const LogCapture log;
    QCOMPARE(Images(database.Path(), types.keys() + QStringList{"it's.png"_s, "A.png"_s, QString()}),
             expected);
    QVERIFY(Images(database.Path(), {}).isEmpty());
}

void TestSqlToolPages::largeImagesGoToFiles()
{
    const QString key = "images/sub/large.bmp"_s;
    HelpDatabase database;
    database.AddImage(key, NoiseImage(100, 100, "bmp"));
    database.AddImage("no/image.png"_s, QByteArray(20481, 'x'));
    const QHash<QString, QString> cache = Images(database.Path(), {key, "no/image.png"_s});
    const QString dir = ImageHelper().DatedDir("en-US"_s);
    QCOMPARE(cache.value(key), dir + "/images_sub_large.bmp"_s);
    QVERIFY(QFile::exists(cache.value(key)));
    QCOMPARE(cache.value("no/image.png"_s), dir + "/no_image.png"_s);

    // A file takes the place of what the cache has; inline data doesn't.
    QHash<QString, QString> filled{{key, "old"_s}, {"s.png"_s, "old"_s}};
    database.AddImage("s.png"_s, "small");
    Operate(database.Path(), [&](SQLTOOL& tool) {
        return tool.ReadImageFromDB({key, "s.png"_s}, filled, "en-US"_s);
    });
    QCOMPARE(filled.value(key), dir + "/images_sub_large.bmp"_s);
    QCOMPARE(filled.value("s.png"_s), "old"_s);
}

void TestSqlToolPages::scriptsAreTheRowsMarkedAsSuch()
{
    HelpDatabase database("Home | body=js stands in this page"_s);
    database.AddScript("a.js"_s, "a()"_s);
    QList<JsFileContent> scripts;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ReadJsFromDB(scripts, true); }));
    QCOMPARE(scripts.size(), 1);
    QCOMPARE(scripts.last().FileName + scripts.last().Content, "a.jsa()"_s);
}

QTEST_GUILESS_MAIN(TestSqlToolPages)
#include "tst_sqltool_pages.moc"
