// Time from the start of the process to the painted page, for the viewer and for a bare web view with the
// same page, side by side. Both are watched by this process, in turns.
//   paintprobe VIEWER BAREVIEW RUNS NAME FOLDER LANGUAGE [TOPIC-KEY]

#include "benchkit.h"
#include "deployment.h"
#include "screenprocess.h"

#include <QGuiApplication>

#include <cstdlib>

namespace {

constexpr double kTarget = 1.25;

constexpr QRgb kColour = MarkedDeployment::kColour;

/// One of the two programs and what was measured of it.
struct Contender
{
    QStringList command;
    bench::Samples times;
    int blank = 0; ///< Starts that never came to a page.
};

/// Where the page lies. This run also fills what is kept from run to run: settings, the engine's own files.
QRect FirstRun(Contender& contender)
{
    for (int tries = 0; tries < 3; ++tries) {
        const QRect area = ScreenProcess(contender.command).WaitForArea(kColour);
        ScreenProcess::WaitUntilGone(area.center(), kColour);
        if (!area.isNull())
            return area;
        ++contender.blank;
    }
    qFatal("%s shows no page", qUtf8Printable(contender.command.first()));
}

void Run(Contender& contender, const QPoint& pixel)
{
    ScreenProcess::WaitUntilGone(pixel, kColour);
    const std::optional<double> time = ScreenProcess(contender.command).TimeUntil(pixel, kColour);
    if (time)
        contender.times.push_back(*time);
    else
        ++contender.blank;
}

void Report(const Contender& viewer, const Contender& bare, const QRect& area)
{
    if (viewer.times.empty() || bare.times.empty())
        qFatal("no run came to a page");
    const double viewerMedian = bench::Median(viewer.times);
    const double bareMedian = bench::Median(bare.times);
    const double viewerLeast = bench::Least(viewer.times);
    const double bareLeast = bench::Least(bare.times);
    const double ratio = viewerMedian / bareMedian;
    bench::Say(QStringLiteral("  viewer to bare web view   %1 by medians, %2 by the least; target %3: %4")
                   .arg(bench::Number(ratio), bench::Number(viewerLeast / bareLeast), bench::Number(kTarget),
                        bench::Verdict(ratio, kTarget)));
    bench::Say(
        QStringLiteral("    medians %1 and %2 ms, least %3 and %4 ms, of %5 and %6 runs; page of %7 x %8")
            .arg(bench::Number(viewerMedian, 0), bench::Number(bareMedian, 0), bench::Number(viewerLeast, 0),
                 bench::Number(bareLeast, 0), QString::number(viewer.times.size()),
                 QString::number(bare.times.size()), QString::number(area.width()),
                 QString::number(area.height())));
    if (viewer.blank + bare.blank > 0)
        bench::Say(QStringLiteral("    starts that showed no page at all: viewer %1, bare web view %2")
                       .arg(viewer.blank)
                       .arg(bare.blank));
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 7)
        qFatal("paintprobe VIEWER BAREVIEW RUNS NAME FOLDER LANGUAGE [TOPIC-KEY]");
    const QString& language = arguments.at(6);
    const QString topic = arguments.value(7);
    const MarkedDeployment deployment(arguments.at(1), arguments.at(5), language, topic);

    Contender viewer;
    // A title that no other viewer of this machine has.
    viewer.command =
        QStringList{deployment.Program(), QStringLiteral("/Language"), language, QStringLiteral("/helpTitle"),
                    QStringLiteral("bench%1").arg(QCoreApplication::applicationPid())};
    if (!topic.isEmpty())
        viewer.command << QStringLiteral("/Topic") << topic;
    const QRect area = FirstRun(viewer);

    Contender bare;
    bare.command = QStringList{arguments.at(2), deployment.PageFile()};
    for (int number : {area.x(), area.y(), area.width(), area.height()})
        bare.command.append(QString::number(number));
    if ((area.topLeft() - FirstRun(bare).topLeft()).manhattanLength() > 2)
        qFatal("the two pages don't lie on the same place");

    // Between the edge of the page and its text.
    const QPoint pixel(area.left() + 3, area.center().y());
    for (int run = 0; run < arguments.at(3).toInt(); ++run) {
        Run(viewer, pixel);
        Run(bare, pixel);
    }
    bench::Say(QStringLiteral("%1: %2 topics, page of %3 KB")
                   .arg(arguments.at(4), QString::number(deployment.Topics()),
                        bench::Number(deployment.PageSize() / 1000.0, 1)));
    Report(viewer, bare, area);
    return EXIT_SUCCESS;
}
