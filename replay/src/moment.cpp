#include "moment.h"

#include <charconv>
#include <regex>

#include "time_zone.h"

namespace TARN::Replay {

namespace {

constexpr int64_t kSecondMs = 1000;
constexpr int64_t kMinuteMs = 60 * kSecondMs;
constexpr int64_t kHourMs = 60 * kMinuteMs;
constexpr int64_t kDayMs = 24 * kHourMs;

std::optional<int64_t> Milliseconds(const std::string& text) {
    int64_t ms = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), ms);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(ms) : std::nullopt;
}

int64_t Number(const std::ssub_match& digits) {
    return digits.matched ? std::stoll(digits.str()) : 0;
}

int64_t TimeOfDayMs(int64_t t) {
    const std::string time = TimeZone::Format(t, "%H%M%S");
    const int64_t digits = std::stoll(time);
    return digits / 10000 * kHourMs + digits / 100 % 100 * kMinuteMs + digits % 100 * kSecondMs;
}

/// The first moment from `from` on at which the local clock shows so many milliseconds since midnight. On a day on
/// which the clock is changed it comes earlier or later than a day's length says, twice, or not at all.
std::optional<int64_t> FirstShown(int64_t wanted, int64_t from) {
    constexpr int64_t kMostShiftMs = 2 * kHourMs;
    constexpr int kDays = 3;
    const int64_t sinceFrom = (wanted - TimeOfDayMs(from) + kDayMs) % kDayMs;
    const int64_t wholeFrom = from - (from % kSecondMs + kSecondMs) % kSecondMs;
    for (int day = 0; day < kDays; ++day) {
        const int64_t expected = wholeFrom + sinceFrom + day * kDayMs;
        for (int64_t t = expected - kMostShiftMs; t <= expected + kMostShiftMs; t += kMinuteMs) {
            if (t >= from && TimeOfDayMs(t) == wanted) {
                return t;
            }
        }
    }
    return std::nullopt;
}

std::optional<int64_t> TimeOfDay(const std::string& text, int64_t from) {
    static const std::regex kTime(R"(([01]\d|2[0-3]|\d):([0-5]\d)(?::([0-5]\d))?)");
    std::smatch parts;
    if (!std::regex_match(text, parts, kTime)) {
        return std::nullopt;
    }
    return FirstShown(Number(parts[1]) * kHourMs + Number(parts[2]) * kMinuteMs + Number(parts[3]) * kSecondMs, from);
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

}  // namespace

std::optional<int64_t> ReadStretch(const std::string& text) {
    static const std::regex kStretch(R"((?:(\d{1,5})d)?(?:(\d{1,6})h)?(?:(\d{1,8})m)?(?:(\d{1,10})s)?)");
    std::smatch parts;
    if (text.empty() || !std::regex_match(text, parts, kStretch)) {
        return std::nullopt;
    }
    return Number(parts[1]) * kDayMs + Number(parts[2]) * kHourMs + Number(parts[3]) * kMinuteMs +
           Number(parts[4]) * kSecondMs;
}

std::optional<int64_t> ReadMoment(const std::string& text, int64_t from) {
    if (const auto ms = Milliseconds(text)) {
        return ms;
    }
    if (text.starts_with('+')) {
        const auto after = ReadStretch(text.substr(1));
        return after ? std::optional(from + *after) : std::nullopt;
    }
    const auto time = TimeOfDay(text, from);
    return time ? time : LocalTime(text);
}

std::optional<int64_t> ReadPastMoment(const std::string& text, int64_t until) {
    if (text.starts_with('-')) {
        const auto before = ReadStretch(text.substr(1));
        return before ? std::optional(until - *before) : std::nullopt;
    }
    constexpr int64_t kLongestDayMs = kDayMs + 2 * kHourMs;
    auto time = TimeOfDay(text, until - kLongestDayMs);
    for (auto next = time; next && *next <= until; next = TimeOfDay(text, *next + 1)) {
        time = next;
    }
    return time && *time <= until ? time : LocalTime(text);
}

}  // namespace TARN::Replay
