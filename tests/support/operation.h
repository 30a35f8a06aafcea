#pragma once

#include "sqltool.h"

#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>

/// One operation on a help database, from opening to closing. True when the reader was.
inline bool Operate(const QString& path, const std::function<bool(SQLTOOL&)>& reader)
{
    SQLTOOL tool(path, SQLTOOL::DefaultConnection());
    tool.OpenDb();
    const bool result = reader(tool);
    tool.CloseDb();
    return result;
}

/// Holds a database against everybody else while it lives.
class DatabaseLock
{
public:
    explicit DatabaseLock(const QString& path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kName);
        database.setDatabaseName(path);
        if (!database.open() || !QSqlQuery(database).exec(QStringLiteral("BEGIN EXCLUSIVE")))
            qFatal("the database can't be locked");
    }
    ~DatabaseLock()
    {
        QSqlDatabase::database(kName).close();
        QSqlDatabase::removeDatabase(kName);
    }
    Q_DISABLE_COPY_MOVE(DatabaseLock)

private:
    static constexpr QLatin1String kName{"DatabaseLock"};
};
