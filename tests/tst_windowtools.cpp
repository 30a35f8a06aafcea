#include "drawwidgettool.h"
#include "movewidgettool.h"
#include "testtable.h"
#include "yxglobalsignal.h"

#include <QHoverEvent>
#include <QMouseEvent>
#include <QWidget>

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
    void cursorTellsTheZone();
    void sidesFollowTheMouse();
    void onlyTheLeftButtonInAZoneResizes();
    void maximizedWindowIsNotResized();
    void titleMovesTheWindow();
    void movesOnTheirWayAreNotMadeTwice();
    void titleDoesNotMoveWhileResizing();
    void draggingAMaximizedWindowOnlyTells();
    void firstWidgetsCount();
};

void TestWindowTools::cursorTellsTheZone()
{
    // Bands and corners with the pixels next to them; the title area is free of the bands at the sides.
    const QHash<QString, Qt::CursorShape> shapes{{"-"_s, Qt::SizeHorCursor},
                                                 {"|"_s, Qt::SizeVerCursor},
                                                 {"\\"_s, Qt::SizeFDiagCursor},
                                                 {"/"_s, Qt::SizeBDiagCursor}};
    for (const char* line :
         {"- 5,300 795,300 0,31 0,594", "| 400,595 400,5 6,5", "\\ 0,0 4,4 -5,-5 799,599 796,596 805,605",
          "/ 796,4 0,599 4,596",
          ". 400,300 6,300 794,300 400,594 400,6 0,20 0,30 799,30 5,5 -6,0 795,4 796,595 5,599"}) {
        QStringList places = QString::fromLatin1(line).split(QLatin1Char(' '));
        const Qt::CursorShape shape = shapes.value(places.takeFirst(), Qt::ArrowCursor);
        for (const QString& place : places) {
            Window w;
            w.window.setCursor(Qt::WaitCursor);
            Hover(w.window, {place.section(QLatin1Char(','), 0, 0).toInt(),
                             place.section(QLatin1Char(','), 1).toInt()});
            QVERIFY2(w.window.cursor().shape() == shape, qPrintable(place));
        }
    }
}

void TestWindowTools::sidesFollowTheMouse()
{
    struct Drag
    {
        QPoint press, to, topLeft, bottomRight;
    };
    // The window lies at 100, 50 to 899, 649.
    for (const Drag& drag : std::initializer_list<Drag>{{{400, 2}, {333, 70}, {100, 70}, {899, 649}},
                                                        {{400, 597}, {333, 700}, {100, 50}, {899, 699}},
                                                        {{2, 300}, {80, 333}, {80, 50}, {899, 649}},
                                                        {{797, 300}, {950, 333}, {100, 50}, {949, 649}},
                                                        {{1, 1}, {120, 40}, {120, 40}, {899, 649}},
                                                        {{798, 598}, {850, 620}, {100, 50}, {849, 619}},
                                                        {{798, 1}, {850, 60}, {100, 60}, {849, 649}},
                                                        {{1, 598}, {90, 620}, {90, 50}, {899, 619}}}) {
        const QRect geometry(drag.topLeft, drag.bottomRight);
        Window w;
        Mouse(w.window, QEvent::MouseButtonPress, drag.press);
        QVERIFY(!w.sizer.CanMove());
        // Hovering elsewhere doesn't change what is being resized.
        Hover(w.window, {400, 300});
        Mouse(w.window, QEvent::MouseMove, drag.press, drag.to);
        QCOMPARE(w.window.geometry(), geometry);
        Mouse(w.window, QEvent::MouseButtonRelease, drag.press);
        QVERIFY(w.sizer.CanMove());
        Mouse(w.window, QEvent::MouseMove, drag.press, {500, 500});
        QCOMPARE(w.window.geometry(), geometry);
    }
}

void TestWindowTools::onlyTheLeftButtonInAZoneResizes()
{
    for (const auto& [button, press] :
         {std::pair(Qt::RightButton, QPoint(797, 300)), std::pair(Qt::LeftButton, QPoint(400, 300))}) {
        Window w;
        Mouse(w.window, QEvent::MouseButtonPress, press, {}, button);
        Mouse(w.window, QEvent::MouseMove, press, {500, 400}, button);
        QVERIFY(w.sizer.CanMove());
        QCOMPARE(w.window.geometry(), QRect(100, 50, 800, 600));
    }
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
    Mouse(w.title, QEvent::MouseButtonPress, {50, 15}, {}, Qt::RightButton);
    Mouse(w.title, QEvent::MouseMove, {60, 25}, {}, Qt::RightButton);
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
    Mouse(other, QEvent::MouseButtonPress, {50, 2});
    Mouse(other, QEvent::MouseMove, {90, 12}, {90, 12});
    QCOMPARE(other.geometry(), QRect(0, 0, 800, 600));
}

QTEST_MAIN(TestWindowTools)
#include "tst_windowtools.moc"
