#include "paintwatch.h"

#include <QCoreApplication>
#include <QEvent>

PaintWatch::PaintWatch(QTreeWidget* watched) : tree(watched)
{
    tree->viewport()->installEventFilter(this);
}

void PaintWatch::Restart()
{
    times.clear();
    watch = bench::Stopwatch();
}

bool PaintWatch::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Paint || painting)
        return false;
    // The time of the painting belongs to it, so it is done in here.
    painting = true;
    const int rows = tree->topLevelItemCount();
    QCoreApplication::sendEvent(object, event);
    times.emplace(rows, watch.Elapsed());
    painting = false;
    return true;
}
