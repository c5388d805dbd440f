#include "moment.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "digits.h"
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

int64_t TimeOfDayMs(int64_t t) {
    const int64_t seconds = (t - (t % kSecondMs + kSecondMs) % kSecondMs);
    return ((seconds + TimeZone::OffsetMs(t)) % kDayMs + kDayMs) % kDayMs;
}

/// Whether the local clock goes on evenly between two moments, as far as a look every half hour tells.
bool IsEven(int64_t from, int64_t to) {
    constexpr int64_t kLookMs = 30 * kMinuteMs;
    const int64_t offset = TimeZone::OffsetMs(from);
    for (int64_t t = from + kLookMs; t <= to; t += kLookMs) {
        if (TimeZone::OffsetMs(t) != offset) {
            return false;
        }
    }
    return true;
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
        if (expected >= from && IsEven(expected - kMostShiftMs, expected + kMostShiftMs) &&
            TimeOfDayMs(expected) == wanted) {
            return expected;
        }
        for (int64_t t = expected - kMostShiftMs; t <= expected + kMostShiftMs; t += kMinuteMs) {
            if (t >= from && TimeOfDayMs(t) == wanted) {
                return t;
            }
        }
    }
    return std::nullopt;
}

std::optional<int64_t> TimeOfDay(const std::string& text, int64_t from) {
    const std::string_view hour = std::string_view(text).substr(0, text.find(':'));
    const std::string_view rest = std::string_view(text).substr(hour.size());
    const bool hasSeconds = Matches(rest, ":dd:dd");
    if ((!Matches(hour, "d") && !Matches(hour, "dd")) || (!hasSeconds && !Matches(rest, ":dd"))) {
        return std::nullopt;
    }
    const int64_t minutes = NumberOf(rest.substr(1, 2));
    const int64_t seconds = hasSeconds ? NumberOf(rest.substr(4, 2)) : 0;
    if (NumberOf(hour) > 23 || minutes > 59 || seconds > 59) {
        return std::nullopt;
    }
    return FirstShown(NumberOf(hour) * kHourMs + minutes * kMinuteMs + seconds * kSecondMs, from);
}

std::optional<int64_t> LocalTime(const std::string& text) {
    constexpr size_t kBetween = std::string_view("dddd-dd-dd").size();
    if (text.size() <= kBetween || (text[kBetween] != 'T' && text[kBetween] != ' ')) {
        return std::nullopt;
    }
    std::string whole = text;
    whole[kBetween] = 'T';
    if (Matches(whole, "dddd-dd-ddTdd:dd")) {
        whole += ":00";
    }
    return Matches(whole, "dddd-dd-ddTdd:dd:dd") || Matches(whole, "dddd-dd-ddTdd:dd:dd.ddd")
               ? std::optional(TimeZone::ParseLocal(whole))
               : std::nullopt;
}

}  // namespace

std::optional<int64_t> ReadStretch(const std::string& text) {
    struct Unit {
        char letter;
        size_t mostDigits;
        int64_t ms;
    };
    constexpr std::array kUnits = {Unit{'d', 5, kDayMs}, Unit{'h', 6, kHourMs}, Unit{'m', 8, kMinuteMs},
                                   Unit{'s', 10, kSecondMs}};
    std::string_view left = text;
    int64_t ms = 0;
    for (const Unit& unit : kUnits) {
        const auto end = static_cast<size_t>(std::find_if_not(left.begin(), left.end(), IsDigit) - left.begin());
        if (end > 0 && end <= unit.mostDigits && end < left.size() && left[end] == unit.letter) {
            ms += NumberOf(left.substr(0, end)) * unit.ms;
            left.remove_prefix(end + 1);
        }
    }
    return text.empty() || !left.empty() ? std::nullopt : std::optional(ms);
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
