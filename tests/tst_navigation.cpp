#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"
#include "yxviewmodel.h"

#include <QDesktopServices>
#include <QRandomGenerator>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QWebEnginePage>
#include <QtTest>

namespace {

const char* const kContents = "treeWidget";
const char* const kFavorites = "treeWidget_favorites";

const QStringList kNames{QStringLiteral("Home"),      QStringLiteral("Alpha"), QStringLiteral("Beta"),
                         QStringLiteral("Gamma"),     QStringLiteral("Two"),   QStringLiteral("Delta"),
                         QStringLiteral("帮助 主题"), QStringLiteral("Legal")};
constexpr int kOutside = 7; ///< In the list, and not in the tree.
const QList<int> kFavoriteTopics{2, 4};
constexpr int kNowhere = -1;
const QString kKept = QStringLiteral("kept");
const QRegularExpression kMove(QStringLiteral("link|back|forward"));

/// Every page links to all pages, and to one that isn't there.
QString LinkedTopics()
{
    QString links;
    for (int i = 0; i < kNames.size(); ++i)
        links += QStringLiteral("<a id=\"l%1\" href=\"topics/%2.html\">%1</a> ")
                     .arg(i)
                     .arg(QString(kNames.at(i)).replace(QLatin1Char(' '), QLatin1Char('_')).toUpper());
    links += QStringLiteral("<a id=\"l%1\" href=\"topics/none.html\">none</a>").arg(kNowhere);
    QString lines;
    for (int i = 0; i < kNames.size(); ++i) {
        const QString& name = kNames.at(i);
        lines += QLatin1String(i == 0          ? ""
                               : i == kOutside ? "~ "
                               : i == 4        ? "    "
                                               : "  ") +
                 name + QLatin1String(kFavoriteTopics.contains(i) ? " | favorite" : "") +
                 QStringLiteral(" | html=<html><head><title>%1</title></head><body>%2</body></html>\n")
                     .arg(name, links);
    }
    return lines;
}

/// What a user of the window expects: the visited topics, the cursor, and the rows that count as shown.
struct History
{
    struct Visit
    {
        int topic;
        int row;       ///< In the list that the topic was opened from.
        bool fromTree; ///< That list was the contents.
    };

    void Open(const Visit& visit)
    {
        visits = visits.mid(0, cursor + 1) << visit;
        ++cursor;
        shown = visit.topic;
        treeRow = visit.fromTree ? visit.row : -1;
    }
    /// A topic by the contents, a link or the home button. True when it loads.
    bool Contents(int topic)
    {
        current = topic == kOutside ? kNowhere : topic;
        if (topic == treeRow)
            return false;
        Open({topic, topic, true});
        return true;
    }
    bool Link(int topic)
    {
        favoriteRow = -1;
        return topic != kNowhere && Contents(topic);
    }
    bool Favorite(int row)
    {
        if (row == favoriteRow)
            return false;
        Open({kFavoriteTopics.at(row), row, false});
        favoriteRow = row;
        return true;
    }
    bool Move(int by)
    {
        if (cursor + by < 0 || cursor + by >= visits.size())
            return false;
        cursor += by;
        const Visit& visit = visits.at(cursor);
        shown = visit.topic;
        treeRow = visit.row;
        current = visit.fromTree && visit.topic != kOutside ? visit.topic : kNowhere;
        return true;
    }
    void OpenTab(int page)
    {
        if (page == 2)
            favoriteRow = -1;
        else if (leftPage == 2 && favoriteRow >= 0)
            current = kFavoriteTopics.at(favoriteRow);
        leftPage = page;
    }

    QList<Visit> visits{{0, 0, true}};
    int cursor = 0;
    int shown = 0;
    int treeRow = 0;
    int favoriteRow = -1;
    int current = kNowhere; ///< Topic that is selected in the tree.
    int leftPage = 0;
};

/// Page, "kept" when it didn't load anew, topic selected in the tree, back and forward active, cursor and
/// number of visits, shown rows of contents and favourites, left page.
QString Line(const QVariantList& state)
{
    return QVariant(state).toStringList().join(QLatin1Char(','));
}

QString Expected(const History& model, bool loaded)
{
    return Line({kNames.at(model.shown), loaded ? QString() : kKept, kNames.value(model.current),
                 model.cursor > 0, model.cursor + 1 < model.visits.size(), model.cursor, model.visits.size(),
                 model.treeRow, model.favoriteRow, model.leftPage});
}

QString Shown(WindowDriver& driver)
{
    const auto* model = driver.Find<YxViewModel>("");
    const QVariantList page =
        driver.RunScript(QStringLiteral("[document.title, window.mark || '']")).toList();
    const auto active = [&](const char* button, const char* normal, const char* disabled) -> QVariant {
        const bool on = driver.ShowsIcon(button, normal);
        return on == driver.ShowsIcon(button, disabled) ? QVariant(QStringLiteral("neither")) : on;
    };
    return Line(page +
                QVariantList{driver.Current(kContents),
                             active("tbn_pre", "icon_back_normal.png", "icon_back_disable.png"),
                             active("tbn_next", "icon_progres_normal.png", "icon_progress_disable.png"),
                             model->HistoryPos(), model->History()->size(), model->TreeRow(),
                             model->FavoriteRow(),
                             driver.Find<QStackedWidget>("stackedWidget_wizard")->currentIndex()});
}

/// One random act of a user, in the window and in the model. True when the page loads anew.
bool Act(WindowDriver& driver, History& model, QRandomGenerator& random, QString& told)
{
    const auto open = [&](const char* tab, int page) {
        if (model.leftPage != page || random.bounded(2) == 0) {
            driver.Click(tab);
            model.OpenTab(page);
            told += QLatin1String("tab ");
        }
    };
    const int dice = random.bounded(10);
    if (dice < 3) {
        told = dice < 2 ? QStringLiteral("back") : QStringLiteral("forward");
        driver.Click(dice < 2 ? "tbn_pre" : "tbn_next");
        return model.Move(dice < 2 ? -1 : 1);
    }
    if (dice < 6) {
        const int topic = random.bounded(kNowhere, kNames.size());
        told = QStringLiteral("link %1").arg(topic);
        driver.ClickInPage(QStringLiteral("#l%1").arg(topic));
        return model.Link(topic);
    }
    if (dice < 7) {
        told = QStringLiteral("home");
        driver.Click("tbn_home");
        model.OpenTab(0);
        return model.Contents(0);
    }
    if (dice < 9) {
        open("tbn_favorites", 2);
        const int row = random.bounded(kFavoriteTopics.size());
        told += QStringLiteral("favourite %1").arg(row);
        driver.ClickEntry(kFavorites, kNames.at(kFavoriteTopics.at(row)));
        return model.Favorite(row);
    }
    open("tbn_context", 0);
    const int topic = random.bounded(kOutside);
    told += QStringLiteral("contents %1").arg(topic);
    driver.ClickEntry(kContents, kNames.at(topic));
    return model.Contents(topic);
}

} // namespace

class TestNavigation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void wandering();
    void linksFindTheirTopics();
    void historyPassesTopicsThatHaveGone();

public slots:
    void Browse(const QUrl& url) { visited = url; }

private:
    QUrl visited;
};

void TestNavigation::initTestCase()
{
    InitBuiltInResources();
    QVERIFY(UseProduct(ProductIni(1)));
    for (const char* scheme : {"http", "https"})
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "Browse");
}

void TestNavigation::wandering()
{
    HelpDatabase database(LinkedTopics());
    WindowDriver driver(database);
    driver.Show();
    History model;
    QTRY_COMPARE(Shown(driver), Expected(model, true));
    // Another seed is another way.
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    QStringList way;
    for (int moves = 0; moves < 30;) {
        // A page that loads anew has forgotten this.
        driver.RunScript(QStringLiteral("window.mark = '%1'").arg(kKept));
        QSignalSpy loaded(driver.OfflinePage(), &QWebEnginePage::loadFinished);
        QSignalSpy clicked(driver.OfflinePage(), SIGNAL(linkClicked(QString)));
        QString told;
        const bool loads = Act(driver, model, random, told);
        way += told;
        moves += told.contains(kMove) ? 1 : 0;
        if (told.startsWith(QLatin1String("link")) && clicked.isEmpty())
            clicked.wait();
        if (loads && loaded.isEmpty())
            loaded.wait();
        const QString expected = Expected(model, loads);
        const bool same = QTest::qWaitFor([&] { return Shown(driver) == expected; }, 10000);
        QVERIFY2(same, qPrintable(QStringLiteral("way: %1\n  expected: %2\n  shown: %3")
                                      .arg(way.join(QLatin1String("; ")), expected, Shown(driver))));
    }
}

void TestNavigation::linksFindTheirTopics()
{
    struct
    {
        const char* attributes;
        const char* page = "Home"; ///< Where the links stand.
        const char* browsed = "";
    } const links[] = {
        {"href='guide/start.html'", "Guide start"},
        {"href='/guide/start.html'", "Guide start"},
        {"href='start.html'", "Guide start"}, // the first of two
        {"href='other/start.html'", "Other start"},
        {"href='OTHER/Start.HTML'", "Other start"},
        {"href='guide/%E5%B8%AE 100%25.html'", "Percent"},
        {"href='art.html'"},
        {"href='guide/start.html#more'"},
        {"href='#here'"},
        {"href=''"},
        {"href='https://example.com/guide/start.html'"},
        {"href='https://example.com/a?b=c#d' target='_blank'", "Home", "https://example.com/a?b=c#d"},
        {"href='#' onclick='location = \"about:blank\"'", ""},
    };
    QString page(QStringLiteral("<html><head><title>Home</title></head><body><p id='here'></p>"));
    for (const auto& link : links)
        page += QLatin1String("<p><a ") + QLatin1String(link.attributes) + QLatin1String(">link</a></p>");
    HelpDatabase database;
    database.AddTopics(QLatin1String("Home | html=") + page +
                       QStringLiteral("</body></html>\n"
                                      "  Guide start | path=guide\\start.html\n"
                                      "  Other start | path=other\\start.html\n"
                                      "  Percent | path=guide\\帮 100%25.html\n"));
    WindowDriver driver(database);
    driver.Show();
    const auto title = [&] { return driver.RunScript(QStringLiteral("document.title")).toString(); };
    HelpLaunchArgs home;
    home.topic = QStringLiteral("home");
    int place = 0;
    for (const auto& link : links) {
        QSignalSpy loaded(driver.OfflinePage(), &QWebEnginePage::loadFinished);
        driver.Window().ShowRedirectedTopic(MakeSMData(-1, home));
        QVERIFY(!loaded.isEmpty() || loaded.wait());
        QCOMPARE(title(), QStringLiteral("Home"));
        visited.clear();
        driver.ClickInPage(QStringLiteral("p:nth-of-type(%1) a").arg(++place + 1));
        QTRY_COMPARE(title(), QLatin1String(link.page));
        QTRY_COMPARE(visited.toString(), QLatin1String(link.browsed));
    }
}

void TestNavigation::historyPassesTopicsThatHaveGone()
{
    HelpDatabase database(QStringLiteral("Home\n  Alpha\n  Beta\n"));
    WindowDriver driver(database);
    driver.Show();
    for (const char* topic : {"Alpha", "Beta"}) {
        driver.ClickEntry(kContents, QLatin1String(topic));
        QTRY_COMPARE(driver.PageText(), QLatin1String(topic));
    }
    database.Execute(QStringLiteral("UPDATE HelpFileList SET Html = '' WHERE ID = 2"));
    // The cursor moves and the page stays.
    driver.Click("tbn_pre");
    QCOMPARE(driver.Find<YxViewModel>("")->HistoryPos(), 1);
    QCOMPARE(driver.PageText(), QStringLiteral("Beta"));
    driver.Click("tbn_pre");
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Home"));
    QVERIFY(driver.ShowsIcon("tbn_pre", "icon_back_disable.png"));
    driver.Click("tbn_next");
    driver.Click("tbn_next");
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Beta"));
    QVERIFY(driver.ShowsIcon("tbn_next", "icon_progress_disable.png"));
}

QTEST_MAIN(TestNavigation)
#include "tst_navigation.moc"
