#pragma once

#include "treeviewmodel.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>
#include <mutex>

/// Carries rows from a job to the window's thread: in order, and in portions that the window shows without
/// stalling. Belongs to the window's thread, where it calls the receiver.
class RowDelivery : public QObject
{
    Q_OBJECT

public:
    /// Gets the next rows; `isEnd` with the last ones of a job that marks its end.
    using Receiver = std::function<void(const QList<TreeViewModel>& rows, bool isEnd)>;

    RowDelivery(Receiver receiver, QObject* parent);

    /// Hands over rows. Any thread; returns at once.
    void Put(const QList<TreeViewModel>& rows, bool isEnd);
    /// Drops what hasn't been delivered. The job must have ended, or more will come.
    void Drop();

private:
    void Deliver();

    Receiver receive;
    QTimer next;       ///< Delivers. A posted event would come before every key and every painting.
    int delivered = 0; ///< Since the last Drop.
    std::mutex mutex;  ///< Guards what follows.
    QList<TreeViewModel> waiting;
    bool endWaits = false;
    bool scheduled = false;
};
