#include "platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <cstring>

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace platform {

const bool kBypassWindowManager = true;
const bool kMinimizeBeforeRaise = true;
const bool kDpiArrivesAsMessage = true;

InstalledLanguage ReadInstalledLanguage()
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\YXSOFT\\YxHelpDocument", 0, KEY_READ | KEY_WOW64_64KEY,
                      &key) != ERROR_SUCCESS)
        return {};

    InstalledLanguage language{LanguageStore::ValueMissing, {}};
    std::array<char, 260> buffer{};
    DWORD size = static_cast<DWORD>(buffer.size());
    if (RegQueryValueExA(key, "CurrentLang", nullptr, nullptr, reinterpret_cast<LPBYTE>(buffer.data()),
                         &size) == ERROR_SUCCESS) {
        language.state = LanguageStore::ValueRead;
        // A stored text may or may not carry its terminating zero.
        language.localeName.assign(buffer.data(), strnlen(buffer.data(), size));
    }
    RegCloseKey(key);
    return language;
}

void LiftToTop(std::uintptr_t window)
{
    const HWND handle = reinterpret_cast<HWND>(window);
    constexpr UINT kFlags = SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW;
    // Topmost for a moment puts it above the foreground window of another process; the second call lets
    // others come above it again.
    SetWindowPos(handle, HWND_TOPMOST, 0, 0, 0, 0, kFlags);
    SetWindowPos(handle, HWND_NOTOPMOST, 0, 0, 0, 0, kFlags);
}

std::optional<int> DpiOfNativeMessage(std::string_view eventType, const void* message)
{
    if (eventType != "windows_generic_MSG")
        return std::nullopt;
    const MSG* msg = static_cast<const MSG*>(message);
    if (msg->message != WM_DPICHANGED)
        return std::nullopt;
    return static_cast<int>(HIWORD(msg->wParam));
}

} // namespace platform
