#include "screenprocess.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr double kPatience = 10000;
constexpr unsigned long kLookEvery = 1;
constexpr unsigned long kStandsStill = 300;

QImage Grab(const QRect& area)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
        .toImage();
}

bool Shows(const QPoint& pixel, QRgb colour)
{
    return Grab(QRect(pixel, QSize(1, 1))).pixel(0, 0) == colour;
}

/// What the program that runs says, for the case that it fails.
QString LogFile()
{
    return QDir::temp().filePath(QStringLiteral("screenprocess.log"));
}

QRect AreaOf(QRgb colour)
{
    const QImage image = Grab(QGuiApplication::primaryScreen()->geometry());
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == colour)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

} // namespace

ScreenProcess::ScreenProcess(const QStringList& command) : program(QFile::encodeName(command.first()))
{
    std::vector<QByteArray> words(std::size_t(command.size()));
    std::transform(command.begin(), command.end(), words.begin(),
                   [](const QString& word) { return QFile::encodeName(word); });
    std::vector<char*> arguments(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), arguments.begin(),
                   [](QByteArray& word) { return word.data(); });
    const QByteArray log = QFile::encodeName(LogFile());
    // What the program leaves behind comes to this process, so that its end can be waited for.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    watch = bench::Stopwatch();
    process = fork();
    if (process < 0)
        qFatal("no process");
    if (process > 0) {
        setpgid(process, process);
        return;
    }
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int sink = open(log.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(sink, STDOUT_FILENO);
    dup2(sink, STDERR_FILENO);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

ScreenProcess::~ScreenProcess()
{
    End();
}

void ScreenProcess::End() const
{
    kill(-process, SIGKILL);
    while (waitpid(-process, nullptr, 0) > 0) {
    }
}

bool ScreenProcess::Waits() const
{
    siginfo_t info{};
    if (waitid(P_PID, id_t(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0) {
        QFile log(LogFile());
        if (log.open(QIODevice::ReadOnly))
            std::fputs(log.readAll().constData(), stderr);
        End();
        qFatal("%s ended before it showed a page", program.constData());
    }
    return watch.Elapsed() < kPatience;
}

std::optional<double> ScreenProcess::TimeUntil(const QPoint& pixel, QRgb colour) const
{
    while (!Shows(pixel, colour)) {
        if (!Waits())
            return std::nullopt;
        QThread::msleep(kLookEvery);
    }
    return watch.Elapsed();
}

QRect ScreenProcess::WaitForArea(QRgb colour) const
{
    QRect area;
    while (Waits()) {
        const QRect before = area;
        area = AreaOf(colour);
        if (!area.isNull() && area == before)
            return area;
        QThread::msleep(kStandsStill);
    }
    return {};
}

bool ScreenProcess::WaitUntilShown(const QPoint& pixel, QRgb colour)
{
    const bench::Stopwatch watch;
    while (!Shows(pixel, colour)) {
        if (watch.Elapsed() > kPatience)
            return false;
        QThread::msleep(kLookEvery);
    }
    return true;
}

void ScreenProcess::WaitUntilGone(const QPoint& pixel, QRgb colour)
{
    const bench::Stopwatch waited;
    while (Shows(pixel, colour)) {
        if (waited.Elapsed() > kPatience)
            qFatal("the screen still shows what an ended program painted");
        QThread::msleep(kLookEvery);
    }
}
