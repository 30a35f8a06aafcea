#include "builtinresources.h"
#include "helpdatabase.h"
#include "product.h"
#include "windowdriver.h"
#include "yxconfig.h"

#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTimer>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(QMargins)

namespace {

/// Where the tests put the window; it lies far from the sides of the screen.
const QRect kPlace(200, 250, 1200, 700);

bool MoveTo(const QPoint& to)
{
    return XDo(QStringLiteral("mousemove %1 %2").arg(to.x()).arg(to.y()));
}

bool Press(const QPoint& at)
{
    return MoveTo(at) && XDo(QStringLiteral("mousedown 1")) &&
           QTest::qWaitFor([] { return QGuiApplication::mouseButtons() == Qt::LeftButton; });
}

bool Click(const QPoint& at, const QString& more = {})
{
    return MoveTo(at) && XDo(QStringLiteral("click%1 1").arg(more));
}

/// Moves the pressed mouse in many small steps, faster than a window manager follows, and lets go.
bool Drag(const QPoint& from, const QPoint& to)
{
    constexpr int kSteps = 40;
    QStringList moves;
    for (int i = 1; i <= kSteps; ++i) {
        const QPoint at = from + (to - from) * i / kSteps;
        moves += QStringLiteral("mousemove %1 %2").arg(at.x()).arg(at.y());
    }
    return XDo(moves.join(QLatin1Char(' '))) && XDo(QStringLiteral("mouseup 1")) &&
           QTest::qWaitFor([] { return QGuiApplication::mouseButtons() == Qt::NoButton; });
}

QString ListedWindows()
{
    QProcess xprop;
    xprop.start(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST")});
    xprop.waitForFinished();
    return QString::fromLatin1(xprop.readAllStandardOutput());
}

} // namespace

/// A window without a frame, with the mouse and the window manager of a real screen.
class TestChrome : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void titleMovesTheWindow();
    void sidesFollowTheMouse_data();
    void sidesFollowTheMouse();
    void doubleClickMaximizesAndDraggingRestores();
    void minimizedWindowComesBackAsItWas();
    void clickBringsTheKeyboard();
    void settingsMoveTheWindow_data();
    void settingsMoveTheWindow();

private:
    YxHelp& Window() { return driver->Window(); }
    QRect Place();

    std::unique_ptr<HelpDatabase> database;
    std::unique_ptr<WindowDriver> driver;
};

void TestChrome::initTestCase()
{
    InitBuiltInResources();
    QVERIFY(UseProduct(ProductIni(3)));
    YxConfig::Instance()->WriteOpenMode({0, true, true});
    database = std::make_unique<HelpDatabase>(QStringLiteral("Home"));
    driver = std::make_unique<WindowDriver>(*database);
    driver->Show();
    QTRY_COMPARE(driver->PageText(), QStringLiteral("Home"));
}

void TestChrome::cleanupTestCase()
{
    driver.reset();
}

void TestChrome::init()
{
    Window().showNormal();
    Window().setGeometry(kPlace);
    QTRY_COMPARE(Place(), kPlace);
}

/// Where the window stands on the screen, whatever it believes itself.
QRect TestChrome::Place()
{
    QString text;
    XDo(QStringLiteral("getwindowgeometry --shell %1").arg(Window().winId()), &text);
    const auto number = [&](const char* name) {
        return text.section(QLatin1String(name) + QLatin1Char('='), 1)
            .section(QLatin1Char('\n'), 0, 0)
            .toInt();
    };
    const QRect place(number("X"), number("Y"), number("WIDTH"), number("HEIGHT"));
    return place == Window().geometry() ? place : QRect();
}

void TestChrome::titleMovesTheWindow()
{
    const QPoint from = kPlace.topLeft() + QPoint(500, 16);
    const QPoint way(150, -130);
    QVERIFY(Press(from) && Drag(from, from + way));
    QTRY_COMPARE(Place(), kPlace.translated(way));
    QVERIFY(Click(from));
    QCOMPARE(Place(), kPlace.translated(way));
}

void TestChrome::sidesFollowTheMouse_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QMargins>("grown"); // by the way of 30 to the right and 20 down
    const int w = kPlace.width();
    const int h = kPlace.height();
    QTest::newRow("top") << QPoint(600, 2) << QMargins(0, -22, 0, 0);
    QTest::newRow("bottom") << QPoint(600, h - 2) << QMargins(0, 0, 0, 18);
    QTest::newRow("left") << QPoint(2, 400) << QMargins(-32, 0, 0, 0);
    QTest::newRow("right") << QPoint(w - 2, 400) << QMargins(0, 0, 28, 0);
    QTest::newRow("top left") << QPoint(2, 2) << QMargins(-32, -22, 0, 0);
    QTest::newRow("bottom right") << QPoint(w - 2, h - 2) << QMargins(0, 0, 28, 18);
    QTest::newRow("top right") << QPoint(w - 2, 2) << QMargins(0, -22, 28, 0);
    QTest::newRow("bottom left") << QPoint(2, h - 2) << QMargins(-32, 0, 0, 18);
}

void TestChrome::sidesFollowTheMouse()
{
    QFETCH(QPoint, press);
    QFETCH(QMargins, grown);
    const QPoint from = kPlace.topLeft() + press;
    QVERIFY(MoveTo(from));
    QTRY_VERIFY(Window().cursor().shape() != Qt::ArrowCursor);
    QVERIFY(Press(from) && Drag(from, from + QPoint(30, 20)));
    QTRY_COMPARE(Place(), kPlace.marginsAdded(grown));
    QVERIFY(MoveTo(kPlace.center()));
    QTRY_COMPARE(Window().cursor().shape(), Qt::ArrowCursor);
}

void TestChrome::doubleClickMaximizesAndDraggingRestores()
{
    QVERIFY(Click(kPlace.topLeft() + QPoint(500, 16), QStringLiteral(" --repeat 2 --delay 20")));
    QTRY_VERIFY(Window().isMaximized());
    QTRY_COMPARE(Place(), Window().screen()->geometry());
    QVERIFY(driver->ShowsIcon("tbn_maxMin", "icon_restore_nor.png"));

    // The first move restores and shifts nothing; with the next ones the spot that was pressed follows.
    const QPoint from(700, 16);
    QVERIFY(Press(from) && MoveTo(from + QPoint(1, 0)));
    QTRY_VERIFY(!Window().isMaximized());
    QTRY_COMPARE(Place(), kPlace);
    QVERIFY(driver->ShowsIcon("tbn_maxMin", "icon_max_nor.png"));
    QVERIFY(Drag(from, from + QPoint(150, 120)));
    QTRY_COMPARE(Place(), QRect(QPoint(150, 120), kPlace.size()));
}

void TestChrome::minimizedWindowComesBackAsItWas()
{
    for (const bool maximized : {false, true}) {
        const QRect place = maximized ? Window().screen()->geometry() : kPlace;
        if (maximized)
            driver->Click("tbn_maxMin");
        QTRY_COMPARE(Place(), place);
        driver->Click("tbn_min");
        QTRY_VERIFY(Window().isMinimized() && !Window().windowHandle()->isExposed());

        // A task bar lists it and brings it back.
        QVERIFY(ListedWindows().contains(QStringLiteral("0x%1").arg(Window().winId(), 0, 16)));
        QVERIFY(XDo(QStringLiteral("windowactivate %1").arg(Window().winId())));
        QTRY_VERIFY(Window().isActiveWindow() && Window().windowHandle()->isExposed());
        QCOMPARE(Window().isMaximized(), maximized);
        QTRY_COMPARE(Place(), place);
    }
}

void TestChrome::clickBringsTheKeyboard()
{
    driver->RunScript(QStringLiteral("document.onkeydown = e => document.body.textContent = e.key; 0"));
    QLineEdit other;
    other.setGeometry(10, 10, 150, 30);
    other.show();
    other.activateWindow();
    QTRY_VERIFY(QApplication::activeWindow() == &other);
    QVERIFY(Click(kPlace.center() + QPoint(200, 0)));
    QTRY_VERIFY(QApplication::activeWindow() == &Window());
    QVERIFY(XDo(QStringLiteral("key x")));
    QTRY_COMPARE(driver->PageText(), QStringLiteral("x"));

    auto* line = driver->Find<QLineEdit>("lineEdit_context");
    QVERIFY(Click(line->mapToGlobal(line->rect().center())));
    QTRY_VERIFY(line->hasFocus());
    QVERIFY(XDo(QStringLiteral("key y z")));
    QTRY_COMPARE(line->text(), QStringLiteral("yz"));
    QCOMPARE(driver->PageText() + other.text(), QStringLiteral("x"));
}

void TestChrome::settingsMoveTheWindow_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QString>("radio");
    QTest::addColumn<int>("key"); // pressed on the radio button after the click
    QTest::addColumn<int>("after");
    const QString online = QStringLiteral("radioButton_online");
    const QString offline = QStringLiteral("radioButton_offline");
    QTest::newRow("online") << 0 << online << int(Qt::Key_Return) << 1;
    QTest::newRow("offline") << 1 << offline << int(Qt::Key_Return) << 0;
    QTest::newRow("cancel") << 0 << online << int(Qt::Key_Escape) << 0;
}

void TestChrome::settingsMoveTheWindow()
{
    QFETCH(int, before);
    QFETCH(QString, radio);
    QFETCH(int, key);
    QFETCH(int, after);
    YxConfig::Instance()->WriteOpenMode({before, true, true});
    WindowDriver both(*database);
    both.Show();
    auto* setting = both.Find<QWidget>("tbn_setting");
    bool marked = false;
    QTimer::singleShot(0, &both.Window(), [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        marked = QTest::qWaitFor([&] { return QApplication::activeWindow() == dialog; }) &&
                 setting->property("selected").toBool();
        auto* choice = dialog->findChild<QRadioButton*>(radio);
        QTest::mouseClick(choice, Qt::LeftButton, {}, QPoint(8, choice->height() / 2));
        QTest::keyClick(choice, Qt::Key(key));
    });
    both.Click("tbn_setting");
    QVERIFY(marked && !setting->property("selected").toBool());
    QCOMPARE(both.Find<QStackedWidget>("stackedWidget")->currentIndex(), after);
    QCOMPARE(both.Find<QWidget>("tbn_flash")->isVisible(), after == 1);
    QCOMPARE(both.Entry("treeWidget", QStringLiteral("Home")) != nullptr, before == 0 || after == 0);
    OpenModeInfo stored;
    YxConfig::Instance()->ReadOpenMode(stored);
    QCOMPARE(stored.RunMode, after);
}

QTEST_MAIN(TestChrome)
#include "tst_chrome.moc"
