#include "rowdelivery.h"

#include <algorithm>
#include <utility>

namespace {

// A tree lays all its rows out again for each portion. Portions that grow with the list keep the sum of that
// small, and the limit keeps one portion short.
constexpr int kSmallest = 50;
constexpr int kLargest = 4000;
constexpr int kShareOfList = 12;

} // namespace

RowDelivery::RowDelivery(Receiver receiver, QObject* parent) : QObject(parent), receive(std::move(receiver))
{
    next.setSingleShot(true);
    connect(&next, &QTimer::timeout, this, &RowDelivery::Deliver);
}

void RowDelivery::Put(const QList<TreeViewModel>& rows, bool isEnd)
{
    const std::lock_guard lock(mutex);
    waiting.append(rows);
    endWaits = endWaits || isEnd;
    if (std::exchange(scheduled, true))
        return;
    QMetaObject::invokeMethod(&next, qOverload<>(&QTimer::start), Qt::QueuedConnection);
}

void RowDelivery::Drop()
{
    const std::lock_guard lock(mutex);
    waiting.clear();
    endWaits = false;
    delivered = 0;
}

void RowDelivery::Deliver()
{
    QList<TreeViewModel> rows;
    bool isEnd = false;
    {
        const std::lock_guard lock(mutex);
        const int portion = std::clamp(delivered / kShareOfList, kSmallest, kLargest);
        if (waiting.size() <= portion) {
            rows.swap(waiting);
            isEnd = std::exchange(endWaits, false);
            scheduled = false;
        } else {
            rows = waiting.mid(0, portion);
            waiting.erase(waiting.begin(), waiting.begin() + portion);
            next.start();
        }
        delivered += rows.size();
    }
    if (!rows.isEmpty() || isEnd)
        receive(rows, isEnd);
}
