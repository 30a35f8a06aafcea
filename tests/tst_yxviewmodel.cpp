#include "diagnostics.h"
#include "helpdatabase.h"
#include "operation.h"
#include "sqltool.h"
#include "testtable.h"
#include "yxviewmodel.h"

#include <QSqlDatabase>

#include <algorithm>
#include <memory>

namespace {

std::unique_ptr<YxViewModel> ModelOf(const HelpDatabase& database)
{
    return std::make_unique<YxViewModel>(database.Language(), database.FileName(), database.RccPath(),
                                         nullptr);
}

/// Adds and removes favourites as the pane does.
class Pane
{
public:
    explicit Pane(YxViewModel& viewModel) : model(viewModel) {}

    /// "+2 -2" adds the topic with id 2 and removes it.
    void Run(const QString& steps)
    {
        for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const int id = qAbs(step.toInt());
            auto& list = *model.FavoriteList();
            const auto shown =
                std::find_if(list.begin(), list.end(), [id](const TreeFavoritesModel& favorite) {
                    return favorite.Id == id && !favorite.Removed;
                });
            if (step.startsWith(QLatin1Char('+')) && shown == list.end()) {
                TreeFavoritesModel favorite;
                static_cast<TreeViewModel&>(favorite) = model.HelpFileList().at(id - 1);
                model.AddFavorite(favorite);
            } else if (step.startsWith(QLatin1Char('-')) && shown != list.end()) {
                model.RemoveFavorite(*shown);
                shown->Removed = true;
            }
        }
    }

private:
    YxViewModel& model;
};

const QString kTopics = "One\nTwo | favorite\nThree\nFour | favorite | title="_s;

} // namespace

class TestYxViewModel : public QObject
{
    Q_OBJECT

private slots:
    void endingIsReplacedInTheDatabaseName();
    void contentsAreLoadedOnceOnFirstUse();
    void nodesAndHomePageComeFromTheDatabase();
    void databaseHoldsWhatThePaneShowed();
    void runWithoutThePaneLeavesTheMarks();
    void marksThatCouldNotBeReadAreKept();
    void pendingRemovalsCountEachTime();
    void pageIsBuiltFromAllTables();
    void pageFallsBackToTheRecord();
};

void TestYxViewModel::endingIsReplacedInTheDatabaseName()
{
    for (const char* line : {"A.db|A.db", "A.mdb|A.db", "A.MDB|A.MDB", "A.mdb.mdb|A.db.db"})
        QCOMPARE(YxViewModel("zh-CN"_s, Cells(line)[0], "r"_s, nullptr).DatabasePath(),
                 "r/zh-CN/Help/"_s + Cells(line)[1]);
}

void TestYxViewModel::contentsAreLoadedOnceOnFirstUse()
{
    HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    QVERIFY(model->TreeList()->isEmpty());
    QCOMPARE(model->HelpFileList().size(), 4);
    database.AddTopics("Five"_s);
    QCOMPARE(model->HelpFileList().size(), 4);
    QVERIFY(model->IsTopNode(model->TreeList()->first()));
    QVERIFY(!QSqlDatabase::contains(SQLTOOL::DefaultConnection()));
}

void TestYxViewModel::nodesAndHomePageComeFromTheDatabase()
{
    const HelpDatabase database("Home | path=http://host/\n  Page | path=a\\page.html"_s);
    const auto model = ModelOf(database);
    TreeViewModel node;
    QVERIFY(!model->GetNodeInfo(QString(), node));
    QVERIFY(model->GetNodeInfo("a\\page.html"_s, node));
    QCOMPARE(node.Id, 2);
    QVERIFY(!model->IsTopNode(node));

    // What a failed operation leaves behind doesn't stand in the way of the next one.
    YxViewModel missing("de-DE"_s, database.FileName(), database.RccPath(), nullptr);
    const LogCapture log;
    QString path;
    QVERIFY(!missing.GetHomePage(path));
    QVERIFY(!missing.GetNodeInfo("a\\page.html"_s, node));
    QVERIFY(model->GetHomePage(path));
    QCOMPARE(path, "http://host/"_s);
}

void TestYxViewModel::databaseHoldsWhatThePaneShowed()
{
    for (const char* line : {"|2 4", "+1|1 2 4", "-2 -4|", "+1 -1|2 4", "+1 -1 +1|1 2 4", "-2 +2 -2|4",
                             "-4 +4 -4 +4|2 4", "+1 +1 -1|2 4", "-2 +3 +2 -3 +1 -4|1 2"}) {
        const QString steps = Cells(line)[0];
        const QString marked = Cells(line)[1];
        const HelpDatabase database(kTopics);
        const auto model = ModelOf(database);
        QCOMPARE(model->LoadFavorites().size(), 2);
        Pane(*model).Run(steps);
        const int shown = marked.isEmpty() ? 0 : marked.count(QLatin1Char(' ')) + 1;
        QVERIFY2(model->FavoriteCount() == shown, line);
        QCOMPARE(database.Favorites(), "2 4"_s);
        model->SaveFavorites();
        QVERIFY2(database.Favorites() == marked, line);
        QCOMPARE(model->FavoriteList()->size(), shown);
    }
}

void TestYxViewModel::runWithoutThePaneLeavesTheMarks()
{
    HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    // A statement that changes the mark would end in the log.
    database.Execute(
        "CREATE TRIGGER guard BEFORE UPDATE ON HelpFileList BEGIN SELECT RAISE(ABORT, 'written'); END"_s);
    const LogCapture log;
    model->SaveFavorites();
    QCOMPARE(log.All(), QString());
    QCOMPARE(database.Favorites(), "2 4"_s);
}

void TestYxViewModel::marksThatCouldNotBeReadAreKept()
{
    const HelpDatabase database(kTopics);
    const LogCapture log;
    {
        const auto model = ModelOf(database);
        {
            const DatabaseLock lock(database.Path());
            QVERIFY(model->LoadFavorites().isEmpty());
        }
        Pane(*model).Run("+1 +3 -3"_s);
        model->SaveFavorites();
        QCOMPARE(database.Favorites(), "1 2 4"_s);
    }
    const auto model = ModelOf(database);
    Pane(*model).Run("+3"_s);
    const DatabaseLock lock(database.Path());
    model->SaveFavorites();
    QCOMPARE(log.Count("favourites not saved"_s), 1);
}

void TestYxViewModel::pendingRemovalsCountEachTime()
{
    const HelpDatabase database(kTopics);
    const auto model = ModelOf(database);
    const TreeFavoritesModel favorite = model->LoadFavorites().first();
    model->RemoveFavorite(favorite);
    model->RemoveFavorite(favorite);
    QCOMPARE(model->FavoriteCount(), 0);
    // One with another id, and one of the same id that isn't the same topic, remove nothing.
    TreeFavoritesModel other = model->FavoriteList()->last();
    other.Id = 99;
    model->RemoveFavorite(other);
    other = model->FavoriteList()->last();
    other.KeyName += QLatin1Char('x');
    model->RemoveFavorite(other);
    QCOMPARE(model->FavoriteList()->size(), 2);
    model->SaveFavorites();
    QCOMPARE(database.Favorites(), "4"_s);
}

void TestYxViewModel::pageIsBuiltFromAllTables()
{
    HelpDatabase database("Home | images=small.png,large.png,none.png | "
                          "html=<link href=\"s/m.css\"><script src=\"scripts/a.js\"></script><a "
                          "href=\"../articles_registration/x\">small.png large.png none.png"_s);
    database.AddScript("a.js"_s, "show('small.png')"_s);
    database.AddImage("small.png"_s, "x");
    database.AddImage("large.png"_s, NoiseImage(100, 100));
    const QString root = database.RccPath() + "/a#b"_s;
    QVERIFY(QDir().mkpath(root) && QFile::rename(database.RccPath() + "/en-US"_s, root + "/en-US"_s));
    YxViewModel model("en-US"_s, database.FileName(), root, nullptr);
    const QString escaped = database.RccPath() + "/a%23b/en-US/Help"_s;
    // The last nine characters of the key stand for the type of the image: the place of its dot counts from
    // the right.
    const QString inlined = "data:image/ll.png;base64,eA=="_s;
    const QString expected = "<link href=\"%1/styles/m.css\">\r\n<Script>show('%2')</Script>"
                             "<a href=\"../articles/x\">%2 %3/large.png none.png"_s.arg(
                                 escaped, inlined, ImageHelper().DatedDir("en-US"_s));
    const TreeViewModel node = model.HelpFileList().first();
    for (int visit = 0; visit < 2; ++visit)
        QCOMPARE(model.BuildPageHtml(node), expected);
}

void TestYxViewModel::pageFallsBackToTheRecord()
{
    const HelpDatabase database;
    YxViewModel model("de-DE"_s, database.FileName(), database.RccPath(), nullptr);
    const LogCapture log;
    TreeViewModel record;
    QCOMPARE(model.BuildPageHtml(record), QString());
    record.Html = "<a href=\"./articles_registration\">"_s;
    QCOMPARE(model.BuildPageHtml(record), "<a href=\"./articles\">"_s);
    record.Html = QString(1, QChar(0));
    QCOMPARE(model.BuildPageHtml(record), QString(1, QChar(0)));
    // A database that can be read decides, also when it has no such page.
    record.Html = "text"_s;
    QCOMPARE(ModelOf(database)->BuildPageHtml(record), QString());
}

QTEST_GUILESS_MAIN(TestYxViewModel)
#include "tst_yxviewmodel.moc"
