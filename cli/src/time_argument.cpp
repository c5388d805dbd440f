#include "time_argument.h"

#include <charconv>
#include <optional>
#include <regex>

#include "json_fields.h"
#include "time_zone.h"

namespace TARN::Cli {

namespace {

using Replay::TimeZone;

constexpr int64_t kSecondMs = 1000;
constexpr int64_t kMinuteMs = 60 * kSecondMs;
constexpr int64_t kHourMs = 60 * kMinuteMs;
constexpr int64_t kDayMs = 24 * kHourMs;

constexpr char kExpected[] = "a time such as 02:13, 2026-03-02T02:13:00, +2h10m, or milliseconds";

std::optional<int64_t> Milliseconds(const std::string& text) {
    int64_t ms = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), ms);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(ms) : std::nullopt;
}

int64_t Number(const std::ssub_match& digits) {
    return digits.matched ? std::stoll(digits.str()) : 0;
}

std::optional<int64_t> AfterStart(const std::string& text, int64_t start) {
    static const std::regex kAfter(R"(\+(?:(\d{1,5})d)?(?:(\d{1,6})h)?(?:(\d{1,8})m)?(?:(\d{1,10})s)?)");
    std::smatch parts;
    if (text == "+" || !std::regex_match(text, parts, kAfter)) {
        return std::nullopt;
    }
    return start + Number(parts[1]) * kDayMs + Number(parts[2]) * kHourMs + Number(parts[3]) * kMinuteMs +
           Number(parts[4]) * kSecondMs;
}

int64_t TimeOfDayMs(int64_t t) {
    const std::string time = TimeZone::Format(t, "%H%M%S");
    const int64_t digits = std::stoll(time);
    return digits / 10000 * kHourMs + digits / 100 % 100 * kMinuteMs + digits % 100 * kSecondMs;
}

/// The first moment from `start` on at which the local clock shows so many milliseconds since midnight. On a day on
/// which the clock is changed it comes earlier or later than a day's length says, twice, or not at all.
std::optional<int64_t> FirstShown(int64_t wanted, int64_t start) {
    constexpr int64_t kMostShiftMs = 2 * kHourMs;
    constexpr int kDays = 3;
    const int64_t sinceStart = (wanted - TimeOfDayMs(start) + kDayMs) % kDayMs;
    const int64_t wholeStart = start - (start % kSecondMs + kSecondMs) % kSecondMs;
    for (int day = 0; day < kDays; ++day) {
        const int64_t expected = wholeStart + sinceStart + day * kDayMs;
        for (int64_t t = expected - kMostShiftMs; t <= expected + kMostShiftMs; t += kMinuteMs) {
            if (t >= start && TimeOfDayMs(t) == wanted) {
                return t;
            }
        }
    }
    return std::nullopt;
}

std::optional<int64_t> TimeOfDay(const std::string& text, int64_t start) {
    static const std::regex kTime(R"(([01]\d|2[0-3]|\d):([0-5]\d)(?::([0-5]\d))?)");
    std::smatch parts;
    if (!std::regex_match(text, parts, kTime)) {
        return std::nullopt;
    }
    return FirstShown(Number(parts[1]) * kHourMs + Number(parts[2]) * kMinuteMs + Number(parts[3]) * kSecondMs, start);
}

std::optional<int64_t> LocalTime(const std::string& text) {
    static const std::regex kLocal(R"((\d{4}-\d\d-\d\d)[T ](\d\d:\d\d)((?::\d\d)?)((?:\.\d{3})?))");
    std::smatch parts;
    if (!std::regex_match(text, parts, kLocal) || (parts[3].length() == 0 && parts[4].length() != 0)) {
        return std::nullopt;
    }
    const std::string seconds = parts[3].length() == 0 ? ":00" : parts[3].str();
    return TimeZone::ParseLocal(parts[1].str() + "T" + parts[2].str() + seconds + parts[4].str());
}

std::optional<int64_t> Read(const std::string& text, int64_t start) {
    if (const auto ms = Milliseconds(text)) {
        return ms;
    }
    if (const auto after = AfterStart(text, start)) {
        return after;
    }
    const auto time = TimeOfDay(text, start);
    return time ? time : LocalTime(text);
}

}  // namespace

int64_t ReadTimeArgument(const std::string& option, const std::string& text, const Replay::Trace& trace) {
    using DevStandbyMgr::InputError;
    using DevStandbyMgr::Refuse;
    trace.timezone.Use();
    std::optional<int64_t> t;
    try {
        t = Read(text, trace.start);
    } catch (const InputError& error) {
        throw InputError(option + ": " + error.what());
    }
    if (!t) {
        Refuse(option, DevStandbyMgr::Quote(text), kExpected);
    }
    if (*t < trace.start || *t > trace.end) {
        constexpr char kWhole[] = "%FT%T";
        Refuse(option, text + " is not within the trace",
               "a time from " + TimeZone::Format(trace.start, kWhole) + " to " + TimeZone::Format(trace.end, kWhole));
    }
    return *t;
}

}  // namespace TARN::Cli
