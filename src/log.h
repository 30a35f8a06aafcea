#pragma once

#include <QtGlobal>

#include <iosfwd>
#include <memory>

/// A small writer of time-stamped lines for failures deep inside the code.
///
/// Each call writes one line to `stream` and does nothing when that is empty. `file` and `line` are those of
/// the call site. A message is cut at 1023 bytes.

/// The stream of the process: empty until somebody attaches one.
std::shared_ptr<std::ostream>& LogStream();

void LogInfo(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format, ...)
    Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);
void LogWarning(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format,
                ...) Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);
void LogError(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format,
              ...) Q_ATTRIBUTE_FORMAT_PRINTF(4, 5);
