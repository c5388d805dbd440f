#include "local_clock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "json_fields.h"

namespace TARN::Authoring {

namespace {

int64_t DayOf(int64_t t) {
    return t / kDayMs - (t % kDayMs < 0 ? 1 : 0);
}

/// "2026-03-01T22:30:05.250" with the parts that are not zero, in quotes.
std::string Text(int64_t localMs) {
    const int64_t day = DayOf(localMs);
    const auto inDay = static_cast<int>(localMs - day * kDayMs);
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "\"%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), inDay / 3'600'000,
                  inDay / 60'000 % 60, inDay / 1000 % 60);
    std::string result = text.data();
    if (inDay % 1000 != 0) {
        std::snprintf(text.data(), text.size(), ".%03d", inDay % 1000);
        result += text.data();
    }
    return result + '"';
}

bool HasFourDigitYear(int64_t t) {
    constexpr int64_t kYearOneMs = -62'135'596'800'000;
    return t > kYearOneMs + kDayMs && t < kLatestMs - kDayMs;
}

}  // namespace

std::optional<int64_t> AsUtc(const ClockTime& time) {
    const std::chrono::year_month_day date{std::chrono::year(time.year),
                                           std::chrono::month(static_cast<unsigned>(time.month)),
                                           std::chrono::day(static_cast<unsigned>(time.day))};
    const auto isIn = [](int value, int most) { return value >= 0 && value <= most; };
    if (!date.ok() || !isIn(time.hour, 23) || !isIn(time.minute, 59) || !isIn(time.second, 59) || !isIn(time.ms, 999)) {
        return std::nullopt;
    }
    return std::chrono::sys_days(date).time_since_epoch().count() * kDayMs + time.hour * kHourMs +
           time.minute * kMinuteMs + time.second * kSecondMs + time.ms;
}

LocalClock::LocalClock(const Replay::TimeZone& zone) : zone_(zone) {
    zone_.Use();
}

std::optional<int64_t> LocalClock::SteadyOffset(int64_t t) {
    if (const int64_t day = DayOf(t); day != day_) {
        day_ = day;
        const int64_t before = Replay::TimeZone::OffsetMs((day - 1) * kDayMs);
        const bool isSteady = before == Replay::TimeZone::OffsetMs((day + 2) * kDayMs) &&
                              before == Replay::TimeZone::OffsetMs(day * kDayMs);
        steady_ = isSteady ? std::optional(before) : std::nullopt;
    }
    return steady_;
}

std::string LocalClock::Write(int64_t t) {
    if (!HasFourDigitYear(t)) {
        return std::to_string(t);
    }
    if (const auto offset = SteadyOffset(t)) {
        return Text(t + *offset);
    }
    const std::string text = Text(t + Replay::TimeZone::OffsetMs(t));
    return Replay::TimeZone::ParseLocal(text.substr(1, text.size() - 2)) == t ? text : std::to_string(t);
}

std::optional<int64_t> LocalClock::Read(const ClockTime& time, int64_t from) {
    const auto utc = AsUtc(time);
    if (!utc) {
        return std::nullopt;
    }
    if (const auto offset = SteadyOffset(*utc)) {
        return *utc - *offset;
    }
    // The offsets of the day before and the day after are all that can hold; the greater one comes first.
    const int64_t before = Replay::TimeZone::OffsetMs(*utc - kDayMs);
    const int64_t after = Replay::TimeZone::OffsetMs(*utc + kDayMs);
    std::optional<int64_t> found;
    for (const int64_t offset : {std::max(before, after), std::min(before, after)}) {
        const int64_t t = *utc - offset;
        if (Replay::TimeZone::OffsetMs(t) == offset && (!found || *found < from)) {
            found = t;
        }
    }
    return found;
}

}  // namespace TARN::Authoring
