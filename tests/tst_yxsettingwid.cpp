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
#include <QTimer>
#include <QToolButton>
#include <QtTest>

namespace {

QString Text(int mode, bool autoChange, bool remind)
{
    return QStringLiteral("%1 %2 %3").arg(mode).arg(autoChange).arg(remind);
}

/// The dialog over stored answers, and its controls by name.
struct Dialog
{
    explicit Dialog(const QString& stored)
    {
        const auto on = [&stored](int at) { return stored.at(at) == QLatin1Char('1'); };
        YxConfig::Instance()->WriteOpenMode({stored.leftRef(1).toInt(), on(2), on(4)});
        dialog.reset(new YxSettingWid(&parent));
        // The switches follow their answers a moment later.
        (void)QTest::qWaitFor([&] { return Shown().midRef(1) == stored.midRef(1); });
    }

    template <typename T>
    T* Child(const char* name) const
    {
        return dialog->findChild<T*>(QLatin1String(name));
    }
    YxSwitchButton* Switch(const char* name) const { return Child<YxSwitchButton>(name); }
    void Click(const QString& name) const
    {
        if (auto* button = dialog->findChild<QAbstractButton*>(name))
            button->click();
        else
            QTest::mousePress(dialog->findChild<YxSwitchButton*>(name), Qt::LeftButton);
    }
    void Show() const
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.data()));
    }

    /// The controls of the online mode that are to be seen.
    QString Seen() const
    {
        QString names;
        for (const char* name : {"switch_auto ", "lab_auto ", "switch_remain ", "lab_remain "}) {
            if (!dialog->findChild<QWidget*>(QString::fromLatin1(name).trimmed())->isHidden())
                names += QLatin1String(name);
        }
        return names;
    }

    /// What the controls show: mode, auto-switching, reminder; as in the settings file.
    QString Shown() const
    {
        return Text(Child<QRadioButton>("radioButton_online")->isChecked(), Switch("switch_auto")->checked(),
                    Switch("switch_remain")->checked());
    }

    /// What the dialog answers, in the same form.
    QString Answers() const
    {
        return Text(dialog->IsOnlineMode(), dialog->IsAutoChange(), dialog->IsChangeRemin());
    }

    bool IndicatorIs(int pixels) const
    {
        return Child<QWidget>("radioButton_online")
            ->styleSheet()
            .contains(QStringLiteral("{width:%1px;height:%1px;}").arg(pixels));
    }

    QWidget parent;
    QScopedPointer<YxSettingWid> dialog;
};

/// What is in the settings file: mode, auto-switching, reminder.
QString Stored()
{
    OpenModeInfo mode;
    YxConfig::Instance()->ReadOpenMode(mode);
    return Text(mode.RunMode, mode.AutoChange, mode.ChangeRemin);
}

const QString kAuto = QStringLiteral("switch_auto lab_auto ");
const QString kAll = QStringLiteral("switch_auto lab_auto switch_remain lab_remain ");

} // namespace

class TestYxSettingWid : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startShowsWhatIsStored_data();
    void startShowsWhatIsStored();
    void controlsWorkTogether_data();
    void controlsWorkTogether();
    void reminderAnswerIsStoredAsPassed();
    void keyboardReachesEverything();
    void titleDragsTheDialog();
    void scaleIsTakenAtFirstAndAtAChange_data();
    void scaleIsTakenAtFirstAndAtAChange();
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
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("seen");
    QTest::newRow("0 0 1") << QStringLiteral("0 0 1") << QString();
    QTest::newRow("0 1 1") << QStringLiteral("0 1 1") << QString();
    QTest::newRow("1 0 0") << QStringLiteral("1 0 0") << kAll;
    QTest::newRow("1 1 1") << QStringLiteral("1 1 1") << kAuto;
    QTest::newRow("7 0 1") << QStringLiteral("1 0 1") << kAll; // any other mode is online
}

void TestYxSettingWid::startShowsWhatIsStored()
{
    QFETCH(QString, shown);
    const Dialog d(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(d.Shown(), shown);
    QCOMPARE(d.Answers(), shown);
    QCOMPARE(d.dialog->IsOfflineMode(), !d.dialog->IsOnlineMode());
    QTEST(d.Seen(), "seen");
}

void TestYxSettingWid::controlsWorkTogether_data()
{
    QTest::addColumn<QStringList>("steps"); ///< What is stored at first, what is clicked, how it is left.
    QTest::addColumn<QString>("seen");      ///< Before it is left.
    QTest::addColumn<QString>("stored");    ///< Afterwards in the file, in the controls and as answers.
    QTest::addColumn<QString>("seenAtLast");
    const auto row = [](const char* steps, const QString& seen, const char* stored, const QString& last) {
        QTest::newRow(steps) << QString::fromLatin1(steps).split(QLatin1Char(',')) << seen
                             << QString::fromLatin1(stored) << last;
    };
    row("0 0 1,radioButton_online,btn_ok", kAll, "1 0 1", kAll);
    row("0 0 1,radioButton_online,switch_auto,radioButton_offline,radioButton_online,btn_ok", kAuto, "1 1 1",
        kAuto);
    row("1 1 1,switch_auto,btn_ok", kAll, "1 0 1", kAll);
    row("1 0 1,switch_remain,radioButton_offline,btn_ok", {}, "0 0 0", {});
    row("0 0 1,radioButton_online,switch_auto,btn_cancel", kAuto, "0 0 1", {});
    row("1 0 1,switch_auto,btn_cancel", kAuto, "1 0 1", kAll);
    row("1 0 1,switch_auto,switch_remain,radioButton_offline,tbn_close", {}, "1 0 1", kAll);
    row("1 0 1,switch_auto,switch_remain,radioButton_offline,escape", {}, "1 0 1", kAll);
    row("1 0 1,switch_auto,switch_remain,radioButton_offline,close", {}, "1 0 1", kAll);
}

void TestYxSettingWid::controlsWorkTogether()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, stored);
    const QString start = steps.takeFirst();
    const QString leave = steps.takeLast();
    const Dialog d(start);
    d.Show();
    for (const QString& name : steps)
        d.Click(name);
    QTEST(d.Seen(), "seen");
    // Nothing is taken before OK.
    QCOMPARE(d.Answers(), start);
    QCOMPARE(Stored(), start);

    if (leave == QLatin1String("escape"))
        QTest::keyClick(d.dialog.data(), Qt::Key_Escape);
    else if (leave == QLatin1String("close"))
        d.dialog->close();
    else
        d.Click(leave);
    QVERIFY(!d.dialog->isVisible());
    QCOMPARE(d.dialog->result() == QDialog::Accepted, leave == QLatin1String("btn_ok"));
    QTRY_COMPARE(d.Shown(), stored);
    QTEST(d.Seen(), "seenAtLast");
    QCOMPARE(d.Answers(), stored);
    QCOMPARE(Stored(), stored);
}

void TestYxSettingWid::reminderAnswerIsStoredAsPassed()
{
    for (const QVector<bool>& answers : {QVector<bool>{true}, {false, false}, {false, true, false}}) {
        const Dialog d(QStringLiteral("1 0 1"));
        // As at the start of the program: the switch gets its small size, with which it doesn't turn at once.
        d.dialog->show();
        d.dialog->hide();
        for (bool on : answers) {
            QVERIFY(d.dialog->SetChangeRemin(on));
            QCOMPARE(d.Answers(), Text(1, false, on));
            QCOMPARE(Stored(), Text(1, false, on));
        }
        // The switch lags behind its answer, yet never ends on the other side: all its turns are due before
        // this timer.
        bool turned = false;
        QTimer::singleShot(100, d.dialog.data(), [&] { turned = true; });
        QTRY_VERIFY(turned);
        QCOMPARE(d.Shown(), Text(1, false, answers.last()));
    }
}

void TestYxSettingWid::keyboardReachesEverything()
{
    const Dialog d(QStringLiteral("1 0 1"));
    d.Show();
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
    const Dialog d(QStringLiteral("1 0 1"));
    d.dialog->move(50, 60);
    auto* title = d.Child<QWidget>("frame_top");
    const auto mouse = [title](QEvent::Type type, const QPoint& position, Qt::MouseButton button) {
        QMouseEvent event(type, position, button, button, Qt::NoModifier);
        QCoreApplication::sendEvent(title, &event);
    };
    const auto drag = [&](Qt::MouseButton button) {
        mouse(QEvent::MouseButtonPress, {10, 10}, button);
        mouse(QEvent::MouseMove, {17, 6}, button);
        mouse(QEvent::MouseButtonRelease, {10, 10}, button);
        mouse(QEvent::MouseMove, {30, 30}, button);
        return d.dialog->pos();
    };
    QCOMPARE(drag(Qt::RightButton), QPoint(50, 60));
    QCOMPARE(drag(Qt::LeftButton), QPoint(57, 56));
}

void TestYxSettingWid::scaleIsTakenAtFirstAndAtAChange_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<bool>("windowFirst"); ///< The main window has taken the new scale already.
    QTest::newRow("down, window first") << 1.5 << true;
    QTest::newRow("down, dialog first") << 1.5 << false;
    QTest::newRow("up, window first") << 0.5 << true;
    QTest::newRow("none") << 1.0 << true;
}

void TestYxSettingWid::scaleIsTakenAtFirstAndAtAChange()
{
    QFETCH(double, before);
    QFETCH(bool, windowFirst);
    currentScale = before;
    scaleActive = true;
    const Dialog d(QStringLiteral("1 0 1"));
    QCOMPARE(d.dialog->size(), QSize(400, 200) * before);
    QCOMPARE(d.Child<QLabel>("lab_auto")->font().pixelSize(), int(12 * before));
    QCOMPARE(d.Child<QToolButton>("tbn_close")->maximumWidth(), qRound(25 * before));
    QCOMPARE(d.Child<QToolButton>("tbn_close")->iconSize().width(), int(15 * before)); // cut, not rounded
    QCOMPARE(d.Switch("switch_auto")->minimumSize(), QSize(qRound(25 * before), qRound(15 * before)));
    QVERIFY(d.IndicatorIs(qRound(17 * before)));
    if (platform::kDpiArrivesAsMessage)
        QSKIP("the change comes as a message of the system here");
    if (windowFirst)
        UpdateScale(96);
    QScreen* screen = QGuiApplication::primaryScreen();
    emit screen->logicalDotsPerInchChanged(screen->logicalDotsPerInch()); // 96, as it always was
    QTRY_COMPARE(d.dialog->minimumSize(), QSize(400, 200));
    QTRY_VERIFY(d.IndicatorIs(17));
    QCOMPARE(d.dialog->size(), QSize(400, 200));
    QCOMPARE(d.Child<QLabel>("lab_title")->font().pixelSize(), 12);
    QCOMPARE(d.Child<QPushButton>("btn_ok")->minimumHeight(), before < 1.0 ? 26 : 25); // 12.5 became 13
    QCOMPARE(d.Child<QLayout>("gridLayout")->contentsMargins(), QMargins(20, 20, 0, 0));
}

QTEST_MAIN(TestYxSettingWid)
#include "tst_yxsettingwid.moc"
