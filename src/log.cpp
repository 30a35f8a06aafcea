#include "log.h"

#include <QDateTime>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>

namespace {

// std::localtime shares its result between threads, and its safe siblings differ by system.
std::tm LocalTime()
{
    const QDateTime now = QDateTime::currentDateTime();
    std::tm time{};
    time.tm_year = now.date().year() - 1900;
    time.tm_mon = now.date().month() - 1;
    time.tm_mday = now.date().day();
    time.tm_hour = now.time().hour();
    time.tm_min = now.time().minute();
    time.tm_sec = now.time().second();
    return time;
}

std::string Expand(const char* format, va_list arguments)
{
    std::array<char, 1024> buffer{};
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    return length < 1 ? std::string("failed to format log message") : std::string(buffer.data());
}

void WriteLine(std::ostream& stream, const char* tag, std::string_view file, int line, const char* format,
               va_list arguments)
{
    const std::tm time = LocalTime();
    stream << std::put_time(&time, "[%Y-%m-%d %H:%M:%S]") << tag;

    std::size_t separator = file.rfind('\\');
    if (separator == std::string_view::npos)
        separator = file.rfind('/');
    if (separator == std::string_view::npos)
        return;
    // The number goes in as text: a stream's locale may group digits.
    stream << '[' << file.substr(separator + 1) << ':' << std::to_string(line) << "] "
           << Expand(format, arguments) << std::endl;
}

} // namespace

std::shared_ptr<std::ostream>& LogStream()
{
    static std::shared_ptr<std::ostream> stream;
    return stream;
}

void LogInfo(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format, ...)
{
    if (!stream)
        return;
    va_list arguments;
    va_start(arguments, format);
    WriteLine(*stream, "[INFO] ", file, line, format, arguments);
    va_end(arguments);
}

void LogWarning(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format,
                ...)
{
    if (!stream)
        return;
    va_list arguments;
    va_start(arguments, format);
    WriteLine(*stream, "[WARNING] ", file, line, format, arguments);
    va_end(arguments);
}

void LogError(const std::shared_ptr<std::ostream>& stream, const char* file, int line, const char* format,
              ...)
{
    if (!stream)
        return;
    va_list arguments;
    va_start(arguments, format);
    WriteLine(*stream, "[ERROR] ", file, line, format, arguments);
    va_end(arguments);
}
