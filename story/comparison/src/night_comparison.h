#ifndef STORY_NIGHT_COMPARISON_H
#define STORY_NIGHT_COMPARISON_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "comparison.h"
#include "night.h"

namespace TARN::Story {

using Nights = std::array<const Night*, kSides>;

/// One of the things that a night amounts to, on both sides.
struct ComparedFigure {
    std::string_view name;
    bool isDuration = true;  ///< milliseconds, else a number
    std::array<int64_t, kSides> values{};
    std::optional<int64_t> apart;  ///< since when the lane behind it differs; nothing: never, or there is no lane
};
[[nodiscard]] std::vector<ComparedFigure> CompareFigures(const Nights& nights);

/// Where a lane of two nights first differs, within the time that both cover. Nothing: nowhere.
[[nodiscard]] std::optional<int64_t> FirstApart(const Nights& nights, LaneId lane);

/// Where the states, or the phases within SLEEP, first differ, and what they are then.
struct StatesApart {
    int64_t t = 0;
    std::array<std::string, kSides> states;
};
[[nodiscard]] std::optional<StatesApart> FindStatesApart(const Nights& nights);

/// The events that a timeline tells, where the two first tell different ones.
struct EventParting {
    std::vector<const Event*> before;                     ///< the last that both tell
    std::array<std::vector<const Event*>, kSides> after;  ///< the first that each tells from there on
};
/// Nothing: both tell the same.
[[nodiscard]] std::optional<EventParting> FindEventParting(const Nights& nights);

/// Names that one side killed and the other did not.
[[nodiscard]] std::array<std::vector<std::string>, kSides> KilledOnlyIn(const Nights& nights);

}  // namespace TARN::Story

#endif  // STORY_NIGHT_COMPARISON_H
