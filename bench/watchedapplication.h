#pragma once

#include "benchkit.h"

#include <QApplication>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <memory>
#include <thread>

/// Tells how long the window leaves its user without an answer. A thread of its own knocks at a pipe, again
/// and again as soon as it has been heard. Inside another event the viewer lets no input in, so a knock isn't
/// heard there either.
class WatchedApplication : public QApplication
{
public:
    WatchedApplication(int& argc, char** argv);
    ~WatchedApplication() override;

    bool notify(QObject* receiver, QEvent* event) override;

    struct Gap
    {
        double wall = 0; ///< The longest wait of a knock.
        double busy = 0; ///< The most processor time that this thread took between two arrivals.
        QString during;  ///< The longest event within the longest wait.
    };

    /// Begins a watch.
    void StartWatch();
    /// The longest waits since then.
    Gap EndWatch();

private:
    void Knock();
    void Arrive();

    std::array<int, 2> ends{};
    std::unique_ptr<QSocketNotifier> notifier;
    std::thread sender;
    std::atomic<bool> watching = false;
    std::atomic<bool> underWay = false;
    bench::Stopwatch sinceSent; ///< The sender's, until a knock is under way; then this thread's.
    double busyBefore = 0;
    Gap longest;
    int depth = 0;
    double longestEvent = 0;
    QString eventName;
};

/// Runs the event loop until the condition holds, which is looked at every millisecond.
void RunUntil(const std::function<bool()>& condition);
void RunFor(int milliseconds);
