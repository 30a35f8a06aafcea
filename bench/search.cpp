// Searching and stopping, against nothing but stepping through the same rows and reading their pages.
//   search NAME FOLDER LANGUAGE WORD...
// With no arguments on a large help database of its own, whose pages all have the same word or none.

#include "benchkit.h"
#include "jobs.h"
#include "largehelp.h"
#include "sqlstatement.h"
#include "textmatcher.h"
#include "yxglobalsignal.h"
#include "yxviewmodel.h"

#include <QCoreApplication>
#include <QThread>
#include <QtConcurrent>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kRepeats = 9;
constexpr int kStops = 60;
constexpr double kTarget = 1.5;

/// The statement of a search, run by hand on a connection of its own.
class Rows
{
public:
    Rows(const QString& path, const QString& word)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), Connection());
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("no database %s", qUtf8Printable(path));
        statement = std::make_unique<SqlStatement>(
            QStringLiteral("SELECT * FROM HelpFileList Where Body like '%%1%' order by Title asc").arg(word),
            database);
    }

    ~Rows()
    {
        statement.reset();
        QSqlDatabase::removeDatabase(Connection());
    }
    Q_DISABLE_COPY_MOVE(Rows)

    bool Next() { return statement->Next(); }
    QString Page() { return statement->Text(QLatin1String("Html")); }

private:
    static QString Connection() { return QStringLiteral("rows"); }

    std::unique_ptr<SqlStatement> statement;
};

struct ReadResult
{
    int rows = 0;
    QStringList pages; ///< Only when they are kept.
};

ReadResult ReadRows(const QString& path, const QString& word, bool keep)
{
    ReadResult result;
    Rows rows(path, word);
    while (rows.Next()) {
        const QString page = rows.Page();
        ++result.rows;
        if (keep)
            result.pages.append(page);
    }
    return result;
}

/// The longest time that lies between two looks at the stop mark.
double LongestRow(const QString& path, const QString& word)
{
    const TextMatcher matcher(word);
    double longest = 0;
    bench::Stopwatch watch;
    Rows rows(path, word);
    for (bool more = true; more;) {
        more = rows.Next();
        if (more)
            matcher.Matches(rows.Page());
        longest = std::max(longest, watch.Elapsed());
        watch = bench::Stopwatch();
    }
    return longest;
}

void TellWord(YxViewModel& model, const QString& word)
{
    bench::Samples search;
    bench::Samples first;
    bench::Samples read;
    bench::Samples kept;
    int rows = 0;
    int hits = 0;
    for (int i = 0; i < kRepeats; ++i) {
        const SearchRun run(model, word);
        search.push_back(run.whole);
        first.push_back(run.firstTen);
        hits = run.hits;
        read.push_back(bench::TimeOf([&] { rows = ReadRows(model.DatabasePath(), word, false).rows; }));
        kept.push_back(bench::TimeOf([&] { ReadRows(model.DatabasePath(), word, true); }));
    }
    const double ratio = bench::Median(search) / bench::Median(read);
    const bool plain = CaselessText::Replaces(word);
    bench::Say(QStringLiteral("  \"%1\": search to reading the rows   %2; %3")
                   .arg(word, bench::Number(ratio),
                        plain
                            ? QStringLiteral("target %1: %2").arg(kTarget).arg(bench::Verdict(ratio, kTarget))
                            : QStringLiteral("a regular expression")));
    bench::Say(
        QStringLiteral("    %1 and %2 ms (%3 ms when the pages of all rows are kept), the first ten hits "
                       "after %4 ms; %5 hits in %6 rows")
            .arg(bench::Number(bench::Median(search), 1), bench::Number(bench::Median(read), 1),
                 bench::Number(bench::Median(kept), 1), bench::Number(bench::Median(first), 1),
                 QString::number(hits), QString::number(rows)));
}

/// Stops searches at moments spread evenly over their run.
void TellStop(YxViewModel& model, const QString& word)
{
    bench::Samples rows;
    bench::Samples whole;
    for (int i = 0; i < kRepeats; ++i) {
        rows.push_back(LongestRow(model.DatabasePath(), word));
        whole.push_back(SearchRun(model, word).whole);
    }
    // The rows belong to the window, which holds them longer than the job.
    QList<TreeViewModel> kept;
    QObject receiver;
    QObject::connect(
        YxGlobalSignal::Instance(), &YxGlobalSignal::SearchResultChange, &receiver,
        [&](const QList<TreeViewModel>& list, int index, bool) { kept.append(list.mid(index)); },
        Qt::DirectConnection);
    bench::Samples stops;
    for (int i = 0; i < kStops; ++i) {
        kept.clear();
        QFuture<void> job = QtConcurrent::run(&model, &YxViewModel::SearchAllFiles, word);
        QThread::usleep(static_cast<unsigned long>(1000 * bench::Median(whole) * (i + 1) / (kStops + 2)));
        if (job.isFinished())
            continue;
        const bench::Stopwatch watch;
        // As the window stops it: a job that hasn't begun misses the stop.
        while (job.isRunning()) {
            emit YxGlobalSignal::Instance()->TerminateResultSearch();
            QThread::usleep(50);
        }
        job.waitForFinished();
        stops.push_back(watch.Elapsed());
    }
    if (stops.empty())
        qFatal("no search ran long enough to be stopped");
    const double longestStop = *std::max_element(stops.begin(), stops.end());
    bench::Say(QStringLiteral("  \"%1\": longest stop to longest row   %2; %3 and %4 ms; stops take %5 ms by "
                              "the median of %6, all of the search %7 ms")
                   .arg(word, bench::Number(longestStop / bench::Median(rows)), bench::Number(longestStop, 1),
                        bench::Number(bench::Median(rows), 1), bench::Number(bench::Median(stops), 1),
                        QString::number(stops.size()), bench::Number(bench::Median(whole), 0)));
}

void Tell(const QString& name, const QString& folder, const QString& language, const QStringList& words)
{
    const QString file = LargeHelp::FileName();
    YxViewModel model(language, file, folder, nullptr);
    bench::Say(QStringLiteral("%1, medians of %2 searches").arg(name).arg(kRepeats));
    for (const QString& word : words)
        TellWord(model, word);
    for (const QString& word : words) {
        if (CaselessText::Replaces(word))
            TellStop(model, word);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 1) {
        constexpr int kTopicRows = 20000;
        const LargeHelp help(kTopicRows, 15000, 25000);
        Tell(QStringLiteral("%1 topics with pages of 15 to 25 KB").arg(kTopicRows), help.Folder(),
             LargeHelp::Language(), {LargeHelp::Word(), QStringLiteral("nowhere")});
        return EXIT_SUCCESS;
    }
    if (arguments.size() < 5)
        qFatal("search NAME FOLDER LANGUAGE WORD...");
    Tell(arguments.at(1), arguments.at(2), arguments.at(3), arguments.mid(4));
    return EXIT_SUCCESS;
}
