#include "platform.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>

#include <dirent.h>
#include <fcntl.h>
#include <semaphore.h>
#include <strings.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace platform {

namespace {

constexpr const char* kViewerName = "YxHelp";

/// What the memory behind a wake-up holds.
struct WakeUpMemory
{
    sem_t raises;
    std::atomic<bool> announced{false};
};
static_assert(std::atomic<bool>::is_always_lock_free);

WakeUpMemory* MemoryOf(void* handle)
{
    return static_cast<WakeUpMemory*>(handle);
}

std::string ProcPath(std::int32_t pid, const char* entry)
{
    return "/proc/" + std::to_string(pid) + '/' + entry;
}

std::string ReadWhole(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Base name of the program that a process runs; empty when it has gone.
std::string ExecutableName(std::int32_t pid)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(ProcPath(pid, "exe").c_str(), target, sizeof target);
    if (size < 0) {
        // A process that has ended and waits for its parent has no program any more, only its name.
        std::string name = ReadWhole(ProcPath(pid, "comm"));
        if (!name.empty() && name.back() == '\n')
            name.pop_back();
        return name;
    }
    // An update replaces the file of a running viewer.
    constexpr std::string_view kDeleted = " (deleted)";
    std::string_view path(target, static_cast<std::size_t>(size));
    if (path.size() > kDeleted.size() && path.substr(path.size() - kDeleted.size()) == kDeleted)
        path.remove_suffix(kDeleted.size());
    return std::string(path.substr(path.rfind('/') + 1));
}

bool BelongsToThisUser(std::int32_t pid)
{
    struct stat info;
    return stat(("/proc/" + std::to_string(pid)).c_str(), &info) == 0 && info.st_uid == geteuid();
}

/// Kernel's number of the System V segment mapped at `address`, which the list of mappings gives as its
/// inode.
std::optional<int> SegmentAt(const void* address)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        unsigned long start = 0;
        unsigned long inode = 0;
        char file[16] = "";
        if (std::sscanf(line.c_str(), "%lx-%*x %*s %*s %*s %lu %15s", &start, &inode, file) == 3 &&
            start == reinterpret_cast<std::uintptr_t>(address))
            return std::strncmp(file, "/SYSV", 5) == 0 ? std::optional(static_cast<int>(inode))
                                                       : std::nullopt;
    }
    return std::nullopt;
}

template <typename T>
using Malloced = std::unique_ptr<T, void (*)(void*)>;

/// A connection of our own to the X server, for what the toolkit doesn't offer.
class XServer
{
public:
    bool IsValid() const { return !xcb_connection_has_error(connection.get()); }

    /// A number that the window manager keeps at the root window.
    std::optional<std::uint32_t> RootNumber(std::string_view name)
    {
        const auto cookie =
            xcb_get_property(connection.get(), 0, Root(), Atom(name), XCB_ATOM_CARDINAL, 0, 1);
        const Malloced<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection.get(), cookie, nullptr), &std::free);
        if (!reply || xcb_get_property_value_length(reply.get()) < int(sizeof(std::uint32_t)))
            return std::nullopt;
        return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    }

    /// Sends the window manager a wish for the window.
    void Ask(xcb_window_t window, std::string_view name, const std::array<std::uint32_t, 2>& data)
    {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = Atom(name);
        std::copy(data.begin(), data.end(), event.data.data32);
        xcb_send_event(connection.get(), 0, Root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(connection.get());
    }

private:
    xcb_window_t Root() const { return xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root; }
    xcb_atom_t Atom(std::string_view name)
    {
        const auto cookie = xcb_intern_atom(connection.get(), 0, std::uint16_t(name.size()), name.data());
        const Malloced<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection.get(), cookie, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection{xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect};
};

} // namespace

const bool kBypassWindowManager = false;
const bool kMinimizeBeforeRaise = false;
const bool kDpiArrivesAsMessage = false;

InstalledLanguage ReadInstalledLanguage()
{
    QSettings store(QSettings::NativeFormat, QSettings::SystemScope, QStringLiteral("YXSOFT"),
                    QStringLiteral("YxHelpDocument"));
    // The organisation's file would answer for every application of the maker.
    store.setFallbacksEnabled(false);
    if (!QFileInfo::exists(store.fileName()))
        return {};
    const QVariant value = store.value(QStringLiteral("CurrentLang"));
    if (!value.isValid())
        return {LanguageStore::ValueMissing, {}};
    return {LanguageStore::ValueRead, value.toString().toStdString()};
}

void LiftToTop(std::uintptr_t window)
{
    XServer server;
    if (!server.IsValid())
        return;
    // The toolkit asks as an application does, and window managers may refuse that one: the user is at work
    // in another window, or on another desktop. This asks as a task bar does, for the user. The window comes
    // to the desktop where it was called.
    constexpr std::uint32_t kFromTaskBar = 2;
    const auto target = static_cast<xcb_window_t>(window);
    if (const auto desktop = server.RootNumber("_NET_CURRENT_DESKTOP"))
        server.Ask(target, "_NET_WM_DESKTOP", {*desktop, kFromTaskBar});
    server.Ask(target, "_NET_ACTIVE_WINDOW", {kFromTaskBar, 0});
}

std::optional<int> DpiOfNativeMessage(std::string_view, const void*)
{
    return std::nullopt;
}

std::int32_t OwnProcessId()
{
    return getpid();
}

bool ProcessRuns(std::int32_t pid)
{
    // Zero and below would name groups of processes.
    return pid > 0 && (kill(pid, 0) == 0 || errno == EPERM);
}

std::vector<std::int32_t> OtherViewers()
{
    std::vector<std::int32_t> viewers;
    const std::unique_ptr<DIR, int (*)(DIR*)> proc(opendir("/proc"), &closedir);
    if (!proc)
        return viewers;
    while (const dirent* entry = readdir(proc.get())) {
        std::int32_t pid = 0;
        const char* end = entry->d_name + std::strlen(entry->d_name);
        if (std::from_chars(entry->d_name, end, pid).ptr != end || pid == getpid() || !BelongsToThisUser(pid))
            continue;
        if (strcasecmp(ExecutableName(pid).c_str(), kViewerName) == 0)
            viewers.push_back(pid);
    }
    return viewers;
}

std::optional<std::string> CommandLineOf(std::int32_t pid)
{
    std::string line = ReadWhole(ProcPath(pid, "cmdline"));
    // Each word ends with a zero, the last one too.
    if (!line.empty() && line.back() == '\0')
        line.pop_back();
    // A process that is just starting or ending has none.
    if (line.empty())
        return std::nullopt;
    for (char& c : line) {
        if (c == '\0')
            c = ' ';
    }
    return line;
}

bool ViewerNameIsTaken()
{
    // A name without a file: it goes with the process, however that ends.
    const std::string name = kViewerName + ('-' + std::to_string(geteuid()));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    const socklen_t size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (handle < 0)
        return false;
    if (bind(handle, reinterpret_cast<const sockaddr*>(&address), size) == 0)
        return false; // The handle stays open, and the name taken.
    const bool taken = errno == EADDRINUSE;
    close(handle);
    return taken;
}

bool IsOwnSharedMemory(const void* address)
{
    const std::optional<int> segment = SegmentAt(address);
    shmid_ds info;
    if (!segment || shmctl(*segment, IPC_STAT, &info) != 0)
        return false;
    // Its maker may give it away and keep it open to himself.
    return info.shm_perm.uid == geteuid() && info.shm_perm.cuid == geteuid() &&
           (info.shm_perm.mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool IsForeignFile(const std::string& path)
{
    struct stat info;
    return lstat(path.c_str(), &info) == 0 && info.st_uid != geteuid();
}

std::vector<std::int32_t> WakeUpsOfTheDead(const std::string& prefix)
{
    std::vector<std::int32_t> dead;
    const std::unique_ptr<DIR, int (*)(DIR*)> objects(opendir("/dev/shm"), &closedir);
    while (const dirent* entry = objects ? readdir(objects.get()) : nullptr) {
        const std::string_view name(entry->d_name);
        std::int32_t pid = 0;
        if (name.substr(0, prefix.size()) == prefix &&
            std::from_chars(name.data() + prefix.size(), name.data() + name.size(), pid).ec == std::errc() &&
            !ProcessRuns(pid))
            dead.push_back(pid);
    }
    return dead;
}

void RemoveWakeUp(const std::string& name)
{
    shm_unlink(('/' + name).c_str());
}

WakeUp::WakeUp(const std::string& name, Role role)
{
    // The toolkit's semaphore takes back a raise when the process that made it ends, and a sender ends at
    // once. A semaphore in memory of its own keeps it, and the file behind it tells its owner.
    const std::string object = '/' + name;
    const bool makes = role == Role::Receiver;
    if (makes)
        shm_unlink(object.c_str());
    const int file = shm_open(object.c_str(), makes ? O_RDWR | O_CREAT | O_EXCL : O_RDWR, S_IRUSR | S_IWUSR);
    if (file < 0)
        return;
    struct stat info;
    const bool usable = makes ? ftruncate(file, sizeof(WakeUpMemory)) == 0
                              : fstat(file, &info) == 0 && info.st_uid == geteuid() &&
                                    info.st_size >= static_cast<off_t>(sizeof(WakeUpMemory));
    void* memory = usable ? mmap(nullptr, sizeof(WakeUpMemory), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                          : MAP_FAILED;
    close(file);
    if (makes)
        ownName = object;
    if (memory == MAP_FAILED)
        return;
    handle = memory;
    if (makes)
        sem_init(&(new (memory) WakeUpMemory)->raises, 1, 0);
}

WakeUp::~WakeUp()
{
    if (handle)
        munmap(handle, sizeof(WakeUpMemory));
    if (!ownName.empty())
        shm_unlink(ownName.c_str());
}

bool WakeUp::IsValid() const
{
    return handle && (!ownName.empty() || MemoryOf(handle)->announced);
}

void WakeUp::Announce()
{
    if (handle)
        MemoryOf(handle)->announced = true;
}

bool WakeUp::Raise()
{
    return handle && sem_post(&MemoryOf(handle)->raises) == 0;
}

bool WakeUp::Wait()
{
    int result = -1;
    do {
        result = handle ? sem_wait(&MemoryOf(handle)->raises) : -1;
    } while (handle && result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace platform
