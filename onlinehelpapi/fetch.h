#pragma once

#include "query.h"
#include "querylimits.h"

#include <string>

/// Gets the address over the network, within the limits.
FetchedAnswer FetchFromNetwork(const std::string& address, const QueryLimits& limits);
