#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The only place where the operating systems differ. It speaks in standard types, so that the Windows unit
/// compiles without Qt.
namespace platform {

enum class LanguageStore {
    StoreMissing, ///< Nothing is installed on this machine.
    ValueMissing, ///< The installation names no language.
    ValueRead,
};

struct InstalledLanguage
{
    LanguageStore state = LanguageStore::StoreMissing;
    std::string localeName; ///< UTF-8, as stored; filled for ValueRead only.
};

/// Language that the installer of the product left on this machine. Read only.
InstalledLanguage ReadInstalledLanguage();

/// The window asks to bypass the window manager. On X11 that would take it away from the manager altogether:
/// no minimising, no entry in the task bar, no keyboard focus by click.
extern const bool kBypassWindowManager;

/// Bringing a window to the front goes through the minimised state, which the system grants to a process
/// that isn't in the foreground.
extern const bool kMinimizeBeforeRaise;

/// A change of DPI arrives as a message to the window; elsewhere the screen tells.
extern const bool kDpiArrivesAsMessage;

/// Lifts the window above all others without keeping it there. `window` is the native handle of a top-level
/// window of this process.
void LiftToTop(std::uintptr_t window);

/// New vertical dots per inch, when the native event is the system's notice of a change of DPI.
/// `eventType` and `message` are those of the toolkit's native event handler.
std::optional<int> DpiOfNativeMessage(std::string_view eventType, const void* message);

std::int32_t OwnProcessId();

/// False when no such process is left.
bool ProcessRuns(std::int32_t pid);

/// The other viewers of this user, found by the name of their executable, whatever its case. Order and
/// completeness are those of a passing look: one may end, another start meanwhile.
std::vector<std::int32_t> OtherViewers();

/// Whole command line of a process in the system's narrow encoding, its words parted by blanks. Nothing when
/// it can't be read.
std::optional<std::string> CommandLineOf(std::int32_t pid);

/// Takes the name by which viewers know of each other and keeps it until the process ends. True when another
/// viewer has it already.
bool ViewerNameIsTaken();

/// True when the memory mapped at `address`, which another process may have made, belongs to this user and is
/// closed to all others.
bool IsOwnSharedMemory(const void* address);

/// True for an existing file that somebody else put there.
bool IsForeignFile(const std::string& path);

/// Process ids behind `prefix` in the names of wake-ups whose receiver has died without removing its own.
std::vector<std::int32_t> WakeUpsOfTheDead(const std::string& prefix);

/// Removes one that no receiver uses any more.
void RemoveWakeUp(const std::string& name);

/// A wake-up that one process waits for and others of the same user raise. Raises are counted, and one
/// outlives the process it came from.
class WakeUp
{
public:
    enum class Role {
        Receiver, ///< Makes it with no raise pending, whatever an earlier process left under the name.
        Sender,   ///< Finds the one of the receiver.
    };

    /// `name` has no slash in it.
    WakeUp(const std::string& name, Role role);
    ~WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    /// False when the receiver couldn't make it, or the sender found none of this user that was announced.
    bool IsValid() const;
    /// The receiver is ready: senders may find it from now on.
    void Announce();
    bool Raise();
    /// Sleeps until the next raise. False when there is nothing to wait for.
    bool Wait();

private:
    void* handle = nullptr;
    std::string ownName; ///< Name to remove at the end; the sender's is empty.
};

} // namespace platform
