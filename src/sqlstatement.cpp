#include "sqlstatement.h"

#include <QSqlError>
#include <QSqlRecord>

Q_LOGGING_CATEGORY(lcStore, "yxhelp.store")

namespace {

constexpr int kLoggedLength = 300;

bool IsLockError(const QSqlError& error)
{
    // The low byte of SQLite's codes is the kind; 5 is "busy" and 6 "locked".
    const int kind = error.nativeErrorCode().toInt() & 0xff;
    return kind == 5 || kind == 6;
}

} // namespace

SqlStatement::SqlStatement(const QString& statement, const QSqlDatabase& database)
    : query(QString(), database), text(statement)
{
    // Otherwise Qt keeps a copy of every row.
    query.setForwardOnly(true);
    if (!query.prepare(text) || !query.exec())
        Fail();
}

bool SqlStatement::Next()
{
    if (failed)
        return false;
    if (query.next())
        return true;
    if (query.lastError().isValid())
        Fail();
    return false;
}

QVariant SqlStatement::Value(QLatin1String column)
{
    if (!query.isValid())
        return {};
    const int index = IndexOf(column);
    return index < 0 ? QVariant() : query.value(index);
}

int SqlStatement::IndexOf(QLatin1String column)
{
    for (const auto& [name, index] : columns) {
        if (name == column)
            return index;
    }
    const int index = query.record().indexOf(column);
    if (index < 0)
        qCWarning(lcStore).noquote() << "no column" << column << "in the result of"
                                     << text.left(kLoggedLength);
    columns.emplace_back(column, index);
    return index;
}

void SqlStatement::Fail()
{
    failed = true;
    const QSqlError error = query.lastError();
    qCWarning(lcStore).noquote() << "statement failed:" << text.left(kLoggedLength) << '-' << error.text();
    // Who has waited for a lock once shall not wait again for each further statement.
    if (IsLockError(error))
        query.exec(QStringLiteral("PRAGMA busy_timeout = 0"));
    query.clear();
}
