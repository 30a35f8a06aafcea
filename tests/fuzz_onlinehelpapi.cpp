// Feeds the whole query but the network with arguments and answers. The input's first byte chooses the size
// of the buffer and whether there is a path, the second a code of the network; then come the six arguments,
// each up to a NUL, and the rest is the answer.

#include "query.h"
#include "yxonlinehelpapi.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kGuard = 32;
constexpr char kGuardByte = '\x5a';

void Check(bool holds)
{
    if (!holds)
        std::abort();
}

class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : rest(reinterpret_cast<const char*>(data), size) {}

    unsigned Byte()
    {
        if (rest.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(rest.front());
        rest.remove_prefix(1);
        return byte;
    }

    std::string Text()
    {
        const std::string_view text = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(rest.size(), text.size() + 1));
        return std::string(text);
    }

    std::string Rest() { return std::string(rest); }

private:
    std::string_view rest;
};

std::string Decoded(const std::string& text)
{
    int length = 0;
    const std::unique_ptr<char, decltype(&curl_free)> bytes(
        curl_easy_unescape(nullptr, text.c_str(), static_cast<int>(text.size()), &length), curl_free);
    Check(bytes != nullptr);
    return std::string(bytes.get(), static_cast<std::size_t>(length));
}

/// The request's address ends with the parameters that went in.
void CheckRequest(const std::string& address, const OnlineHelpQuery& query)
{
    Check(address.rfind("http://", 0) == 0 || address.rfind("https://", 0) == 0);
    for (const char byte : address)
        Check(byte > ' ' || static_cast<unsigned char>(byte) >= 0x80);
    std::string tail = address;
    const std::pair<const char*, const char*> parameters[] = {{"path=", query.path},
                                                              {"topic=", query.topic},
                                                              {"language=", query.language},
                                                              {"version=", query.version},
                                                              {"product=", query.product}};
    for (const auto& [name, value] : parameters) {
        if (!value)
            continue;
        const std::size_t separator = tail.find_last_of("?&");
        Check(separator != std::string::npos);
        const std::string parameter = tail.substr(separator + 1);
        Check(parameter.rfind(name, 0) == 0);
        Check(Decoded(parameter.substr(std::string_view(name).size())) == value);
        tail.resize(separator);
    }
}

void CheckResult(int32_t code, const std::vector<char>& buffer, std::size_t size)
{
    for (std::size_t i = size; i < buffer.size(); ++i)
        Check(buffer[i] == kGuardByte);
    if (size == 0) {
        Check(code == YXONLINEHELP_BAD_ARGUMENT);
        return;
    }
    const std::string_view text(buffer.data(), size);
    const std::size_t length = text.find('\0');
    Check(length != std::string_view::npos);
    Check((code == YXONLINEHELP_OK) == (length > 0));
    for (const char byte : text.substr(0, length))
        Check(static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7f);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t length)
{
    Input input(data, length);
    const unsigned choice = input.Byte();
    const std::size_t size = choice % 8 == 7 ? 512 : choice % 128;
    const unsigned networkCode = input.Byte();
    std::string arguments[6];
    for (std::string& argument : arguments)
        argument = input.Text();
    const OnlineHelpQuery query{arguments[0].c_str(), arguments[1].c_str(),
                                arguments[2].c_str(), arguments[3].c_str(),
                                arguments[4].c_str(), choice >= 128 ? nullptr : arguments[5].c_str()};

    std::vector<char> buffer(size + kGuard, kGuardByte);
    int calls = 0;
    const auto fetch = [&](const std::string& address) -> FetchedAnswer {
        ++calls;
        CheckRequest(address, query);
        if (networkCode > 200)
            return {YXONLINEHELP_TIMED_OUT, {}};
        return {YXONLINEHELP_OK, input.Rest()};
    };
    const int32_t code = RunQuery(query, fetch, buffer.data(), static_cast<int32_t>(size));
    CheckResult(code, buffer, size);
    Check(calls == (code == YXONLINEHELP_BAD_ARGUMENT || code == YXONLINEHELP_BAD_MANAGER_ADDRESS ? 0 : 1));
    if (calls == 1 && networkCode > 200)
        Check(code == YXONLINEHELP_TIMED_OUT);
    return 0;
}
