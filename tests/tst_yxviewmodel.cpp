#include "diagnostics.h"
#include "helpdatabase.h"
#include "sqltool.h"
#include "yxviewmodel.h"

#include <QSqlQuery>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

std::unique_ptr<YxViewModel> ModelOf(const HelpDatabase& database)
{
    return std::make_unique<YxViewModel>(database.Language(), database.FileName(), database.RccPath(),
                                         nullptr);
}

/// Adds and removes favourites as the pane does, and knows what it would show.
class Pane
{
public:
    explicit Pane(YxViewModel& viewModel) : model(viewModel) {}

    void Add(int row)
    {
        const TreeViewModel record = model.HelpFileList().at(row);
        for (const TreeFavoritesModel& known : *model.FavoriteList()) {
            if (known.Id == record.Id && !known.Removed)
                return;
        }
        TreeFavoritesModel favorite;
        static_cast<TreeViewModel&>(favorite) = record;
        model.AddFavorite(favorite);
    }
    void Remove(int id)
    {
        for (TreeFavoritesModel& favorite : *model.FavoriteList()) {
            if (favorite.Id == id && !favorite.Removed) {
                model.RemoveFavorite(favorite);
                favorite.Removed = true;
                return;
            }
        }
    }
    /// "+2 -2" adds the topic with id 2 and removes it.
    void Run(const QString& steps)
    {
        for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (step.startsWith(QLatin1Char('+')))
                Add(step.toInt() - 1);
            else
                Remove(-step.toInt());
        }
    }

private:
    YxViewModel& model;
};

/// Holds the database against everybody else while it lives.
class Lock
{
public:
    explicit Lock(const QString& path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("lock"));
        database.setDatabaseName(path);
        if (!database.open() || !QSqlQuery(database).exec(QStringLiteral("BEGIN EXCLUSIVE")))
            qFatal("no lock");
    }
    ~Lock()
    {
        QSqlDatabase::database(QStringLiteral("lock")).close();
        QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    }
    Q_DISABLE_COPY_MOVE(Lock)
};

const QString kTopics = QStringLiteral("One\nTwo | favorite\nThree\nFour | favorite | title=");

} // namespace

class TestYxViewModel : public QObject
{
    Q_OBJECT

private slots:
    void pathsComeFromTheLaunchValues_data();
    void pathsComeFromTheLaunchValues();
    void contentsAreLoadedOnceOnFirstUse();
    void nodesAndHomePageComeFromTheDatabase();
    void historyForgetsThePagesBehindTheCursor();
    void databaseHoldsWhatThePaneShowed_data();
    void databaseHoldsWhatThePaneShowed();
    void runWithoutThePaneLeavesTheMarks();
    void marksThatCouldNotBeReadAreKept();
    void pendingRemovalsCountEachTime();
    void pageIsBuiltFromAllTables();
    void pageFallsBackToTheRecord();
    void unreadableDatabaseGivesNothing();
};

void TestYxViewModel::pathsComeFromTheLaunchValues_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("expected");
    QTest::newRow("db") << QStringLiteral("A.db") << QStringLiteral("A.db");
    QTest::newRow("mdb") << QStringLiteral("A.mdb") << QStringLiteral("A.db");
    QTest::newRow("capitals") << QStringLiteral("A.MDB") << QStringLiteral("A.MDB");
    QTest::newRow("inside only") << QStringLiteral("A.mdb.x") << QStringLiteral("A.mdb.x");
    QTest::newRow("twice") << QStringLiteral("A.mdb.mdb") << QStringLiteral("A.db.db");
}

void TestYxViewModel::pathsComeFromTheLaunchValues()
{
    QFETCH(QString, file);
    QFETCH(QString, expected);
    const HelpDatabase database(QString(), QStringLiteral("zh-CN"), expected);
    const YxViewModel model(QStringLiteral("zh-CN"), file, database.RccPath(), nullptr);
    QCOMPARE(model.DatabasePath(), database.RccPath() + QStringLiteral("/zh-CN/Help/") + expected);
    QVERIFY(model.DatabaseExists());
    QVERIFY(!YxViewModel(QStringLiteral("de-DE"), file, database.RccPath(), nullptr).DatabaseExists());
}

void TestYxViewModel::contentsAreLoadedOnceOnFirstUse()
{
    HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    QVERIFY(model->TreeList()->isEmpty());
    QCOMPARE(model->HelpFileList().size(), 4);
    database.AddTopics(QStringLiteral("Five"));
    QCOMPARE(&model->HelpFileList(), model->TreeList());
    QCOMPARE(model->TreeList()->size(), 4);
    QVERIFY(model->IsTopNode(model->TreeList()->first()));
    QVERIFY(!QSqlDatabase::contains(SQLTOOL::DefaultConnection()));
}

void TestYxViewModel::nodesAndHomePageComeFromTheDatabase()
{
    const HelpDatabase database(QStringLiteral("Home | path=http://host/\n  Page | path=a\\page.html"));
    const auto model = ModelOf(database);
    QString path;
    QVERIFY(model->GetHomePage(path));
    QCOMPARE(path, QStringLiteral("http://host/"));
    TreeViewModel node;
    QVERIFY(!model->GetNodeInfo(QString(), node));
    QVERIFY(model->GetNodeInfo(QStringLiteral("a\\page.html"), node));
    QCOMPARE(node.Id, 2);
    QVERIFY(!model->IsTopNode(node));

    // What a failed operation leaves behind doesn't stand in the way of the next one.
    YxViewModel missing(QStringLiteral("de-DE"), database.FileName(), database.RccPath(), nullptr);
    const LogCapture log;
    QVERIFY(!missing.GetHomePage(path));
    QVERIFY(!missing.GetNodeInfo(QStringLiteral("a\\page.html"), node));
    QVERIFY(model->GetHomePage(path));
}

void TestYxViewModel::historyForgetsThePagesBehindTheCursor()
{
    const HelpDatabase database;
    const auto model = ModelOf(database);
    const auto visit = [&](int row) {
        TreeViewModel record;
        record.FileName = QString::number(row);
        model->PushHistory({record, row, row % 2 == 0});
    };
    QCOMPARE(model->HistoryPos(), -1);
    for (const int row : {0, 1, 2, 3})
        visit(row);
    QCOMPARE(model->HistoryPos(), 3);
    model->SetHistoryPos(1);
    visit(4);
    QStringList entries;
    for (const HistoryEntry& entry : *model->History()) {
        QCOMPARE(entry.record.FileName, QString::number(entry.row));
        entries.append(entry.record.FileName + QLatin1String(entry.inTree ? "t" : ""));
    }
    QCOMPARE(entries.join(QLatin1Char(' ')), QStringLiteral("0t 1 4t"));
    QCOMPARE(model->HistoryPos(), 2);
}

void TestYxViewModel::databaseHoldsWhatThePaneShowed_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("marked");
    const auto row = [](const char* steps, const char* marked) {
        QTest::newRow(steps) << QString::fromUtf8(steps) << QString::fromUtf8(marked);
    };
    row("", "2 4");
    row("+1", "1 2 4");
    row("-2", "4");
    row("-2 -4", "");
    row("+1 -1", "2 4");
    row("+1 -1 +1", "1 2 4");
    row("-2 +2", "2 4");
    row("-2 +2 -2", "4");
    row("-4 +4", "2 4");
    row("-4 +4 -4 +4", "2 4");
    row("-4 +4 -4", "2");
    row("+1 +1 -1", "2 4");
    row("-2 +3 +2 -3 +1 -4", "1 2");
}

void TestYxViewModel::databaseHoldsWhatThePaneShowed()
{
    QFETCH(QString, steps);
    QFETCH(QString, marked);
    const HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    QCOMPARE(model->LoadFavorites().size(), 2);
    Pane(*model).Run(steps);
    const int shown = marked.isEmpty() ? 0 : marked.count(QLatin1Char(' ')) + 1;
    QCOMPARE(model->FavoriteCount(), shown);
    QVERIFY(database.Favorites() == QStringLiteral("2 4"));
    model->SaveFavorites();
    QCOMPARE(database.Favorites(), marked);
    QCOMPARE(model->FavoriteList()->size(), shown);
}

void TestYxViewModel::runWithoutThePaneLeavesTheMarks()
{
    HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    // A statement that changes the mark would end in the log.
    database.Execute(QStringLiteral("CREATE TRIGGER guard BEFORE UPDATE ON HelpFileList "
                                    "BEGIN SELECT RAISE(ABORT, 'written'); END"));
    const LogCapture log;
    model->SaveFavorites();
    QCOMPARE(log.All(), QString());
    QCOMPARE(database.Favorites(), QStringLiteral("2 4"));
}

void TestYxViewModel::marksThatCouldNotBeReadAreKept()
{
    const HelpDatabase database(kTopics);
    const LogCapture log;
    {
        const auto model = ModelOf(database);
        {
            const Lock lock(database.Path());
            QVERIFY(model->LoadFavorites().isEmpty());
        }
        Pane(*model).Run(QStringLiteral("+1 +3 -3"));
        model->SaveFavorites();
        QCOMPARE(database.Favorites(), QStringLiteral("1 2 4"));
    }
    const auto model = ModelOf(database);
    Pane(*model).Run(QStringLiteral("+3"));
    const Lock lock(database.Path());
    model->SaveFavorites();
    QCOMPARE(log.Count(QStringLiteral("favourites not saved")), 1);
}

void TestYxViewModel::pendingRemovalsCountEachTime()
{
    const HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    const TreeFavoritesModel favorite = model->LoadFavorites().first();
    model->RemoveFavorite(favorite);
    model->RemoveFavorite(favorite);
    QCOMPARE(model->FavoriteCount(), 0);
    // One of the same id that isn't the same topic removes nothing.
    TreeFavoritesModel other = model->FavoriteList()->last();
    other.KeyName += QLatin1Char('x');
    model->RemoveFavorite(other);
    QCOMPARE(model->FavoriteList()->size(), 2);
    model->SaveFavorites();
    QCOMPARE(database.Favorites(), QStringLiteral("4"));
}

void TestYxViewModel::pageIsBuiltFromAllTables()
{
    HelpDatabase database(
        QStringLiteral("Home | images=small.png,large.png,none.png | "
                       "html=<link href=\"s/m.css\"><script src=\"scripts/a.js\"></script><a "
                       "href=\"../articles_registration/x\">"
                       "small.png large.png none.png"));
    database.AddScript(QStringLiteral("a.js"), QStringLiteral("show('small.png')"));
    database.AddImage(QStringLiteral("small.png"), "x");
    database.AddImage(QStringLiteral("large.png"), NoiseImage(100, 100));
    const QString root = database.RccPath() + QStringLiteral("/a#b");
    QVERIFY(QDir().mkpath(root) &&
            QFile::rename(database.RccPath() + QStringLiteral("/en-US"), root + QStringLiteral("/en-US")));
    YxViewModel model(QStringLiteral("en-US"), database.FileName(), root, nullptr);
    const QString escaped = database.RccPath() + QStringLiteral("/a%23b/en-US/Help");
    // The last nine characters of the key stand for the type of the image: the place of its dot counts from
    // the right.
    const QString inlined = QStringLiteral("data:image/ll.png;base64,eA==");
    const QString expected = QStringLiteral("<link href=\"%1/styles/m.css\">\r\n<Script>show('%2')</Script>"
                                            "<a href=\"../articles/x\">%2 %3/large.png none.png")
                                 .arg(escaped, inlined, ImageHelper().DatedDir(QStringLiteral("en-US")));
    const TreeViewModel node = model.HelpFileList().first();
    for (int visit = 0; visit < 2; ++visit)
        QCOMPARE(model.BuildPageHtml(node), expected);
}

void TestYxViewModel::pageFallsBackToTheRecord()
{
    const HelpDatabase database;
    YxViewModel model(QStringLiteral("de-DE"), database.FileName(), database.RccPath(), nullptr);
    const LogCapture log;
    TreeViewModel record;
    QCOMPARE(model.BuildPageHtml(record), QString());
    record.Html = QStringLiteral("<a href=\"./articles_registration\">");
    QCOMPARE(model.BuildPageHtml(record), QStringLiteral("<a href=\"./articles\">"));
    record.Html = QString(1, QChar(0));
    QCOMPARE(model.BuildPageHtml(record), QString(1, QChar(0)));
    // A database that can be read decides, also when it has no such page.
    record.Html = QStringLiteral("text");
    QCOMPARE(ModelOf(database)->BuildPageHtml(record), QString());
}

void TestYxViewModel::unreadableDatabaseGivesNothing()
{
    HelpDatabase database(kTopics);
    database.Overwrite("no database");
    const auto model = ModelOf(database);
    const LogCapture log;
    QVERIFY(model->HelpFileList().isEmpty());
    QVERIFY(model->LoadFavorites().isEmpty());
    QCOMPARE(model->BuildPageHtml(TreeViewModel()), QString());
    TreeFavoritesModel favorite;
    favorite.Id = 1;
    model->AddFavorite(favorite);
    model->SaveFavorites();
    QFile file(database.Path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("no database"));
}

QTEST_GUILESS_MAIN(TestYxViewModel)
#include "tst_yxviewmodel.moc"
