#pragma once

#include "requestaddress.h"

#include <cstdint>
#include <functional>
#include <string>

/// What came back for an address: a YxOnlineHelpResult or a code of libcurl, and the body when the code is 0.
struct FetchedAnswer
{
    int32_t code = 0;
    std::string body;
};

using Fetch = std::function<FetchedAnswer(const std::string& address)>;

/// The query from its arguments to the filled buffer; only how the answer is fetched comes from outside.
/// Lets no exception out.
int32_t RunQuery(const OnlineHelpQuery& query, const Fetch& fetch, char* result, int32_t resultSize) noexcept;
