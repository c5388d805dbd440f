#ifndef PLATFORM_LOG_SERVICE_H
#define PLATFORM_LOG_SERVICE_H

#include <cstdint>
#include <string_view>

namespace TARN {

enum class LogLevel : uint8_t { DEBUG, INFO, WARN, ERROR, NONE };  ///< no line is of the level NONE

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

    /// The least level of which lines are wanted, NONE for no lines at all. Asked when the device is installed; one
    /// that comes to answer otherwise is installed again.
    [[nodiscard]] virtual LogLevel LeastLevel() const noexcept = 0;

    /// Takes one line. May be called from any thread.
    virtual void Write(const LogLine& line) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_LOG_SERVICE_H
