#include "helpdatabase.h"
#include "product.h"

#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace {

constexpr int kPatience = 20000;

const QString kTopics =
    QStringLiteral("Home | html=<body style=\"background:#104080\"></body>\n"
                   "  Arcs | key=ARCS | html=<body style=\"background:#80c010\"></body>\n"
                   "  Lines | key=LINES | html=<body style=\"background:#c04080\"></body>\n");

/// A word that no other viewer of this machine has for a title.
QString Title()
{
    return QStringLiteral("HostExample%1").arg(QCoreApplication::applicationPid());
}

/// Runs the program of the manual to its end and gives what it prints.
QString RunHost(const QStringList& arguments, int& exitCode)
{
    // The drivers that the real program unloads would count as its leaks.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    QProcess host;
    host.setProcessEnvironment(environment);
    host.start(QStringLiteral(YXHELP_HOST_PROGRAM), arguments);
    if (!host.waitForFinished(kPatience))
        qFatal("the host doesn't end");
    exitCode = host.exitCode();
    return QString::fromUtf8(host.readAllStandardOutput()).trimmed();
}

bool IsAlive(qint64 pid)
{
    QFile state(QStringLiteral("/proc/%1/stat").arg(pid));
    return state.open(QIODevice::ReadOnly) && !state.readAll().contains(") Z");
}

/// A viewer that somebody else started, ended by its id.
class Detached
{
public:
    explicit Detached(const QString& printed) : pid(printed.toLongLong()) {}
    ~Detached()
    {
        if (pid <= 0)
            return;
        // Until it has gone altogether: what is left of it would stand in the way of other launches.
        ::kill(static_cast<pid_t>(pid), SIGKILL);
        ::waitpid(static_cast<pid_t>(pid), nullptr, 0);
    }
    Q_DISABLE_COPY_MOVE(Detached)

    bool HasWindow() const
    {
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"),
                      {QStringLiteral("search"), QStringLiteral("--all"), QStringLiteral("--onlyvisible"),
                       QStringLiteral("--pid"), QString::number(pid), QStringLiteral("--name"),
                       QStringLiteral("^Test Help$")});
        return xdotool.waitForFinished() && xdotool.exitCode() == 0;
    }

    const qint64 pid;
};

/// Colour of the screen where the topic is.
QString TopicColour()
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    return screen.pixelColor(screen.width() * 5 / 8, screen.height() / 2).name();
}

} // namespace

class TestHostExample : public QObject
{
    Q_OBJECT

private slots:
    // The viewers that the host leaves behind come to this process, so that their end can be waited for.
    void initTestCase() { QCOMPARE(prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }
    void helpButtonShowsTopicAfterTopic();
    void valuesThatCannotTravelAreRefused_data();
    void valuesThatCannotTravelAreRefused();
};

void TestHostExample::helpButtonShowsTopicAfterTopic()
{
    const HelpDatabase database(kTopics);
    QVERIFY(WriteResourceFile(database.HelpDir() + QStringLiteral("/YxHelpSystem.rcc"), ProductIni(1)));
    const QString program = database.RccPath() + QStringLiteral("/YxHelp");
    QVERIFY(QFile::copy(QStringLiteral(YXHELP_PROGRAM), program));
    const auto show = [&](const QString& topic) {
        int exitCode = -1;
        const QString printed = RunHost({program, QStringLiteral("en-US"), Title(), topic}, exitCode);
        return exitCode == 0 ? printed : QString();
    };

    const Detached viewer(show(QStringLiteral("arcs")));
    QVERIFY(viewer.pid > 0);
    QTRY_COMPARE_WITH_TIMEOUT(TopicColour(), QStringLiteral("#80c010"), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(viewer.HasWindow(), kPatience);

    const Detached second(show(QStringLiteral("lines")));
    QVERIFY(second.pid > 0);
    QTRY_COMPARE_WITH_TIMEOUT(TopicColour(), QStringLiteral("#c04080"), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(!IsAlive(second.pid), kPatience);
    QVERIFY(viewer.HasWindow());
}

void TestHostExample::valuesThatCannotTravelAreRefused_data()
{
    QTest::addColumn<QString>("topic");
    QTest::newRow("a switch") << QStringLiteral("/Topic");
    QTest::newRow("two words") << QStringLiteral("two words");
    QTest::newRow("not ASCII") << QStringLiteral("线");
    QTest::newRow("too long") << QString(128, QLatin1Char('k'));
}

void TestHostExample::valuesThatCannotTravelAreRefused()
{
    QFETCH(QString, topic);
    int exitCode = -1;
    RunHost({QStringLiteral("no-viewer"), QStringLiteral("en-US"), Title(), topic}, exitCode);
    QCOMPARE(exitCode, 2);
    // The program itself is looked for only afterwards.
    RunHost({QStringLiteral("no-viewer"), QStringLiteral("en-US"), Title(), QString(127, QLatin1Char('k'))},
            exitCode);
    QCOMPARE(exitCode, 1);
}

QTEST_MAIN(TestHostExample)
#include "tst_hostexample.moc"
