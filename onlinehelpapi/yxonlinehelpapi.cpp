#include "yxonlinehelpapi.h"

#include "fetch.h"
#include "query.h"

int32_t QueryOnlineHelpAddress(const char* managerAddress, const char* product, const char* version,
                               const char* language, const char* topic, const char* path, char* result,
                               int32_t resultSize)
{
    const OnlineHelpQuery query{managerAddress, product, version, language, topic, path};
    const auto fetch = [](const std::string& address) {
        return FetchFromNetwork(address, LimitsFromEnvironment());
    };
    return RunQuery(query, fetch, result, resultSize);
}
