#include "drawwidgettool.h"
#include "movewidgettool.h"
#include "yxglobalsignal.h"

#include <QHoverEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

namespace {

constexpr int kEdge = 5;
constexpr int kTitle = 30;

void Hover(QWidget& window, const QPoint& position)
{
    QHoverEvent event(QEvent::HoverMove, position, position);
    QCoreApplication::sendEvent(&window, &event);
}

void Mouse(QWidget& widget, QEvent::Type type, const QPoint& position, const QPoint& global = {},
           Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(type, position, global, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

/// A window of 800 x 600 at (100, 50) with a title area.
struct Window
{
    Window()
    {
        window.setGeometry(100, 50, 800, 600);
        title.setGeometry(0, 0, 800, kTitle);
        mover.SetLeftButtonOnly();
        mover.SetWidgets(&title, &window);
        mover.SetDrawTool(&sizer);
        sizer.SetLeftButtonOnly();
        sizer.SetWidget(&window);
        sizer.SetEdgeWidth(kEdge);
        sizer.SetTopLimit(kTitle);
    }

    QWidget window;
    QWidget title{&window};
    MoveWidgetTool mover;
    DrawWidgetTool sizer;
};

} // namespace

class TestWindowTools : public QObject
{
    Q_OBJECT

private slots:
    void cursorTellsTheZone_data();
    void cursorTellsTheZone();
    void sidesFollowTheMouse_data();
    void sidesFollowTheMouse();
    void onlyTheLeftButtonInAZoneResizes_data();
    void onlyTheLeftButtonInAZoneResizes();
    void maximizedWindowIsNotResized();
    void titleMovesTheWindow();
    void movesOnTheirWayAreNotMadeTwice();
    void titleDoesNotMoveWhileResizing();
    void titleIgnoresOtherButtons();
    void draggingAMaximizedWindowOnlyTells();
    void firstWidgetsCount();
};

void TestWindowTools::cursorTellsTheZone_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<int>("shape");
    const auto row = [](int x, int y, Qt::CursorShape shape) {
        QTest::addRow("%d,%d", x, y) << QPoint(x, y) << int(shape);
    };
    row(400, 300, Qt::ArrowCursor);
    // bands and their last pixels
    row(5, 300, Qt::SizeHorCursor);
    row(6, 300, Qt::ArrowCursor);
    row(795, 300, Qt::SizeHorCursor);
    row(794, 300, Qt::ArrowCursor);
    row(400, 595, Qt::SizeVerCursor);
    row(400, 594, Qt::ArrowCursor);
    row(400, 5, Qt::SizeVerCursor);
    row(400, 6, Qt::ArrowCursor);
    // the title area is free of the bands at the sides
    row(0, 20, Qt::ArrowCursor);
    row(0, 30, Qt::ArrowCursor);
    row(0, 31, Qt::SizeHorCursor);
    row(799, 30, Qt::ArrowCursor);
    // corners
    row(0, 0, Qt::SizeFDiagCursor);
    row(4, 4, Qt::SizeFDiagCursor);
    row(5, 5, Qt::ArrowCursor);
    row(6, 5, Qt::SizeVerCursor);
    row(-5, -5, Qt::SizeFDiagCursor);
    row(-6, 0, Qt::ArrowCursor);
    row(796, 4, Qt::SizeBDiagCursor);
    row(795, 4, Qt::ArrowCursor);
    row(799, 599, Qt::SizeFDiagCursor);
    row(796, 596, Qt::SizeFDiagCursor);
    row(796, 595, Qt::ArrowCursor);
    row(805, 605, Qt::SizeFDiagCursor);
    row(0, 599, Qt::SizeBDiagCursor);
    row(4, 596, Qt::SizeBDiagCursor);
    row(5, 599, Qt::ArrowCursor);
    row(0, 594, Qt::SizeHorCursor);
}

void TestWindowTools::cursorTellsTheZone()
{
    QFETCH(QPoint, position);
    QFETCH(int, shape);
    Window w;
    w.window.setCursor(Qt::WaitCursor);
    Hover(w.window, position);
    QCOMPARE(int(w.window.cursor().shape()), shape);
}

void TestWindowTools::sidesFollowTheMouse_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("geometry");
    const auto rect = [](int left, int top, int right, int bottom) {
        return QRect(QPoint(left, top), QPoint(right, bottom));
    };
    // The window lies at 100, 50 to 899, 649.
    QTest::newRow("top") << QPoint(400, 2) << QPoint(333, 70) << rect(100, 70, 899, 649);
    QTest::newRow("bottom") << QPoint(400, 597) << QPoint(333, 700) << rect(100, 50, 899, 699);
    QTest::newRow("left") << QPoint(2, 300) << QPoint(80, 333) << rect(80, 50, 899, 649);
    QTest::newRow("right") << QPoint(797, 300) << QPoint(950, 333) << rect(100, 50, 949, 649);
    QTest::newRow("top left") << QPoint(1, 1) << QPoint(120, 40) << rect(120, 40, 899, 649);
    QTest::newRow("bottom right") << QPoint(798, 598) << QPoint(850, 620) << rect(100, 50, 849, 619);
    QTest::newRow("top right") << QPoint(798, 1) << QPoint(850, 60) << rect(100, 60, 849, 649);
    QTest::newRow("bottom left") << QPoint(1, 598) << QPoint(90, 620) << rect(90, 50, 899, 619);
}

void TestWindowTools::sidesFollowTheMouse()
{
    QFETCH(QPoint, press);
    QFETCH(QPoint, to);
    QFETCH(QRect, geometry);
    Window w;
    QVERIFY(w.sizer.CanMove());
    Mouse(w.window, QEvent::MouseButtonPress, press);
    QVERIFY(!w.sizer.CanMove());
    // Hovering elsewhere doesn't change what is being resized.
    Hover(w.window, {400, 300});
    Mouse(w.window, QEvent::MouseMove, press, to);
    QCOMPARE(w.window.geometry(), geometry);
    Mouse(w.window, QEvent::MouseButtonRelease, press);
    QVERIFY(w.sizer.CanMove());
    Mouse(w.window, QEvent::MouseMove, press, {500, 500});
    QCOMPARE(w.window.geometry(), geometry);
}

void TestWindowTools::onlyTheLeftButtonInAZoneResizes_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<int>("button");
    QTest::newRow("right button") << QPoint(797, 300) << int(Qt::RightButton);
    QTest::newRow("no zone") << QPoint(400, 300) << int(Qt::LeftButton);
}

void TestWindowTools::onlyTheLeftButtonInAZoneResizes()
{
    QFETCH(QPoint, press);
    QFETCH(int, button);
    Window w;
    Mouse(w.window, QEvent::MouseButtonPress, press, {}, Qt::MouseButton(button));
    Mouse(w.window, QEvent::MouseMove, press, {500, 400}, Qt::MouseButton(button));
    QVERIFY(w.sizer.CanMove());
    QCOMPARE(w.window.geometry(), QRect(100, 50, 800, 600));
}

void TestWindowTools::maximizedWindowIsNotResized()
{
    Window w;
    Hover(w.window, {400, 2});
    w.window.setWindowState(Qt::WindowMaximized);
    const QRect before = w.window.geometry();
    Hover(w.window, {400, 300});
    QCOMPARE(w.window.cursor().shape(), Qt::SizeVerCursor);
    Mouse(w.window, QEvent::MouseButtonPress, {2, 300});
    Mouse(w.window, QEvent::MouseMove, {2, 300}, {500, 400});
    QVERIFY(w.sizer.CanMove());
    QCOMPARE(w.window.geometry(), before);
}

void TestWindowTools::titleMovesTheWindow()
{
    Window w;
    Mouse(w.title, QEvent::MouseMove, {60, 25});
    QCOMPARE(w.window.pos(), QPoint(100, 50));
    Mouse(w.title, QEvent::MouseButtonPress, {50, 15});
    Mouse(w.title, QEvent::MouseMove, {60, 12});
    QCOMPARE(w.window.geometry(), QRect(110, 47, 800, 600));
    Mouse(w.title, QEvent::MouseButtonRelease, {60, 12});
    Mouse(w.title, QEvent::MouseMove, {90, 25});
    QCOMPARE(w.window.pos(), QPoint(110, 47));
}

void TestWindowTools::movesOnTheirWayAreNotMadeTwice()
{
    Window w;
    Mouse(w.title, QEvent::MouseButtonPress, {50, 15});
    // Both happened while the window was still at 100, 50: the window manager is slower than the mouse.
    for (const int way : {10, 30}) {
        const QPoint position(50 + way, 15);
        QMouseEvent event(QEvent::MouseMove, position, QPoint(100, 50) + position, Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QSpontaneKeyEvent::setSpontaneous(&event);
        QCoreApplication::instance()->notify(&w.title, &event);
        QCOMPARE(w.window.pos(), QPoint(100 + way, 50));
    }
}

void TestWindowTools::titleDoesNotMoveWhileResizing()
{
    Window w;
    // A press in the top band reaches the title area first and the window after it.
    Mouse(w.title, QEvent::MouseButtonPress, {400, 2});
    QVERIFY(!w.sizer.CanMove());
    Mouse(w.title, QEvent::MouseMove, {410, 12}, {510, 62});
    QCOMPARE(w.window.geometry(), QRect(QPoint(100, 62), QPoint(899, 649)));
}

void TestWindowTools::titleIgnoresOtherButtons()
{
    Window w;
    Mouse(w.title, QEvent::MouseButtonPress, {50, 15}, {}, Qt::RightButton);
    Mouse(w.title, QEvent::MouseMove, {90, 15}, {}, Qt::RightButton);
    QCOMPARE(w.window.pos(), QPoint(100, 50));
}

void TestWindowTools::draggingAMaximizedWindowOnlyTells()
{
    Window w;
    w.window.setWindowState(Qt::WindowMaximized);
    const QPoint before = w.window.pos();
    QSignalSpy told(YxGlobalSignal::Instance(), &YxGlobalSignal::DragWidgetBMaximized);
    Mouse(w.title, QEvent::MouseButtonPress, {50, 15});
    QCOMPARE(told.count(), 0);
    Mouse(w.title, QEvent::MouseMove, {60, 15});
    QCOMPARE(told.count(), 1);
    QCOMPARE(w.window.pos(), before);
}

void TestWindowTools::firstWidgetsCount()
{
    Window w;
    QWidget other;
    other.setGeometry(0, 0, 800, 600);
    w.sizer.SetWidget(&other);
    w.mover.SetWidgets(&other, &other);
    QVERIFY(!other.testAttribute(Qt::WA_Hover));
    QVERIFY(w.window.testAttribute(Qt::WA_Hover));
    Mouse(other, QEvent::MouseButtonPress, {50, 2});
    Mouse(other, QEvent::MouseMove, {90, 12}, {90, 12});
    QCOMPARE(other.geometry(), QRect(0, 0, 800, 600));
}

QTEST_MAIN(TestWindowTools)
#include "tst_windowtools.moc"
