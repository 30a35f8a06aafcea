#include "ipcthread.h"
#include "launchargs.h"
#include "mailbox.h"
#include "testtable.h"
#include "yxglobalsignal.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSystemSemaphore>

#include <csignal>
#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <unistd.h>

namespace {

SMData Record(std::int32_t pid, const QString& topic)
{
    HelpLaunchArgs args;
    args.topic = topic;
    args.version = QString(200, QLatin1Char('v'));
    return MakeSMData(pid, args);
}

std::int32_t OwnPid()
{
    return static_cast<std::int32_t>(QCoreApplication::applicationPid());
}

/// Stands for the main window. Writes down what it is asked to show.
class Window : public QObject
{
public:
    Window()
    {
        auto* signal = YxGlobalSignal::Instance();
        connect(
            signal, &YxGlobalSignal::RedirectTopicSig, this,
            [this](SMData data) {
                topics << TextOf(data.topic);
                last = data;
            },
            Qt::BlockingQueuedConnection);
        connect(
            signal, &YxGlobalSignal::SetExeOnTheTop, this, [this] { topics << "(front)"_s; },
            Qt::BlockingQueuedConnection);
        thread.start();
    }
    ~Window() override { thread.Stop(this); }

    /// True when the window receives requests, which takes a moment from its start.
    bool Shows(const QString& topic)
    {
        return QTest::qWaitFor([&] { return WriteSharedMemory(Record(OwnPid(), topic)); }) &&
               QTest::qWaitFor([&] { return topics.endsWith(topic); });
    }

    QStringList topics;
    SMData last;
    IPCThread thread;
};

QStringList Words(const QString& mode, const QString& value, int count = 1)
{
    return {mode, QString::number(OwnPid()), value, QString::number(count)};
}

/// Runs this program in one of the modes of `RunMode`; the receiver is this process, which serves nothing
/// meanwhile. What the mode returned.
int Run(const QStringList& words)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), words);
    return process.waitForFinished() ? process.exitCode() : -1;
}

/// Leaves a mailbox for `pid` behind, as a viewer does that crashes while somebody sends.
void CrashWithMailbox(std::int32_t pid, int size)
{
    const SMData record = Record(pid, "left"_s);
    platform::WakeUp wakeUp(WakeUpName(pid), platform::WakeUp::Role::Receiver);
    wakeUp.Announce();
    QSharedMemory memory;
    memory.setKey(MailboxKey(pid));
    if (!memory.create(size) || !memory.lock() || !wakeUp.Raise() || !wakeUp.Raise())
        _exit(1);
    std::memcpy(memory.data(), &record, std::min(sizeof record, static_cast<std::size_t>(size)));
    _exit(0);
}

/// Child processes: "send <pid> <topic> <count>", where %1 in the topic is the number; "flood" sends until it
/// is killed; "crash <pid> <size>".
int RunMode(const QString& mode, std::int32_t pid, const QString& value, int count)
{
    if (mode == "crash"_s)
        CrashWithMailbox(pid, value.toInt());
    for (int i = 0; i < count || mode == "flood"_s; ++i) {
        if (!WriteSharedMemory(Record(pid, QString(value).replace("%1"_s, QString::number(i)))))
            return 1;
    }
    return 0;
}

QStringList KeyFiles()
{
    return QDir::temp().entryList({"qipc_*"_s});
}

bool HasWakeUp()
{
    return platform::WakeUp(WakeUpName(OwnPid()), platform::WakeUp::Role::Sender).IsValid();
}

/// Removes a mailbox that nobody uses.
void ClearAway(std::int32_t pid)
{
    platform::WakeUp wakeUp(WakeUpName(pid), platform::WakeUp::Role::Receiver);
    QSystemSemaphore lock(MailboxKey(pid), 1, QSystemSemaphore::Create);
    QSharedMemory memory;
    memory.setKey(MailboxKey(pid));
    memory.attach();
}

/// Gives one object of this process's mailbox to another user.
void GiveAway(const QString& object)
{
    constexpr uid_t kOther = 65534;
    QSharedMemory memory;
    memory.setKey(MailboxKey(OwnPid()));
    const std::string file = memory.nativeKey().toStdString();
    shmid_ds info;
    const int segment = shmget(ftok(file.c_str(), 'Q'), 0, 0);
    QString lock = memory.nativeKey();
    lock.replace("sharedmemory"_s, "systemsem"_s);
    bool given = false;
    if (object == "segment"_s && shmctl(segment, IPC_STAT, &info) == 0) {
        info.shm_perm.uid = kOther;
        given = shmctl(segment, IPC_SET, &info) == 0;
    } else if (object == "key file"_s) {
        given = chown(file.c_str(), kOther, kOther) == 0;
    } else if (object == "lock file"_s) {
        given = chown(lock.toUtf8().constData(), kOther, kOther) == 0;
    } else if (object == "wake-up"_s) {
        const int handle = shm_open(('/' + WakeUpName(OwnPid())).c_str(), O_RDWR, 0);
        given = fchown(handle, kOther, kOther) == 0;
        close(handle);
    }
    QVERIFY(given);
}

} // namespace

class TestIpcThread : public QObject
{
    Q_OBJECT

private slots:
    void topicsArriveCutToTheField_data();
    void topicsArriveCutToTheField();
    void recordForAnotherProcessIsIgnored();
    void bothSidesWaitForTheLock();
    void requestsToABusyWindowAreNotLost();
    void manyRequestsEndWithTheLast();
    void windowEndsWhileARequestWaits();
    void crashedViewersMailboxIsTakenOver();
    void mailboxWithoutRoomIsRefused();
    void foreignMailboxIsRefused_data();
    void foreignMailboxIsRefused();
    void nobodyReceives();
    void killedSendersBlockNobody();
    void cleanup();
};

void TestIpcThread::topicsArriveCutToTheField_data()
{
    const auto row = Columns<QString, QString>("topic", "shown");
    const auto text = [](int size) { return QString(size, QLatin1Char('t')); };
    row("plain", "KEY", "KEY");
    row("none", "", "(front)");
    row("fits", text(127), text(127));
    row("fills the field", text(128), text(128));
    row("too long", text(200), text(128));
    // As many bytes as it has characters.
    row("outside ASCII", "\u5341\u5341\u5341\u5341", "\u5341\ufffd");
}

void TestIpcThread::topicsArriveCutToTheField()
{
    QFETCH(QString, topic);
    Window window;
    QVERIFY(window.Shows("ready"_s));
    window.topics.clear();
    QCOMPARE(Run(Words("send"_s, topic)), 0);
    QTRY_COMPARE(window.topics.size(), 1);
    QTEST(window.topics.first(), "shown");
    QCOMPARE(window.last.pid, OwnPid());
    QCOMPARE(TextOf(window.last.version), QString(128, QLatin1Char('v')));
}

void TestIpcThread::recordForAnotherProcessIsIgnored()
{
    Window window;
    QVERIFY(window.Shows("ready"_s));
    QSharedMemory memory;
    memory.setKey(MailboxKey(OwnPid()));
    QVERIFY(memory.attach() && memory.lock());
    const SMData record = Record(OwnPid() + 1, "wrong"_s);
    std::memcpy(memory.data(), &record, sizeof record);
    memory.unlock();
    platform::WakeUp(WakeUpName(OwnPid()), platform::WakeUp::Role::Sender).Raise();
    QVERIFY(!QTest::qWaitFor([&] { return window.topics.size() > 1; }, 200));
    QVERIFY(window.Shows("right"_s));
    QCOMPARE(window.topics.size(), 2);
}

void TestIpcThread::bothSidesWaitForTheLock()
{
    Window window;
    QVERIFY(window.Shows("ready"_s));
    QSharedMemory memory;
    memory.setKey(MailboxKey(OwnPid()));
    QVERIFY(memory.attach());
    QProcess sender;
    QVERIFY(memory.lock());
    platform::WakeUp(WakeUpName(OwnPid()), platform::WakeUp::Role::Sender).Raise();
    sender.start(QCoreApplication::applicationFilePath(), Words("send"_s, "T"_s));
    QVERIFY(!QTest::qWaitFor(
        [&] { return window.topics.size() > 1 || sender.state() == QProcess::NotRunning; }, 300));
    QVERIFY(memory.unlock());
    QTRY_COMPARE(window.topics.value(2), "T"_s);
}

void TestIpcThread::requestsToABusyWindowAreNotLost()
{
    Window window;
    QVERIFY(window.Shows("ready"_s));
    window.topics.clear();
    constexpr int kLaunches = 5;
    for (int i = 0; i < kLaunches; ++i)
        QCOMPARE(Run(Words("send"_s, "T"_s + QString::number(i))), 0);
    QTRY_COMPARE(window.topics.size(), kLaunches);
    // The first was waiting in the window's queue; the others found the last one in the mailbox.
    QCOMPARE(window.topics.last(), "T4"_s);
}

void TestIpcThread::manyRequestsEndWithTheLast()
{
    Window window;
    QVERIFY(window.Shows("ready"_s));
    window.topics.clear();
    constexpr int kCount = 200;
    QProcess sender;
    sender.start(QCoreApplication::applicationFilePath(), Words("send"_s, "1%1"_s, kCount));
    QTRY_COMPARE_WITH_TIMEOUT(window.topics.size(), kCount, 30000);
    QCOMPARE(window.topics.last(), "1199"_s);
    for (int i = 1; i < kCount; ++i)
        QVERIFY(window.topics[i].midRef(1).toInt() >= window.topics[i - 1].midRef(1).toInt());
}

void TestIpcThread::windowEndsWhileARequestWaits()
{
    QSemaphore emitting;
    QObject watcher;
    connect(
        YxGlobalSignal::Instance(), &YxGlobalSignal::RedirectTopicSig, &watcher,
        [&emitting] { emitting.release(); }, Qt::DirectConnection);
    for (int i = 0; i < 50; ++i) {
        Window window;
        while (!WriteSharedMemory(Record(OwnPid(), "T"_s)))
            QThread::yieldCurrentThread();
        // Some rounds close at once, and so before or amid the emission.
        if (i % 2 == 0)
            QVERIFY(emitting.tryAcquire(1, 5000));
    }
}

void TestIpcThread::crashedViewersMailboxIsTakenOver()
{
    QCOMPARE(Run(Words("crash"_s, "1024"_s)), 0);
    QCOMPARE(KeyFiles().size(), 2);
    Window window;
    QVERIFY(!QTest::qWaitFor([&] { return !window.topics.isEmpty(); }, 200));
    QVERIFY(window.Shows("fresh"_s));
    QCOMPARE(window.topics, QStringList{"fresh"_s});
}

void TestIpcThread::mailboxWithoutRoomIsRefused()
{
    QCOMPARE(Run(Words("crash"_s, "515"_s)), 0);
    // The sender detaches the memory as the last one, which removes it.
    QVERIFY(!WriteSharedMemory(Record(OwnPid(), "T"_s)));

    QSharedMemory memory;
    memory.setKey(MailboxKey(OwnPid()));
    QVERIFY(memory.create(515));
    Window window;
    QTRY_VERIFY(window.thread.isFinished());
    QVERIFY(!WriteSharedMemory(Record(OwnPid(), "T"_s)));
    QCOMPARE(QByteArray(static_cast<const char*>(memory.constData()), 515), QByteArray(515, '\0'));
}

void TestIpcThread::foreignMailboxIsRefused_data()
{
    const auto row = Columns<QString, bool>("object", "receives");
    row("segment", "segment", false);
    row("key file", "key file", false);
    row("lock file", "lock file", false);
    // The receiver makes its own.
    row("wake-up", "wake-up", true);
}

void TestIpcThread::foreignMailboxIsRefused()
{
    QFETCH(QString, object);
    QFETCH(bool, receives);
    if (geteuid() != 0)
        QSKIP("only root can give objects away");
    QCOMPARE(Run(Words("crash"_s, "1024"_s)), 0);
    GiveAway(object);
    QVERIFY(!WriteSharedMemory(Record(OwnPid(), "T"_s)));
    if (object == "segment"_s) {
        // That sender was the last one attached, so the segment has gone with it.
        QCOMPARE(Run(Words("crash"_s, "1024"_s)), 0);
        GiveAway(object);
    }
    Window window;
    QTRY_VERIFY(receives || window.thread.isFinished());
    QCOMPARE(receives && window.Shows("T"_s), receives);
    QVERIFY(receives || !WriteSharedMemory(Record(OwnPid(), "T"_s)));
}

void TestIpcThread::nobodyReceives()
{
    QProcess ended;
    ended.start(QCoreApplication::applicationFilePath(), Words("send"_s, "T"_s));
    const auto pid = static_cast<std::int32_t>(ended.processId());
    QVERIFY(ended.waitForFinished());
    for (const std::int32_t receiver : {pid, OwnPid(), 0, -1})
        QVERIFY(!WriteSharedMemory(Record(receiver, "T"_s)));
    QCOMPARE(KeyFiles(), QStringList());

    QCOMPARE(Run({"crash"_s, QString::number(pid), "1024"_s, "1"_s}), 0);
    QVERIFY(!WriteSharedMemory(Record(pid, "T"_s)));
    ClearAway(pid);
}

void TestIpcThread::killedSendersBlockNobody()
{
    Window window;
    QVERIFY(window.Shows("ready"_s));
    for (int i = 0; i < 30; ++i) {
        QProcess sender;
        sender.start(QCoreApplication::applicationFilePath(), Words("flood"_s, "flood"_s));
        QVERIFY(sender.waitForStarted());
        // Not before it sends.
        window.topics.clear();
        QTRY_VERIFY(!window.topics.isEmpty());
        QVERIFY(!sender.waitForFinished(QRandomGenerator::global()->bounded(5)));
        sender.kill();
        QVERIFY(sender.waitForFinished());
        QVERIFY(window.Shows("T%1"_s.arg(i)));
    }
}

/// Whatever the case did, nothing of this process's mailbox is left.
void TestIpcThread::cleanup()
{
    const bool foreign = !qstrcmp(QTest::currentTestFunction(), "foreignMailboxIsRefused");
    if (!foreign) {
        QCOMPARE(KeyFiles(), QStringList());
        QVERIFY(!HasWakeUp());
        return;
    }
    // What belongs to others stays; the test made it, and clears it away.
    for (const QString& file : KeyFiles()) {
        const std::string path = QDir::temp().filePath(file).toStdString();
        QCOMPARE(chown(path.c_str(), geteuid(), getegid()), 0);
    }
    ClearAway(OwnPid());
}

int main(int argc, char** argv)
{
    // Senders have no application object, like a launch that hands over.
    constexpr int kModeWords = 5;
    if (argc == kModeWords)
        return RunMode(QString::fromUtf8(argv[1]), QByteArray(argv[2]).toInt(), QString::fromUtf8(argv[3]),
                       QByteArray(argv[4]).toInt());
    QCoreApplication application(argc, argv);
    TestIpcThread test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ipcthread.moc"
