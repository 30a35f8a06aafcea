#include "query.h"

#include "answer.h"
#include "yxonlinehelpapi.h"

namespace {

int32_t FindAddress(const OnlineHelpQuery& query, const Fetch& fetch, std::string& address)
{
    if (!query.managerAddress || !query.product || !query.version || !query.language || !query.topic)
        return YXONLINEHELP_BAD_ARGUMENT;
    const std::optional<std::string> request = RequestAddress(query);
    if (!request)
        return YXONLINEHELP_BAD_MANAGER_ADDRESS;
    const FetchedAnswer answer = fetch(*request);
    return answer.code == YXONLINEHELP_OK ? ReadAnswer(answer.body, address) : answer.code;
}

} // namespace

int32_t RunQuery(const OnlineHelpQuery& query, const Fetch& fetch, char* result, int32_t resultSize) noexcept
{
    if (!CopyToResult({}, result, resultSize))
        return YXONLINEHELP_BAD_ARGUMENT;
    try {
        std::string address;
        const int32_t code = FindAddress(query, fetch, address);
        if (code != YXONLINEHELP_OK)
            return code;
        return CopyToResult(address, result, resultSize) ? YXONLINEHELP_OK : YXONLINEHELP_RESULT_TOO_SMALL;
    } catch (...) {
        return YXONLINEHELP_INTERNAL_ERROR;
    }
}
