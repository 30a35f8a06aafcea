#pragma once

#include <QLatin1String>
#include <QLoggingCategory>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

Q_DECLARE_LOGGING_CATEGORY(lcStore)

/// The table of all topics.
inline const QLatin1String kTopics("HelpFileList");

/// One SQL text, run once and walked forward. A failure goes to the log and looks like the end of the rows;
/// a column that the result lacks reads as empty.
class SqlStatement
{
public:
    /// Prepares and executes. Without a database it runs on the default connection.
    explicit SqlStatement(const QString& text, const QSqlDatabase& database = QSqlDatabase());

    bool Next();
    /// Value of a column in the row in hand, by name without regard to case; invalid when there is no row.
    QVariant Value(QLatin1String column);
    QString Text(QLatin1String column) { return Value(column).toString(); }
    int Number(QLatin1String column) { return Value(column).toInt(); }
    /// True when the statement or one of its rows failed.
    bool Failed() const { return failed; }

private:
    int IndexOf(QLatin1String column);
    void Fail();

    QSqlQuery query;
    QString text;
    std::vector<std::pair<QLatin1String, int>> columns; ///< Places found so far; -1 for a missing one.
    bool failed = false;
};
