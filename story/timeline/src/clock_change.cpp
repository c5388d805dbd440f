#include "clock_change.h"

#include <array>
#include <cstdlib>
#include <ctime>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Replay::TimeZone;

constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kHourMs = 3600 * kMsPerSecond;

/// A clock that is `offsetMs` ahead of UTC. The instant of a change is a whole second.
std::string Show(int64_t t, int64_t offsetMs, const char* format) {
    const auto seconds = static_cast<std::time_t>((t + offsetMs) / kMsPerSecond);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &fields)};
}

}  // namespace

std::string ClockChange::Before(const char* format) const {
    return Show(t, offsetBefore, format);
}

std::string ClockChange::After(const char* format) const {
    return Show(t, offsetAfter, format);
}

std::string ClockChange::Sentence() const {
    const int64_t jump = std::abs(offsetAfter - offsetBefore);
    const std::string length = jump == kHourMs ? "an hour" : Duration(jump);
    const std::string now = After(Before("%F") == After("%F") ? "%H:%M" : "%a %H:%M");
    return IsBack() ? "goes back " + length + ": it is " + now + " again" : "goes forward " + length + ": it is " + now;
}

std::optional<ClockChange> FindClockChange(int64_t from, int64_t to) {
    const auto t = TimeZone::FindChange(from, to);
    return t ? std::optional(ClockChange{*t, TimeZone::OffsetMs(*t - 1), TimeZone::OffsetMs(*t)}) : std::nullopt;
}

bool AreOfOneDay(int64_t a, int64_t b) {
    return TimeZone::OffsetMs(a) == TimeZone::OffsetMs(b) && TimeZone::IsSameDay(a, b);
}

}  // namespace TARN::Story
