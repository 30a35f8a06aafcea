#include "platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// Needs the types of the one above.
#include <tlhelp32.h>

#include <array>
#include <climits>
#include <cstring>
#include <cwchar>

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace platform {

namespace {

/// Closes a handle of the system; an empty or refused one is left alone.
class Handle
{
public:
    explicit Handle(HANDLE open) : handle(open == INVALID_HANDLE_VALUE ? nullptr : open) {}
    ~Handle()
    {
        if (handle)
            CloseHandle(handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    explicit operator bool() const { return handle; }
    HANDLE Get() const { return handle; }

private:
    HANDLE handle;
};

/// What the system tells of a process under class 0.
struct BasicInformation
{
    std::intptr_t exitStatus;
    std::uintptr_t pebBaseAddress;
    std::uintptr_t affinityMask;
    std::intptr_t basePriority;
    std::uintptr_t uniqueProcessId;
    std::uintptr_t inheritedFrom;
};

bool ReadMemory(const Handle& process, std::uintptr_t address, void* target, std::size_t size)
{
    SIZE_T read = 0;
    return ReadProcessMemory(process.Get(), reinterpret_cast<LPCVOID>(address), target, size, &read) &&
           read == size;
}

/// Address of the block in which a process keeps its start parameters.
std::optional<std::uintptr_t> EnvironmentBlock(const Handle& process)
{
    using Query = LONG(WINAPI*)(HANDLE, int, PVOID, ULONG, PULONG);
    // The library that holds it is in every process, but not among those that a program is linked to.
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess");
    const Query query = reinterpret_cast<Query>(reinterpret_cast<void*>(found));
    BasicInformation basic{};
    if (!query || query(process.Get(), 0, &basic, sizeof basic, nullptr) < 0)
        return std::nullopt;
    return basic.pebBaseAddress;
}

template <typename T>
T ValueAt(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// Places within the blocks of a 64-bit process.
static_assert(sizeof(void*) == 8 && sizeof(BasicInformation) == 48);
constexpr std::size_t kEnvironmentSize = 712;
constexpr std::size_t kParametersAt = 32;
constexpr std::size_t kParametersSize = 128;
constexpr std::size_t kCommandLineAt = 112;
constexpr std::size_t kCommandLineBufferAt = kCommandLineAt + 8;

std::optional<std::wstring> ReadCommandLine(const Handle& process)
{
    const std::optional<std::uintptr_t> block = EnvironmentBlock(process);
    std::array<char, kEnvironmentSize> environment;
    if (!block || !ReadMemory(process, *block, environment.data(), environment.size()))
        return std::nullopt;
    const auto parametersAddress = ValueAt<std::uintptr_t>(environment.data() + kParametersAt);
    std::array<char, kParametersSize> parameters;
    if (!ReadMemory(process, parametersAddress, parameters.data(), parameters.size()))
        return std::nullopt;
    const auto size = ValueAt<std::uint16_t>(parameters.data() + kCommandLineAt);
    const auto buffer = ValueAt<std::uintptr_t>(parameters.data() + kCommandLineBufferAt);
    std::wstring line(size / sizeof(wchar_t), L'\0');
    if (!ReadMemory(process, buffer, line.data(), line.size() * sizeof(wchar_t)))
        return std::nullopt;
    return line;
}

std::string Narrow(const std::wstring& wide)
{
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

} // namespace

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

std::int32_t OwnProcessId()
{
    return static_cast<std::int32_t>(GetCurrentProcessId());
}

bool ProcessRuns(std::int32_t pid)
{
    const Handle process(OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid)));
    return process ? WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT
                   : GetLastError() == ERROR_ACCESS_DENIED;
}

std::vector<std::int32_t> OtherViewers()
{
    std::vector<std::int32_t> viewers;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return viewers;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more;
         more = Process32NextW(snapshot.Get(), &entry)) {
        if (_wcsicmp(entry.szExeFile, L"YxHelp.exe") == 0 && entry.th32ProcessID != GetCurrentProcessId())
            viewers.push_back(static_cast<std::int32_t>(entry.th32ProcessID));
    }
    return viewers;
}

std::optional<std::string> CommandLineOf(std::int32_t pid)
{
    const Handle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, static_cast<DWORD>(pid)));
    if (!process)
        return std::nullopt;
    const std::optional<std::wstring> line = ReadCommandLine(process);
    return line ? std::optional(Narrow(*line)) : std::nullopt;
}

bool ViewerNameIsTaken()
{
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, L"YxHelp.exe");
    // The handle stays open, and the name taken.
    if (!mutex || GetLastError() != ERROR_ALREADY_EXISTS)
        return false;
    ReleaseMutex(mutex);
    return true;
}

bool IsOwnSharedMemory(const void*)
{
    // The session's own objects, which other users' sessions don't see.
    return true;
}

bool IsForeignFile(const std::string&)
{
    return false;
}

std::vector<std::int32_t> WakeUpsOfTheDead(const std::string&)
{
    // The system removes an object with its last process.
    return {};
}

void RemoveWakeUp(const std::string&) {}

WakeUp::WakeUp(const std::string& name, Role role)
    : handle(role == Role::Receiver ? CreateSemaphoreA(nullptr, 0, LONG_MAX, name.c_str())
                                    : OpenSemaphoreA(SEMAPHORE_MODIFY_STATE, FALSE, name.c_str()))
{
    // The system removes the name with the last handle.
}

WakeUp::~WakeUp()
{
    if (handle)
        CloseHandle(handle);
}

bool WakeUp::IsValid() const
{
    return handle;
}

void WakeUp::Announce()
{
    // Objects of a process that has ended are gone, so there is nothing a sender could find too early.
}

bool WakeUp::Raise()
{
    return handle && ReleaseSemaphore(handle, 1, nullptr);
}

bool WakeUp::Wait()
{
    return handle && WaitForSingleObject(handle, INFINITE) == WAIT_OBJECT_0;
}

} // namespace platform
