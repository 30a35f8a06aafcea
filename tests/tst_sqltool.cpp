#include "diagnostics.h"
#include "helpdatabase.h"
#include "operation.h"
#include "sqltool.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include <functional>

namespace {

const QLatin1String kLoadContents("--load-contents");

QList<TreeViewModel> Contents(const QString& path)
{
    QList<TreeViewModel> list;
    Operate(path, [&](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list); });
    return list;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(TreeFavoritesModel&)>)
Q_DECLARE_METATYPE(std::function<void(HelpDatabase&)>)

class TestSqlTool : public QObject
{
    Q_OBJECT

private slots:
    void recordsCompareByWhatNamesTheTopic_data();
    void recordsCompareByWhatNamesTheTopic();
    void connectionIsReusedByItsName();
    void openingNeverCreatesAFile();
    void contentsKeepRowOrderAndOneLevelOfChildren();
    void contentsRecordsLeaveThePageInTheDatabase();
    void brokenParentsEndTheProgram_data();
    void brokenParentsEndTheProgram();
    void closedConnectionLeavesOutputsAlone();
    void failingStatementsLookLikeEmptyResults_data();
    void failingStatementsLookLikeEmptyResults();
    void lockedDatabaseIsGivenUpInTime();
    void missingColumnIsLoggedOnceAndReadsEmpty();
    void readOnlyDatabaseCanBeRead();
    void utilitiesWriteAndCount();
    void batchesAreWrittenRowByRow();
};

void TestSqlTool::recordsCompareByWhatNamesTheTopic_data()
{
    using Change = std::function<void(TreeFavoritesModel&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("sameNode");
    QTest::addColumn<bool>("equal");
    const QString other = QStringLiteral("other");
    const auto row = [](const char* name, bool sameNode, bool equal, const Change& change) {
        QTest::newRow(name) << change << sameNode << equal;
    };
    row("nothing", true, true, [](TreeFavoritesModel&) {});
    row("Id", true, false, [](TreeFavoritesModel& r) { r.Id = 9; });
    row("Removed", true, false, [](TreeFavoritesModel& r) { r.Removed = true; });
    row("TopParentId", true, true, [](TreeFavoritesModel& r) { r.TopParentId = 9; });
    row("Html", true, true, [=](TreeFavoritesModel& r) { r.Html = other; });
    row("ImagePath", true, true, [=](TreeFavoritesModel& r) { r.ImagePath = other; });
    row("Children", true, true, [](TreeFavoritesModel& r) { r.Children.append(TreeViewModel()); });
    row("FileName", false, false, [=](TreeFavoritesModel& r) { r.FileName = other; });
    row("ParentId", false, false, [](TreeFavoritesModel& r) { r.ParentId = 9; });
    row("Spare", false, false, [](TreeFavoritesModel& r) { r.Spare = 9; });
    row("FilePath", false, false, [=](TreeFavoritesModel& r) { r.FilePath = other; });
    row("SubTitle", false, false, [=](TreeFavoritesModel& r) { r.SubTitle = other; });
    row("Category", false, false, [](TreeFavoritesModel& r) { r.Category = 9; });
    row("KeyName", false, false, [=](TreeFavoritesModel& r) { r.KeyName = other; });
    row("Title", false, false, [=](TreeFavoritesModel& r) { r.Title = other; });
}

void TestSqlTool::recordsCompareByWhatNamesTheTopic()
{
    QFETCH(std::function<void(TreeFavoritesModel&)>, change);
    QFETCH(bool, sameNode);
    QFETCH(bool, equal);
    TreeFavoritesModel changed;
    change(changed);
    QCOMPARE(SameNode(TreeFavoritesModel(), changed), sameNode);
    QCOMPARE(TreeFavoritesModel() == changed, equal);
}

void TestSqlTool::connectionIsReusedByItsName()
{
    const HelpDatabase one(QStringLiteral("One"));
    const HelpDatabase two(QStringLiteral("Two"));
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
    QCOMPARE(log.Count(QStringLiteral("successful!")), 3);
    QCOMPARE(log.Count(QStringLiteral("still in use")), 0);
}

void TestSqlTool::openingNeverCreatesAFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("none.db"));
    for (const QString& name : {path, dir.path(), QString()}) {
        const LogCapture log;
        SQLTOOL tool(name, SQLTOOL::DefaultConnection());
        QVERIFY(!tool.OpenDb());
        QCOMPARE(log.Count(QStringLiteral("fail to connect")), 1);
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
    const QString topics = QStringLiteral("Home\n"
                                          "  Basics\n"
                                          "    Install\n"
                                          "    Start\n"
                                          "  Reference\n"
                                          "~ Legal\n"
                                          "Second root\n");
    const HelpDatabase database(topics);
    const QList<TreeViewModel> list = Contents(database.Path());
    QCOMPARE(ContentsText(list), topics);
    for (int i = 0; i < list.size(); ++i)
        QCOMPARE(list.at(i).Id, i + 1);

    QStringList children;
    for (const TreeViewModel& row : list) {
        for (const TreeViewModel& child : row.Children) {
            children.append(row.FileName + QLatin1Char('>') + child.FileName);
            QVERIFY(child.Children.isEmpty());
        }
    }
    QCOMPARE(children.join(QLatin1Char(' ')),
             QStringLiteral("Home>Basics Home>Reference Basics>Install Basics>Start"));
    QVERIFY(Contents(HelpDatabase().Path()).isEmpty());
}

void TestSqlTool::contentsRecordsLeaveThePageInTheDatabase()
{
    HelpDatabase database(QStringLiteral("Home | title= | key=K | path=a\\b.html | category=4 | subtitle=S | "
                                         "top=7 | images=i.png | favorite\n"
                                         "Number | html=321"));
    database.Execute(QStringLiteral("UPDATE HelpFileList SET SubTitle = NULL WHERE ID = 2"));
    const QList<TreeViewModel> list = Contents(database.Path());
    const TreeViewModel& home = list.at(0);
    QCOMPARE(home.Title, QStringLiteral("Home"));
    QCOMPARE(home.KeyName, QStringLiteral("K"));
    QCOMPARE(home.FilePath, QStringLiteral("a\\b.html"));
    QCOMPARE(home.Category, 4);
    QCOMPARE(home.SubTitle, QStringLiteral("S"));
    QCOMPARE(home.Html, QString(1, QChar(0)));
    QCOMPARE(home.TopParentId, 0);
    QVERIFY(home.ImagePath.isEmpty());
    // 321 is 256 more than the code of "A".
    QCOMPARE(list.at(1).Html, QStringLiteral("A"));

    QList<TreeFavoritesModel> favorites;
    QVERIFY(Operate(database.Path(), [&](SQLTOOL& t) { return t.GetSearchFavoriteFromDB(favorites); }));
    QCOMPARE(favorites.size(), 1);
    const TreeFavoritesModel& favorite = favorites.first();
    QCOMPARE(favorite.Id, 1);
    QCOMPARE(favorite.FileName + favorite.KeyName + favorite.FilePath, QStringLiteral("HomeKa\\b.html"));
    QVERIFY(favorite.Title.isEmpty() && favorite.Html.isEmpty() && !favorite.Removed);
}

void TestSqlTool::brokenParentsEndTheProgram_data()
{
    QTest::addColumn<QString>("topics");
    QTest::addColumn<QString>("row");
    QTest::newRow("child before parent") << QStringLiteral("Home\nChild | parent=3\nParent")
                                         << QStringLiteral("ID 2 (\"Child\") names parent 3");
    QTest::newRow("own parent") << QStringLiteral("Home\nChild | parent=2")
                                << QStringLiteral("ID 2 (\"Child\") names parent 2");
    QTest::newRow("gap") << QStringLiteral("Home\nParent | id=7\nChild | parent=7")
                         << QStringLiteral("ID 8 (\"Child\") names parent 7");
    QTest::newRow("negative") << QStringLiteral("Home\nChild | parent=-1")
                              << QStringLiteral("ID 2 (\"Child\") names parent -1");
}

void TestSqlTool::brokenParentsEndTheProgram()
{
    QFETCH(QString, topics);
    QFETCH(QString, row);
    const HelpDatabase database(topics);
    const QString message = FatalMessage({kLoadContents, database.Path()});
    QVERIFY2(message.contains(row), qUtf8Printable(message));
}

void TestSqlTool::closedConnectionLeavesOutputsAlone()
{
    const QString before = QStringLiteral("before");
    const LogCapture log;
    SQLTOOL tool(QStringLiteral("/nowhere/none.db"), SQLTOOL::DefaultConnection());
    QList<TreeViewModel> list{TreeViewModel()};
    QList<TreeFavoritesModel> favorites{TreeFavoritesModel()};
    QList<JsFileContent> scripts;
    QHash<QString, QString> cache;
    TreeViewModel node;
    node.FileName = before;
    QString html = before;
    QString images = before;
    QVERIFY(!tool.GetHelpFileListFormDB(list) && list.size() == 1);
    QVERIFY(!tool.GetNodeInfoFromDB(before, node) && node.FileName == before);
    QVERIFY(!tool.GetOnlineHomePage(html) && html == before);
    QVERIFY(!tool.ReadHtmlFromDB(node, html, images) && html == before && images == before);
    QVERIFY(!tool.ReadImageFromDB({before}, cache, before));
    QVERIFY(!tool.ReadJsFromDB(scripts, false));
    QVERIFY(!tool.GetSearchFavoriteFromDB(favorites) && favorites.size() == 1);
    QVERIFY(!tool.UpdataFavoriteDB(favorites));
    QVERIFY(!tool.ReadComplete());
    QCOMPARE(log.Count(QStringLiteral("yxhelp.store: database not open")), 8);
    tool.CloseDb();
}

void TestSqlTool::failingStatementsLookLikeEmptyResults_data()
{
    using Damage = std::function<void(HelpDatabase&)>;
    QTest::addColumn<Damage>("damage");
    QTest::newRow("no database") << Damage([](HelpDatabase& d) { d.Overwrite("no database at all"); });
    QTest::newRow("cut short") << Damage([](HelpDatabase& d) { d.Truncate(4096); });
    QTest::newRow("cut within a page") << Damage([](HelpDatabase& d) { d.Truncate(5000); });
    QTest::newRow("empty file") << Damage([](HelpDatabase& d) { d.Truncate(0); });
    QTest::newRow("no tables") << Damage([](HelpDatabase& d) {
        d.Execute(QStringLiteral("DROP TABLE HelpFileList"));
        d.Execute(QStringLiteral("DROP TABLE ImageList"));
    });
}

void TestSqlTool::failingStatementsLookLikeEmptyResults()
{
    QFETCH(std::function<void(HelpDatabase&)>, damage);
    HelpDatabase database(QStringLiteral("Home | favorite"));
    database.AddImage(QStringLiteral("a.png"), "x");
    damage(database);

    QList<TreeViewModel> list;
    QList<TreeFavoritesModel> favorites;
    QList<JsFileContent> scripts;
    QHash<QString, QString> cache;
    TreeViewModel node;
    QString html;
    QString images;
    const std::vector<std::function<bool(SQLTOOL&)>> readers{
        [&](SQLTOOL& tool) { return tool.GetHelpFileListFormDB(list) && list.isEmpty(); },
        [&](SQLTOOL& tool) { return tool.GetNodeInfoFromDB(QStringLiteral("%"), node) && node.Id == 0; },
        [&](SQLTOOL& tool) { return tool.GetOnlineHomePage(html) && html.isEmpty(); },
        [&](SQLTOOL& tool) { return tool.ReadHtmlFromDB(node, html, images) && html.isEmpty(); },
        [&](SQLTOOL& tool) {
            return tool.ReadImageFromDB({QStringLiteral("a.png")}, cache, QString()) && cache.isEmpty();
        },
        [&](SQLTOOL& tool) { return tool.ReadJsFromDB(scripts, false) && scripts.isEmpty(); },
        [&](SQLTOOL& tool) { return tool.GetSearchFavoriteFromDB(favorites) && favorites.isEmpty(); },
        [&](SQLTOOL& tool) { return tool.UpdataFavoriteDB({TreeFavoritesModel()}); },
    };
    for (const auto& reader : readers) {
        const LogCapture log;
        QVERIFY(
            Operate(database.Path(), [&](SQLTOOL& tool) { return reader(tool) && !tool.ReadComplete(); }));
        QVERIFY(log.Count(QStringLiteral("statement failed")) > 0);
    }
}

void TestSqlTool::lockedDatabaseIsGivenUpInTime()
{
    HelpDatabase database(QStringLiteral("Home"));
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(database.Path());
        QVERIFY(other.open());
        QSqlQuery lock(other);
        QVERIFY(lock.exec(QStringLiteral("BEGIN EXCLUSIVE")));

        const LogCapture log;
        QElapsedTimer timer;
        timer.start();
        QHash<QString, QString> cache;
        const QStringList keys{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                               QStringLiteral("d")};
        QVERIFY(Operate(database.Path(),
                        [&](SQLTOOL& tool) { return tool.ReadImageFromDB(keys, cache, QString()); }));
        QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(log.Count(QStringLiteral("database is locked")), 4);
        QVERIFY(Contents(database.Path()).isEmpty());
        QVERIFY(lock.exec(QStringLiteral("ROLLBACK")));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    QCOMPARE(Contents(database.Path()).size(), 1);
}

void TestSqlTool::missingColumnIsLoggedOnceAndReadsEmpty()
{
    HelpDatabase database(QStringLiteral("Home\nNext\nLast"));
    database.Execute(QStringLiteral("ALTER TABLE HelpFileList DROP COLUMN SubTitle"));
    database.Execute(QStringLiteral("ALTER TABLE HelpFileList DROP COLUMN ParentID"));
    const LogCapture log;
    const QList<TreeViewModel> list = Contents(database.Path());
    QCOMPARE(list.size(), 3);
    QCOMPARE(list.last().FileName, QStringLiteral("Last"));
    QCOMPARE(list.last().ParentId, 0);
    QCOMPARE(log.Count(QStringLiteral("no column SubTitle")), 1);
    QCOMPARE(log.Count(QStringLiteral("no column")), 2);
    QCOMPARE(log.Count(QStringLiteral("unknown field")), 0);
}

void TestSqlTool::readOnlyDatabaseCanBeRead()
{
    const HelpDatabase database(QStringLiteral("Home | favorite"));
    QVERIFY(QFile::setPermissions(database.Path(), QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(database.HelpDir(), QFile::ReadOwner | QFile::ExeOwner));
    if (QFile(database.Path()).open(QIODevice::ReadWrite))
        QSKIP("permissions do not bind this user");
    const LogCapture log;
    QCOMPARE(Contents(database.Path()).size(), 1);
    QVERIFY(Operate(database.Path(), [](SQLTOOL& t) { return t.UpdataFavoriteDB({}) && !t.ReadComplete(); }));
    QCOMPARE(log.Count(QStringLiteral("readonly database")), 1);
    QVERIFY(
        QFile::setPermissions(database.HelpDir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void TestSqlTool::utilitiesWriteAndCount()
{
    const HelpDatabase database(QStringLiteral("A\nB"));
    const LogCapture log;
    SQLTOOL tool(database.Path(), SQLTOOL::DefaultConnection());
    QVERIFY(tool.OpenDb());
    QCOMPARE(tool.TableCount(), 2);
    const QString topics = QStringLiteral("HelpFileList");
    const QString title = QStringLiteral("Title");
    QCOMPARE(tool.updateTable(topics, title, QStringLiteral("new"), QStringLiteral("FileName"),
                              QStringLiteral("B")),
             1);
    QCOMPARE(log.Count(QStringLiteral("update HelpFileList SET Title = \"new\" where FileName = \"B\";")), 1);
    QCOMPARE(tool.updateTable(topics, QStringLiteral("None"), title, title, title), 0);
    QCOMPARE(tool.ReadColumn(topics, title), QStringList({QStringLiteral("A"), QStringLiteral("new")}));
    QVERIFY(tool.ExecSql(QStringLiteral("DELETE FROM HelpFileList WHERE ID = 1")));
    QVERIFY(!tool.ExecSql(QStringLiteral("DELETE FROM Nothing")));
    QCOMPARE(tool.dataSizeoftable(topics), 1);
    QCOMPARE(tool.dataSizeoftable(QStringLiteral("Nothing")), 0);
    tool.CloseDb();
    QCOMPARE(SQLTOOL(QStringLiteral("/nowhere/none.db"), SQLTOOL::DefaultConnection()).TableCount(), -1);
}

void TestSqlTool::batchesAreWrittenRowByRow()
{
    const HelpDatabase database;
    const QString insert = QStringLiteral("INSERT INTO HelpFileList (ID, Title) VALUES (?, ?)");
    const auto write = [&](const QList<QStringList>& batch) {
        const LogCapture log;
        return Operate(database.Path(), [&](SQLTOOL& tool) { return tool.ExecBatch(batch); });
    };
    const QString two = QStringLiteral("2");
    const QString title = QStringLiteral("T");
    QVERIFY(write({{insert, two}, {QStringLiteral("1"), QStringLiteral("A"), two, QStringLiteral("B")}}));
    QCOMPARE(database.Select(QStringLiteral("SELECT ID || Title FROM HelpFileList")).join(QLatin1Char(' ')),
             QStringLiteral("1A 2B"));
    QVERIFY(!write({{insert, two}, {two, title}}));
    QVERIFY(!write({{insert, QStringLiteral("0")}, {QStringLiteral("3"), title}}));
    QVERIFY(!write({{insert, QStringLiteral("101")}, {QStringLiteral("3"), title}}));
    QVERIFY(!write({}));
    QCOMPARE(database.Select(QStringLiteral("SELECT ID FROM HelpFileList")).size(), 2);
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
