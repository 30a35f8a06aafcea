#include "sqltool.h"

#include "sqlstatement.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <vector>

namespace {

constexpr int kMostColumns = 100;

// Like the readers: on the default connection.
QSqlQuery NewQuery()
{
    QSqlQuery query{QString(), QSqlDatabase()};
    query.setForwardOnly(true);
    return query;
}

bool Logged(bool success, const QSqlQuery& query)
{
    if (!success)
        qCWarning(lcStore) << "statement failed:" << query.lastError().text();
    return success;
}

} // namespace

int SQLTOOL::TableCount()
{
    QSqlQuery query = NewQuery();
    Logged(query.exec(QStringLiteral("select count(1) from sqlite_master where type in('table');")), query);
    return query.next() ? query.value(0).toInt() : -1;
}

QStringList SQLTOOL::ReadColumn(const QString& table, const QString& column)
{
    QStringList values;
    QSqlQuery query = NewQuery();
    Logged(query.exec(QStringLiteral("SELECT %1 FROM %2").arg(column).arg(table)), query);
    const QSqlRecord fields = query.record();
    while (query.next()) {
        for (int i = 0; i < fields.count(); ++i) {
            if (fields.fieldName(i) == column)
                values.append(query.value(i).toString());
        }
    }
    return values;
}

bool SQLTOOL::ExecSql(const QString& statement)
{
    QSqlQuery query = NewQuery();
    return Logged(query.exec(statement), query);
}

int SQLTOOL::updateTable(const QString& table, const QString& column, const QString& value,
                         const QString& whereColumn, const QString& whereValue)
{
    try {
        const QString text = QStringLiteral("update %1 SET %2 = \"%3\" where %4 = \"%5\";")
                                 .arg(table)
                                 .arg(column)
                                 .arg(value)
                                 .arg(whereColumn)
                                 .arg(whereValue);
        QSqlQuery query = NewQuery();
        const bool prepared = Logged(query.prepare(text), query);
        qCDebug(lcStore).noquote() << text;
        return prepared && Logged(query.exec(), query) ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

int SQLTOOL::dataSizeoftable(const QString& table)
{
    QStringList values;
    try {
        QSqlQuery query = NewQuery();
        Logged(query.exec(QStringLiteral("select * from %1").arg(table)), query);
        while (query.next())
            values.append(query.value(0).toString());
    } catch (...) {
        qCDebug(lcStore) << "false";
    }
    return values.size();
}

bool SQLTOOL::ExecBatch(const QList<QStringList>& batch)
{
    const int count = batch.value(0).value(1).toInt();
    if (count < 1 || count > kMostColumns) {
        qCWarning(lcStore) << "batch with" << count << "columns refused";
        return false;
    }
    database.transaction();
    const QStringList values = batch.value(1);
    std::vector<QVariantList> columns(static_cast<std::size_t>(count));
    for (int i = 0; i < values.size(); ++i)
        columns[static_cast<std::size_t>(i % count)].append(values.at(i));

    QSqlQuery query = NewQuery();
    query.prepare(batch.first().first());
    for (const QVariantList& column : columns)
        query.addBindValue(column, QSql::In);
    if (!Logged(query.execBatch(QSqlQuery::ValuesAsRows), query))
        return false;
    return database.commit();
}
