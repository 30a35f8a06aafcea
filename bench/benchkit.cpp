#include "benchkit.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cstdio>

namespace {

/// A figure of this process, in KiB.
long Status(const char* name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        const QByteArray mark(name);
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith(mark))
                return line.mid(mark.size()).simplified().split(' ').first().toLong();
        }
    }
    qFatal("this system doesn't tell the memory of a process");
}

} // namespace

namespace bench {

double Stopwatch::Elapsed() const
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(Samples samples)
{
    std::sort(samples.begin(), samples.end());
    const std::size_t half = samples.size() / 2;
    return samples.size() % 2 == 1 ? samples.at(half) : (samples.at(half - 1) + samples.at(half)) / 2;
}

double Least(const Samples& samples)
{
    return *std::min_element(samples.begin(), samples.end());
}

double TimeOf(const std::function<void()>& work)
{
    const Stopwatch watch;
    work();
    return watch.Elapsed();
}

long PeakMemory()
{
    return Status("VmHWM:");
}

long ResidentMemory()
{
    return Status("VmRSS:");
}

void Say(const QString& line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

QString Verdict(double ratio, double target)
{
    return ratio <= target ? QStringLiteral("met") : QStringLiteral("missed");
}

QString Number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QStringList RunSql(const QString& path, const QStringList& statements)
{
    const QString connection = QStringLiteral("bench");
    QStringList column;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(path);
        if (!database.open())
            qFatal("no database %s", qUtf8Printable(path));
        QSqlQuery query(database);
        query.setForwardOnly(true);
        for (const QString& statement : statements) {
            if (!query.exec(statement))
                qFatal("%s: %s", qUtf8Printable(statement), qUtf8Printable(query.lastError().text()));
        }
        while (query.next())
            column.append(query.value(0).toString());
    }
    QSqlDatabase::removeDatabase(connection);
    return column;
}

} // namespace bench
