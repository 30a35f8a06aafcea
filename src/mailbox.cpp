#include "mailbox.h"

#include "platform.h"

#include <QSharedMemory>
#include <QSystemSemaphore>

#include <cstring>

namespace {

QString NameFor(const QString& base, std::int32_t pid)
{
    return QStringLiteral("%1_%2").arg(base).arg(static_cast<quint32>(pid));
}

} // namespace

QString MailboxKey(std::int32_t pid)
{
    return NameFor(QStringLiteral("Global_YxHelpShareMemory"), pid);
}

std::string WakeUpName(std::int32_t pid)
{
    return NameFor(QStringLiteral("Global_YxHelpSystemSemaphore"), pid).toStdString();
}

bool IsNameFree(const QSharedMemory& memory)
{
    // The lock of the memory has a file beside the memory's own.
    const QString memoryFile = memory.nativeKey();
    QString lockFile = memoryFile;
    lockFile.replace(QLatin1String("qipc_sharedmemory_"), QLatin1String("qipc_systemsem_"));
    return !platform::IsForeignFile(memoryFile.toStdString()) &&
           !platform::IsForeignFile(lockFile.toStdString());
}

bool IsOwnMailbox(const QSharedMemory& memory)
{
    return memory.isAttached() && memory.size() >= static_cast<int>(sizeof(SMData)) &&
           platform::IsOwnSharedMemory(memory.constData());
}

void RemoveDeadMailboxes()
{
    const std::string own = WakeUpName(0);
    for (const std::int32_t pid : platform::WakeUpsOfTheDead(own.substr(0, own.size() - 1))) {
        QSharedMemory memory;
        memory.setKey(MailboxKey(pid));
        if (!IsNameFree(memory))
            continue;
        // Who detaches last removes the memory, and who has created the lock removes that.
        if (memory.attach())
            memory.detach();
        const QSystemSemaphore lock(MailboxKey(pid), 1, QSystemSemaphore::Create);
        platform::RemoveWakeUp(WakeUpName(pid));
    }
}

bool WriteSharedMemory(SMData data)
{
    // What a viewer that crashed has left would take the record to nobody.
    if (!platform::ProcessRuns(data.pid))
        return false;
    platform::WakeUp wakeUp(WakeUpName(data.pid), platform::WakeUp::Role::Sender);
    QSharedMemory memory;
    memory.setKey(MailboxKey(data.pid));
    if (memory.isAttached() && !memory.detach())
        return false;
    if (!wakeUp.IsValid() || !IsNameFree(memory) || !memory.attach(QSharedMemory::ReadWrite) ||
        !IsOwnMailbox(memory))
        return false;
    if (memory.lock()) {
        std::memcpy(memory.data(), &data, sizeof data);
        // Raised under the lock: a receiver that wakes at once waits there for the record.
        wakeUp.Raise();
    }
    memory.unlock();
    memory.detach();
    return true;
}
