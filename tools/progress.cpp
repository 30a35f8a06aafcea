#include "progress.h"

#include <cstdio>

namespace helpbuild {
namespace {

constexpr int kRedrawMs = 100;
constexpr int kLineWidth = 76;

} // namespace

void Progress::Show(int done, int total, const QString& what)
{
    if (!active || (lastDraw.isValid() && lastDraw.elapsed() < kRedrawMs))
        return;
    lastDraw.start();
    const int percent = total > 0 ? done * 100 / total : 100;
    const QString line = QStringLiteral("[%1%] %2/%3 ").arg(percent, 3).arg(done).arg(total) + what;
    std::fprintf(stderr, "\r\033[K%s", qPrintable(line.left(kLineWidth)));
    std::fflush(stderr);
    drawn = true;
}

void Progress::Clear()
{
    if (!drawn)
        return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    drawn = false;
}

} // namespace helpbuild
