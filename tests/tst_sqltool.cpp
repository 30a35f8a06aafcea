#include "diagnostics.h"
#include "helpdatabase.h"
#include "operation.h"
#include "sqltool.h"
#include "testtable.h"

#include <QSqlDatabase>

#include <functional>

namespace {

const QLatin1String kLoadContents("--load-contents");

QList<TreeViewModel> Contents(const QString& path)
{
    QList<TreeViewModel> list;
    Operate(path, [&](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list); });
    return list;
}

/// What the readers fill, and all of them, one after the other.
struct Outputs
{
    QList<TreeViewModel> list;
    QList<TreeFavoritesModel> favorites;
    QList<JsFileContent> scripts;
    QHash<QString, QString> cache;
    TreeViewModel node;
    QString html;
    QString images;

    std::vector<std::function<bool(SQLTOOL&)>> Readers()
    {
        return {[this](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list); },
                [this](SQLTOOL& tool) { return tool.GetNodeInfoFromDB("%"_s, node); },
                [this](SQLTOOL& tool) { return tool.GetOnlineHomePage(html); },
                [this](SQLTOOL& tool) { return tool.ReadHtmlFromDB(node, html, images); },
                [this](SQLTOOL& tool) { return tool.ReadImageFromDB({"a.png"_s}, cache, QString()); },
                [this](SQLTOOL& tool) { return tool.ReadJsFromDB(scripts, false); },
                [this](SQLTOOL& tool) { return tool.GetSearchFavoriteFromDB(favorites); },
                [](SQLTOOL& tool) { return tool.UpdataFavoriteDB({TreeFavoritesModel()}); }};
    }
    bool Empty() const
    {
        return list.isEmpty() && favorites.isEmpty() && scripts.isEmpty() && cache.isEmpty() &&
               node.Id == 0 && html.isEmpty() && images.isEmpty();
    }
};

} // namespace

class TestSqlTool : public QObject
{
    Q_OBJECT

private slots:
    void recordsCompareByWhatNamesTheTopic();
    void connectionIsReusedByItsName();
    void openingNeverCreatesAFile();
    void contentsKeepRowOrderAndOneLevelOfChildren();
    void contentsRecordsLeaveThePageInTheDatabase();
    void brokenParentsEndTheProgram();
    void closedConnectionLeavesOutputsAlone();
    void failingStatementsLookLikeEmptyResults();
    void lockedDatabaseIsGivenUpInTime();
    void missingColumnIsLoggedOnceAndReadsEmpty();
};

void TestSqlTool::recordsCompareByWhatNamesTheTopic()
{
    using Record = TreeFavoritesModel;
    using Change = void (*)(Record&);
    // Whether a record is still the same node, and the same favourite, after the change.
    for (const auto& [outcome, change] :
         std::initializer_list<std::pair<const char*, Change>>{{"10", [](Record& r) { r.Id = 9; }},
                                                               {"10", [](Record& r) { r.Removed = true; }},
                                                               {"11", [](Record& r) { r.TopParentId = 9; }},
                                                               {"11", [](Record& r) { r.Html = "x"_s; }},
                                                               {"00", [](Record& r) { r.FileName = "x"_s; }},
                                                               {"00", [](Record& r) { r.FilePath = "x"_s; }},
                                                               {"00", [](Record& r) { r.KeyName = "x"_s; }},
                                                               {"00", [](Record& r) { r.Title = "x"_s; }}}) {
        Record changed;
        change(changed);
        QCOMPARE(SameNode(Record(), changed), outcome[0] == '1');
        QCOMPARE(Record() == changed, outcome[1] == '1');
    }
}

void TestSqlTool::connectionIsReusedByItsName()
{
    const HelpDatabase one("One"_s);
    const HelpDatabase two("Two"_s);
    const LogCapture log;
    {
        SQLTOOL left(one.Path(), SQLTOOL::DefaultConnection());
        QVERIFY(left.OpenDb());
        QVERIFY(left.OpenDb());
    }
    QVERIFY(QSqlDatabase::contains(SQLTOOL::DefaultConnection()));
    QVERIFY(!QSqlDatabase::database(SQLTOOL::DefaultConnection(), false).isOpen());
    {
        SQLTOOL next(two.Path(), SQLTOOL::DefaultConnection());
        QCOMPARE(QSqlDatabase::database(SQLTOOL::DefaultConnection(), false).databaseName(), two.Path());
        QVERIFY(next.OpenDb());
        next.CloseDb();
    }
    QVERIFY(!QSqlDatabase::contains(SQLTOOL::DefaultConnection()));
    QCOMPARE(log.Count("successful!"_s), 3);
    QCOMPARE(log.Count("still in use"_s), 0);
}

void TestSqlTool::openingNeverCreatesAFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("none.db"_s);
    for (const QString& name : {path, dir.path(), QString()}) {
        const LogCapture log;
        SQLTOOL tool(name, SQLTOOL::DefaultConnection());
        QVERIFY(!tool.OpenDb());
        QCOMPARE(log.Count("fail to connect"_s), 1);
        tool.CloseDb();
    }
    QVERIFY(!QFile::exists(path));

    // A connection that was left registered must not bring a file back that has gone meanwhile.
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    {
        SQLTOOL left(path, SQLTOOL::DefaultConnection());
        QVERIFY(left.OpenDb());
    }
    QVERIFY(QFile::remove(path));
    QVERIFY(!Operate(path, [](SQLTOOL& tool) { return tool.OpenDb(); }));
    QVERIFY(!QFile::exists(path));
}

void TestSqlTool::contentsKeepRowOrderAndOneLevelOfChildren()
{
    const QString topics = "Home\n  Basics\n    Install\n    Start\n  Reference\n~ Legal\nSecond root\n"_s;
    const HelpDatabase database(topics);
    const QList<TreeViewModel> list = Contents(database.Path());
    QCOMPARE(ContentsText(list), topics);
    QStringList children;
    for (const TreeViewModel& row : list) {
        for (const TreeViewModel& child : row.Children) {
            children.append(row.FileName + QLatin1Char('>') + child.FileName);
            QVERIFY(child.Children.isEmpty());
        }
    }
    QCOMPARE(children.join(QLatin1Char(' ')), "Home>Basics Home>Reference Basics>Install Basics>Start"_s);
    QVERIFY(Contents(HelpDatabase().Path()).isEmpty());
}

void TestSqlTool::contentsRecordsLeaveThePageInTheDatabase()
{
    const HelpDatabase database(
        "Home | title= | key=K | path=a\\b.html | category=4 | subtitle=S | top=7 | images=i.png | favorite\n"
        "Number | html=321"_s);
    const QList<TreeViewModel> list = Contents(database.Path());
    const TreeViewModel& home = list.at(0);
    QCOMPARE(QStringList({home.Title, home.KeyName, home.FilePath, home.SubTitle, home.ImagePath})
                 .join(QLatin1Char('|')),
             "Home|K|a\\b.html|S|"_s);
    QVERIFY(home.Category == 4 && home.TopParentId == 0);
    QCOMPARE(home.Html, QString(1, QChar(0)));
    // 321 is 256 more than the code of "A".
    QCOMPARE(list.at(1).Html, "A"_s);

    QList<TreeFavoritesModel> favorites;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& t) { return t.GetSearchFavoriteFromDB(favorites); }));
    QCOMPARE(favorites.size(), 1);
    const TreeFavoritesModel& favorite = favorites.first();
    QCOMPARE(favorite.FileName + favorite.KeyName + favorite.FilePath, "HomeKa\\b.html"_s);
    QVERIFY(favorite.Id == 1 && favorite.Title.isEmpty() && favorite.Html.isEmpty() && !favorite.Removed);
}

void TestSqlTool::brokenParentsEndTheProgram()
{
    for (const auto& [topics, row] : std::vector<std::pair<const char*, const char*>>{
             {"Home\nChild | parent=3\nParent", "ID 2 (\"Child\") names parent 3"},
             {"Home\nChild | parent=2", "ID 2 (\"Child\") names parent 2"},
             {"Home\nParent | id=7\nChild | parent=7", "ID 8 (\"Child\") names parent 7"},
             {"Home\nChild | parent=-1", "ID 2 (\"Child\") names parent -1"}}) {
        const HelpDatabase database(QString::fromUtf8(topics));
        const QString message = FatalMessage({kLoadContents, database.Path()});
        QVERIFY2(message.contains(QLatin1String(row)), qUtf8Printable(message));
    }
}

void TestSqlTool::closedConnectionLeavesOutputsAlone()
{
    const LogCapture log;
    SQLTOOL tool("/nowhere/none.db"_s, SQLTOOL::DefaultConnection());
    Outputs out;
    out.list.append(TreeViewModel());
    out.favorites.append(TreeFavoritesModel());
    out.node.FileName = out.html = out.images = "before"_s;
    for (const auto& reader : out.Readers())
        QVERIFY(!reader(tool));
    QVERIFY(!tool.ReadComplete());
    QCOMPARE(out.list.size() + out.favorites.size(), 2);
    QCOMPARE(QString(out.node.FileName + out.html + out.images), "beforebeforebefore"_s);
    QCOMPARE(log.Count("yxhelp.store: database not open"_s), 8);
    tool.CloseDb();
}

void TestSqlTool::failingStatementsLookLikeEmptyResults()
{
    for (const auto& damage : std::vector<std::function<void(HelpDatabase&)>>{
             [](HelpDatabase& d) { d.Overwrite("no database at all"); },
             [](HelpDatabase& d) { d.Truncate(4096); }, [](HelpDatabase& d) { d.Truncate(5000); },
             [](HelpDatabase& d) { d.Truncate(0); },
             [](HelpDatabase& d) {
                 d.Execute("DROP TABLE HelpFileList"_s);
                 d.Execute("DROP TABLE ImageList"_s);
             }}) {
        HelpDatabase database("Home | favorite"_s);
        database.AddImage("a.png"_s, "x");
        damage(database);
        Outputs out;
        for (const auto& reader : out.Readers()) {
            const LogCapture log;
            QVERIFY(Operate(database.Path(),
                            [&](SQLTOOL& tool) { return reader(tool) && !tool.ReadComplete(); }));
            QVERIFY(log.Count("statement failed"_s) > 0 && out.Empty());
        }
    }
}

void TestSqlTool::lockedDatabaseIsGivenUpInTime()
{
    const HelpDatabase database("Home"_s);
    {
        const DatabaseLock lock(database.Path());
        const LogCapture log;
        QElapsedTimer timer;
        timer.start();
        QHash<QString, QString> cache;
        QVERIFY(Operate(database.Path(), [&](SQLTOOL& tool) {
            return tool.ReadImageFromDB({"a"_s, "b"_s, "c"_s, "d"_s}, cache, QString());
        }));
        QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(log.Count("database is locked"_s), 4);
    }
    QCOMPARE(Contents(database.Path()).size(), 1);
}

void TestSqlTool::missingColumnIsLoggedOnceAndReadsEmpty()
{
    HelpDatabase database("Home\nNext\nLast"_s);
    database.Execute("ALTER TABLE HelpFileList DROP COLUMN ParentID"_s);
    const LogCapture log;
    const QList<TreeViewModel> list = Contents(database.Path());
    QCOMPARE(list.size(), 3);
    QCOMPARE(list.last().FileName, "Last"_s);
    QCOMPARE(list.last().ParentId, 0);
    QCOMPARE(log.Count("no column ParentID"_s), 1);
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().value(1) == kLoadContents) {
        Contents(QCoreApplication::arguments().value(2));
        return 0;
    }
    TestSqlTool test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sqltool.moc"
