#include "yxswitchbutton.h"
#include "yxtoolbutton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

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
    QPainter painter(&image);
    button.render(&painter, QPoint(), QRegion(), QWidget::RenderFlags());
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
    void toolButtonPictures_data();
    void toolButtonPictures();
    void pressFlipsWithAnyButton();
    void spaceFlipsOncePerStroke();
    void knobFollowsPressAndResize();
    void knobSlidesInSteps();
    void programmaticSetWorksAsAPress();
    void paintingFollowsTheProperties();
};

void TestWidgetKit::toolButtonPictures_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("clicks");
    const auto row = [](const char* name, const char* steps, const char* shown, int clicks) {
        QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(shown) << clicks;
    };
    row("icons alone show nothing", "", "", 0);
    row("active from the start", "enter", "hover", 0);
    row("hover and left again", "active enter leave", "normal", 0);
    row("pressed picture stays after the click", "active enter left release", "pressed", 1);
    row("until the mouse leaves", "active enter left release leave", "normal", 1);
    row("right press", "active enter right", "hover", 0);
    row("inactive swallows the click", "inactive enter left release", "disabled", 0);
    row("inactive under the mouse", "active enter inactive leave", "disabled", 0);
    row("active under the mouse", "inactive enter active", "normal", 0);
    row("no pressed picture", "active withoutPressed enter left", "hover", 0);
}

void TestWidgetKit::toolButtonPictures()
{
    QFETCH(QString, steps);
    QFETCH(QString, shown);
    QFETCH(int, clicks);
    QHash<QString, QIcon> icons;
    for (const char* name : {"disabled", "normal", "hover", "pressed"}) {
        QPixmap pixmap(8, 8);
        pixmap.fill(Qt::gray);
        icons.insert(QLatin1String(name), QIcon(pixmap));
    }
    const auto icon = [&icons](const char* name) { return icons.value(QLatin1String(name)); };
    YxToolButton button;
    button.SetIcons(icon("disabled"), icon("normal"), icon("hover"), icon("pressed"));
    button.resize(35, 35);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    for (const QString& step : steps.split(QLatin1Char(' '))) {
        if (step.endsWith(QLatin1String("active")))
            button.SetActive(step == QLatin1String("active"));
        else if (step == QLatin1String("withoutPressed"))
            button.SetIcons(icon("disabled"), icon("normal"), icon("hover"), {});
        else if (step == QLatin1String("left") || step == QLatin1String("right"))
            Press(button, step == QLatin1String("left") ? Qt::LeftButton : Qt::RightButton);
        else if (!step.isEmpty())
            Send(button, step == QLatin1String("enter")   ? QEvent::Enter
                         : step == QLatin1String("leave") ? QEvent::Leave
                                                          : QEvent::MouseButtonRelease);
    }
    QCOMPARE(button.icon().cacheKey(), icons.value(shown).cacheKey());
    QCOMPARE(clicked.count(), clicks);
}

void TestWidgetKit::pressFlipsWithAnyButton()
{
    for (auto mouseButton : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
        YxSwitchButton toggle;
        QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
        Press(toggle, mouseButton);
        Send(toggle, QEvent::MouseButtonRelease, mouseButton);
        QVERIFY(toggle.checked());
        Press(toggle, mouseButton);
        QVERIFY(!toggle.checked());
        QCOMPARE(QList<QVariantList>(changed), QList<QVariantList>({{true}, {false}}));
    }
}

void TestWidgetKit::spaceFlipsOncePerStroke()
{
    YxSwitchButton toggle;
    QTest::keyClick(&toggle, Qt::Key_Space);
    QVERIFY(toggle.checked());
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(&toggle, &held);
    QTest::keyClick(&toggle, Qt::Key_A);
    QVERIFY(toggle.checked());
    QVERIFY(toggle.focusPolicy() & Qt::TabFocus);
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

void TestWidgetKit::paintingFollowsTheProperties()
{
    YxSwitchButton toggle;
    Lay(toggle, {60, 20});
    QCOMPARE(Painted(toggle).pixelColor(40, 10), QColor(220, 220, 220));
    toggle.setEnabled(false);
    QCOMPARE(Painted(toggle).pixelColor(40, 10).alpha(), 60);
    QCOMPARE(Painted(toggle).pixelColor(10, 10), QColor(Qt::white)); // the knob doesn't fade
    toggle.setEnabled(true);
    Press(toggle);
    QCOMPARE(Painted(toggle).pixelColor(20, 10), QColor(59, 148, 253));
    QVERIFY(toggle.setProperty("bgColorOn", QColor(Qt::darkGreen)));
    QVERIFY(toggle.setProperty("sliderColorOn", QColor(Qt::yellow)));
    QVERIFY(toggle.setProperty("space", 5));
    QVERIFY(toggle.setProperty("rectRadius", 3));
    const QImage image = Painted(toggle);
    QCOMPARE(image.pixelColor(20, 10), QColor(Qt::darkGreen));
    QCOMPARE(image.pixelColor(50, 10), QColor(Qt::yellow));
    QCOMPARE(image.pixelColor(43, 10), QColor(Qt::darkGreen)); // the wider gap
    QCOMPARE(toggle.rectRadius(), 10);                         // the painting's own
}

QTEST_MAIN(TestWidgetKit)
#include "tst_widgetkit.moc"
