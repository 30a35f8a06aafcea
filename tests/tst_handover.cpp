#include "helpdatabase.h"
#include "product.h"
#include "testtable.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>

#include <memory>
#include <vector>

namespace {

constexpr int kPatience = 60000; // fifty launches under the thread sanitizer take their time
constexpr int kTopics = 1000;

/// Words of xdotool, without those that no window answers to.
QString XDo(const QString& words)
{
    QProcess xdotool;
    xdotool.start("xdotool"_s, words.split(QLatin1Char(' ')));
    xdotool.waitForFinished();
    return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
}

/// A real viewer that tells what topics it shows.
class Viewer
{
public:
    Viewer(const QString& program, const QStringList& switches)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // The drivers that the real program unloads would count as its leaks.
        environment.insert("ASAN_OPTIONS"_s, "detect_leaks=0"_s);
        environment.insert("QT_LOGGING_RULES"_s, "yxhelp.page.debug=true"_s);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, switches);
    }
    ~Viewer()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Viewer)

    /// Keys of the topics shown so far.
    const QStringList& Topics()
    {
        rest += QString::fromUtf8(process.readAll());
        QStringList lines = rest.split(QLatin1Char('\n'));
        rest = lines.takeLast();
        for (const QString& line : lines) {
            const QString topic = line.section(": topic "_s, 1);
            if (!topic.isEmpty())
                topics += topic;
            loaded = loaded || line.endsWith("page loaded"_s);
        }
        return topics;
    }
    bool Shows(const QString& topic)
    {
        return QTest::qWaitFor([&] { return !Topics().isEmpty() && topics.last() == topic; }, kPatience);
    }
    bool IsReady()
    {
        return QTest::qWaitFor([&] { return Topics(), loaded; }, kPatience);
    }
    bool Runs() const { return process.state() != QProcess::NotRunning; }
    bool Ended() { return !Runs() || process.waitForFinished(kPatience); }
    int Code() const { return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1; }
    /// Its window, also when it is minimised or on another desktop.
    QString FindWindow() const
    {
        QProcess xdotool;
        xdotool.start("xdotool"_s, {"search"_s, "--all"_s, "--pid"_s, QString::number(process.processId()),
                                    "--name"_s, "^Test Help$"_s});
        xdotool.waitForFinished();
        return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
    }

    QProcess process;

private:
    QString rest;
    QStringList topics;
    bool loaded = false;
};

/// Names of what processes of this user share.
QSet<QString> SharedObjects()
{
    QProcess ipcs;
    ipcs.start("ipcs"_s, {"-m"_s, "-s"_s});
    ipcs.waitForFinished();
    QSet<QString> objects;
    const QStringList lines = QString::fromUtf8(ipcs.readAll()).split(QLatin1Char('\n')).filter("0x"_s);
    for (const QString& line : lines)
        objects += line.section(QLatin1Char(' '), 0, 1, QString::SectionSkipEmpty);
    for (const QString& file : QDir("/dev/shm"_s).entryList({"*Yx*"_s}, QDir::Files))
        objects += file;
    for (const QString& file : QDir::temp().entryList({"qipc*"_s}, QDir::Files | QDir::System))
        objects += file;
    return objects;
}

} // namespace

/// Real viewers, and launches that hand over to them.
class TestHandOver : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyTopicIsShownOrReplaced();
    void launchesAtTheSameMoment();
    void languageAndTitleChooseTheViewer();
    void windowComesToTheFront_data();
    void windowComesToTheFront();
    void killedViewerLeavesNoTrap();
    void closedViewerLeavesNothing();
    void viewerClosesInTheMiddleOfHandOvers();

private:
    std::unique_ptr<Viewer> Start(const QString& topic, const QString& more = {}) const;
    bool HandOver(const QString& topic) const;

    HelpDatabase database;
    QString program;
    QString title = "HandOver%1"_s.arg(QCoreApplication::applicationPid());
};

void TestHandOver::initTestCase()
{
    QString lines = "Home\n"_s;
    for (int i = 0; i < kTopics; ++i)
        lines += "  Topic %1 | key=T%1 | html=<body>some words %1</body>\n"_s.arg(i);
    database.AddTopics(lines);
    program = database.RccPath() + "/YxHelp"_s;
    QVERIFY(QFile::copy(QStringLiteral(YXHELP_PROGRAM), program));
    for (const char* language : {"en-US", "de-DE"}) {
        const QString folder = database.RccPath() + QLatin1Char('/') + QLatin1String(language) + "/Help"_s;
        QVERIFY(QDir().mkpath(folder) && WriteResourceFile(folder + "/YxHelpSystem.rcc"_s, ProductIni(1)));
        QFile::copy(database.Path(), folder + "/YXCADHelp.db"_s);
    }
}

/// Starts a viewer for the topic; `more` are further switches, separated by semicolons.
std::unique_ptr<Viewer> TestHandOver::Start(const QString& topic, const QString& more) const
{
    QStringList switches = more.isEmpty() ? QStringList{"/Language"_s, "en-US"_s, "/helpTitle"_s, title}
                                          : more.split(QLatin1Char(';'));
    if (!topic.isEmpty())
        switches << "/Topic"_s << topic;
    return std::make_unique<Viewer>(program, switches);
}

/// True when a launch for the topic ends at once and well.
bool TestHandOver::HandOver(const QString& topic) const
{
    const auto launch = Start(topic);
    const bool ended = launch->Ended();
    if (!ended || launch->Code() != 0)
        qWarning("the launch for %s: %s, code %d, topics of its own: %s", qPrintable(topic),
                 ended ? "ended" : "runs", launch->Code(),
                 qPrintable(launch->Topics().join(QLatin1Char(' '))));
    return ended && launch->Code() == 0;
}

void TestHandOver::everyTopicIsShownOrReplaced()
{
    const auto viewer = Start(QString());
    QVERIFY(viewer->IsReady());
    // All of them take most of a minute.
    const int wanted = qEnvironmentVariableIntValue("YXHELP_HANDOVERS");
    const int count = wanted > 0 ? qMin(wanted, kTopics) : kTopics / 4;
    for (int i = 0; i < count; ++i) {
        QVERIFY2(HandOver("T%1"_s.arg(i)), viewer->Runs() ? "the viewer runs" : "the viewer has ended");
        // Now and then a search keeps the window busy.
        if (i % 100 == 50) {
            XDo("search --onlyvisible --class ^YxHelp$ mousemove --window %1 120 143 click 1 type --delay 1 words"_s);
            XDo("key Return"_s);
        }
        viewer->Topics();
    }
    QVERIFY(viewer->Shows("T%1"_s.arg(count - 1)));
    int last = -1;
    int shown = 0;
    for (const QString& topic : viewer->Topics().mid(1)) {
        const int number = topic.midRef(1).toInt();
        // One that was replaced before it was read is shown in place of it, and again.
        QVERIFY2(number >= last, qPrintable(viewer->Topics().join(QLatin1Char(' '))));
        shown += number > last ? 1 : 0;
        last = number;
    }
    qInfo("%d of %d topics were shown", shown, count);
    QVERIFY(shown > count / 10);
}

void TestHandOver::launchesAtTheSameMoment()
{
    const auto viewer = Start(QString());
    QVERIFY(viewer->IsReady());
    std::vector<std::unique_ptr<Viewer>> launches;
    for (int i = 0; i < 50; ++i)
        launches.push_back(Start("T%1"_s.arg(i)));
    for (const auto& launch : launches)
        QVERIFY(launch->Ended() && launch->Code() == 0);
    QVERIFY(HandOver("T777"_s));
    QVERIFY(viewer->Shows("T777"_s));
    QVERIFY(viewer->Topics().size() > 2);
}

void TestHandOver::languageAndTitleChooseTheViewer()
{
    const QString own[] = {
        "/Language;en-US;/helpTitle;%1A"_s.arg(title), "/Language;en-US;/helpTitle;%1B"_s.arg(title),
        "/Language;de-DE;/helpTitle;%1A"_s.arg(title), "/Language;de-DE;/helpTitle;%1B"_s.arg(title)};
    std::vector<std::unique_ptr<Viewer>> viewers;
    for (const QString& switches : own) {
        viewers.push_back(Start(QString(), switches));
        QVERIFY(viewers.back()->IsReady());
    }
    for (int i : {2, 0, 3, 1}) {
        const auto launch = Start("T%1"_s.arg(i), own[i]);
        QVERIFY(launch->Ended());
        QVERIFY(viewers.at(size_t(i))->Shows("T%1"_s.arg(i)));
    }
    for (const auto& viewer : viewers)
        QCOMPARE(viewer->Topics().size(), 2);
    // Neither a title with a blank nor the other spelling of the switch ever finds its own kind.
    for (const QString& switches :
         {"/Language;en-US;/helpTitle;%1 A"_s.arg(title), "/Language;en-US;/RccPath;%1C"_s.arg(title)}) {
        const auto first = Start(QString(), switches);
        QVERIFY(first->IsReady());
        const auto second = Start("T5"_s, switches);
        QVERIFY(second->Shows("T5"_s));
        QCOMPARE(first->Topics().size(), 1);
    }
}

void TestHandOver::windowComesToTheFront_data()
{
    const auto row = Columns<QString>("before");
    row("minimised", "windowminimize %1");
    row("behind another", "");
    row("on another desktop", "set_desktop 1");
    row("maximised", "windowactivate --sync %1 key --window %1 super");
}

void TestHandOver::windowComesToTheFront()
{
    QFETCH(QString, before);
    const auto viewer = Start(QString());
    QVERIFY(viewer->IsReady());
    const auto other = Start(QString(), "/Language;en-US;/helpTitle;%1other"_s.arg(title));
    QVERIFY(other->IsReady());
    const QString window = viewer->FindWindow();
    const QString cover = other->FindWindow();
    QVERIFY(!window.isEmpty() && !cover.isEmpty());
    // The user is at work in the other window.
    XDo("windowactivate --sync %1 mousemove --window %1 700 400 click 1"_s.arg(cover));
    QTRY_COMPARE(XDo("getactivewindow"_s), cover);
    if (!before.isEmpty())
        XDo(before.contains("%1"_s) ? before.arg(window) : before);
    QVERIFY(HandOver("T9"_s));
    QTRY_COMPARE(XDo("getactivewindow"_s), window);
    QProcess properties;
    properties.start("xprop"_s, {"-id"_s, window, "_NET_WM_STATE"_s, "WM_STATE"_s});
    QVERIFY(properties.waitForFinished());
    const QString state = QString::fromUtf8(properties.readAll());
    QVERIFY2(!state.contains("ABOVE"_s) && !state.contains("MAXIMIZED"_s) && !state.contains("HIDDEN"_s) &&
                 state.contains("window state: Normal"_s),
             qPrintable(state));
    XDo("set_desktop 0"_s);
}

void TestHandOver::killedViewerLeavesNoTrap()
{
    QRandomGenerator random(quint32(qEnvironmentVariableIntValue("YXHELP_SEED")));
    for (int round = 0; round < 8; ++round) {
        const auto killed = Start("T1"_s);
        QElapsedTimer timer;
        timer.start();
        const int moment = random.bounded(600);
        // Some are killed in the middle of a hand-over.
        std::vector<std::unique_ptr<Viewer>> launches;
        const bool waited = QTest::qWaitFor([&] {
            if (round % 2 == 1 && killed->Topics().size() > 1)
                launches.push_back(Start("T2"_s));
            return timer.hasExpired(moment);
        });
        QVERIFY(waited);
        killed->process.kill();
        QVERIFY(killed->Ended());
        for (const auto& launch : launches) {
            if (launch->Runs())
                launch->process.kill();
        }
        launches.clear();
        const auto viewer = Start("T3"_s);
        QVERIFY(viewer->Shows("T3"_s));
        QVERIFY(HandOver("T4"_s));
        QVERIFY(viewer->Shows("T4"_s));
    }
}

void TestHandOver::closedViewerLeavesNothing()
{
    const QSet<QString> before = SharedObjects();
    auto killed = Start("T1"_s);
    QVERIFY(killed->IsReady());
    killed.reset();
    QVERIFY(!(SharedObjects() - before).isEmpty());

    const auto viewer = Start(QString());
    QVERIFY(viewer->IsReady());
    QVERIFY(HandOver("T1"_s) && viewer->Shows("T1"_s));
    XDo("key alt+F4"_s);
    QVERIFY(viewer->Ended());
    QCOMPARE(viewer->Code(), 0);
    QCOMPARE(SharedObjects() - before, QSet<QString>());
}

void TestHandOver::viewerClosesInTheMiddleOfHandOvers()
{
    for (int round = 0; round < 3; ++round) {
        const auto viewer = Start(QString());
        QVERIFY(viewer->IsReady());
        std::vector<std::unique_ptr<Viewer>> launches;
        for (int i = 0; i < 10; ++i)
            launches.push_back(Start("T%1"_s.arg(i)));
        const int shown = viewer->Topics().size();
        QTRY_VERIFY(viewer->Topics().size() > shown);
        XDo("mousemove --window %1 1162 16 click 1"_s.arg(viewer->FindWindow()));
        QVERIFY(viewer->Ended());
        QCOMPARE(viewer->Code(), 0);
    }
}

QTEST_GUILESS_MAIN(TestHandOver)
#include "tst_handover.moc"
