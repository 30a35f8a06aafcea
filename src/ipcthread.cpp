#include "ipcthread.h"

#include "mailbox.h"
#include "yxglobalsignal.h"

#include <QCoreApplication>
#include <QEvent>

#include <atomic>
#include <cstring>

IPCThread::IPCThread() : pid(static_cast<std::int32_t>(QCoreApplication::applicationPid()))
{
    // The singleton has to exist before a second thread asks for it.
    YxGlobalSignal::Instance();
    semaphore = std::make_unique<platform::WakeUp>(WakeUpName(pid), platform::WakeUp::Role::Receiver);
}

IPCThread::~IPCThread()
{
    RequestStop();
    quit();
    wait();
    // Pairs with the last store of the thread, for checkers that can't see into the toolkit's wait.
    IsRunning();
    semaphore.reset();
    sharedMemory.detach();
}

void IPCThread::Stop(QObject* receiver)
{
    Q_ASSERT(receiver->thread() == QThread::currentThread());
    YxGlobalSignal* signal = YxGlobalSignal::Instance();
    QObject::disconnect(signal, &YxGlobalSignal::RedirectTopicSig, receiver, nullptr);
    QObject::disconnect(signal, &YxGlobalSignal::SetExeOnTheTop, receiver, nullptr);
    RequestStop();
    // An emission under way may still post its call after the connection has gone, so look more than once.
    constexpr unsigned long kPause = 10;
    do {
        QCoreApplication::removePostedEvents(receiver, QEvent::MetaCall);
    } while (!wait(kPause));
}

void IPCThread::run()
{
    Receive();
    std::atomic_ref(running).store(false);
}

void IPCThread::Receive()
{
    RemoveDeadMailboxes();
    if (!OpenMailbox() || !IsRunning())
        return;
    // Not before: senders that attach what a crashed viewer has left would remove it while it is taken over.
    semaphore->Announce();
    do {
        if (sharedMemory.isAttached())
            Deliver(ReadRecord());
    } while (semaphore->Wait() && IsRunning());
}

bool IPCThread::OpenMailbox()
{
    sharedMemory.setKey(MailboxKey(pid));
    if (!semaphore->IsValid() || !IsNameFree(sharedMemory))
        return false;
    if (sharedMemory.create(kMailboxSize, QSharedMemory::ReadWrite))
        return true;
    if (sharedMemory.error() != QSharedMemory::AlreadyExists || !sharedMemory.attach())
        return false;
    // Left by a viewer of this process id that crashed. Its last topic must not show again.
    if (!IsOwnMailbox(sharedMemory)) {
        sharedMemory.detach();
        return false;
    }
    sharedMemory.lock();
    std::memset(sharedMemory.data(), 0, sizeof(SMData));
    sharedMemory.unlock();
    return true;
}

SMData IPCThread::ReadRecord()
{
    SMData data;
    sharedMemory.lock();
    std::memcpy(&data, sharedMemory.constData(), sizeof data);
    sharedMemory.unlock();
    return data;
}

void IPCThread::Deliver(const SMData& data) const
{
    if (data.pid != pid)
        return;
    if (TextOf(data.topic).isEmpty())
        emit YxGlobalSignal::Instance()->SetExeOnTheTop();
    else
        emit YxGlobalSignal::Instance()->RedirectTopicSig(data);
}

bool IPCThread::IsRunning()
{
    return std::atomic_ref(running).load();
}

void IPCThread::RequestStop()
{
    std::atomic_ref(running).exchange(false);
    semaphore->Raise();
}
