// The contents list and its tree with many topics: time, and memory with small and with large pages. Memory
// is measured in processes of their own, which this program starts.
//   contents FOLDER-OF-A-DEPLOYMENT LANGUAGE

#include "benchkit.h"
#include "builtinresources.h"
#include "dpiscale.h"
#include "largehelp.h"
#include "yxhelp.h"
#include "yxviewmodel.h"

#include <QApplication>
#include <QProcess>
#include <QResource>
#include <QTreeWidget>

#include <cstdlib>

namespace {

constexpr int kRows = 100000;
constexpr int kSmall = 100;
// With large pages a tenth of the rows makes a database of 400 MB, which is enough to tell.
constexpr int kFewerRows = 10000;
constexpr int kLarge = 20 * 1024;
constexpr int kRepeats = 7;

/// What a child process measures.
struct Figures
{
    double read = 0;   ///< Reading the list.
    double tree = 0;   ///< From the list to the entries in the tree.
    double init = 0;   ///< The window's whole Init, which does both and opens the first topic.
    double memory = 0; ///< Peak in KiB.
};

/// The child's side: reads the list, or makes a whole window of it, and writes the figures.
void MeasureList(const QString& folder)
{
    YxViewModel model(LargeHelp::Language(), LargeHelp::FileName(), folder, nullptr);
    const bench::Stopwatch watch;
    model.HelpFileList();
    const double read = watch.Elapsed();
    bench::Say(QStringLiteral("%1 0 0 %2").arg(read).arg(bench::PeakMemory()));
}

void MeasureWindow(const QString& folder)
{
    HelpLaunchArgs args;
    args.language = LargeHelp::Language();
    args.mdbFile = LargeHelp::FileName();
    args.rccPath = folder;
    YxHelp window;
    double untilInserted = 0;
    bench::Stopwatch watch;
    QObject::connect(window.findChild<QTreeWidget*>(QStringLiteral("treeWidget"))->model(),
                     &QAbstractItemModel::rowsInserted, &window, [&] { untilInserted = watch.Elapsed(); });
    watch = bench::Stopwatch();
    if (!window.Init(args, args.language) || untilInserted == 0)
        qFatal("no contents in the window");
    const double init = watch.Elapsed();
    const long memory = bench::PeakMemory();

    // The window doesn't tell when it had read the list, so it is read once more, in the same process.
    YxViewModel model(args.language, args.mdbFile, folder, nullptr);
    watch = bench::Stopwatch();
    model.HelpFileList();
    const double read = watch.Elapsed();
    bench::Say(QStringLiteral("%1 %2 %3 %4").arg(read).arg(untilInserted - read).arg(init).arg(memory));
}

Figures Child(const QStringList& arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    const bool ended = process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit;
    const QStringList words =
        QString::fromLatin1(process.readAllStandardOutput()).simplified().split(QLatin1Char(' '));
    if (!ended || words.size() != 4)
        qFatal("a measuring process failed: %s", process.readAllStandardError().constData());
    return {words.at(0).toDouble(), words.at(1).toDouble(), words.at(2).toDouble(), words.at(3).toDouble()};
}

/// The figures of the children for one database, without the memory that the same needs for a single topic.
class Contents
{
public:
    Contents(int rows, int size, int repeats, const QStringList& product)
    {
        const LargeHelp one(1, size);
        const LargeHelp help(rows, size);
        const auto child = [&](const char* what, const LargeHelp& of) {
            return Child(QStringList{QLatin1String(what), of.Folder()} + product);
        };
        for (int i = 0; i < repeats; ++i)
            windows.push_back(child("window", help));
        listMemory = (child("list", help).memory - child("list", one).memory) / 1024;
        windowMemory = (Median(&Figures::memory) - child("window", one).memory) / 1024;
    }

    double Median(double Figures::*figure) const
    {
        bench::Samples samples;
        for (const Figures& window : windows)
            samples.push_back(window.*figure);
        return bench::Median(samples);
    }

    // In MiB.
    double listMemory = 0;
    double windowMemory = 0;

private:
    std::vector<Figures> windows;
};

QString Heading(int rows, const QString& sizes, int repeats)
{
    return QStringLiteral("%1 topics with page and text of %2 each, medians of %3 runs")
        .arg(QString::number(rows), sizes, QString::number(repeats));
}

void TellTimes(const QStringList& product)
{
    const Contents contents(kRows, kSmall, kRepeats, product);
    const double read = contents.Median(&Figures::read);
    const double tree = contents.Median(&Figures::tree);
    bench::Say(Heading(kRows, QStringLiteral("%1 bytes").arg(kSmall), kRepeats));
    bench::Say(
        QStringLiteral("  building the tree to reading the list   %1; %2 and %3 ms, of %4 ms for all of Init")
            .arg(bench::Number(tree / read), bench::Number(tree, 0), bench::Number(read, 0),
                 bench::Number(contents.Median(&Figures::init), 0)));
    bench::Say(
        QStringLiteral("  memory of list and tree to the list alone   %1; %2 and %3 MiB over one topic")
            .arg(bench::Number(contents.windowMemory / contents.listMemory),
                 bench::Number(contents.windowMemory, 1), bench::Number(contents.listMemory, 1)));
}

void TellGrowth(const QStringList& product)
{
    constexpr int kFewRepeats = 3;
    const Contents small(kFewerRows, kSmall, kFewRepeats, product);
    const Contents large(kFewerRows, kLarge, kFewRepeats, product);
    const double more = 2.0 * kFewerRows * (kLarge - kSmall) / (1024 * 1024);
    bench::Say(Heading(kFewerRows, QStringLiteral("%1 bytes, then of %2 KiB").arg(kSmall).arg(kLarge / 1024),
                       kFewRepeats));
    const auto tellMemory = [more](const char* what, double growth) {
        bench::Say(QStringLiteral("  growth of memory to growth of the database, %1   %2; %3 of %4 MiB")
                       .arg(QLatin1String(what), bench::Number(growth / more), bench::Number(growth, 1),
                            bench::Number(more, 0)));
    };
    tellMemory("the list", large.listMemory - small.listMemory);
    tellMemory("list and tree", large.windowMemory - small.windowMemory);
    const double longer = large.Median(&Figures::read);
    const double shorter = small.Median(&Figures::read);
    bench::Say(
        QStringLiteral("  reading the list with large pages to small ones   %1; %2 and %3 ms")
            .arg(bench::Number(longer / shorter), bench::Number(longer, 0), bench::Number(shorter, 0)));
}

} // namespace

int main(int argc, char** argv)
{
    InitBuiltInResources();
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3) {
        TellTimes(arguments.mid(1));
        TellGrowth(arguments.mid(1));
        return EXIT_SUCCESS;
    }
    if (arguments.size() != 5)
        qFatal("contents FOLDER-OF-A-DEPLOYMENT LANGUAGE");
    // The product of a real deployment, so that the window is a usual one.
    QResource::registerResource(arguments.at(3) + QLatin1Char('/') + arguments.at(4) +
                                QLatin1String("/Help/YxHelpSystem.rcc"));
    InitScale();
    if (arguments.at(1) == QLatin1String("list"))
        MeasureList(arguments.at(2));
    else
        MeasureWindow(arguments.at(2));
    return EXIT_SUCCESS;
}
