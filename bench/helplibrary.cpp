// The viewer's search against the full-text engine of the help library that comes with Qt, on the same
// manual.
//   helplibrary NAME FOLDER LANGUAGE QCH-FILE,QCH-FILE... WORD...

#include "benchkit.h"
#include "jobs.h"
#include "largehelp.h"
#include "yxviewmodel.h"

#include <QApplication>
#include <QEventLoop>
#include <QHelpEngineCore>
#include <QHelpSearchEngine>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdlib>

namespace {

constexpr int kRepeats = 9;
constexpr int kPatience = 300000;

/// The other side: a collection of the files with an index of its own.
class Library
{
public:
    explicit Library(const QStringList& files)
        : core(dir.filePath(QStringLiteral("manual.qhc"))), engine(&core)
    {
        registering = bench::TimeOf([&] {
            bool registered = core.setupData();
            for (const QString& file : files)
                registered = registered && core.registerDocumentation(file);
            if (!registered)
                qFatal("%s", qUtf8Printable(core.error()));
        });
        indexing = TimeUntil(&QHelpSearchEngine::indexingFinished, [&] { engine.reindexDocumentation(); });
    }

    double Search(const QString& word)
    {
        return TimeUntil(&QHelpSearchEngine::searchingFinished, [&] { engine.search(word); });
    }

    int Hits() const { return engine.searchResultCount(); }

    double registering = 0;
    double indexing = 0;

private:
    template <typename Signal, typename Start>
    double TimeUntil(Signal signal, Start start)
    {
        QEventLoop loop;
        QObject::connect(&engine, signal, &loop, &QEventLoop::quit);
        QTimer::singleShot(kPatience, &loop, [] { qFatal("the help library never answers"); });
        const bench::Stopwatch watch;
        start();
        loop.exec();
        return watch.Elapsed();
    }

    QTemporaryDir dir;
    QHelpEngineCore core;
    QHelpSearchEngine engine;
};

void TellWord(YxViewModel& model, Library& library, const QString& word)
{
    bench::Samples viewer;
    bench::Samples other;
    int hits = 0;
    for (int i = 0; i < kRepeats; ++i) {
        const SearchRun run(model, word);
        viewer.push_back(run.whole);
        hits = run.hits;
        other.push_back(library.Search(word));
    }
    bench::Say(QStringLiteral("  \"%1\": search to the help library's   %2; %3 and %4 ms, %5 and %6 hits")
                   .arg(word, bench::Number(bench::Median(viewer) / bench::Median(other)),
                        bench::Number(bench::Median(viewer), 1), bench::Number(bench::Median(other), 1),
                        QString::number(hits), QString::number(library.Hits())));
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 6)
        qFatal("helplibrary NAME FOLDER LANGUAGE QCH-FILE,QCH-FILE... WORD...");
    const QStringList files = arguments.at(4).split(QLatin1Char(','));
    YxViewModel model(arguments.at(3), LargeHelp::FileName(), arguments.at(2), nullptr);
    Library library(files);
    bench::Say(QStringLiteral("%1, %2 files of the help library, medians of %3 searches")
                   .arg(arguments.at(1))
                   .arg(files.size())
                   .arg(kRepeats));
    bench::Say(
        QStringLiteral(
            "  before its first search the help library registers for %1 ms and makes its index for %2 ms")
            .arg(bench::Number(library.registering, 0), bench::Number(library.indexing, 0)));
    for (const QString& word : arguments.mid(5))
        TellWord(model, library, word);
    return EXIT_SUCCESS;
}
