#pragma once

#include "platform.h"
#include "qcommon.h"

#include <QSharedMemory>
#include <QThread>

#include <memory>

/// Receives what later launches hand over to this viewer, and tells it through YxGlobalSignal: a record with
/// a topic by `RedirectTopicSig`, one without by `SetExeOnTheTop`. It sleeps until a sender wakes it.
///
/// The window connects both signals with Qt::BlockingQueuedConnection, so this thread waits while the window
/// handles a request. A window that goes meanwhile has to call Stop() first.
class IPCThread : public QThread
{
public:
    /// To be made on the main thread.
    IPCThread();
    /// Stops the thread and waits for it.
    ~IPCThread() override;

    /// Stops the thread although it may be waiting for `receiver`, whose slots are called no more: requests
    /// that are pending there are dropped, with all other calls queued for it. To be called on the
    /// receiver's thread, at the beginning of its destructor. May be called again.
    void Stop(QObject* receiver);

protected:
    void run() override;

private:
    void Receive();
    bool OpenMailbox();
    SMData ReadRecord();
    void Deliver(const SMData& data) const;
    bool IsRunning();
    void RequestStop();

    bool running = true; ///< Only through std::atomic_ref once the thread is started.
    QSharedMemory sharedMemory;
    std::unique_ptr<platform::WakeUp> semaphore;
    std::int32_t pid;
};
