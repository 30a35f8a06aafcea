#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <vector>

/// What the benchmark programs share. Times are in milliseconds. Whatever goes wrong ends the program with a
/// message: a figure of a run that half failed is worth nothing.
namespace bench {

class Stopwatch
{
public:
    double Elapsed() const;

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

using Samples = std::vector<double>;

double Median(Samples samples);
double Least(const Samples& samples);

double TimeOf(const std::function<void()>& work);

/// The most memory that this process has had so far, in KiB.
long PeakMemory();
/// What it has now, in KiB.
long ResidentMemory();

/// One line of the report.
void Say(const QString& line);
/// "met" or "missed".
QString Verdict(double ratio, double target);
QString Number(double value, int decimals = 2);

/// Runs statements on the database at `path` and returns the first column of all rows of the last one.
/// Creates the database when it isn't there.
QStringList RunSql(const QString& path, const QStringList& statements);

} // namespace bench
