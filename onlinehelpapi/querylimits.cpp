#include "querylimits.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace {

// Below, no loopback service could answer; above, the window would seem dead.
constexpr int kShortest = 10;
constexpr int kLongest = 60000;

void ReadMilliseconds(const char* variable, std::chrono::milliseconds& limit)
{
    const char* value = std::getenv(variable);
    if (!value)
        return;
    const std::string_view text(value);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && number >= kShortest && number <= kLongest)
        limit = std::chrono::milliseconds(number);
}

} // namespace

QueryLimits LimitsFromEnvironment()
{
    QueryLimits limits;
    ReadMilliseconds("YXHELP_ONLINE_CONNECT_MS", limits.connect);
    ReadMilliseconds("YXHELP_ONLINE_TOTAL_MS", limits.total);
    return limits;
}
