#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "testtable.h"
#include "windowdriver.h"
#include "yxconfig.h"

#include <QLabel>
#include <QMessageBox>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QWebEngineView>

namespace {

const QString kTopics = "Home\n  Getting started | key=START\n    Install | key=INSTALL\n    Remove | html=\n"
                        "  Reference | key=REF\n~ Legal notice | key=LEGAL\nAppendix | key=start\n"_s;

HelpLaunchArgs WithTopic(const QString& topic)
{
    HelpLaunchArgs args;
    args.topic = topic;
    return args;
}

/// A window on these topics, or on no topics, with the offline display family.
struct Fixture
{
    explicit Fixture(const QString& topics = kTopics) : database(topics), driver(database) {}

    bool product = UseProduct(ProductIni(1));
    HelpDatabase database;
    WindowDriver driver;
};

/// A page of 5 MiB, far over what the engine takes as an address. It declares a character set that it isn't
/// in.
QString LargeHtml()
{
    const QString paragraph = "<p>"_s + QString(300, QChar(0x5e2e)) + "</p>"_s;
    return "<!DOCTYPE html><html><head><meta charset=\"iso-8859-1\"><title>Big</title></head><body>"
           "<p id=\"top\">首页</p><a id=\"go\" href=\"#end\">to the end</a> "
           "<a id=\"leave\" href=\"topics/install.html\">Install</a>"_s +
           paragraph.repeated(5800) + "<p id=\"end\">终</p></body></html>"_s;
}

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { InitBuiltInResources(); }
    void clickShowsTheTopic();
    void startTopicIsFoundByKey();
    void deploymentDecidesWhatShows();
    void productTitle();
    void missingDatabaseIsTold();
    void emptyDatabaseOpensAnEmptyWindow();
    void tabsChangeTheLeftPage();
    void pageOverTheEnginesLimitBehavesAlike();
    void escapeKeepsTheWindowAndCloseStoresItsSize();
    void changeOfDpiRescales();
};

void TestWindow::clickShowsTheTopic()
{
    Fixture f;
    auto* tree = f.driver.Find<QTreeWidget>("treeWidget");
    QCOMPARE(TreeText(tree), "Home\n  Getting started\n    Install\n    Remove\n  Reference\nAppendix\n"_s);
    QVERIFY(tree->topLevelItem(0)->isExpanded());
    QVERIFY(!f.driver.Entry("treeWidget", "Getting started"_s)->isExpanded());
    f.driver.Show();
    QTRY_COMPARE(f.driver.PageText(), "Home"_s);
    f.driver.ClickEntry("treeWidget", "Install"_s);
    QTRY_COMPARE(f.driver.PageText(), "Install"_s);
    QCOMPARE(f.driver.Current("treeWidget"), "Install"_s);
    QCOMPARE(f.driver.OfflinePage()->url(), QUrl("file:///"_s));

    // What the page has become since then is not loaded away by a click on its own entry, or on one without a
    // page.
    f.driver.RunScript("document.body.textContent = 'changed'"_s);
    f.driver.ClickEntry("treeWidget", "Install"_s);
    f.driver.ClickEntry("treeWidget", "Remove"_s);
    QCOMPARE(f.driver.PageText(), "changed"_s);
    f.driver.ClickEntry("treeWidget", "Reference"_s);
    QTRY_COMPARE(f.driver.PageText(), "Reference"_s);
}

void TestWindow::startTopicIsFoundByKey()
{
    // Key, the page that shows, and the entry that is current. Of two keys the first row counts.
    for (const char* line : {"INSTALL|Install|Install", "Start|Getting started|Getting started",
                             "nothing|Home|", "legal|Legal notice|"}) {
        const QStringList cells = Cells(line);
        Fixture f;
        auto* stack = f.driver.Find<QStackedWidget>("stackedWidget_wizard");
        stack->setCurrentIndex(3);
        f.driver.Window().ShowRedirectedTopic(MakeSMData(-1, WithTopic(cells[0])));
        f.driver.Show();
        QTRY_COMPARE(f.driver.PageText(), cells[1]);
        QCOMPARE(f.driver.Current("treeWidget"), cells[2]);
        QCOMPARE(stack->currentIndex(), 0);
    }
}

void TestWindow::deploymentDecidesWhatShows()
{
    // Display family and stored mode; the page, the buttons that are to be seen, and whether there is a tree.
    for (const char* line :
         {"1 0|page_offline tree", "1 1|page_offline", "2 0|page_online tbn_back tbn_nextO tbn_flash",
          "3 0|page_offline tbn_online tbn_setting tree",
          "3 1|page_online tbn_back tbn_nextO tbn_flash tbn_online tbn_setting",
          "3 7|page_offline tbn_online tbn_setting",
          "0 0|page_offline tbn_back tbn_nextO tbn_flash tbn_online tbn_setting tree"}) {
        const QString expected = QString::fromLatin1(line).mid(4);
        const int runMode = line[2] - '0';
        QVERIFY(UseProduct(ProductIni(line[0] - '0')));
        YxConfig::Instance()->WriteOpenMode({runMode, false, true});
        HelpDatabase database(kTopics);
        WindowDriver driver(database);
        driver.Show();
        QStringList shown{driver.Find<QStackedWidget>("stackedWidget")->currentWidget()->objectName()};
        for (const char* name : {"tbn_back", "tbn_nextO", "tbn_flash", "tbn_online", "tbn_setting"}) {
            if (driver.Find<QWidget>(name)->isVisible())
                shown.append(QLatin1String(name));
        }
        if (driver.Find<QTreeWidget>("treeWidget")->topLevelItemCount() > 0)
            shown.append("tree"_s);
        QCOMPARE(shown.join(QLatin1Char(' ')), expected);
        const auto* online = driver.Find<QWidget>("tbn_online");
        if (line[0] == '3') {
            QCOMPARE(online->property("selected").toBool(), runMode == 1);
            QVERIFY(online->toolTip().startsWith(
                "You are currently viewing o%1line"_s.arg(runMode == 1 ? "n"_s : "ff"_s)));
        }
    }
}

void TestWindow::productTitle()
{
    QVERIFY(UseProduct(ProductIni(1, {},
                                  "[YXCADM]\nProductName=Variant M\nProduct=YXCADM\n"
                                  "[YXCADA]\nProductName=Variant A\nProduct=YXCADA\n")));
    HelpDatabase database(kTopics);
    // Product and help title of the launch, and the title: M goes by the help title, A by both.
    for (const char* line : {"|YXCAD|Test Help", "|YXCADM|Variant M", "YXCADA|YXCADA|Variant A",
                             "|YXCADA|Test Help", "YXCADA|YXCAD|Test Help", "YXCADM|YXCAD|Test Help"}) {
        const QStringList cells = Cells(line);
        delete YxConfig::Instance();
        HelpLaunchArgs args;
        args.product = cells[0];
        args.helpTitle = cells[1];
        WindowDriver driver(database, args);
        QCOMPARE(driver.Window().windowTitle(), cells[2]);
        QCOMPARE(driver.Find<QLabel>("label_title")->text(), cells[2]);
        QVERIFY(driver.Find<QLabel>("label_copyright")->text().contains("2024"_s));
    }
}

void TestWindow::missingDatabaseIsTold()
{
    HelpDatabase database(kTopics);
    QVERIFY(QFile::remove(database.Path()));
    QVERIFY(UseProduct(ProductIni(2)));
    QVERIFY(WindowDriver(database).Initialised());
    for (const int group : {1, 3}) {
        QVERIFY(UseProduct(ProductIni(group)));
        QString told;
        WithNext<QMessageBox>([&](QMessageBox& box) { told = box.windowTitle() + box.text(); });
        QVERIFY(!WindowDriver(database).Initialised());
        QCOMPARE(told, "ErrorDatabase %1 does not exist."_s.arg(database.Path()));
    }
}

void TestWindow::emptyDatabaseOpensAnEmptyWindow()
{
    Fixture f{QString()};
    QVERIFY(f.driver.Initialised());
    f.driver.Window().ShowRedirectedTopic(MakeSMData(-1, WithTopic("START"_s)));
    f.driver.Show();
    f.driver.Click("tbn_home");
    QCOMPARE(f.driver.Find<QTreeWidget>("treeWidget")->topLevelItemCount(), 0);
}

void TestWindow::tabsChangeTheLeftPage()
{
    Fixture f;
    f.driver.Show();
    // What is to be seen of the stack's page, the field of the index, the search field and its selected tab.
    for (const QString& line :
         {"index page_index frame_index"_s, "favorites page_favorites"_s,
          "result page_result frame_contextFind"_s, "context page_context frame_contextFind"_s}) {
        const QString tab = "tbn_"_s + line.section(QLatin1Char(' '), 0, 0);
        f.driver.Click(qPrintable(tab));
        QString shown = f.driver.Find<QStackedWidget>("stackedWidget_wizard")->currentWidget()->objectName();
        for (const char* frame : {"frame_index", "frame_contextFind"})
            shown += f.driver.Find<QWidget>(frame)->isVisible()
                         ? QString(QLatin1Char(' ') + QLatin1String(frame))
                         : QString();
        QCOMPARE(shown, line.section(QLatin1Char(' '), 1));
        for (const char* other : {"tbn_index", "tbn_favorites", "tbn_result", "tbn_context"})
            QCOMPARE(f.driver.Find<QWidget>(other)->property("selected").toBool(),
                     tab == QLatin1String(other));
    }
}

void TestWindow::pageOverTheEnginesLimitBehavesAlike()
{
    Fixture f(kTopics + "  Big | key=BIG | html="_s + LargeHtml());
    WindowDriver& driver = f.driver;
    driver.Window().ShowRedirectedTopic(MakeSMData(-1, WithTopic("BIG"_s)));
    driver.Show();
    const QString ends = "['top', 'end'].map(id => (document.getElementById(id) || {}).textContent).join()"_s;
    QTRY_COMPARE(driver.RunScript(ends).toString(), "首页,终"_s);
    QCOMPARE(driver.RunScript("document.compatMode"_s).toString(), "CSS1Compat"_s);

    driver.ClickInPage("#go"_s);
    QTRY_VERIFY(driver.RunScript("window.scrollY"_s).toDouble() > 1000);
    QCOMPARE(driver.RunScript(ends).toString(), "首页,终"_s);
    driver.ClickInPage("#leave"_s);
    QTRY_COMPARE(driver.PageText(), "Install"_s);
    driver.Click("tbn_pre");
    QTRY_COMPARE(driver.RunScript(ends).toString(), "首页,终"_s);
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
    Fixture f;
    WindowDriver& driver = f.driver;
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
