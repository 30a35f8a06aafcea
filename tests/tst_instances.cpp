#include "instances.h"
#include "launchargs.h"
#include "platform.h"
#include "testtable.h"

#include <QTemporaryDir>

#include <algorithm>
#include <vector>

#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString kStranger = QStringLiteral("--stranger");

/// A process that runs a copy of this test under another name and does nothing.
class IdleProcess
{
public:
    IdleProcess(const QString& program, const QStringList& words)
    {
        if (!QFile::exists(program) && !QFile::copy(QCoreApplication::applicationFilePath(), program))
            qFatal("no program to run");
        std::vector<QByteArray> bytes;
        for (const QString& word : words)
            bytes.push_back(word.toUtf8());
        std::vector<char*> argv;
        for (QByteArray& word : bytes)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        if (posix_spawn(&pid, program.toUtf8().constData(), nullptr, nullptr, argv.data(), environ) != 0)
            qFatal("cannot start the program");
    }
    ~IdleProcess() { End(); }

    /// Ends it and leaves it to be collected.
    void MakeZombie()
    {
        kill(pid, SIGKILL);
        siginfo_t info;
        waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
    }
    void End()
    {
        if (pid == 0)
            return;
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        pid = 0;
    }
    pid_t Pid() const { return pid; }

private:
    pid_t pid = 0;
};

bool IsListed(pid_t pid)
{
    const std::vector<std::int32_t> viewers = platform::OtherViewers();
    return std::find(viewers.begin(), viewers.end(), pid) != viewers.end();
}

HelpLaunchArgs Launch(const QString& language, const QString& title, const QString& topic)
{
    HelpLaunchArgs args;
    args.product = "P"_s;
    args.language = language;
    args.helpTitle = title;
    args.topic = topic;
    return args;
}

} // namespace

class TestInstances : public QObject
{
    Q_OBJECT

private slots:
    void switchesAreReadFromACommandLine_data();
    void switchesAreReadFromACommandLine();
    void unreadableProcessesAreDropped_data();
    void unreadableProcessesAreDropped();
    void launchGoesToTheFirstThatMatches_data();
    void launchGoesToTheFirstThatMatches();
    void processesAreFoundByExecutable_data();
    void processesAreFoundByExecutable();
    void otherUsersProcessIsLeftOut();
    void endedProcessIsUnreadableThenGone();
    void launchMeetsARunningViewer();
    void firstTakesTheName();

private:
    QTemporaryDir directory;
};

void TestInstances::switchesAreReadFromACommandLine_data()
{
    const auto row = Columns<QString, QString, QString>("line", "language", "title");
    row("nothing", "", "tag", "YXCAD");
    row("program alone", "/bin/YxHelp", "tag", "YXCAD");
    row("both", "YxHelp /Language de-DE /Topic A /helpTitle YX3D", "de-DE", "YX3D");
    row("the last one wins", "YxHelp /Language a /Language b", "b", "YXCAD");
    row("a switch is a value too", "YxHelp /Language /helpTitle X", "/helpTitle", "X");
    row("empty value behind one that counts", "YxHelp /Language a /Language  /helpTitle ", "tag", "YXCAD");
    row("no value in last place", "YxHelp /helpTitle X /helpTitle", "tag", "X");
    row("in place of the program", "/Language a", "tag", "YXCAD");
    row("title with a blank", "YxHelp /helpTitle \"My Title\" /Language a", "a", "\"My");
    row("other case, other switch", "YxHelp /language a /RccPath X", "tag", "YXCAD");
}

void TestInstances::switchesAreReadFromACommandLine()
{
    QFETCH(QString, line);
    InstanceInfo instance;
    instance.commandLine = line;
    ReadSwitches(instance, "tag"_s);
    QTEST(instance.language, "language");
    QTEST(instance.helpTitle, "title");
}

void TestInstances::unreadableProcessesAreDropped_data()
{
    // A digit is a process whose command line can be read, "-" one whose can't.
    const auto row = Columns<QString, QString>("processes", "left");
    row("all readable", "123", "1 2 3");
    row("the one behind stays without a line", "1-34", "1 ? 4");
    row("the one behind stays though unreadable", "--3", "? 3");
    row("two pairs", "-2-4", "? ?");
    row("first and third of five", "-2-45", "? ? 5");
    row("last", "12-", "1 2");
    row("only one", "-", "");
}

void TestInstances::unreadableProcessesAreDropped()
{
    QFETCH(QString, processes);
    InstanceMap instances;
    for (int i = 0; i < processes.size(); ++i)
        instances[i] = InstanceInfo();
    ReadCommandLines(instances, [&processes](std::int32_t pid) -> std::optional<std::string> {
        const QChar process = processes[pid];
        return process.isDigit() ? std::optional(QString(process).toStdString()) : std::nullopt;
    });
    QStringList left;
    for (const InstanceInfo& instance : instances)
        left << (instance.commandLine.isEmpty() ? "?"_s : instance.commandLine);
    QTEST(left.join(QLatin1Char(' ')), "left");
}

void TestInstances::launchGoesToTheFirstThatMatches_data()
{
    const auto row = Columns<QString, QString, QString, QString>("language", "title", "topic", "sent");
    row("lowest process", "de", "A", "T", "20|P|de|T");
    row("no topic sends nothing but the receiver", "de", "A", "", "20|||");
    row("own language stands in", "", "A", "T", "10|P|en|T");
    row("own language without a topic", "", "A", "", "10|||");
    row("other title", "en", "B", "", "5|||");
    row("case of the title counts", "en", "b", "T", "");
    row("unknown language", "fr", "A", "T", "");
    row("unknown language without a topic", "fr", "A", "", "");
}

void TestInstances::launchGoesToTheFirstThatMatches()
{
    QFETCH(QString, language);
    QFETCH(QString, title);
    QFETCH(QString, topic);
    const InstanceMap instances{{30, {"de"_s, "A"_s, {}}},
                                {20, {"de"_s, "A"_s, {}}},
                                {10, {"en"_s, "A"_s, {}}},
                                {5, {"en"_s, "B"_s, {}}}};
    const std::optional<SMData> record = ChooseHandOver(instances, Launch(language, title, topic), "en"_s);
    const QString sent = record ? QStringList{QString::number(record->pid), TextOf(record->product),
                                              TextOf(record->language), TextOf(record->topic)}
                                      .join(QLatin1Char('|'))
                                : QString();
    QTEST(sent, "sent");
}

void TestInstances::processesAreFoundByExecutable_data()
{
    const auto row = Columns<QString, QStringList, bool, QString>("name", "words", "listed", "line");
    row("switches", "YxHelp", {"YxHelp"_s, "/Language"_s, "de"_s}, true, "YxHelp /Language de");
    row("other case", "yxHELP", {"anything"_s}, true, "anything");
    row("empty words and blanks", "YxHelp", {"YxHelp"_s, ""_s, "a b"_s, ""_s}, true, "YxHelp  a b ");
    row("outside ASCII", "YxHelp", {"YxHelp"_s, "\u5341"_s}, true, "YxHelp \u5341");
    row("no command line", "YxHelp", {""_s}, true, "unreadable");
    row("another program", "YxHelper", {"YxHelp"_s}, false, "YxHelp");
}

void TestInstances::processesAreFoundByExecutable()
{
    QFETCH(QString, name);
    QFETCH(QStringList, words);
    QFETCH(bool, listed);
    const QString program = directory.filePath(name);
    const IdleProcess process(program, words);
    QCOMPARE(IsListed(process.Pid()), listed);
    QVERIFY(QFile::remove(program));
    QCOMPARE(IsListed(process.Pid()), listed);
    QTEST(QString::fromStdString(platform::CommandLineOf(process.Pid()).value_or("unreadable")), "line");
    QVERIFY(!IsListed(platform::OwnProcessId()));
}

void TestInstances::otherUsersProcessIsLeftOut()
{
    if (geteuid() != 0)
        QSKIP("only root can start a process of another user");
    const IdleProcess process(directory.filePath("YxHelp"_s), {"YxHelp"_s, kStranger});
    QTRY_VERIFY(!IsListed(process.Pid()));
}

void TestInstances::endedProcessIsUnreadableThenGone()
{
    IdleProcess process(directory.filePath("YxHelp"_s), {"YxHelp"_s});
    const pid_t pid = process.Pid();
    process.MakeZombie();
    QVERIFY(IsListed(pid));
    QVERIFY(!platform::CommandLineOf(pid));
    process.End();
    QVERIFY(!IsListed(pid));
    QVERIFY(!platform::CommandLineOf(pid));
    QVERIFY(!platform::ProcessRuns(pid));
}

void TestInstances::launchMeetsARunningViewer()
{
    const IdleProcess viewer(directory.filePath("YxHelp"_s),
                             {"YxHelp"_s, "/Language"_s, "xx"_s, "/helpTitle"_s, "TstInstances"_s});
    RunningInstances.clear();
    QVERIFY(DiscoverInstances("yy"_s));
    QCOMPARE(RunningInstances.value(viewer.Pid()).language, "xx"_s);
    QVERIFY(!ForwardToRunningInstance(Launch({}, "TstInstances"_s, "T"_s), "yy"_s));
    // It has no mailbox, and the launch ends all the same.
    QVERIFY(ForwardToRunningInstance(Launch({}, "TstInstances"_s, "T"_s), "xx"_s));
}

void TestInstances::firstTakesTheName()
{
    IsAlreadyRunning();
    QVERIFY(IsAlreadyRunning());
}

int main(int argc, char** argv)
{
    constexpr const char* kIdle = "YXHELP_TEST_IDLE";
    if (qEnvironmentVariableIsSet(kIdle)) {
        if (argc > 1 && QString::fromUtf8(argv[1]) == kStranger) {
            constexpr uid_t kOther = 65534;
            if (setuid(kOther) != 0)
                return 1;
            // Otherwise the system shows it as the administrator's.
            prctl(PR_SET_DUMPABLE, 1);
        }
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        pause();
        return 0;
    }
    qputenv(kIdle, "1");
    QCoreApplication application(argc, argv);
    TestInstances test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_instances.moc"
