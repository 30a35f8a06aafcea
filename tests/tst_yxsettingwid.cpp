#include "dpiscale.h"
#include "platform.h"
#include "product.h"
#include "testtable.h"
#include "yxconfig.h"
#include "yxsettingwid.h"
#include "yxswitchbutton.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>
#include <QToolButton>

namespace {

QString Text(int mode, bool autoChange, bool remind)
{
    return "%1 %2 %3"_s.arg(mode).arg(autoChange).arg(remind);
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
        QString seen;
        for (const char* name : {"switch_auto", "lab_auto", "switch_remain", "lab_remain"})
            seen += QLatin1Char(Child<QWidget>(name)->isHidden() ? '-' : '+');
        return QHash<QString, QString>{{"----"_s, {}}, {"++--"_s, "auto"_s}, {"++++"_s, "all"_s}}.value(seen,
                                                                                                        seen);
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
            .contains("{width:%1px;height:%1px;}"_s.arg(pixels));
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

} // namespace

class TestYxSettingWid : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(YxHelp);
        QVERIFY(UseProduct(ProductIni(3)));
    }
    void startShowsWhatIsStored();
    void controlsWorkTogether();
    void reminderAnswerIsStoredAsPassed();
    void keyboardReachesEverything();
    void titleDragsTheDialog();
    void scaleIsTakenAtFirstAndAtAChange();
};

void TestYxSettingWid::startShowsWhatIsStored()
{
    // Stored, shown, seen. Any other mode is online.
    for (const char* line :
         {"0 0 1|0 0 1|", "0 1 1|0 1 1|", "1 0 0|1 0 0|all", "1 1 1|1 1 1|auto", "7 0 1|1 0 1|all"}) {
        const QStringList cells = Cells(line);
        const Dialog d(cells[0]);
        QCOMPARE(d.Shown(), cells[1]);
        QCOMPARE(d.Answers(), cells[1]);
        QCOMPARE(d.Seen(), cells[2]);
    }
}

void TestYxSettingWid::controlsWorkTogether()
{
    // What is stored at first, what is clicked and how it is left; what is to be seen before that; what is
    // stored, shown and answered afterwards, and to be seen.
    for (const char* line :
         {"0 0 1,radioButton_online,btn_ok|all|1 0 1|all",
          "0 0 1,radioButton_online,switch_auto,radioButton_offline,radioButton_online,btn_ok|auto|1 1 "
          "1|auto",
          "1 1 1,switch_auto,btn_ok|all|1 0 1|all", "1 0 1,switch_remain,radioButton_offline,btn_ok||0 0 0|",
          "0 0 1,radioButton_online,switch_auto,btn_cancel|auto|0 0 1|",
          "1 0 1,switch_auto,btn_cancel|auto|1 0 1|all",
          "1 0 1,switch_auto,switch_remain,radioButton_offline,tbn_close||1 0 1|all",
          "1 0 1,switch_auto,switch_remain,radioButton_offline,escape||1 0 1|all",
          "1 0 1,switch_auto,switch_remain,radioButton_offline,close||1 0 1|all"}) {
        const QStringList cells = Cells(line);
        QStringList steps = cells[0].split(QLatin1Char(','));
        const QString start = steps.takeFirst();
        const QString leave = steps.takeLast();
        const Dialog d(start);
        d.Show();
        for (const QString& name : steps)
            d.Click(name);
        QCOMPARE(d.Seen(), cells[1]);
        // Nothing is taken before OK.
        QCOMPARE(d.Answers(), start);
        QCOMPARE(Stored(), start);

        if (leave == "escape"_s)
            QTest::keyClick(d.dialog.data(), Qt::Key_Escape);
        else if (leave == "close"_s)
            d.dialog->close();
        else
            d.Click(leave);
        QVERIFY(!d.dialog->isVisible());
        QCOMPARE(d.dialog->result() == QDialog::Accepted, leave == "btn_ok"_s);
        QTRY_COMPARE(d.Shown(), cells[2]);
        QCOMPARE(d.Answers(), cells[2]);
        QCOMPARE(Stored(), cells[2]);
        QCOMPARE(d.Seen(), cells[3]);
    }
}

void TestYxSettingWid::reminderAnswerIsStoredAsPassed()
{
    for (const QVector<bool>& answers : {QVector<bool>{true}, {false, false}, {false, true, false}}) {
        const Dialog d("1 0 1"_s);
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
    const Dialog d("1 0 1"_s);
    d.Show();
    d.Child<QWidget>("radioButton_online")->setFocus();
    QStringList order;
    for (int i = 0; i < 6; ++i) {
        order.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    // Of the two radio buttons the chosen one is a stop; the arrow keys choose.
    QCOMPARE(order.join(QLatin1Char(' ')), "radioButton_online switch_auto switch_remain "
                                           "btn_cancel btn_ok radioButton_online"_s);
    d.Switch("switch_remain")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(!d.Switch("switch_remain")->checked());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!d.dialog->isVisible());
    QCOMPARE(Stored(), "1 0 0"_s);
}

void TestYxSettingWid::titleDragsTheDialog()
{
    const Dialog d("1 0 1"_s);
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

void TestYxSettingWid::scaleIsTakenAtFirstAndAtAChange()
{
    // The main window may have taken the new scale already.
    for (const auto& [before, windowFirst] : {std::pair(1.5, true), {1.5, false}, {0.5, true}, {1.0, true}}) {
        currentScale = before;
        scaleActive = true;
        const Dialog d("1 0 1"_s);
        QCOMPARE(d.dialog->size(), QSize(400, 200) * before);
        QCOMPARE(d.Child<QLabel>("lab_auto")->font().pixelSize(), int(12 * before));
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
    }
}

QTEST_MAIN(TestYxSettingWid)
#include "tst_yxsettingwid.moc"
