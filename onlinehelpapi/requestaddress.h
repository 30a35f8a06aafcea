#pragma once

#include <optional>
#include <string>

/// What is asked for, as the caller's byte strings. Only the path may be null.
struct OnlineHelpQuery
{
    const char* managerAddress = nullptr;
    const char* product = nullptr;
    const char* version = nullptr;
    const char* language = nullptr;
    const char* topic = nullptr;
    const char* path = nullptr;
};

/// Manager address with the query's parameters appended; nothing when the manager address is no http(s)
/// address.
std::optional<std::string> RequestAddress(const OnlineHelpQuery& query);
