#pragma once

#include <chrono>
#include <cstddef>

/// How long a query may take and how much it may bring. The caller's window stands still meanwhile, so the
/// times are short.
struct QueryLimits
{
    std::chrono::milliseconds connect{2000}; ///< Until the connection stands, look-up of the host included.
    std::chrono::milliseconds total{4000};   ///< The whole query, redirects included.
    std::size_t answerBytes = 64 * 1024;
    long redirects = 5;
};

/// The limits, with the times that the environment sets. Values that are no number or out of range don't
/// count.
QueryLimits LimitsFromEnvironment();
