#include "yxswitchbutton.h"
#include "yxtoolbutton.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

namespace {

QIcon Picture(const QColor& color)
{
    QPixmap pixmap(8, 8);
    pixmap.fill(color);
    return QIcon(pixmap);
}

void Press(QWidget& widget, Qt::MouseButton button)
{
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
}

void Release(QWidget& widget, Qt::MouseButton button)
{
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(2, 2), button, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &release);
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

void Tick(YxSwitchButton& button)
{
    QVERIFY(QMetaObject::invokeMethod(&button, "updateValue"));
}

} // namespace

class TestWidgetKit : public QObject
{
    Q_OBJECT

private slots:
    void toolButtonPictures_data();
    void toolButtonPictures();
    void setIconsAloneShowsNothingNew();
    void pressFlipsWithAnyButton_data();
    void pressFlipsWithAnyButton();
    void spaceFlipsOncePerStroke();
    void knobJumpsWithoutAnimation();
    void knobSlidesInSteps();
    void programmaticSetWorksAsAPress_data();
    void programmaticSetWorksAsAPress();
    void twoSetsBeforeTheFirstIsDoneFlipTwice();
    void resizePlacesTheKnob();
    void disabledSwitchFadesItsTrackOnly();
    void propertiesReachThePainting();
};

void TestWidgetKit::toolButtonPictures_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("clicks");
    const auto row = [](const char* name, const char* steps, const char* shown, int clicks) {
        QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(shown) << clicks;
    };
    row("at rest", "active", "normal", 0);
    row("inactive", "inactive", "disabled", 0);
    row("hover", "active enter", "hover", 0);
    row("left again", "active enter leave", "normal", 0);
    row("pressed", "active enter left", "pressed", 0);
    row("pressed picture stays after the click", "active enter left releaseLeft", "pressed", 1);
    row("until the mouse leaves", "active enter left releaseLeft leave", "normal", 1);
    row("right press", "active enter right releaseRight", "hover", 0);
    row("inactive ignores the mouse", "inactive enter", "disabled", 0);
    row("inactive swallows the click", "inactive enter left releaseLeft", "disabled", 0);
    row("inactive under the mouse", "active enter inactive leave", "disabled", 0);
    row("active under the mouse", "inactive enter active", "normal", 0);
    row("no pressed picture", "active withoutPressed enter left", "hover", 0);
}

void TestWidgetKit::toolButtonPictures()
{
    QFETCH(QString, steps);
    QFETCH(QString, shown);
    QFETCH(int, clicks);
    const QHash<QString, QIcon> icons{{QStringLiteral("disabled"), Picture(Qt::gray)},
                                      {QStringLiteral("normal"), Picture(Qt::white)},
                                      {QStringLiteral("hover"), Picture(Qt::blue)},
                                      {QStringLiteral("pressed"), Picture(Qt::red)}};
    const auto icon = [&icons](const char* name) { return icons.value(QLatin1String(name)); };

    YxToolButton button(icon("disabled"), icon("normal"), icon("hover"), icon("pressed"));
    button.resize(35, 35);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    const QHash<QString, std::function<void()>> actions{
        {QStringLiteral("active"), [&] { button.SetActive(true); }},
        {QStringLiteral("inactive"), [&] { button.SetActive(false); }},
        {QStringLiteral("withoutPressed"),
         [&] { button.SetIcons(icon("disabled"), icon("normal"), icon("hover"), QIcon()); }},
        {QStringLiteral("enter"),
         [&] {
             QEvent event(QEvent::Enter);
             QCoreApplication::sendEvent(&button, &event);
         }},
        {QStringLiteral("leave"),
         [&] {
             QEvent event(QEvent::Leave);
             QCoreApplication::sendEvent(&button, &event);
         }},
        {QStringLiteral("left"), [&] { Press(button, Qt::LeftButton); }},
        {QStringLiteral("right"), [&] { Press(button, Qt::RightButton); }},
        {QStringLiteral("releaseLeft"), [&] { Release(button, Qt::LeftButton); }},
        {QStringLiteral("releaseRight"), [&] { Release(button, Qt::RightButton); }},
    };
    for (const QString& step : steps.split(QLatin1Char(' ')))
        actions.value(step)();
    QCOMPARE(button.icon().cacheKey(), icons.value(shown).cacheKey());
    QCOMPARE(clicked.count(), clicks);
}

void TestWidgetKit::setIconsAloneShowsNothingNew()
{
    YxToolButton button;
    button.SetIcons(Picture(Qt::gray), Picture(Qt::white), Picture(Qt::blue), Picture(Qt::red));
    QVERIFY(button.icon().isNull());
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&button, &enter); // active from the start
    QVERIFY(!button.icon().isNull());
}

void TestWidgetKit::pressFlipsWithAnyButton_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("right") << int(Qt::RightButton);
}

void TestWidgetKit::pressFlipsWithAnyButton()
{
    QFETCH(int, button);
    YxSwitchButton toggle;
    QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
    Press(toggle, Qt::MouseButton(button));
    QVERIFY(toggle.checked());
    Release(toggle, Qt::MouseButton(button));
    QVERIFY(toggle.checked());
    Press(toggle, Qt::MouseButton(button));
    QVERIFY(!toggle.checked());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(changed.at(0).at(0).toBool(), true);
    QCOMPARE(changed.at(1).at(0).toBool(), false);
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

void TestWidgetKit::knobJumpsWithoutAnimation()
{
    YxSwitchButton toggle;
    Lay(toggle, {35, 15});
    QCOMPARE(KnobStart(toggle), 2);
    Press(toggle, Qt::LeftButton);
    QCOMPARE(KnobStart(toggle), 22);
    Press(toggle, Qt::LeftButton);
    QCOMPARE(KnobStart(toggle), 2);
}

void TestWidgetKit::knobSlidesInSteps()
{
    YxSwitchButton toggle;
    Lay(toggle, {36, 15}); // steps of 5 to a travel of 21: the last one overshoots
    toggle.setAnimation(true);
    const auto* timer = toggle.findChild<QTimer*>();
    QVERIFY(timer);
    QCOMPARE(timer->interval(), 30);
    Press(toggle, Qt::LeftButton);
    QCOMPARE(KnobStart(toggle), 2);
    for (int position : {5, 10, 15, 20, 25, 21}) {
        QVERIFY(timer->isActive());
        Tick(toggle);
        QCOMPARE(KnobStart(toggle), position + 2);
    }
    QVERIFY(!timer->isActive());

    Press(toggle, Qt::LeftButton);
    for (int position : {16, 11, 6, 1, -4, 0}) {
        QVERIFY(timer->isActive());
        Tick(toggle);
        QVERIFY(position < 0 || KnobStart(toggle) == position + 2);
    }
    QVERIFY(!timer->isActive());
}

void TestWidgetKit::programmaticSetWorksAsAPress_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("atOnce");
    QTest::newRow("wide") << 50 << true;
    QTest::newRow("narrow") << 49 << false;
}

void TestWidgetKit::programmaticSetWorksAsAPress()
{
    QFETCH(int, width);
    QFETCH(bool, atOnce);
    YxSwitchButton toggle;
    Lay(toggle, {width, 15});
    QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
    toggle.setChecked(false);
    QCOMPARE(changed.count(), 0);
    toggle.setChecked(true);
    QCOMPARE(toggle.checked(), atOnce);
    QTRY_VERIFY(toggle.checked());
    QCOMPARE(changed.count(), 1);
    // A press leaves a step, whatever the width.
    toggle.setChecked(false);
    QVERIFY(!toggle.checked());
    QCOMPARE(changed.count(), 2);
}

void TestWidgetKit::twoSetsBeforeTheFirstIsDoneFlipTwice()
{
    YxSwitchButton toggle;
    QSignalSpy changed(&toggle, &YxSwitchButton::checkedChanged);
    toggle.setChecked(true);
    toggle.setChecked(true);
    QTRY_COMPARE(changed.count(), 2);
    QVERIFY(!toggle.checked());
}

void TestWidgetKit::resizePlacesTheKnob()
{
    YxSwitchButton toggle;
    Lay(toggle, {35, 15});
    Press(toggle, Qt::LeftButton);
    toggle.resize(60, 20);
    QCOMPARE(KnobStart(toggle), 42);
    Press(toggle, Qt::LeftButton);
    toggle.resize(80, 20);
    QCOMPARE(KnobStart(toggle), 2);
}

void TestWidgetKit::disabledSwitchFadesItsTrackOnly()
{
    YxSwitchButton toggle;
    Lay(toggle, {60, 20});
    QCOMPARE(Painted(toggle).pixelColor(40, 10), QColor(220, 220, 220));
    toggle.setEnabled(false);
    const QImage image = Painted(toggle);
    QCOMPARE(image.pixelColor(40, 10).alpha(), 60);
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::white));
}

void TestWidgetKit::propertiesReachThePainting()
{
    YxSwitchButton toggle;
    Lay(toggle, {60, 20});
    Press(toggle, Qt::LeftButton);
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
