#include "testtable.h"
#include "yxswitchbutton.h"
#include "yxtoolbutton.h"

#include <QMouseEvent>
#include <QTimer>

namespace {

void Send(QWidget& widget, QEvent::Type type, Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent mouse(type, QPointF(2, 2), button, button, Qt::NoModifier);
    QEvent other(type);
    const bool isMouse = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease;
    QCoreApplication::sendEvent(&widget, isMouse ? &mouse : &other);
}

void Press(QWidget& widget, Qt::MouseButton button = Qt::LeftButton)
{
    Send(widget, QEvent::MouseButtonPress, button);
}

QImage Painted(YxSwitchButton& button)
{
    QImage image(button.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    button.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// Where the knob begins in the middle row; -1 when there is none.
int KnobStart(YxSwitchButton& button)
{
    button.setSliderColorOff(Qt::red);
    button.setSliderColorOn(Qt::red);
    const QImage image = Painted(button);
    for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, image.height() / 2);
        if (color.red() > color.green() + 60)
            return x;
    }
    return -1;
}

void Lay(YxSwitchButton& button, const QSize& size)
{
    // A hidden widget gets its size only when it is shown.
    button.setAttribute(Qt::WA_DontShowOnScreen);
    button.resize(size);
    button.show();
}

} // namespace

class TestWidgetKit : public QObject
{
    Q_OBJECT

private slots:
    void toolButtonPictures();
    void anyButtonAndEveryStrokeOfSpaceFlip();
    void knobFollowsPressAndResize();
    void knobSlidesInSteps();
    void programmaticSetWorksAsAPress();
    void knobDoesNotFadeWhenDisabled();
};

void TestWidgetKit::toolButtonPictures()
{
    // What is done, the picture that shows then, and how many clicks came of it.
    for (const char* line :
         {"||0", "enter|hover|0", "active enter leave|normal|0", "active enter left release|pressed|1",
          "active enter left release leave|normal|1", "active enter right|hover|0",
          "inactive enter left release|disabled|0", "active enter inactive leave|disabled|0",
          "inactive enter active|normal|0", "active withoutPressed enter left|hover|0"}) {
        const QStringList cells = Cells(line);
        QHash<QString, QIcon> icons;
        for (const QString& name : {"disabled"_s, "normal"_s, "hover"_s, "pressed"_s}) {
            QPixmap pixmap(8, 8);
            pixmap.fill(Qt::gray);
            icons.insert(name, QIcon(pixmap));
        }
        YxToolButton button;
        const auto setIcons = [&](const QIcon& pressed) {
            button.SetIcons(icons["disabled"_s], icons["normal"_s], icons["hover"_s], pressed);
        };
        setIcons(icons["pressed"_s]);
        button.resize(35, 35);
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        const QHash<QString, std::function<void()>> actions{
            {"active"_s, [&] { button.SetActive(true); }},
            {"inactive"_s, [&] { button.SetActive(false); }},
            {"withoutPressed"_s, [&] { setIcons({}); }},
            {"left"_s, [&] { Press(button, Qt::LeftButton); }},
            {"right"_s, [&] { Press(button, Qt::RightButton); }},
            {"enter"_s, [&] { Send(button, QEvent::Enter); }},
            {"leave"_s, [&] { Send(button, QEvent::Leave); }},
            {"release"_s, [&] { Send(button, QEvent::MouseButtonRelease); }}};
        for (const QString& step : cells[0].split(QLatin1Char(' '), Qt::SkipEmptyParts))
            actions[step]();
        QVERIFY2(button.icon().cacheKey() == icons.value(cells[1]).cacheKey(), line);
        QVERIFY2(clicked.count() == cells[2].toInt(), line);
    }
}

void TestWidgetKit::anyButtonAndEveryStrokeOfSpaceFlip()
{
    YxSwitchButton toggle;
    QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
    for (auto button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
        Press(toggle, button);
        Send(toggle, QEvent::MouseButtonRelease, button);
    }
    QTest::keyClick(&toggle, Qt::Key_Space);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " "_s, true);
    QCoreApplication::sendEvent(&toggle, &held);
    QTest::keyClick(&toggle, Qt::Key_A);
    QCOMPARE(QList<QVariantList>(changed), QList<QVariantList>({{true}, {false}, {true}, {false}}));
    QVERIFY(!toggle.checked() && (toggle.focusPolicy() & Qt::TabFocus));
}

void TestWidgetKit::knobFollowsPressAndResize()
{
    YxSwitchButton toggle;
    Lay(toggle, {35, 15});
    QCOMPARE(KnobStart(toggle), 2);
    Press(toggle);
    QCOMPARE(KnobStart(toggle), 22);
    toggle.resize(60, 20);
    QCOMPARE(KnobStart(toggle), 42);
    Press(toggle);
    QCOMPARE(KnobStart(toggle), 2);
    toggle.resize(80, 20);
    QCOMPARE(KnobStart(toggle), 2);
}

void TestWidgetKit::knobSlidesInSteps()
{
    const auto slide = [](YxSwitchButton& toggle, const QVector<int>& positions) {
        const auto* timer = toggle.findChild<QTimer*>();
        const int start = KnobStart(toggle);
        Press(toggle);
        QCOMPARE(KnobStart(toggle), start);
        for (int position : positions) {
            QVERIFY(timer->isActive() && timer->interval() == 30);
            QVERIFY(QMetaObject::invokeMethod(&toggle, "updateValue"));
            QVERIFY(position < 0 || KnobStart(toggle) == position + 2);
        }
        QVERIFY(!timer->isActive());
    };
    YxSwitchButton toggle;
    toggle.setAnimation(true);
    Lay(toggle, {35, 15});
    slide(toggle, {5, 10, 15, 20, 20});
    slide(toggle, {15, 10, 5, 0, 0});
    toggle.resize(36, 15); // the last step overshoots
    slide(toggle, {5, 10, 15, 20, 25, 21});
    slide(toggle, {16, 11, 6, 1, -4, 0});
}

void TestWidgetKit::programmaticSetWorksAsAPress()
{
    for (int width : {49, 50}) {
        YxSwitchButton toggle;
        Lay(toggle, {width, 15});
        QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
        toggle.setChecked(false);
        QCOMPARE(changed.count(), 0);
        toggle.setChecked(true);
        QCOMPARE(toggle.checked(), width == 50); // a narrow one has no step yet and turns later
        QTRY_VERIFY(toggle.checked());
        // A press leaves a step, whatever the width.
        toggle.setChecked(false);
        QVERIFY(!toggle.checked());
        QCOMPARE(changed.count(), 2);
    }
    YxSwitchButton toggle;
    QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
    toggle.setChecked(true);
    toggle.setChecked(true); // before the first is done: both flip
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(!toggle.checked());
}

void TestWidgetKit::knobDoesNotFadeWhenDisabled()
{
    YxSwitchButton toggle;
    Lay(toggle, {60, 20});
    toggle.setEnabled(false);
    QCOMPARE(Painted(toggle).pixelColor(40, 10).alpha(), 60);
    QCOMPARE(Painted(toggle).pixelColor(10, 10), QColor(Qt::white));
    toggle.setEnabled(true);
    Press(toggle);
    QVERIFY(toggle.setProperty("bgColorOn", QColor(Qt::darkGreen)) && toggle.setProperty("space", 5));
    QCOMPARE(Painted(toggle).pixelColor(20, 10), QColor(Qt::darkGreen));
    QCOMPARE(Painted(toggle).pixelColor(43, 10), QColor(Qt::darkGreen)); // the wider gap
}

QTEST_MAIN(TestWidgetKit)
#include "tst_widgetkit.moc"
