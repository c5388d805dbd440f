#ifndef PLATFORM_LOG_SERVICE_H
#define PLATFORM_LOG_SERVICE_H

#include <cstdint>
#include <string_view>

namespace TARN {

enum class LogLevel : uint8_t { DEBUG, INFO, WARN, ERROR };

/// One log line: what the prefix is made of, and the text behind it.
struct LogLine {
    LogLevel level;
    uint32_t domain;
    const char* tag;
    const char* file;  ///< source file with its ending, without folders
    const char* function;
    int line;
    std::string_view text;
};

/// The platform log.
class LogService {
public:
    virtual ~LogService() = default;

    /// Whether lines of this level are wanted; asked before a line's arguments are evaluated.
    [[nodiscard]] virtual bool IsLoggable(LogLevel level) const noexcept = 0;

    /// Takes one line. May be called from any thread.
    virtual void Write(const LogLine& line) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_LOG_SERVICE_H
