#include "sqltool.h"

#include "sqlstatement.h"
#include "textmatcher.h"
#include "yxglobalsignal.h"

#include <atomic>
#include <utility>

// The two readers that run beside the window and hand their rows over in batches.

namespace {

/// Rows that are announced together.
constexpr int kBatch = 10;

bool Stopped(bool& keepRunning)
{
    return !std::atomic_ref(keepRunning).load();
}

/// A record that can be shown without the database: it keeps its page, which has been read already.
TreeViewModel ReadRecord(SqlStatement& row, QString html)
{
    TreeViewModel record;
    record.Id = row.Number(QLatin1String("id"));
    record.FilePath = row.Text(QLatin1String("FilePath"));
    record.FileName = row.Text(QLatin1String("FileName"));
    record.Title = row.Text(QLatin1String("Title"));
    record.KeyName = row.Text(QLatin1String("KeyName"));
    record.ParentId = row.Number(QLatin1String("ParentId"));
    record.TopParentId = row.Number(QLatin1String("TopParentId"));
    record.Html = std::move(html);
    record.ImagePath = row.Text(QLatin1String("ImagePath"));
    return record;
}

} // namespace

bool SQLTOOL::SearchTextInAllFiles(QList<TreeViewModel>& results, const QString& text, bool& keepRunning)
{
    results.clear();
    if (!StartReading())
        return false;
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("''"));
    const TextMatcher matcher(text);
    SqlStatement row(
        QStringLiteral("SELECT * FROM %1 Where Body like '%%2%' order by Title asc").arg(kTopics).arg(quoted),
        database);
    int announced = 0;
    QList<TreeViewModel> batch;
    while (row.Next()) {
        QString html = row.Text(QLatin1String("Html"));
        if (matcher.Matches(html))
            batch.append(ReadRecord(row, std::move(html)));
        if (batch.size() == kBatch) {
            results.append(batch);
            batch.clear();
            emit YxGlobalSignal::Instance()->SearchResultChange(results, announced, false);
            announced += kBatch;
        }
        if (Stopped(keepRunning)) {
            database.close();
            return false;
        }
    }
    Note(row);
    results.append(batch);
    emit YxGlobalSignal::Instance()->SearchResultChange(results, announced, true);
    database.close();
    return true;
}

bool SQLTOOL::GetIndexFromDB(QList<TreeViewModel>& list, int& count, bool& keepRunning)
{
    if (!StartReading())
        return false;
    SqlStatement row(QStringLiteral("SELECT * FROM %1 ORDER BY FileName").arg(kTopics), database);
    int announced = 0;
    QList<TreeViewModel> batch;
    const auto announce = [&] {
        list.append(batch);
        batch.clear();
        emit YxGlobalSignal::Instance()->UpdataIndexPage(list, announced);
        announced += kBatch;
    };
    while (row.Next()) {
        const TreeViewModel record = ReadRecord(row, row.Text(QLatin1String("Html")));
        if (record.ParentId != 0 && record.ParentId < kOutsideTree && !record.Html.isEmpty()) {
            batch.append(record);
            ++count;
        }
        if (batch.size() == kBatch)
            announce();
        if (Stopped(keepRunning)) {
            database.close();
            return false;
        }
    }
    Note(row);
    if (!batch.isEmpty())
        announce();
    database.close();
    return true;
}
