#include "stretches.h"

#include <algorithm>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Replay::TimeZone;

/// More of them are told as a number.
constexpr size_t kMostListed = 4;

std::string FromTo(const Interval& interval, Dates dates, std::string& day) {
    // Where clock and calendar do not tell the two ends apart, seconds do, or the zone's names.
    const bool isClockChanged = TimeZone::OffsetMs(interval.from) != TimeZone::OffsetMs(interval.to);
    const std::string format = isClockChanged                               ? "%H:%M %Z"
                               : Clock(interval.from) == Clock(interval.to) ? "%H:%M:%S"
                                                                            : "%H:%M";
    const auto moment = [&](int64_t t) {
        std::string text;
        if (std::string today = TimeZone::Format(t, "%a %-d %b "); dates == Dates::SAID && today != day) {
            text = day = std::move(today);
        }
        return text + TimeZone::Format(t, format.c_str());
    };
    std::string text = moment(interval.from) + " – ";
    return text + moment(interval.to);
}

int64_t LongestMs(const Intervals& intervals) {
    int64_t longest = 0;
    for (const Interval& interval : intervals) {
        longest = std::max(longest, interval.to - interval.from);
    }
    return longest;
}

}  // namespace

std::string Stretches(const Intervals& intervals, Dates dates) {
    if (intervals.size() > kMostListed) {
        return Times(static_cast<int64_t>(intervals.size())) + ", the longest " + Duration(LongestMs(intervals));
    }
    std::string text;
    std::string day;
    for (const Interval& interval : intervals) {
        text += (text.empty() ? "" : ", ") + FromTo(interval, dates, day);
    }
    return text;
}

}  // namespace TARN::Story
