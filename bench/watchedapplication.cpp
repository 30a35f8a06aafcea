#include "watchedapplication.h"

#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

constexpr int kPatience = 60000;

double BusyTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1000.0 * double(time.tv_sec) + double(time.tv_nsec) / 1e6;
}

} // namespace

WatchedApplication::WatchedApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    if (pipe(ends.data()) != 0)
        qFatal("no pipe");
    notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this] { Arrive(); });
}

WatchedApplication::~WatchedApplication()
{
    EndWatch();
    notifier.reset();
    close(ends[0]);
    close(ends[1]);
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event)
{
    const int type = event->type();
    // The receiver may be gone afterwards.
    const char* name = receiver->metaObject()->className();
    const bench::Stopwatch watch;
    ++depth;
    const bool result = QApplication::notify(receiver, event);
    --depth;
    if (depth == 0 && watch.Elapsed() > longestEvent) {
        longestEvent = watch.Elapsed();
        eventName = QStringLiteral("%1, event %2 of %3 ms")
                        .arg(QLatin1String(name))
                        .arg(type)
                        .arg(bench::Number(longestEvent, 1));
    }
    return result;
}

void WatchedApplication::StartWatch()
{
    longest = {};
    longestEvent = 0;
    eventName.clear();
    busyBefore = BusyTime();
    watching = true;
    sender = std::thread(&WatchedApplication::Knock, this);
}

WatchedApplication::Gap WatchedApplication::EndWatch()
{
    watching = false;
    if (sender.joinable())
        sender.join();
    // The last knock is still to come.
    while (underWay)
        processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return std::exchange(longest, {});
}

void WatchedApplication::Knock()
{
    while (watching) {
        if (!underWay) {
            sinceSent = bench::Stopwatch();
            underWay = true;
            if (write(ends[1], "k", 1) != 1)
                qFatal("the pipe is broken");
        }
        QThread::usleep(500);
    }
}

void WatchedApplication::Arrive()
{
    // Inside another event no input would be let in. The knock stays in the pipe.
    if (depth > 1)
        return;
    char knock = 0;
    if (read(ends[0], &knock, 1) != 1)
        qFatal("the pipe is broken");
    const double busy = BusyTime();
    longest.busy = std::max(longest.busy, busy - busyBefore);
    if (sinceSent.Elapsed() > longest.wall) {
        longest.wall = sinceSent.Elapsed();
        longest.during = eventName;
    }
    longestEvent = 0;
    eventName.clear();
    busyBefore = busy;
    underWay = false;
}

void RunUntil(const std::function<bool()>& condition)
{
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    QTimer::singleShot(kPatience, &loop, [] { qFatal("what was waited for never came"); });
    look.start(1);
    loop.exec();
}

void RunFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}
