#include "requestaddress.h"

#include <curl/curl.h>

#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace {

struct UrlCloser
{
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, UrlCloser>;

std::optional<std::string> Part(CURLU* url, CURLUPart part)
{
    char* text = nullptr;
    if (curl_url_get(url, part, &text, 0) != CURLUE_OK)
        return std::nullopt;
    const std::unique_ptr<char, decltype(&curl_free)> owner(text, curl_free);
    return std::string(text);
}

// libcurl's own encoding of a query writes blanks as "+", which services read in two ways.
std::string PercentEncoded(std::string_view bytes)
{
    constexpr std::string_view kUnreserved =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(bytes.size());
    for (const char byte : bytes) {
        if (kUnreserved.find(byte) != std::string_view::npos) {
            encoded += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        encoded += '%';
        encoded += kHex[value >> 4];
        encoded += kHex[value & 15];
    }
    return encoded;
}

bool Append(CURLU* url, const char* name, const char* value)
{
    const std::string parameter = std::string(name) + '=' + PercentEncoded(value);
    return curl_url_set(url, CURLUPART_QUERY, parameter.c_str(), CURLU_APPENDQUERY) == CURLUE_OK;
}

} // namespace

std::optional<std::string> RequestAddress(const OnlineHelpQuery& query)
{
    const Url url(curl_url());
    if (!url)
        return std::nullopt;
    // Addresses in a configuration file are written by hand: blanks and letters outside ASCII are escaped.
    if (curl_url_set(url.get(), CURLUPART_URL, query.managerAddress, CURLU_URLENCODE | CURLU_ALLOW_SPACE) !=
        CURLUE_OK)
        return std::nullopt;
    const std::optional<std::string> scheme = Part(url.get(), CURLUPART_SCHEME);
    if (!scheme || !(curl_strequal(scheme->c_str(), "http") || curl_strequal(scheme->c_str(), "https")))
        return std::nullopt;
    // It is for the reader of a page, not for the manager.
    curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);

    const std::array<std::pair<const char*, const char*>, 5> parameters{{{"product", query.product},
                                                                         {"version", query.version},
                                                                         {"language", query.language},
                                                                         {"topic", query.topic},
                                                                         {"path", query.path}}};
    for (const auto& [name, value] : parameters) {
        if (value && !Append(url.get(), name, value))
            return std::nullopt;
    }
    std::optional<std::string> address = Part(url.get(), CURLUPART_URL);
    // A blank in front of the path has stayed, and would end the address too early in the request.
    if (address && address->find(' ') != std::string::npos)
        return std::nullopt;
    return address;
}
