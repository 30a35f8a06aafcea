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

/// The state as one line, so that a difference shows whole.
QString Line(const QString& page, bool kept, const QString& current, bool back, bool forward, int cursor,
             int count, int treeRow, int favoriteRow, int leftPage)
{
    return QStringLiteral("page %1%2, selected %3, back %4, forward %5, visit %6 of %7, rows %8 %9, left %10")
        .arg(page, QLatin1String(kept ? " kept" : " loaded"), current)
        .arg(back)
        .arg(forward)
        .arg(cursor)
        .arg(count)
        .arg(treeRow)
        .arg(favoriteRow)
        .arg(leftPage);
}

QString Expected(const History& model, bool loaded)
{
    return Line(kNames.at(model.shown), !loaded, kNames.value(model.current), model.cursor > 0,
                model.cursor + 1 < model.visits.size(), model.cursor, model.visits.size(), model.treeRow,
                model.favoriteRow, model.leftPage);
}

bool Active(WindowDriver& driver, const char* button, const char* normal, const char* disabled)
{
    const bool active = driver.ShowsIcon(button, normal);
    if (active == driver.ShowsIcon(button, disabled))
        qWarning("%s looks neither active nor inactive", button);
    return active;
}

QString Shown(WindowDriver& driver)
{
    const auto* model = driver.Find<YxViewModel>("");
    const QStringList page =
        driver.RunScript(QStringLiteral("[document.title, window.mark || '']")).toStringList();
    return Line(page.value(0), !page.value(1).isEmpty(), driver.Current(kContents),
                Active(driver, "tbn_pre", "icon_back_normal.png", "icon_back_disable.png"),
                Active(driver, "tbn_next", "icon_progres_normal.png", "icon_progress_disable.png"),
                model->HistoryPos(), model->History()->size(), model->TreeRow(), model->FavoriteRow(),
                driver.Find<QStackedWidget>("stackedWidget_wizard")->currentIndex());
}

/// The acts that are counted.
const QRegularExpression kStep(QStringLiteral("link|back|forward"));

/// One random act of a user, in the window and in the model. True when the page loads anew.
bool Act(WindowDriver& driver, History& model, QRandomGenerator& random, QString& told)
{
    const int dice = random.bounded(20);
    if (dice < 6) {
        told = dice < 4 ? QStringLiteral("back") : QStringLiteral("forward");
        driver.Click(dice < 4 ? "tbn_pre" : "tbn_next");
        return model.Move(dice < 4 ? -1 : 1);
    }
    if (dice < 13) {
        const int topic = random.bounded(-1, kNames.size());
        told = QStringLiteral("link %1").arg(topic);
        driver.ClickInPage(QStringLiteral("#l%1").arg(topic));
        return model.Link(topic);
    }
    if (dice < 15) {
        told = QStringLiteral("home");
        driver.Click("tbn_home");
        model.OpenTab(0);
        return model.Contents(0);
    }
    const bool tab = random.bounded(2) == 0;
    if (dice < 18) {
        const int row = random.bounded(kFavoriteTopics.size());
        told = QStringLiteral("favourite %1, tab %2").arg(row).arg(tab);
        if (tab || model.leftPage != 2) {
            driver.Click("tbn_favorites");
            model.OpenTab(2);
        }
        driver.ClickEntry(kFavorites, kNames.at(kFavoriteTopics.at(row)));
        return model.Favorite(row);
    }
    const int topic = random.bounded(kOutside);
    told = QStringLiteral("contents %1, tab %2").arg(topic).arg(tab);
    if (tab || model.leftPage != 0) {
        driver.Click("tbn_context");
        model.OpenTab(0);
    }
    driver.ClickEntry(kContents, kNames.at(topic));
    return model.Contents(topic);
}

} // namespace

class TestNavigation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
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

void TestNavigation::cleanupTestCase()
{
    for (const char* scheme : {"http", "https"})
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
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
    for (int steps = 0; steps < 30;) {
        // A page that loads anew has forgotten this.
        driver.RunScript(QStringLiteral("window.mark = 'kept'"));
        QSignalSpy loaded(driver.OfflinePage(), &QWebEnginePage::loadFinished);
        QString told;
        const bool loads = Act(driver, model, random, told);
        way += told;
        if (told.contains(kStep))
            ++steps;
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
        QString attributes;
        QString page; ///< "Home" is where the links stand.
        QString browsed;
    } const links[] = {
        {QStringLiteral("href='guide/start.html'"), QStringLiteral("Guide start"), {}},
        {QStringLiteral("href='/guide/start.html'"), QStringLiteral("Guide start"), {}},
        {QStringLiteral("href='start.html'"), QStringLiteral("Guide start"), {}}, // the first of two
        {QStringLiteral("href='other/start.html'"), QStringLiteral("Other start"), {}},
        {QStringLiteral("href='OTHER/Start.HTML'"), QStringLiteral("Other start"), {}},
        {QStringLiteral("href='art.html'"), QStringLiteral("Home"), {}},
        {QStringLiteral("href='guide/%E5%B8%AE 100%25.html'"), QStringLiteral("Percent"), {}},
        {QStringLiteral("href='guide/start.html#more'"), QStringLiteral("Home"), {}},
        {QStringLiteral("href='#here'"), QStringLiteral("Home"), {}},
        {QStringLiteral("href=''"), QStringLiteral("Home"), {}},
        {QStringLiteral("href='https://example.com/guide/start.html'"), QStringLiteral("Home"), {}},
        {QStringLiteral("href='https://example.com/a?b=c#d' target='_blank'"), QStringLiteral("Home"),
         QStringLiteral("https://example.com/a?b=c#d")},
        {QStringLiteral("href='#' onclick='location = \"about:blank\"'"), QString(), {}},
    };
    QString page(QStringLiteral("<html><head><title>Home</title></head><body><p id='here'></p>"));
    for (const auto& link : links)
        page += QLatin1String("<p><a ") + link.attributes + QLatin1String(">link</a></p>");
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
        QTRY_COMPARE(title(), link.page);
        QTRY_COMPARE(visited.toString(), link.browsed);
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
