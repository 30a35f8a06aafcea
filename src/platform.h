#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

} // namespace platform
