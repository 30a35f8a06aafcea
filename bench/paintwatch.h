#pragma once

#include "benchkit.h"

#include <QObject>
#include <QTreeWidget>

#include <map>

/// Notes when a tree has first been painted with so many rows.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QTreeWidget* watched);

    /// The clock starts; former paints don't count.
    void Restart();
    bool Painted(int rows) const { return times.lower_bound(rows) != times.end(); }
    /// Time until the first paint with that many rows or more.
    double Time(int rows) const { return times.lower_bound(rows)->second; }

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QTreeWidget* tree;
    bool painting = false;
    bench::Stopwatch watch;
    std::map<int, double> times; ///< By number of rows, the first paint with it.
};
