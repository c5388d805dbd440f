#ifndef PLATFORM_LOG_FORMAT_H
#define PLATFORM_LOG_FORMAT_H

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "log_service.h"

namespace TARN {

/// One argument of a log line, its type forgotten.
class LogArgument {
public:
    template <class T>
    requires std::is_integral_v<T> LogArgument(T value)
        : integer_(static_cast<uint64_t>(static_cast<int64_t>(value))) {}
    LogArgument(double value) : real_(value) {}
    LogArgument(const char* value) : text_(value) {}

    [[nodiscard]] uint64_t Integer() const noexcept { return integer_; }
    [[nodiscard]] double Real() const noexcept { return real_; }
    [[nodiscard]] const char* Text() const noexcept { return text_; }

private:
    union {
        uint64_t integer_;
        double real_;
        const char* text_;
    };
};

namespace LogDetail {

enum class Conversion : uint8_t { NONE, INT, UNSIGNED, LONG, UNSIGNED_LONG, REAL, TEXT, BAD };

/// Cuts the next conversion off `rest`, and the plain text before it into `plain`. Conversions are
/// `%{public}` followed by d, u, ld, lu, f or s; `%%` and any other mark are not used by this system.
constexpr Conversion NextConversion(std::string_view& rest, std::string_view& plain) {
    constexpr std::string_view kMark = "%{public}";
    const size_t at = rest.find('%');
    plain = rest.substr(0, at);
    if (at == std::string_view::npos) {
        rest = {};
        return Conversion::NONE;
    }
    rest.remove_prefix(at);
    if (!rest.starts_with(kMark)) {
        return Conversion::BAD;
    }
    rest.remove_prefix(kMark.size());
    constexpr std::array<std::pair<std::string_view, Conversion>, 6> kConversions = {{{"d", Conversion::INT},
                                                                                      {"u", Conversion::UNSIGNED},
                                                                                      {"ld", Conversion::LONG},
                                                                                      {"lu", Conversion::UNSIGNED_LONG},
                                                                                      {"f", Conversion::REAL},
                                                                                      {"s", Conversion::TEXT}}};
    for (const auto& [letters, conversion] : kConversions) {
        if (rest.starts_with(letters)) {
            rest.remove_prefix(letters.size());
            return conversion;
        }
    }
    return Conversion::BAD;
}

/// Whether an argument of type T may stand for the conversion: the width must fit, the sign is the
/// conversion's choice as it is printf's.
template <class T>
constexpr bool Accepts(Conversion conversion) {
    switch (conversion) {
        case Conversion::INT:
        case Conversion::UNSIGNED:
            return std::is_integral_v<T> && sizeof(T) <= sizeof(int32_t);
        case Conversion::LONG:
        case Conversion::UNSIGNED_LONG:
            return std::is_integral_v<T> && sizeof(T) == sizeof(int64_t);
        case Conversion::REAL:
            return std::is_floating_point_v<T>;
        case Conversion::TEXT:
            return std::is_convertible_v<T, const char*>;
        default:
            return false;
    }
}

/// An argument as the one type that stands for all of its kind.
template <class T>
constexpr auto Widened(const T& value) {
    if constexpr (std::is_integral_v<T>) {
        return static_cast<int64_t>(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<double>(value);
    } else {
        return static_cast<const char*>(value);
    }
}

/// Reached only while a wrong format is being compiled: not constant on purpose.
inline void FormatDoesNotMatchItsArguments() {}

}  // namespace LogDetail

/// A log format whose conversions were checked against `Args` by the compiler.
template <class... Args>
class LogFormat {
public:
    template <size_t N>
    consteval LogFormat(const char (&text)[N]) : text_(text, N - 1) {
        std::string_view rest = text_;
        std::string_view plain;
        const bool matches = (LogDetail::Accepts<std::decay_t<Args>>(LogDetail::NextConversion(rest, plain)) && ...);
        if (!matches || LogDetail::NextConversion(rest, plain) != LogDetail::Conversion::NONE) {
            LogDetail::FormatDoesNotMatchItsArguments();
        }
    }

    [[nodiscard]] std::string_view Text() const noexcept { return text_; }

private:
    std::string_view text_;
};

/// Where a log line stands in the source.
struct LogSite {
    LogLevel level;
    uint32_t domain;
    const char* tag;
    const char* file;
    const char* function;
    int line;
};

class Log {
public:
    /// Whether the installed device wants lines of a level; false when there is none. Every message that nobody handles
    /// asks this a dozen times.
    [[nodiscard]] static bool IsLoggable(LogLevel level) noexcept {
        return level >= leastLevel_.load(std::memory_order_relaxed);
    }

    /// For Device::Install: what its log wants from now on.
    static void SetLeastLevel(LogLevel level) noexcept { leastLevel_.store(level, std::memory_order_relaxed); }

    template <uint32_t kDomain, const auto& kTag, class... Args>
    static void Print(LogLevel level, const char* file, const char* function, int line,
                      LogFormat<std::type_identity_t<Args>...> format, const Args&... args) {
        PrintLine<kDomain, kTag>(format.Text().data(), level, file, function, line, LogDetail::Widened(args)...);
    }

private:
    static std::atomic<LogLevel> leastLevel_;

    /// Not inline, and one for many lists of types: a place that logs is the size of a call.
    template <uint32_t kDomain, const auto& kTag, class... Args>
    [[gnu::noinline]] static void PrintLine(const char* format, LogLevel level, const char* file, const char* function,
                                            int line, Args... args) {
        const std::array<LogArgument, sizeof...(Args)> arguments = {LogArgument(args)...};
        Write({level, kDomain, kTag, file, function, line}, format, arguments);
    }

    static void Write(const LogSite& site, std::string_view format, std::span<const LogArgument> arguments);
};

}  // namespace TARN

/// A line of a level, domain and tag. The format is a literal with the marks `%{public}d`, `u`, `ld`, `lu`, `f`, `s`,
/// checked against the arguments by the compiler; file, function and line of the prefix come from the macro. No
/// argument is evaluated when the level is not wanted.
#define PLATFORM_LOG(level, domain, tag, ...)                                                                   \
    do {                                                                                                        \
        if (::TARN::Log::IsLoggable(level)) {                                                                   \
            ::TARN::Log::Print<domain, tag>(level, __FILE_NAME__, static_cast<const char*>(__func__), __LINE__, \
                                            __VA_ARGS__);                                                       \
        }                                                                                                       \
    } while (false)

#endif  // PLATFORM_LOG_FORMAT_H
