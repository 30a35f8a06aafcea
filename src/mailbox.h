#pragma once

#include "qcommon.h"

#include <QString>

#include <string>

class QSharedMemory;

/// The mailbox of a running viewer: shared memory that holds one record, and a wake-up. Both are named after
/// the viewer's process. There is no queue: a record that wasn't read yet is replaced by the next one.

constexpr int kMailboxSize = 1024; ///< Of which the record takes the first bytes.

QString MailboxKey(std::int32_t pid);
std::string WakeUpName(std::int32_t pid);

/// False when somebody else holds the names that the system derives from the key. To be asked before the
/// memory is made or attached, which could wait for that somebody forever.
bool IsNameFree(const QSharedMemory& memory);

/// True when the attached memory has room for a record and is this user's own.
bool IsOwnMailbox(const QSharedMemory& memory);

/// Removes what viewers of this user have left that were killed.
void RemoveDeadMailboxes();

/// Sends the record to the viewer `data.pid`. False when that has ended or receives nothing.
bool WriteSharedMemory(SMData data);
