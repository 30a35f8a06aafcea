#include "fetch.h"

#include "yxonlinehelpapi.h"

#include <curl/curl.h>

#include <cstddef>
#include <memory>
#include <utility>

namespace {

struct Receiver
{
    std::string body;
    std::size_t limit = 0;
    bool overflow = false;
};

struct HandleCloser
{
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct HeadersCloser
{
    void operator()(curl_slist* headers) const { curl_slist_free_all(headers); }
};

std::size_t Receive(char* data, std::size_t, std::size_t size, void* user)
{
    auto& receiver = *static_cast<Receiver*>(user);
    if (size > receiver.limit - receiver.body.size()) {
        receiver.overflow = true;
        return 0;
    }
    // The room is there already: an exception would have to cross libcurl.
    receiver.body.append(data, size);
    return size;
}

bool StartLibrary()
{
    // Never taken down again: another user of libcurl in the process may be at work.
    static const bool started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return started;
}

void SetOptions(CURL* handle, const std::string& address, const QueryLimits& limits, Receiver& receiver)
{
    curl_easy_setopt(handle, CURLOPT_URL, address.c_str());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, limits.redirects);
    curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle, CURLOPT_USERAGENT, "YxHelp");

    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    // On Windows there is no file with certificates; elsewhere this changes nothing.
    curl_easy_setopt(handle, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));

    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connect.count()));
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(limits.total.count()));
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    // Without this the end of the query waits for a name server that doesn't answer, whatever the limits.
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);

    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, Receive);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &receiver);
}

} // namespace

FetchedAnswer FetchFromNetwork(const std::string& address, const QueryLimits& limits)
{
    if (!StartLibrary())
        return {YXONLINEHELP_INTERNAL_ERROR, {}};
    Receiver receiver;
    receiver.limit = limits.answerBytes;
    receiver.body.reserve(limits.answerBytes);
    const std::unique_ptr<CURL, HandleCloser> handle(curl_easy_init());
    const std::unique_ptr<curl_slist, HeadersCloser> headers(
        curl_slist_append(nullptr, "Accept: application/json"));
    if (!handle || !headers)
        return {YXONLINEHELP_INTERNAL_ERROR, {}};
    SetOptions(handle.get(), address, limits, receiver);
    curl_easy_setopt(handle.get(), CURLOPT_HTTPHEADER, headers.get());

    const CURLcode code = curl_easy_perform(handle.get());
    if (receiver.overflow)
        return {YXONLINEHELP_ANSWER_TOO_LARGE, {}};
    if (code == CURLE_HTTP_RETURNED_ERROR)
        return {YXONLINEHELP_BAD_STATUS, {}};
    if (code != CURLE_OK)
        return {static_cast<int32_t>(code), {}};
    long status = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status != 200)
        return {YXONLINEHELP_BAD_STATUS, {}};
    return {YXONLINEHELP_OK, std::move(receiver.body)};
}
