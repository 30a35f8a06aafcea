// A later launch that hands its topic over to the running viewer: time to its exit, and to the painted topic.
// Beside it a process that links the same libraries and returns at once, in turns.
//   handover VIEWER EMPTYLAUNCH RUNS NAME FOLDER LANGUAGE TOPIC-KEY OTHER-TOPIC-KEY

#include "benchkit.h"
#include "deployment.h"
#include "screenprocess.h"

#include <QGuiApplication>
#include <QProcess>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr double kExitTarget = 30;
constexpr double kPaintTarget = 100;

/// Milliseconds from the start of the process to its end.
double Launch(const QStringList& command)
{
    return bench::TimeOf([&] {
        if (QProcess::execute(command.first(), command.mid(1)) != 0)
            qFatal("%s failed", qUtf8Printable(command.first()));
    });
}

QString Figures(const bench::Samples& samples)
{
    return QStringLiteral("median %1 ms, worst %2 ms")
        .arg(bench::Number(bench::Median(samples), 1),
             bench::Number(*std::max_element(samples.begin(), samples.end()), 1));
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 9)
        qFatal("handover VIEWER EMPTYLAUNCH RUNS NAME FOLDER LANGUAGE TOPIC-KEY OTHER-TOPIC-KEY");
    const MarkedDeployment deployment(arguments.at(1), arguments.at(5), arguments.at(6), arguments.at(7));
    const QStringList empty{arguments.at(2)};
    // A title that no other viewer of this machine has.
    const QString title = QStringLiteral("bench%1").arg(QCoreApplication::applicationPid());
    const QStringList viewer{deployment.Program(),
                             QStringLiteral("/Language"),
                             arguments.at(6),
                             QStringLiteral("/helpTitle"),
                             title,
                             QStringLiteral("/Topic")};
    const QStringList marked = viewer + QStringList{arguments.at(7)};
    const QStringList other = viewer + QStringList{arguments.at(8)};

    const ScreenProcess running(marked);
    const QRect area = running.WaitForArea(MarkedDeployment::kColour);
    if (area.isNull())
        qFatal("the viewer shows no page");
    const QPoint pixel(area.left() + 3, area.center().y());
    bench::Samples exits;
    bench::Samples paints;
    bench::Samples bare;
    for (int run = 0; run < arguments.at(3).toInt(); ++run) {
        Launch(other);
        ScreenProcess::WaitUntilGone(pixel, MarkedDeployment::kColour);
        bare.push_back(Launch(empty));
        exits.push_back(Launch(marked));
        const bench::Stopwatch watch;
        if (!ScreenProcess::WaitUntilShown(pixel, MarkedDeployment::kColour))
            qFatal("the topic isn't shown");
        paints.push_back(watch.Elapsed());
    }
    const double later = bench::Median(exits) - bench::Median(bare);
    const double painted = bench::Median(paints);
    bench::Say(QStringLiteral("%1: %2 topics, %3 hand-overs")
                   .arg(arguments.at(4), QString::number(deployment.Topics()), arguments.at(3)));
    bench::Say(QStringLiteral("  launch to its exit: %1; a process that does nothing: %2")
                   .arg(Figures(exits), Figures(bare)));
    bench::Say(
        QStringLiteral("    later by %1 ms, target %2: %3")
            .arg(bench::Number(later, 1), bench::Number(kExitTarget, 0), bench::Verdict(later, kExitTarget)));
    bench::Say(
        QStringLiteral("  exit to painted topic: %1, target %2: %3")
            .arg(Figures(paints), bench::Number(kPaintTarget, 0), bench::Verdict(painted, kPaintTarget)));
    return EXIT_SUCCESS;
}
