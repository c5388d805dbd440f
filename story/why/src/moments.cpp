#include "moments.h"

#include "time_zone.h"

namespace TARN::Story {

namespace {

using Replay::TimeZone;

constexpr char kDay[] = "%a %-d %b";
/// What is no longer ago is plain without its day.
constexpr int64_t kPlainMs = 12L * 3600 * 1000;

/// So close to a change of the clock a time of day may come twice.
constexpr int64_t kNearMs = 3L * 3600 * 1000;

constexpr char kMinute[] = "%H:%M";
constexpr char kSecond[] = "%H:%M:%S";
constexpr char kMinuteOfDate[] = "%F %H:%M";
constexpr char kOffset[] = "%z";
constexpr char kZone[] = " %Z";

bool AreSame(int64_t a, int64_t b, const char* format) {
    return TimeZone::Format(a, format) == TimeZone::Format(b, format);
}

bool IsWholeMinute(int64_t t) {
    constexpr int64_t kMinuteMs = 60'000;
    return t % kMinuteMs == 0;
}

}  // namespace

std::string Moments::Day(int64_t t) const {
    const bool isPlain = !areDatesSaid_ || t_ - t < kPlainMs;
    return isPlain ? std::string() : TimeZone::Format(t, kDay);
}

std::string Moments::Time(int64_t t) const {
    const bool areSecondsSaid = !(IsWholeMinute(t) && IsWholeMinute(t_)) && AreSame(t, t_, kMinuteOfDate);
    return TimeZone::Format(t, areSecondsSaid ? kSecond : kMinute) +
           (AreSame(t, t_, kOffset) ? "" : TimeZone::Format(t, kZone));
}

std::string Moments::At(int64_t t) const {
    const std::string day = Day(t);
    return (day.empty() ? "at " : "on " + day + " at ") + Time(t);
}

std::string Moments::Since(int64_t t) const {
    const std::string day = Day(t);
    return "since " + (day.empty() ? "" : day + ", ") + Time(t);
}

std::string Moments::Asked() const {
    return TimeZone::Format(t_, kDay) + TimeZone::Format(t_, " %Y, ") +
           TimeZone::Format(t_, IsWholeMinute(t_) ? kMinute : kSecond) +
           (AreSame(t_ - kNearMs, t_ + kNearMs, kOffset) ? "" : TimeZone::Format(t_, kZone));
}

}  // namespace TARN::Story
