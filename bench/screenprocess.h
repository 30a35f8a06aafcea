#pragma once

#include "benchkit.h"

#include <QByteArray>
#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QStringList>

#include <optional>
#include <sys/types.h>

/// A program that is watched from outside, by what it puts on the screen. It ends with this object, and all
/// processes that it started end with it. When it ends by itself, this program ends too, with a message and
/// with what the other had to say.
class ScreenProcess
{
public:
    /// The clock starts with the process.
    explicit ScreenProcess(const QStringList& command);
    ~ScreenProcess();
    Q_DISABLE_COPY_MOVE(ScreenProcess)

    /// Milliseconds from the start until the pixel has the colour; it is looked at every millisecond. Nothing
    /// when that takes too long.
    std::optional<double> TimeUntil(const QPoint& pixel, QRgb colour) const;

    /// The part of the screen that has the colour, as soon as it stands still; null when that takes too long.
    QRect WaitForArea(QRgb colour) const;

    /// Waits until any program has painted the pixel; false when that takes too long.
    static bool WaitUntilShown(const QPoint& pixel, QRgb colour);

    /// What a program painted stays for a moment after its end.
    static void WaitUntilGone(const QPoint& pixel, QRgb colour);

private:
    bool Waits() const;
    void End() const;

    QByteArray program;
    bench::Stopwatch watch;
    pid_t process = 0;
};
