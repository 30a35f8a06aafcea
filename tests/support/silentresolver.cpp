// Takes the place of the system's look-up of hosts in the program that it is linked into.

#include "silentresolver.h"

#include <dlfcn.h>
#include <netdb.h>

#include <condition_variable>
#include <cstring>
#include <mutex>

const char* const kSilentHost = "silent.example";

namespace {

std::mutex mutex;
std::condition_variable releasing;
bool released = false;

} // namespace

void ReleaseSilentHost()
{
    const std::lock_guard lock(mutex);
    released = true;
    releasing.notify_all();
}

extern "C" int getaddrinfo(const char* host, const char* service, const addrinfo* hints, addrinfo** result)
{
    if (host && std::strcmp(host, kSilentHost) == 0) {
        std::unique_lock lock(mutex);
        releasing.wait_for(lock, std::chrono::seconds(15), [] { return released; });
        return EAI_AGAIN;
    }
    using Look = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto look = reinterpret_cast<Look>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return look(host, service, hints, result);
}
