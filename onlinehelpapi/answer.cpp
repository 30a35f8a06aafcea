#include "answer.h"

#include "yxonlinehelpapi.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstring>

namespace {

bool HasControlCharacter(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7f)
            return true;
        // The upper control characters, U+0080 to U+009F.
        if (byte == 0xc2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xa0)
            return true;
    }
    return false;
}

bool BeginsWith(std::string_view text, std::string_view lowerCase)
{
    if (text.size() < lowerCase.size())
        return false;
    for (std::size_t i = 0; i < lowerCase.size(); ++i) {
        const char letter =
            text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
        if (letter != lowerCase[i])
            return false;
    }
    return true;
}

// Nothing more is asked of an address, since the web view reads it tolerantly: blanks and letters outside
// ASCII are fine.
bool IsWebAddress(std::string_view text)
{
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (BeginsWith(text, scheme)) {
            const std::string_view rest = text.substr(scheme.size());
            return !rest.empty() && std::string_view("/?#:@ ").find(rest.front()) == std::string_view::npos;
        }
    }
    return false;
}

} // namespace

int32_t ReadAnswer(std::string_view answer, std::string& address)
{
    const auto document = nlohmann::json::parse(answer, nullptr, false);
    if (!document.is_object())
        return YXONLINEHELP_BAD_ANSWER;
    const auto member = document.find("address");
    if (member == document.end() || !member->is_string())
        return YXONLINEHELP_BAD_ANSWER;
    address = member->get<std::string>();
    return IsWebAddress(address) && !HasControlCharacter(address) ? YXONLINEHELP_OK
                                                                  : YXONLINEHELP_BAD_ADDRESS;
}

bool CopyToResult(std::string_view text, char* result, int32_t resultSize)
{
    if (!result || resultSize <= 0)
        return false;
    const bool fits = text.size() < static_cast<std::size_t>(resultSize);
    const std::size_t length = fits ? text.size() : 0;
    if (length > 0)
        std::memcpy(result, text.data(), length);
    result[length] = '\0';
    return fits;
}
