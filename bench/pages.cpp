// Making the finished page against reading its row, for the largest pages of a help database.
//   pages NAME FOLDER LANGUAGE

#include "benchkit.h"
#include "sqltool.h"
#include "yxviewmodel.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {

constexpr int kPages = 20;
constexpr int kRepeats = 9;
constexpr double kTarget = 3;
const QString kDatabase = QStringLiteral("YXCADHelp.db");

struct Cost
{
    QString title;
    double read = 0;
    double first = 0; ///< The images aren't known yet.
    double again = 0;
    double scripts = 0; ///< Reading the scripts, as the first page of a run does.
};

Cost Measure(const TreeViewModel& record, const QString& folder, const QString& language)
{
    YxViewModel known(language, kDatabase, folder, nullptr);
    known.BuildPageHtml(record);
    bench::Samples read;
    bench::Samples first;
    bench::Samples again;
    bench::Samples scripts;
    for (int i = 0; i < kRepeats; ++i) {
        QString html;
        QString images;
        read.push_back(bench::TimeOf([&] {
            SQLTOOL tool(known.DatabasePath(), SQLTOOL::DefaultConnection());
            tool.OpenDb();
            tool.ReadHtmlFromDB(record, html, images);
            tool.CloseDb();
        }));
        again.push_back(bench::TimeOf([&] { known.BuildPageHtml(record); }));
        YxViewModel fresh(language, kDatabase, folder, nullptr);
        scripts.push_back(bench::TimeOf([&] { fresh.LoadScripts(); }));
        first.push_back(bench::TimeOf([&] { fresh.BuildPageHtml(record); }));
    }
    return {record.Title, bench::Median(read), bench::Median(first), bench::Median(again),
            bench::Median(scripts)};
}

void Tell(const char* what, const std::vector<Cost>& costs, double Cost::*build)
{
    double read = 0;
    double built = 0;
    double worst = 0;
    QString title;
    for (const Cost& cost : costs) {
        read += cost.read;
        built += cost.*build;
        if (cost.*build / cost.read > worst) {
            worst = cost.*build / cost.read;
            title = cost.title;
        }
    }
    bench::Say(
        QStringLiteral("  %1 to reading the row   %2 over all pages, worst page %3 (%4); target %5: %6")
            .arg(QLatin1String(what), bench::Number(built / read), bench::Number(worst), title,
                 bench::Number(kTarget), bench::Verdict(worst, kTarget)));
    bench::Say(
        QStringLiteral("    %1 and %2 ms for all").arg(bench::Number(built, 1), bench::Number(read, 1)));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4)
        qFatal("pages NAME FOLDER LANGUAGE");
    const QString& folder = arguments.at(2);
    const QString& language = arguments.at(3);

    YxViewModel model(language, kDatabase, folder, nullptr);
    const QStringList ids = bench::RunSql(
        model.DatabasePath(), {QStringLiteral("SELECT ID FROM HelpFileList WHERE ParentID < 65535 "
                                              "ORDER BY length(Html) DESC LIMIT %1")
                                   .arg(kPages)});
    std::vector<Cost> costs;
    qint64 size = 0;
    for (const QString& id : ids) {
        const TreeViewModel& record = model.HelpFileList().at(id.toInt() - 1);
        costs.push_back(Measure(record, folder, language));
        size += model.BuildPageHtml(record).size();
    }
    bench::Say(QStringLiteral("%1: the %2 largest pages, %3 KB together, medians of %4 repetitions")
                   .arg(arguments.at(1), QString::number(costs.size()), bench::Number(double(size) / 1000, 0),
                        QString::number(kRepeats)));
    Tell("making the page again      ", costs, &Cost::again);
    Tell("making it for the first time", costs, &Cost::first);
    double scripts = 0;
    for (const Cost& cost : costs)
        scripts += cost.scripts / double(costs.size());
    bench::Say(QStringLiteral("  The first page of a run also reads the scripts, in %1 ms")
                   .arg(bench::Number(scripts, 1)));
    return EXIT_SUCCESS;
}
