#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"
#include "yxconfig.h"

#include <QLabel>
#include <QMenu>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

#include <functional>

namespace {

const char* const kContents = "treeWidget";
const char* const kFavorites = "treeWidget_favorites";

const QString kTopics = QStringLiteral("Home\n"
                                       "  Getting started\n"
                                       "    Install | favorite\n"
                                       "  Reference | favorite\n"
                                       "  Appendix\n");

/// Presses the right button on an entry of the tree, or on the empty space of it, and clicks the first item
/// of the menu that opens. Returns the menu's items; empty when no menu opens.
QString UseMenu(WindowDriver& driver, const char* tree, const QString& text = {})
{
    QString items;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || !menu->windowHandle()->isExposed())
            return;
        watch.stop();
        for (const QAction* action : menu->actions())
            items += action->text() + QLatin1Char(';');
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().first()).center());
    });
    watch.start(10);
    auto* widget = driver.Find<QTreeWidget>(tree);
    QTreeWidgetItem* entry = driver.Entry(tree, text);
    for (QTreeWidgetItem* item = entry ? entry->parent() : nullptr; item; item = item->parent())
        item->setExpanded(true);
    const QRect place = entry ? widget->visualItemRect(entry) : widget->viewport()->rect();
    // By the window, which makes the event for the menu of the press.
    QTest::mouseClick(driver.Window().windowHandle(), Qt::RightButton, {},
                      widget->viewport()->mapTo(&driver.Window(), place.center()));
    return items;
}

bool Add(WindowDriver& driver, const QString& topic)
{
    driver.Click("tbn_context");
    return UseMenu(driver, kContents, topic) == QLatin1String("Add to favorites;");
}

bool Remove(WindowDriver& driver, const QString& topic)
{
    driver.Click("tbn_favorites");
    return UseMenu(driver, kFavorites, topic) == QLatin1String("Delete;");
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

class TestFavorites : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void changesAreThereAgainInTheNextRun();
    void entriesOpenTheirTopicsAfterChanges();
    void onlyEntriesHaveMenus();
    void onlyTheCloseButtonWrites();
    void databaseThatTakesNoMarksIsClosedCleanly();
};

void TestFavorites::initTestCase()
{
    InitBuiltInResources();
}

void TestFavorites::init()
{
    QVERIFY(UseProduct(ProductIni(1, "ResizeMemory=true\n")));
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
                                                         {"tbn_favorites", kFavorites},
                                                         {"tbn_index", "treeWidget_index"},
                                                         {"tbn_result", "treeWidget_result"}};
    for (const auto& [tab, tree] : panes) {
        driver.Click(tab);
        QCOMPARE(UseMenu(driver, tree), QString());
        if (tree == kContents || tree == kFavorites)
            continue;
        driver.Find<QTreeWidget>(tree)->addTopLevelItem(new QTreeWidgetItem({QStringLiteral("entry")}));
        QCOMPARE(UseMenu(driver, tree, QStringLiteral("entry")), QString());
    }
    QCOMPARE(Pane(driver), QStringLiteral("Install,Reference,2"));
}

void TestFavorites::onlyTheCloseButtonWrites()
{
    const std::pair<bool, std::function<void(WindowDriver&)>> ways[] = {
        {false, [](WindowDriver&) { XDo(QStringLiteral("key alt+F4")); }},
        {false, [](WindowDriver& driver) { driver.Window().close(); }},
        {true, [](WindowDriver& driver) { driver.Click("tbn_close"); }}};
    HelpDatabase database(kTopics);
    for (const auto& [writes, close] : ways) {
        WindowDriver driver(database);
        driver.Show();
        QCOMPARE(driver.Window().size(), QSize(900, 600));
        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QVERIFY(Add(driver, QStringLiteral("Home")));
        driver.Window().resize(940, 620);
        QTRY_COMPARE(driver.Window().windowHandle()->size(), QSize(940, 620));
        close(driver);
        QTRY_VERIFY(!driver.Window().isVisible());
        QCOMPARE(database.Favorites(), writes ? QStringLiteral("1 4") : QStringLiteral("3 4"));
        QCOMPARE(YxConfig::Instance()->ReadWindowSize(), writes ? QSize(940, 620) : QSize(900, 600));
    }
}

void TestFavorites::databaseThatTakesNoMarksIsClosedCleanly()
{
    // Locked by another program; and as it is with a read-only file, which doesn't stop a test that runs as
    // root.
    for (const char* statement : {"BEGIN IMMEDIATE", "CREATE TRIGGER readOnly BEFORE UPDATE ON HelpFileList "
                                                     "BEGIN SELECT RAISE(ABORT, 'read only'); END"}) {
        HelpDatabase database(kTopics);
        auto other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(database.Path());
        QVERIFY(other.open());
        QVERIFY(QSqlQuery(other).exec(QLatin1String(statement)));
        WindowDriver driver(database);
        driver.Show();
        QVERIFY(Add(driver, QStringLiteral("Appendix")));
        QVERIFY(Remove(driver, QStringLiteral("Install")));
        QCOMPARE(Pane(driver), QStringLiteral("Reference,Appendix,2"));
        QElapsedTimer time;
        time.start();
        driver.Click("tbn_close");
        QVERIFY(!driver.Window().isVisible());
        QVERIFY2(time.elapsed() < 4000, "the window must not wait long for a database that stays locked");
        other.close();
        QCOMPARE(database.Favorites(), QStringLiteral("3 4"));
    }
}

QTEST_MAIN(TestFavorites)
#include "tst_favorites.moc"
