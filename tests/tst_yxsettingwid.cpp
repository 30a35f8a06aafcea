#include "dpiscale.h"
#include "platform.h"
#include "product.h"
#include "yxconfig.h"
#include "yxsettingwid.h"
#include "yxswitchbutton.h"

#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QToolButton>
#include <QtTest>

namespace {

/// The dialog over stored answers, and its controls by name.
struct Dialog
{
    explicit Dialog(const OpenModeInfo& mode)
    {
        YxConfig::Instance()->WriteOpenMode(mode);
        dialog.reset(new YxSettingWid(&parent));
        // The switches follow their answers a moment later.
        (void)QTest::qWaitFor([&] {
            return Switch("switch_auto")->checked() == mode.AutoChange &&
                   Switch("switch_remain")->checked() == mode.ChangeRemin;
        });
    }

    template <typename T>
    T* Child(const char* name) const
    {
        return dialog->findChild<T*>(QLatin1String(name));
    }
    YxSwitchButton* Switch(const char* name) const { return Child<YxSwitchButton>(name); }

    /// Names of the controls of the online mode that are to be seen.
    QString Seen() const
    {
        QStringList names;
        for (const char* name : {"switch_auto", "lab_auto", "switch_remain", "lab_remain"}) {
            if (!Child<QWidget>(name)->isHidden())
                names.append(QLatin1String(name));
        }
        return names.join(QLatin1Char(' '));
    }

    /// What the controls show: mode, auto-switching, reminder.
    QString Shown() const
    {
        return QStringLiteral("%1%2 %3 %4")
            .arg(Child<QRadioButton>("radioButton_online")->isChecked() ? QStringLiteral("online")
                                                                        : QString())
            .arg(Child<QRadioButton>("radioButton_offline")->isChecked() ? QStringLiteral("offline")
                                                                         : QString())
            .arg(Switch("switch_auto")->checked())
            .arg(Switch("switch_remain")->checked());
    }

    QWidget parent;
    QScopedPointer<YxSettingWid> dialog;
};

/// What is in the settings file: mode, auto-switching, reminder.
QString Stored()
{
    OpenModeInfo mode;
    YxConfig::Instance()->ReadOpenMode(mode);
    return QStringLiteral("%1 %2 %3").arg(mode.RunMode).arg(mode.AutoChange).arg(mode.ChangeRemin);
}

const QString kAuto = QStringLiteral("switch_auto lab_auto");
const QString kAll = QStringLiteral("switch_auto lab_auto switch_remain lab_remain");

} // namespace

class TestYxSettingWid : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startShowsWhatIsStored_data();
    void startShowsWhatIsStored();
    void reminderShowsOnlyWhereItHasWork();
    void okStoresTheControls();
    void leavingOtherwisePutsTheControlsBack_data();
    void leavingOtherwisePutsTheControlsBack();
    void cancelWhileOfflineHidesAllSwitches();
    void reminderAnswerIsStoredAsPassed_data();
    void reminderAnswerIsStoredAsPassed();
    void keyboardReachesEverything();
    void titleDragsTheDialog();
    void firstPassScalesTheForm();
    void changeOfDpiTakesTheStep_data();
    void changeOfDpiTakesTheStep();
};

void TestYxSettingWid::initTestCase()
{
    Q_INIT_RESOURCE(YxHelp);
    QVERIFY(UseProduct(ProductIni(3)));
}

void TestYxSettingWid::init()
{
    currentScale = 1.0;
    stepScale = 1.0;
    scaleActive = false;
}

void TestYxSettingWid::startShowsWhatIsStored_data()
{
    QTest::addColumn<int>("runMode");
    QTest::addColumn<bool>("autoChange");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("seen");
    QTest::newRow("offline") << 0 << false << QStringLiteral("offline 0 1") << QString();
    QTest::newRow("offline, auto") << 0 << true << QStringLiteral("offline 1 1") << QString();
    QTest::newRow("online") << 1 << false << QStringLiteral("online 0 1") << kAll;
    QTest::newRow("online, auto") << 1 << true << QStringLiteral("online 1 1") << kAuto;
    QTest::newRow("any other mode is online") << 7 << false << QStringLiteral("online 0 1") << kAll;
}

void TestYxSettingWid::startShowsWhatIsStored()
{
    QFETCH(int, runMode);
    QFETCH(bool, autoChange);
    QFETCH(QString, shown);
    QFETCH(QString, seen);
    const Dialog d({runMode, autoChange, true});
    QCOMPARE(d.Shown(), shown);
    QCOMPARE(d.Seen(), seen);
    QCOMPARE(d.dialog->IsOnlineMode(), runMode != 0);
    QCOMPARE(d.dialog->IsOfflineMode(), runMode == 0);
    QCOMPARE(d.dialog->IsAutoChange(), autoChange);
    QVERIFY(d.dialog->IsChangeRemin());
}

void TestYxSettingWid::reminderShowsOnlyWhereItHasWork()
{
    const Dialog d({0, false, true});
    d.Child<QRadioButton>("radioButton_online")->click();
    QCOMPARE(d.Seen(), kAll);
    QTest::mousePress(d.Switch("switch_auto"), Qt::LeftButton);
    QCOMPARE(d.Seen(), kAuto);
    d.Child<QRadioButton>("radioButton_offline")->click();
    QCOMPARE(d.Seen(), QString());
    d.Child<QRadioButton>("radioButton_online")->click();
    QCOMPARE(d.Seen(), kAuto);
    // Nothing is taken before OK.
    QVERIFY(d.dialog->IsOfflineMode());
    QVERIFY(!d.dialog->IsAutoChange());
    QCOMPARE(Stored(), QStringLiteral("0 0 1"));
}

void TestYxSettingWid::okStoresTheControls()
{
    const Dialog d({0, false, true});
    d.Child<QRadioButton>("radioButton_online")->click();
    QTest::mousePress(d.Switch("switch_auto"), Qt::LeftButton);
    QTest::mousePress(d.Switch("switch_remain"), Qt::LeftButton);
    d.Child<QPushButton>("btn_ok")->click();
    QCOMPARE(d.dialog->result(), int(QDialog::Accepted));
    QCOMPARE(Stored(), QStringLiteral("1 1 0"));
    QVERIFY(d.dialog->IsOnlineMode() && !d.dialog->IsOfflineMode());
    QVERIFY(d.dialog->IsAutoChange() && !d.dialog->IsChangeRemin());
}

void TestYxSettingWid::leavingOtherwisePutsTheControlsBack_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way : {"btn_cancel", "tbn_close", "escape", "close"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestYxSettingWid::leavingOtherwisePutsTheControlsBack()
{
    QFETCH(QString, way);
    const Dialog d({1, false, true});
    d.dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(d.dialog.data()));
    QTest::mousePress(d.Switch("switch_auto"), Qt::LeftButton);
    QTest::mousePress(d.Switch("switch_remain"), Qt::LeftButton);
    d.Child<QRadioButton>("radioButton_offline")->click();
    QCOMPARE(d.Shown(), QStringLiteral("offline 1 0"));

    if (way == QLatin1String("escape"))
        QTest::keyClick(d.dialog.data(), Qt::Key_Escape);
    else if (way == QLatin1String("close"))
        d.dialog->close();
    else
        d.dialog->findChild<QAbstractButton*>(way)->click();
    QVERIFY(!d.dialog->isVisible());
    QCOMPARE(d.dialog->result(), int(QDialog::Rejected));
    QTRY_COMPARE(d.Shown(), QStringLiteral("online 0 1"));
    QCOMPARE(d.Seen(), kAll);
    QCOMPARE(Stored(), QStringLiteral("1 0 1"));
}

void TestYxSettingWid::cancelWhileOfflineHidesAllSwitches()
{
    const Dialog d({0, false, true});
    d.Child<QRadioButton>("radioButton_online")->click();
    QTest::mousePress(d.Switch("switch_auto"), Qt::LeftButton);
    d.Child<QPushButton>("btn_cancel")->click();
    QCOMPARE(d.Shown(), QStringLiteral("offline 0 1"));
    QCOMPARE(d.Seen(), QString());
}

void TestYxSettingWid::reminderAnswerIsStoredAsPassed_data()
{
    QTest::addColumn<QVector<bool>>("answers");
    QTest::newRow("off") << QVector<bool>{false};
    QTest::newRow("unchanged") << QVector<bool>{true};
    QTest::newRow("off and on") << QVector<bool>{false, true};
    QTest::newRow("off, on, off") << QVector<bool>{false, true, false};
    QTest::newRow("off twice") << QVector<bool>{false, false};
}

void TestYxSettingWid::reminderAnswerIsStoredAsPassed()
{
    QFETCH(QVector<bool>, answers);
    const Dialog d({1, false, true});
    // As at the start of the program: the switch gets its small size, with which it doesn't turn at once.
    d.dialog->show();
    d.dialog->hide();
    for (bool on : answers) {
        QVERIFY(d.dialog->SetChangeRemin(on));
        QCOMPARE(d.dialog->IsChangeRemin(), on);
        QCOMPARE(Stored(), QStringLiteral("1 0 %1").arg(on));
    }
    // The switch lags behind its answer, yet never ends on the other side.
    bool settled = false;
    QTimer::singleShot(100, d.dialog.data(), [&settled] { settled = true; });
    QTRY_VERIFY(settled);
    QCOMPARE(d.Switch("switch_remain")->checked(), answers.last());
}

void TestYxSettingWid::keyboardReachesEverything()
{
    const Dialog d({1, false, true});
    d.dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(d.dialog.data()));
    d.Child<QWidget>("radioButton_online")->setFocus();
    QStringList order;
    for (int i = 0; i < 6; ++i) {
        order.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    // Of the two radio buttons the chosen one is a stop; the arrow keys choose.
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("radioButton_online switch_auto switch_remain "
                                                          "btn_cancel btn_ok radioButton_online"));
    d.Switch("switch_remain")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!d.Switch("switch_remain")->checked());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!d.dialog->isVisible());
    QCOMPARE(Stored(), QStringLiteral("1 0 0"));
}

void TestYxSettingWid::titleDragsTheDialog()
{
    const Dialog d({1, false, true});
    d.dialog->move(50, 60);
    auto* title = d.Child<QWidget>("frame_top");
    const auto mouse = [title](QEvent::Type type, const QPoint& position, Qt::MouseButton button) {
        QMouseEvent event(type, position, button, button, Qt::NoModifier);
        QCoreApplication::sendEvent(title, &event);
    };
    mouse(QEvent::MouseButtonPress, {10, 10}, Qt::RightButton);
    mouse(QEvent::MouseMove, {30, 30}, Qt::RightButton);
    QCOMPARE(d.dialog->pos(), QPoint(50, 60));
    mouse(QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {17, 6}, Qt::LeftButton);
    QCOMPARE(d.dialog->pos(), QPoint(57, 56));
    mouse(QEvent::MouseButtonRelease, {10, 10}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {30, 30}, Qt::LeftButton);
    QCOMPARE(d.dialog->pos(), QPoint(57, 56));
}

void TestYxSettingWid::firstPassScalesTheForm()
{
    currentScale = 1.5;
    stepScale = 1.5;
    scaleActive = true;
    const Dialog d({1, false, true});
    QCOMPARE(d.dialog->minimumSize(), QSize(600, 300));
    QCOMPARE(d.dialog->size(), QSize(600, 300));
    QCOMPARE(d.Child<QToolButton>("tbn_close")->maximumSize(), QSize(38, 38));
    QCOMPARE(d.Child<QToolButton>("tbn_close")->iconSize(), QSize(22, 22));
    QCOMPARE(d.Child<QWidget>("frame_top")->minimumHeight(), 50);
    QCOMPARE(d.Switch("switch_auto")->minimumSize(), QSize(38, 23));
    QCOMPARE(d.Switch("switch_auto")->maximumHeight(), 23);
    QCOMPARE(d.Child<QPushButton>("btn_ok")->minimumSize(), QSize(83, 38));
    QCOMPARE(d.Child<QLabel>("lab_auto")->font().pixelSize(), 18);
    QVERIFY(d.Child<QWidget>("radioButton_online")
                ->styleSheet()
                .contains(QStringLiteral("{width:26px;height:26px;}")));
    QCOMPARE(d.Child<QWidget>("radioButton_offline")->font().pixelSize(), 18);
    QCOMPARE(d.Child<QLayout>("horizontalLayout")->contentsMargins(), QMargins(18, 0, 8, 0));
    QCOMPARE(d.Child<QLayout>("gridLayout")->contentsMargins(), QMargins(30, 30, 0, 0));
}

void TestYxSettingWid::changeOfDpiTakesTheStep_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<bool>("windowFirst"); ///< The main window has taken the new scale already.
    QTest::newRow("down, window first") << 1.5 << true;
    QTest::newRow("down, dialog first") << 1.5 << false;
    QTest::newRow("up, window first") << 0.5 << true;
    QTest::newRow("none") << 1.0 << true;
}

void TestYxSettingWid::changeOfDpiTakesTheStep()
{
    QFETCH(double, before);
    QFETCH(bool, windowFirst);
    if (platform::kDpiArrivesAsMessage)
        QSKIP("the change comes as a message of the system here");
    currentScale = before;
    scaleActive = true;
    const Dialog d({1, false, true});
    QCOMPARE(d.dialog->minimumWidth(), int(400 * before));
    if (windowFirst)
        UpdateScale(96);
    QScreen* screen = QGuiApplication::primaryScreen();
    emit screen->logicalDotsPerInchChanged(screen->logicalDotsPerInch()); // 96, as it always was
    QTRY_COMPARE(d.dialog->minimumSize(), QSize(400, 200));
    QTRY_VERIFY(d.Child<QWidget>("radioButton_online")
                    ->styleSheet()
                    .contains(QStringLiteral("{width:17px;height:17px;}")));
    QCOMPARE(d.dialog->size(), QSize(400, 200));
    QCOMPARE(d.Child<QLabel>("lab_title")->font().pixelSize(), 12);
    QCOMPARE(d.Child<QPushButton>("btn_ok")->minimumHeight(), before < 1.0 ? 26 : 25); // 12.5 became 13
    QCOMPARE(d.Child<QLayout>("gridLayout")->contentsMargins(), QMargins(20, 20, 0, 0));
}

QTEST_MAIN(TestYxSettingWid)
#include "tst_yxsettingwid.moc"
