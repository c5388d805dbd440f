#include "stretches.h"

#include <algorithm>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Replay::TimeZone;

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

std::string Many(int64_t times, int64_t longestMs) {
    return Times(times) + ", the longest " + Duration(longestMs);
}

}  // namespace

std::string Stretches(const Intervals& intervals, Dates dates) {
    if (intervals.size() > LaneTally::kMostListed) {
        return Many(static_cast<int64_t>(intervals.size()), LongestMs(intervals));
    }
    std::string text;
    std::string day;
    for (const Interval& interval : intervals) {
        text += (text.empty() ? "" : ", ") + FromTo(interval, dates, day);
    }
    return text;
}

std::string Stretches(const LaneTally& tally, Dates dates) {
    const Intervals listed = tally.Listed();
    return listed.empty() ? Many(tally.LastingTimes(), tally.LongestMs()) : Stretches(listed, dates);
}

}  // namespace TARN::Story
