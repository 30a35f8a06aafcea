// Search and keyword index as the user of a window has them: when hits are on the screen, how long the window
// is deaf meanwhile, and what a key costs that is typed into the index. Runs itself for each window.
//   searchwindow FOLDER-OF-A-DEPLOYMENT LANGUAGE NAME FOLDER WORD...

#include "builtinresources.h"
#include "dpiscale.h"
#include "largehelp.h"
#include "paintwatch.h"
#include "watchedapplication.h"
#include "yxglobalsignal.h"
#include "yxhelp.h"
#include "yxviewmodel.h"

#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProcess>
#include <QResource>
#include <QToolButton>
#include <QTreeWidget>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <utility>

namespace {

constexpr int kRepeats = 7;
constexpr int kSettle = 1500;
constexpr int kEntries = 100000;
constexpr double kFirstTenTarget = 100;
constexpr double kGapTarget = 50;
constexpr double kFrame = 16;

using Gap = WatchedApplication::Gap;

/// A shown window on a help database.
class Window
{
public:
    Window(const QString& folder, const QString& language)
    {
        HelpLaunchArgs args;
        args.language = language;
        args.mdbFile = LargeHelp::FileName();
        args.rccPath = folder;
        if (!window.Init(args, language))
            qFatal("no help in %s", qUtf8Printable(folder));
        window.ShowCentered();
    }

    template <class Widget>
    Widget* Find(const char* name)
    {
        auto* widget = window.findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("the window has no %s", name);
        return widget;
    }

    /// Until the index is complete and nothing is left to do.
    void Settle()
    {
        auto* index = Find<QTreeWidget>("treeWidget_index");
        int rows = -1;
        while (std::exchange(rows, index->topLevelItemCount()) != index->topLevelItemCount() || rows == 0)
            RunFor(kSettle);
    }

private:
    YxHelp window;
};

void Press(QWidget* widget, int key, const QString& text = {})
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(widget, &event);
}

/// The longest wait of the user's input while the work goes on.
Gap Watch(const std::function<void()>& work)
{
    auto* application = static_cast<WatchedApplication*>(QCoreApplication::instance());
    application->StartWatch();
    work();
    return application->EndWatch();
}

/// Longest gaps of several runs.
struct Gaps
{
    bench::Samples wall;
    bench::Samples busy;
    Gap worst;

    void Add(const Gap& gap)
    {
        wall.push_back(gap.wall);
        busy.push_back(gap.busy);
        if (gap.wall > worst.wall)
            worst = gap;
    }

    QString Text() const
    {
        return QStringLiteral("%1 ms (%2 of processor time), worst run %3 ms (%4)")
            .arg(bench::Number(bench::Median(wall), 1), bench::Number(bench::Median(busy), 1),
                 bench::Number(worst.wall, 1), worst.during);
    }
};

Gap IdleGap()
{
    return Watch([] { RunFor(500); });
}

/// Searches words in a window, each after one that no page has, so that the pane is empty.
class Searches
{
public:
    explicit Searches(Window& window)
        : results(window.Find<QTreeWidget>("treeWidget_result"))
        , edit(window.Find<QLineEdit>("lineEdit_context"))
        , paints(results)
    {
        QObject::connect(
            YxGlobalSignal::Instance(), &YxGlobalSignal::SearchResultChange, &paints,
            [this](const QList<TreeViewModel>& list, int, bool isEnd) {
                if (isEnd)
                    hits = list.size();
            },
            Qt::DirectConnection);
    }

    void Run(const QString& word)
    {
        idle.Add(IdleGap());
        hits = -1;
        edit->setText(word);
        searching.Add(Watch([this] {
            paints.Restart();
            Press(edit, Qt::Key_Return);
            // The job tells the number of its hits before the window has shown them.
            RunUntil([this] { return hits >= 0 && paints.Painted(hits); });
        }));
        first.push_back(paints.Time(std::min(int(hits), 10)));
        last.push_back(paints.Time(hits));
        found = hits;
        RunFor(kSettle);

        hits = -1;
        edit->setText(QStringLiteral("no page has this"));
        clearing.Add(Watch([this] {
            Press(edit, Qt::Key_Return);
            RunUntil([this] { return hits == 0 && results->topLevelItemCount() == 0; });
        }));
        RunFor(kSettle / 3);
    }

    void Tell(const QString& word) const
    {
        const double firstTen = bench::Median(first);
        bench::Say(
            QStringLiteral("  \"%1\": first ten of %2 hits shown after %3 ms, target %4: %5; all after %6 ms")
                .arg(word)
                .arg(found)
                .arg(bench::Number(firstTen, 1), bench::Number(kFirstTenTarget, 0),
                     bench::Verdict(firstTen, kFirstTenTarget), bench::Number(bench::Median(last), 1)));
        bench::Say(QStringLiteral("    window without ear for %1, target %2: %3")
                       .arg(searching.Text(), bench::Number(kGapTarget, 0),
                            bench::Verdict(bench::Median(searching.wall), kGapTarget)));
        bench::Say(QStringLiteral("    when the hits are replaced %1").arg(clearing.Text()));
        bench::Say(QStringLiteral("    when nothing happens %1").arg(idle.Text()));
    }

private:
    QTreeWidget* results;
    QLineEdit* edit;
    PaintWatch paints;
    std::atomic<int> hits = -1;
    int found = 0;
    bench::Samples first;
    bench::Samples last;
    Gaps searching;
    Gaps clearing;
    Gaps idle;
};

/// The same word in other capitals is another search.
QString Variant(QString word, int number)
{
    for (int i = 0; i < word.size(); ++i) {
        if (number >> i & 1)
            word[i] = word.at(i).toUpper();
    }
    return word;
}

void MeasureSearch(const QString& folder, const QString& language, const QStringList& words)
{
    Window window(folder, language);
    window.Settle();
    for (const QString& word : words) {
        Searches searches(window);
        for (int i = 0; i < kRepeats; ++i)
            searches.Run(Variant(word, i));
        searches.Tell(word);
    }
}

/// Types a text into the index, key by key.
void TellTyping(Window& window, const char* what, const QString& text)
{
    auto* index = window.Find<QTreeWidget>("treeWidget_index");
    auto* edit = window.Find<QLineEdit>("lineEdit_index");
    edit->clear();
    RunFor(kSettle / 3);
    PaintWatch paints(index);
    bench::Samples slot;
    bench::Samples shown;
    for (const QChar c : text) {
        const QTreeWidgetItem* before = index->currentItem();
        paints.Restart();
        const bench::Stopwatch watch;
        Press(edit, 0, QString(c));
        slot.push_back(watch.Elapsed());
        if (index->currentItem() == before)
            continue;
        RunUntil([&] { return paints.Painted(0); });
        shown.push_back(paints.Time(0));
        RunFor(30);
    }
    const auto figures = [](const bench::Samples& samples) {
        return samples.empty()
                   ? QStringLiteral("-")
                   : QStringLiteral("%1 ms, worst key %2 ms")
                         .arg(bench::Number(bench::Median(samples), 1),
                              bench::Number(*std::max_element(samples.begin(), samples.end()), 1));
    };
    bench::Say(QStringLiteral("  typing \"%1\" (%2): selection after %3; painted after %4")
                   .arg(text, QLatin1String(what), figures(slot), figures(shown)));
}

/// The index of a large database, made by a job that the window doesn't know of: so it comes to a window that
/// has nothing else to do.
void MeasureIndex(const QString& small, const QString& large, bool visible)
{
    Window window(small, LargeHelp::Language());
    window.Settle();
    auto* index = window.Find<QTreeWidget>("treeWidget_index");
    auto* tab = window.Find<QToolButton>("tbn_index");
    const int present = index->topLevelItemCount();
    if (visible) {
        tab->click();
        RunFor(kSettle);
    }
    Gaps idle;
    idle.Add(IdleGap());
    YxViewModel model(LargeHelp::Language(), LargeHelp::FileName(), large, nullptr);
    model.HelpFileList();
    double whole = 0;
    Gaps building;
    building.Add(Watch([&] {
        const bench::Stopwatch watch;
        QFuture<void> job = QtConcurrent::run(&model, &YxViewModel::LoadIndex);
        RunUntil([&] { return index->topLevelItemCount() == present + kEntries; });
        whole = watch.Elapsed();
        job.waitForFinished();
    }));
    bench::Say(
        QStringLiteral("Index of %1 entries, its pane %2")
            .arg(QString::number(kEntries), visible ? QStringLiteral("shown") : QStringLiteral("hidden")));
    bench::Say(QStringLiteral("  complete after %1 ms, window without ear for %2")
                   .arg(bench::Number(whole, 0), building.Text()));
    bench::Say(QStringLiteral("    when nothing happens %1").arg(idle.Text()));
    if (visible) {
        TellTyping(window, "in front", QStringLiteral("topic number 99999"));
        TellTyping(window, "inside", QStringLiteral("number 99999"));
        TellTyping(window, "nowhere", QStringLiteral("qqqqqqqq"));
        TellTyping(window, "a regular expression", QStringLiteral("n.mber 99999"));
        bench::Say(QStringLiteral("  target for plain text: a frame of %1 ms").arg(bench::Number(kFrame, 0)));
        return;
    }
    Gaps switching;
    PaintWatch paints(index);
    switching.Add(Watch([&] {
        paints.Restart();
        tab->click();
        RunUntil([&] { return paints.Painted(kEntries); });
    }));
    bench::Say(QStringLiteral("  pane painted %1 ms after the click on its tab, window without ear for %2")
                   .arg(bench::Number(paints.Time(kEntries), 0), switching.Text()));
}

void Child(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(600000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        qFatal("a measuring process failed");
}

void TellAll(const QStringList& arguments)
{
    const QStringList product = arguments.mid(1, 2);
    bench::Say(QStringLiteral("%1, medians of %2 searches").arg(arguments.at(3)).arg(kRepeats));
    Child(product + QStringList{QStringLiteral("search"), arguments.at(4), arguments.at(2)} +
          arguments.mid(5));
    {
        constexpr int kTopics = 20000;
        const LargeHelp help(kTopics, 15000, 25000);
        bench::Say(QStringLiteral("%1 topics with pages of 15 to 25 KB, medians of %2 searches")
                       .arg(kTopics)
                       .arg(kRepeats));
        Child(product +
              QStringList{QStringLiteral("search"), help.Folder(), LargeHelp::Language(), LargeHelp::Word()});
    }
    const LargeHelp small(10, 100);
    const LargeHelp large(kEntries + 1, 100);
    for (const char* pane : {"hidden", "shown"})
        Child(product +
              QStringList{QStringLiteral("index"), small.Folder(), large.Folder(), QLatin1String(pane)});
}

} // namespace

int main(int argc, char** argv)
{
    InitBuiltInResources();
    if (argc > 4 && (qstrcmp(argv[3], "search") == 0 || qstrcmp(argv[3], "index") == 0)) {
        WatchedApplication application(argc, argv);
        const QStringList arguments = QCoreApplication::arguments();
        // The product of a real deployment and the viewer's style, so that the window is a usual one.
        QResource::registerResource(arguments.at(1) + QLatin1Char('/') + arguments.at(2) +
                                    QLatin1String("/Help/YxHelpSystem.rcc"));
        QFile style(QStringLiteral(":/Resource/qss/YxHelp.qss"));
        if (!style.open(QIODevice::ReadOnly))
            qFatal("no style sheet");
        application.setStyleSheet(QString::fromUtf8(style.readAll()));
        InitScale();
        if (arguments.at(3) == QLatin1String("search"))
            MeasureSearch(arguments.at(4), arguments.at(5), arguments.mid(6));
        else
            MeasureIndex(arguments.at(4), arguments.at(5), arguments.at(6) == QLatin1String("shown"));
        return EXIT_SUCCESS;
    }
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().size() < 6)
        qFatal("searchwindow FOLDER-OF-A-DEPLOYMENT LANGUAGE NAME FOLDER WORD...");
    TellAll(QCoreApplication::arguments());
    return EXIT_SUCCESS;
}
