#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Takes the address out of the manager's answer. Returns a YxOnlineHelpResult.
int32_t ReadAnswer(std::string_view answer, std::string& address);

/// Puts the text and a terminator into the buffer. Without room for both the buffer gets an empty text and
/// the result is false.
bool CopyToResult(std::string_view text, char* result, int32_t resultSize);
