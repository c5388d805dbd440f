#ifndef STORY_STRETCHES_H
#define STORY_STRETCHES_H

#include <string>
#include <vector>

#include "lane.h"

namespace TARN::Story {

using Intervals = std::vector<Interval>;

/// How much is said of the time of an interval.
enum class Dates : uint8_t { UNSAID, SAID };

/// "23:40 – 02:23, 02:30 – 06:50" for a few intervals, "12 times, the longest 2 h 05 min" for many. Dates where they
/// are said: "Mon 9 Mar 23:40 – Tue 10 Mar 02:23".
[[nodiscard]] std::string Stretches(const Intervals& intervals, Dates dates);
[[nodiscard]] std::string Stretches(const LaneTally& tally, Dates dates);

}  // namespace TARN::Story

#endif  // STORY_STRETCHES_H
