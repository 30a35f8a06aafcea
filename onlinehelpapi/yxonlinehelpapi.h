#ifndef YXONLINEHELPAPI_H
#define YXONLINEHELPAPI_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(YXONLINEHELPAPI_BUILD)
#define YXONLINEHELPAPI_EXPORT __declspec(dllexport)
#else
#define YXONLINEHELPAPI_EXPORT __declspec(dllimport)
#endif
#else
#define YXONLINEHELPAPI_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// What QueryOnlineHelpAddress returns. Values from 1 to 999 are those of libcurl (CURLcode), of which only
/// the time-out has a name here; the library's own begin behind them.
enum YxOnlineHelpResult {
    YXONLINEHELP_OK = 0,
    YXONLINEHELP_TIMED_OUT = 28,             ///< The network did not answer in time.
    YXONLINEHELP_BAD_ARGUMENT = 1000,        ///< A null pointer where none may be, or no result buffer.
    YXONLINEHELP_BAD_MANAGER_ADDRESS = 1001, ///< The manager address is empty, malformed or not http(s).
    YXONLINEHELP_BAD_STATUS = 1002,          ///< The manager answered with another HTTP status than 200.
    YXONLINEHELP_ANSWER_TOO_LARGE = 1003,    ///< The answer is longer than 64 KiB.
    YXONLINEHELP_BAD_ANSWER = 1004,          ///< The answer is no JSON object with a text "address".
    YXONLINEHELP_BAD_ADDRESS = 1005,      ///< The address is empty, not http(s), or has control characters.
    YXONLINEHELP_RESULT_TOO_SMALL = 1006, ///< The address and its terminator don't fit into the buffer.
    YXONLINEHELP_INTERNAL_ERROR = 1007    ///< Out of memory, or the network library can't start.
};

/// Asks the help manager for the address of a page of the online help, with one HTTP request, and waits for
/// the answer.
///
/// The texts are NUL-terminated and needed only during the call. Their bytes go to the manager as they are,
/// percent-encoded: the manager sees the caller's 8-bit encoding.
///
/// @param managerAddress http or https address of the manager; a query that it has is kept, a fragment is not
/// @param product        product word
/// @param version        version, as text
/// @param language       language tag such as "zh-CN"
/// @param topic          key of the topic, may be empty
/// @param path           path of the topic's file; null leaves the parameter out, which differs from an empty
/// one
/// @param result         gets the address, NUL-terminated UTF-8; on failure an empty text
/// @param resultSize     size of the buffer in bytes, terminator included; nothing is written beyond it
/// @return YXONLINEHELP_OK, YXONLINEHELP_TIMED_OUT when the network did not answer, another value for every
///         other failure. A refused connection and an unknown host are answers of the network: they give
///         libcurl's values 7 and 6.
///
/// Any thread may call it, several at once. It waits 2 seconds for a connection and 4 seconds in all at most;
/// the environment variables YXHELP_ONLINE_CONNECT_MS and YXHELP_ONLINE_TOTAL_MS (10 to 60000) set other
/// limits. No state is kept between calls.
YXONLINEHELPAPI_EXPORT int32_t QueryOnlineHelpAddress(const char* managerAddress, const char* product,
                                                      const char* version, const char* language,
                                                      const char* topic, const char* path, char* result,
                                                      int32_t resultSize);

#ifdef __cplusplus
}
#endif

#endif
