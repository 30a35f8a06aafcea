#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"
#include "yxconfig.h"
#include "yxglobalsignal.h"

#include <QLabel>
#include <QMessageBox>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QWebEngineView>
#include <QtTest>

namespace {

const QString kTopics = QStringLiteral("Home\n"
                                       "  Getting started | key=START\n"
                                       "    Install | key=INSTALL\n"
                                       "    Remove | html=\n"
                                       "  Reference | key=REF\n"
                                       "~ Legal notice | key=LEGAL\n"
                                       "Appendix | key=start\n");

HelpLaunchArgs WithTopic(const QString& topic)
{
    HelpLaunchArgs args;
    args.topic = topic;
    return args;
}

/// A page of 5 MiB, far over what the engine takes as an address. It declares a character set that it isn't
/// in.
QString LargeHtml()
{
    const QString paragraph = QLatin1String("<p>") + QString(300, QChar(0x5e2e)) + QLatin1String("</p>");
    return QStringLiteral(
               "<!DOCTYPE html><html><head><meta charset=\"iso-8859-1\"><title>Big</title></head><body>"
               "<p id=\"top\">首页</p><a id=\"go\" href=\"#end\">to the end</a> "
               "<a id=\"leave\" href=\"topics/install.html\">Install</a>") +
           paragraph.repeated(5800) + QStringLiteral("<p id=\"end\">终</p></body></html>");
}

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void contentsFollowTheRows();
    void clickShowsTheTopic();
    void aTopicWithoutAPageChangesNothing();
    void startTopicIsFoundByKey_data();
    void startTopicIsFoundByKey();
    void deploymentDecidesWhatShows_data();
    void deploymentDecidesWhatShows();
    void productTitle_data();
    void productTitle();
    void missingDatabaseIsTold();
    void emptyDatabaseOpensAnEmptyWindow();
    void tabsChangeTheLeftPage();
    void pageOverTheEnginesLimitBehavesAlike();
    void escapeKeepsTheWindowAndCloseStoresItsSize();
    void changeOfDpiRescales();
};

void TestWindow::initTestCase()
{
    InitBuiltInResources();
}

void TestWindow::contentsFollowTheRows()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    auto* tree = driver.Find<QTreeWidget>("treeWidget");
    QCOMPARE(TreeText(tree),
             QStringLiteral("Home\n  Getting started\n    Install\n    Remove\n  Reference\nAppendix\n"));
    QVERIFY(tree->topLevelItem(0)->isExpanded());
    QVERIFY(!driver.Entry("treeWidget", QStringLiteral("Getting started"))->isExpanded());
    driver.Show();
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Home"));
}

void TestWindow::clickShowsTheTopic()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    driver.ClickEntry("treeWidget", QStringLiteral("Install"));
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Install"));
    QCOMPARE(driver.Current("treeWidget"), QStringLiteral("Install"));
    QCOMPARE(driver.OfflinePage()->url(), QUrl(QStringLiteral("file:///")));

    // What the page has become since then is not loaded away by a click on its own entry.
    driver.RunScript(QStringLiteral("document.body.textContent = 'changed'"));
    driver.ClickEntry("treeWidget", QStringLiteral("Install"));
    driver.ClickEntry("treeWidget", QStringLiteral("Remove"));
    QCOMPARE(driver.PageText(), QStringLiteral("changed"));
    driver.ClickEntry("treeWidget", QStringLiteral("Reference"));
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Reference"));
}

void TestWindow::aTopicWithoutAPageChangesNothing()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Home"));
    driver.ClickEntry("treeWidget", QStringLiteral("Remove"));
    driver.ClickEntry("treeWidget", QStringLiteral("Home"));
    QCOMPARE(driver.PageText(), QStringLiteral("Home"));
}

void TestWindow::startTopicIsFoundByKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("current");
    QTest::newRow("key") << QStringLiteral("INSTALL") << QStringLiteral("Install")
                         << QStringLiteral("Install");
    QTest::newRow("other case, first row")
        << QStringLiteral("Start") << QStringLiteral("Getting started") << QStringLiteral("Getting started");
    QTest::newRow("unknown") << QStringLiteral("nothing") << QStringLiteral("Home") << QString();
    QTest::newRow("outside the tree")
        << QStringLiteral("legal") << QStringLiteral("Legal notice") << QString();
}

void TestWindow::startTopicIsFoundByKey()
{
    QFETCH(QString, key);
    QFETCH(QString, page);
    QFETCH(QString, current);
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Find<QStackedWidget>("stackedWidget_wizard")->setCurrentIndex(3);
    driver.Window().ShowRedirectedTopic(MakeSMData(-1, WithTopic(key)));
    driver.Show();
    QTRY_COMPARE(driver.PageText(), page);
    QCOMPARE(driver.Current("treeWidget"), current);
    QCOMPARE(driver.Find<QStackedWidget>("stackedWidget_wizard")->currentIndex(), 0);
}

void TestWindow::deploymentDecidesWhatShows_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("runMode");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("visible");
    QTest::addColumn<bool>("tree");
    const QString offline = QStringLiteral("page_offline");
    const QString online = QStringLiteral("page_online");
    QTest::newRow("offline only") << 1 << 0 << offline << QString() << true;
    QTest::newRow("offline only, mode stored online") << 1 << 1 << offline << QString() << false;
    QTest::newRow("online only") << 2 << 0 << online << QStringLiteral("tbn_back tbn_nextO tbn_flash")
                                 << false;
    QTest::newRow("both, offline") << 3 << 0 << offline << QStringLiteral("tbn_online tbn_setting") << true;
    QTest::newRow("both, online") << 3 << 1 << online
                                  << QStringLiteral("tbn_back tbn_nextO tbn_flash tbn_online tbn_setting")
                                  << false;
    QTest::newRow("both, another mode")
        << 3 << 7 << offline << QStringLiteral("tbn_online tbn_setting") << false;
    QTest::newRow("no family") << 0 << 0 << offline
                               << QStringLiteral("tbn_back tbn_nextO tbn_flash tbn_online tbn_setting")
                               << true;
}

void TestWindow::deploymentDecidesWhatShows()
{
    QFETCH(int, group);
    QFETCH(int, runMode);
    QFETCH(QString, page);
    QFETCH(QString, visible);
    QFETCH(bool, tree);
    QVERIFY(UseProduct(ProductIni(group)));
    YxConfig::Instance()->WriteOpenMode({runMode, false, true});
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    QVERIFY(driver.Initialised());
    driver.Show();
    QCOMPARE(driver.Find<QStackedWidget>("stackedWidget")->currentWidget()->objectName(), page);
    QStringList shown;
    for (const char* name : {"tbn_back", "tbn_nextO", "tbn_flash", "tbn_online", "tbn_setting"}) {
        if (driver.Find<QWidget>(name)->isVisible())
            shown.append(QLatin1String(name));
    }
    QCOMPARE(shown.join(QLatin1Char(' ')), visible);
    QCOMPARE(driver.Find<QTreeWidget>("treeWidget")->topLevelItemCount() > 0, tree);
    if (group == 3) {
        QCOMPARE(driver.Find<QWidget>("tbn_online")->property("selected").toBool(), runMode == 1);
        QVERIFY(driver.Find<QWidget>("tbn_online")
                    ->toolTip()
                    .startsWith(runMode == 1 ? QLatin1String("You are currently viewing online")
                                             : QLatin1String("You are currently viewing offline")));
    }
}

void TestWindow::productTitle_data()
{
    QTest::addColumn<QString>("product");
    QTest::addColumn<QString>("helpTitle");
    QTest::addColumn<QString>("title");
    QTest::newRow("plain") << QString() << QStringLiteral("YXCAD") << QStringLiteral("Test Help");
    QTest::newRow("title of the variant")
        << QString() << QStringLiteral("YXCADM") << QStringLiteral("Variant M");
    QTest::newRow("product of the variant")
        << QStringLiteral("YXCADA") << QStringLiteral("YXCADA") << QStringLiteral("Variant A");
    QTest::newRow("title of the other variant alone")
        << QString() << QStringLiteral("YXCADA") << QStringLiteral("Test Help");
    QTest::newRow("product decides, title is the word")
        << QStringLiteral("YXCADA") << QStringLiteral("YXCAD") << QStringLiteral("Test Help");
    QTest::newRow("unknown product") << QStringLiteral("YXCADM") << QStringLiteral("YXCAD")
                                     << QStringLiteral("Test Help");
}

void TestWindow::productTitle()
{
    QFETCH(QString, product);
    QFETCH(QString, helpTitle);
    QFETCH(QString, title);
    QVERIFY(UseProduct(ProductIni(1, {},
                                  "[YXCADM]\nProductName=Variant "
                                  "M\nProduct=YXCADM\n[YXCADA]\nProductName=Variant A\nProduct=YXCADA\n")));
    HelpDatabase database(kTopics);
    HelpLaunchArgs args;
    args.product = product;
    args.helpTitle = helpTitle;
    WindowDriver driver(database, args);
    QCOMPARE(driver.Window().windowTitle(), title);
    QCOMPARE(driver.Find<QLabel>("label_title")->text(), title);
    QVERIFY(driver.Find<QLabel>("label_copyright")->text().contains(QLatin1String("2024")));
}

void TestWindow::missingDatabaseIsTold()
{
    HelpDatabase database(kTopics);
    QVERIFY(QFile::remove(database.Path()));
    for (const int group : {1, 2, 3}) {
        QVERIFY(UseProduct(ProductIni(group)));
        QString told;
        QTimer::singleShot(0, this, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            told = box->windowTitle() + QLatin1Char(':') + box->text();
            box->accept();
        });
        WindowDriver driver(database);
        QCOMPARE(driver.Initialised(), group == 2);
        QCOMPARE(told, group == 2 ? QString()
                                  : QStringLiteral("Error:Database %1 does not exist.").arg(database.Path()));
    }
}

void TestWindow::emptyDatabaseOpensAnEmptyWindow()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database;
    WindowDriver driver(database, WithTopic(QStringLiteral("START")));
    QVERIFY(driver.Initialised());
    driver.Show();
    driver.Click("tbn_home");
    QCOMPARE(driver.Find<QTreeWidget>("treeWidget")->topLevelItemCount(), 0);
}

void TestWindow::tabsChangeTheLeftPage()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    struct
    {
        const char* tab;
        const char* page;
        bool index;
        bool find;
    } const steps[] = {{"tbn_index", "page_index", true, false},
                       {"tbn_favorites", "page_favorites", false, false},
                       {"tbn_result", "page_result", false, true},
                       {"tbn_context", "page_context", false, true}};
    for (const auto& step : steps) {
        driver.Click(step.tab);
        QCOMPARE(driver.Find<QStackedWidget>("stackedWidget_wizard")->currentWidget()->objectName(),
                 QLatin1String(step.page));
        QCOMPARE(driver.Find<QWidget>("frame_index")->isVisible(), step.index);
        QCOMPARE(driver.Find<QWidget>("frame_contextFind")->isVisible(), step.find);
        for (const auto& other : steps)
            QCOMPARE(driver.Find<QWidget>(other.tab)->property("selected").toBool(), other.tab == step.tab);
    }
}

void TestWindow::pageOverTheEnginesLimitBehavesAlike()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    database.AddTopics(QStringLiteral("  Big | key=BIG | html=") + LargeHtml());
    WindowDriver driver(database);
    driver.Window().ShowRedirectedTopic(MakeSMData(-1, WithTopic(QStringLiteral("BIG"))));
    driver.Show();
    const QString ends =
        QStringLiteral("['top', 'end'].map(id => (document.getElementById(id) || {}).textContent).join()");
    QTRY_COMPARE(driver.RunScript(ends).toString(), QStringLiteral("首页,终"));
    QCOMPARE(driver.RunScript(QStringLiteral("document.compatMode")).toString(),
             QStringLiteral("CSS1Compat"));

    driver.ClickInPage(QStringLiteral("#go"));
    QTRY_VERIFY(driver.RunScript(QStringLiteral("window.scrollY")).toDouble() > 1000);
    QCOMPARE(driver.RunScript(ends).toString(), QStringLiteral("首页,终"));
    driver.ClickInPage(QStringLiteral("#leave"));
    QTRY_COMPARE(driver.PageText(), QStringLiteral("Install"));
    driver.Click("tbn_pre");
    QTRY_COMPARE(driver.RunScript(ends).toString(), QStringLiteral("首页,终"));
}

void TestWindow::escapeKeepsTheWindowAndCloseStoresItsSize()
{
    QVERIFY(UseProduct(ProductIni(1, "ResizeMemory=true\n")));
    YxConfig::Instance()->WriteWindowSize(QSize(900, 600));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    QCOMPARE(driver.Window().size(), QSize(900, 600));
    QTest::keyClick(&driver.Window(), Qt::Key_Escape);
    QVERIFY(driver.Window().isVisible());
    driver.Window().resize(880, 610);
    driver.Click("tbn_close");
    QVERIFY(!driver.Window().isVisible());
    QCOMPARE(YxConfig::Instance()->ReadWindowSize(), QSize(880, 610));
}

void TestWindow::changeOfDpiRescales()
{
    QVERIFY(UseProduct(ProductIni(1)));
    HelpDatabase database(kTopics);
    WindowDriver driver(database);
    driver.Show();
    auto* button = driver.Find<QToolButton>("tbn_home");
    const QSize before = button->size();
    const qreal zoom = driver.OfflinePage()->zoomFactor();

    driver.Window().ChangeDpi(192);
    QCOMPARE(button->size(), before * 2);
    QCOMPARE(button->iconSize(), QSize(70, 70));
    QCOMPARE(driver.OfflinePage()->zoomFactor(), zoom * 2);
    QCOMPARE(driver.Find<QLabel>("label_proTtile")->font().pixelSize(), 48);
    driver.Window().ChangeDpi(96);
    QCOMPARE(button->size(), before);
    QCOMPARE(driver.Find<QLabel>("label_proTtile")->font().pixelSize(), 24);
}

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
