// Memory of the keyword index and of a search's hits, against the texts of their pages. Each is measured in a
// process of its own, which this program starts.
//   memory NAME FOLDER LANGUAGE WORD
// With no arguments on a large help database of its own.

#include "benchkit.h"
#include "largehelp.h"
#include "yxglobalsignal.h"
#include "yxviewmodel.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdlib>
#include <malloc.h>

namespace {

constexpr double kMiB = 1024.0 * 1024.0;
const QString kDatabase = LargeHelp::FileName();

/// What the process holds, in bytes.
struct Held
{
    double used = double(InUse());
    double resident = 1024.0 * double(bench::ResidentMemory());

private:
    static std::size_t InUse()
    {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    }
};

/// The child's side. Takes the rows over as the window does: into a list of its own, while the job waits.
void Measure(const QString& folder, const QString& language, const QString& word)
{
    YxViewModel model(language, kDatabase, folder, nullptr);
    // The contents list first, as in the window, and a search that finds nothing: what is loaded and kept
    // once isn't counted.
    model.HelpFileList();
    model.SearchAllFiles(QStringLiteral("no page has this text"));
    QList<TreeViewModel>& rows = word.isEmpty() ? *model.IndexList() : *model.SearchList();
    const YxGlobalSignal* hub = YxGlobalSignal::Instance();
    const auto take = [&](const QList<TreeViewModel>& list, int index) { rows.append(list.mid(index)); };
    QObject::connect(hub, &YxGlobalSignal::UpdataIndexPage, &model, take, Qt::DirectConnection);
    QObject::connect(hub, &YxGlobalSignal::SearchResultChange, &model, take, Qt::DirectConnection);
    const Held before;
    if (word.isEmpty())
        model.LoadIndex();
    else
        model.SearchAllFiles(word);
    const Held after;
    double texts = 0;
    for (const TreeViewModel& row : rows)
        texts += 2.0 * row.Html.size();
    bench::Say(QStringLiteral("%1 %2 %3 %4 %5")
                   .arg(rows.size())
                   .arg(texts, 0, 'f', 0)
                   .arg(after.used - before.used, 0, 'f', 0)
                   .arg(after.resident - before.resident, 0, 'f', 0)
                   .arg(1024.0 * double(bench::PeakMemory()) - before.resident, 0, 'f', 0));
}

void Tell(const char* what, const QStringList& arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), QStringList(QStringLiteral("child")) + arguments);
    const bool ended = process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit;
    const QStringList words =
        QString::fromLatin1(process.readAllStandardOutput()).simplified().split(QLatin1Char(' '));
    if (!ended || words.size() != 5 || words.first().toInt() == 0)
        qFatal("a measuring process failed: %s", process.readAllStandardError().constData());
    const double rows = words.at(0).toDouble();
    const double texts = words.at(1).toDouble();
    const auto ratio = [&](int word) { return bench::Number(words.at(word).toDouble() / texts); };
    bench::Say(
        QStringLiteral("  %1: memory to UTF-16 text of the pages   %2 in use, %3 resident, %4 at the peak")
            .arg(QLatin1String(what), ratio(2), ratio(3), ratio(4)));
    bench::Say(
        QStringLiteral("    %1 rows, %2 MiB of text, %3 MiB in use; %4 bytes for a row beside its text")
            .arg(words.at(0), bench::Number(texts / kMiB, 0), bench::Number(words.at(2).toDouble() / kMiB, 0),
                 bench::Number((words.at(2).toDouble() - texts) / rows, 0)));
}

void TellBoth(const QString& name, const QString& folder, const QString& language, const QString& word)
{
    bench::Say(name);
    Tell("keyword index ", {folder, language});
    Tell("hits of a word", {folder, language, word});
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("child")) {
        Measure(arguments.value(2), arguments.value(3), arguments.value(4));
    } else if (arguments.size() == 5) {
        TellBoth(arguments.at(1), arguments.at(2), arguments.at(3), arguments.at(4));
    } else if (arguments.size() == 1) {
        const LargeHelp help(20000, 15000, 25000);
        TellBoth(QStringLiteral("20,000 topics with pages of 15 to 25 KB"), help.Folder(),
                 LargeHelp::Language(), LargeHelp::Word());
    } else {
        qFatal("memory NAME FOLDER LANGUAGE WORD");
    }
    return EXIT_SUCCESS;
}
