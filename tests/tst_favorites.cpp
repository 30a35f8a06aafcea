#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"
#include "yxconfig.h"

#include <QLabel>
#include <QMenu>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

#include <functional>
#include <optional>

namespace {

const char* const kContents = "treeWidget";
const char* const kFavorites = "treeWidget_favorites";

const QString kTopics = QStringLiteral("Home\n"
                                       "  Getting started\n"
                                       "    Install | favorite\n"
                                       "  Reference | favorite\n"
                                       "  Appendix\n");

/// Presses the right button at a place of the tree and clicks the first item of the menu that opens. Returns
/// the menu's items; nothing when no menu opens.
std::optional<QStringList> UseMenu(WindowDriver& driver, const char* tree, const QPoint& place)
{
    std::optional<QStringList> items;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || !menu->windowHandle()->isExposed())
            return;
        watch.stop();
        items = QStringList();
        for (const QAction* action : menu->actions())
            items->append(action->text());
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().first()).center());
    });
    watch.start(10);
    // By the window, which makes the event for the menu of the press.
    QWidget* viewport = driver.Find<QTreeWidget>(tree)->viewport();
    QTest::mouseClick(driver.Window().windowHandle(), Qt::RightButton, {},
                      viewport->mapTo(&driver.Window(), place));
    return items;
}

QStringList UseMenu(WindowDriver& driver, const char* tree, const QString& entry)
{
    QTreeWidgetItem* item = driver.Entry(tree, entry);
    if (!item)
        return {QLatin1String("no entry ") + entry};
    auto* widget = driver.Find<QTreeWidget>(tree);
    for (QTreeWidgetItem* parent = item->parent(); parent; parent = parent->parent())
        parent->setExpanded(true);
    widget->scrollToItem(item);
    // On a loaded machine the window manager may still be busy with the menu before, which takes the press.
    std::optional<QStringList> items;
    for (int attempt = 0; attempt < 3 && !items; ++attempt)
        items = UseMenu(driver, tree, widget->visualItemRect(item).center());
    return items.value_or(QStringList());
}

bool Add(WindowDriver& driver, const QString& topic)
{
    driver.Click("tbn_context");
    return UseMenu(driver, kContents, topic) == QStringList{QStringLiteral("Add to favorites")};
}

bool Remove(WindowDriver& driver, const QString& topic)
{
    driver.Click("tbn_favorites");
    return UseMenu(driver, kFavorites, topic) == QStringList{QStringLiteral("Delete")};
}

/// The pane: its entries, and the number below it.
QString Pane(WindowDriver& driver)
{
    return TreeText(driver.Find<QTreeWidget>(kFavorites)).replace(QLatin1Char('\n'), QLatin1Char(',')) +
           driver.Find<QLabel>("lab_favoriteNum")->text();
}

int LeftPage(WindowDriver& driver)
{
    return driver.Find<QStackedWidget>("stackedWidget_wizard")->currentIndex();
}

} // namespace

using Action = std::function<void(WindowDriver&)>;
Q_DECLARE_METATYPE(Action)

class TestFavorites : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void changesAreThereAgainInTheNextRun();
    void entriesOpenTheirTopicsAfterChanges();
    void onlyEntriesHaveMenus();
    void onlyTheCloseButtonWrites_data();
    void onlyTheCloseButtonWrites();
    void databaseThatTakesNoMarksIsClosedCleanly_data();
    void databaseThatTakesNoMarksIsClosedCleanly();
    void runWithoutContentsLeavesTheMarks();
};

void TestFavorites::initTestCase()
{
    InitBuiltInResources();
}

void TestFavorites::init()
{
    QVERIFY(UseProduct(ProductIni(1, "ResizeMemory=true\n")));
    YxConfig::Instance()->WriteOpenMode({0, false, true});
    YxConfig::Instance()->WriteWindowSize(QSize(900, 600));
}

void TestFavorites::changesAreThereAgainInTheNextRun()
{
    HelpDatabase database(kTopics);
    {
        WindowDriver driver(database);
        driver.Show();
        QCOMPARE(Pane(driver), QStringLiteral("Install,Reference,2"));
        QVERIFY(!driver.Entry(kFavorites, QStringLiteral("Install"))->icon(0).isNull());

        QVERIFY(Add(driver, QStringLiteral("Appendix")));
        QCOMPARE(LeftPage(driver), 2);
        QVERIFY(driver.Find<QWidget>("tbn_favorites")->property("selected").toBool());
        QCOMPARE(Pane(driver), QStringLiteral("Install,Reference,Appendix,3"));
        QVERIFY(driver.Find<QTreeWidget>(kFavorites)->selectedItems().isEmpty());
        QVERIFY(Add(driver, QStringLiteral("Install")));
        QVERIFY(Add(driver, QStringLiteral("Appendix")));
        QCOMPARE(Pane(driver), QStringLiteral("Install,Reference,Appendix,3"));

        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QCOMPARE(Pane(driver), QStringLiteral("Reference,Appendix,2"));
        QVERIFY(Add(driver, QStringLiteral("Install")));
        QVERIFY(Remove(driver, QStringLiteral("Appendix")));
        QVERIFY(Add(driver, QStringLiteral("Home")));
        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QVERIFY(Add(driver, QStringLiteral("Install")));
        QCOMPARE(Pane(driver), QStringLiteral("Reference,Home,Install,3"));
        QCOMPARE(database.Favorites(), QStringLiteral("3 4"));
        driver.Click("tbn_close");
        QVERIFY(!driver.Window().isVisible());
    }
    QCOMPARE(database.Favorites(), QStringLiteral("1 3 4"));
    WindowDriver driver(database);
    QCOMPARE(Pane(driver), QStringLiteral("Home,Install,Reference,3"));
    driver.Show();
    for (const char* topic : {"Reference", "Home", "Install"})
        QVERIFY(Remove(driver, QLatin1String(topic)));
    QCOMPARE(Pane(driver), QStringLiteral("0"));
    driver.Click("tbn_close");
    QCOMPARE(database.Favorites(), QString());
}

void TestFavorites::entriesOpenTheirTopicsAfterChanges()
{
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    QVERIFY(Add(driver, QStringLiteral("Appendix")));
    QVERIFY(Remove(driver, QStringLiteral("Install")));
    QVERIFY(Add(driver, QStringLiteral("Install")));
    driver.Click("tbn_context");
    driver.Click("tbn_favoritesQuick");
    QCOMPARE(LeftPage(driver), 2);
    for (const char* name : {"Appendix", "Install", "Reference"}) {
        const QString topic = QLatin1String(name);
        driver.ClickEntry(kFavorites, topic);
        QTRY_COMPARE(driver.PageText(), topic);
        driver.Click("tbn_context");
        QCOMPARE(driver.Current(kContents), topic);
        driver.Click("tbn_favorites");
    }
    // A topic stays on the page when it is no favourite any more.
    QVERIFY(Remove(driver, QStringLiteral("Reference")));
    QCOMPARE(driver.PageText(), QStringLiteral("Reference"));
}

void TestFavorites::onlyEntriesHaveMenus()
{
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    const std::pair<const char*, const char*> panes[] = {{"tbn_context", kContents},
                                                         {"tbn_index", "treeWidget_index"},
                                                         {"tbn_favorites", kFavorites},
                                                         {"tbn_result", "treeWidget_result"}};
    for (const auto& [tab, tree] : panes) {
        driver.Click(tab);
        QVERIFY2(!UseMenu(driver, tree, driver.Find<QTreeWidget>(tree)->viewport()->rect().center()), tree);
    }
    for (const auto& [tab, tree] : {panes[1], panes[3]}) {
        driver.Click(tab);
        auto* widget = driver.Find<QTreeWidget>(tree);
        widget->addTopLevelItem(new QTreeWidgetItem({QStringLiteral("entry")}));
        QVERIFY2(!UseMenu(driver, tree, widget->visualItemRect(widget->topLevelItem(0)).center()), tree);
    }
    QCOMPARE(Pane(driver), QStringLiteral("Install,Reference,2"));
}

void TestFavorites::onlyTheCloseButtonWrites_data()
{
    QTest::addColumn<Action>("close");
    QTest::addColumn<bool>("written");
    QTest::newRow("button") << Action([](WindowDriver& driver) { driver.Click("tbn_close"); }) << true;
    QTest::newRow("window manager") << Action([](WindowDriver&) { XDo(QStringLiteral("key alt+F4")); })
                                    << false;
    QTest::newRow("end of the run") << Action([](WindowDriver& driver) { driver.Window().close(); }) << false;
}

void TestFavorites::onlyTheCloseButtonWrites()
{
    QFETCH(Action, close);
    QFETCH(bool, written);
    HelpDatabase database(kTopics);
    {
        WindowDriver driver(database);
        driver.Show();
        QCOMPARE(driver.Window().size(), QSize(900, 600));
        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QVERIFY(Add(driver, QStringLiteral("Home")));
        driver.Window().resize(940, 620);
        QTRY_COMPARE(driver.Window().windowHandle()->size(), QSize(940, 620));
        close(driver);
        QTRY_VERIFY(!driver.Window().isVisible());
    }
    QCOMPARE(database.Favorites(), written ? QStringLiteral("1 4") : QStringLiteral("3 4"));
    QCOMPARE(YxConfig::Instance()->ReadWindowSize(), written ? QSize(940, 620) : QSize(900, 600));
}

void TestFavorites::databaseThatTakesNoMarksIsClosedCleanly_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("locked") << QStringLiteral("BEGIN IMMEDIATE");
    // What no permission keeps from a test that runs as root.
    QTest::newRow("read only") << QStringLiteral(
        "CREATE TRIGGER readOnly BEFORE UPDATE ON HelpFileList BEGIN SELECT RAISE(ABORT, 'no'); END");
}

void TestFavorites::databaseThatTakesNoMarksIsClosedCleanly()
{
    QFETCH(QString, statement);
    HelpDatabase database(kTopics);
    {
        auto other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(database.Path());
        QVERIFY(other.open());
        QVERIFY(!other.exec(statement).lastError().isValid());
        WindowDriver driver(database);
        driver.Show();
        QVERIFY(Add(driver, QStringLiteral("Appendix")));
        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QCOMPARE(Pane(driver), QStringLiteral("Reference,Appendix,2"));
        driver.ClickEntry(kFavorites, QStringLiteral("Appendix"));
        QTRY_COMPARE(driver.PageText(), QStringLiteral("Appendix"));
        QElapsedTimer time;
        time.start();
        driver.Click("tbn_close");
        QVERIFY(!driver.Window().isVisible());
        QVERIFY2(time.elapsed() < 4000, "the window must not wait long for a database that stays locked");
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    QCOMPARE(database.Favorites(), QStringLiteral("3 4"));
}

void TestFavorites::runWithoutContentsLeavesTheMarks()
{
    QVERIFY(UseProduct(ProductIni(3)));
    YxConfig::Instance()->WriteOpenMode({1, false, true});
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    driver.Click("tbn_close");
    QVERIFY(!driver.Window().isVisible());
    QCOMPARE(database.Favorites(), QStringLiteral("3 4"));
}

QTEST_MAIN(TestFavorites)
#include "tst_favorites.moc"
