#ifndef STORY_COMPARISON_H
#define STORY_COMPARISON_H

#include <array>
#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "night.h"
#include "record_comparison.h"

namespace TARN::Story {

/// Two runs held against each other.
struct Comparison {
    std::array<std::string, kSides> names;  ///< tell one from the other
    RecordComparison record;
    /// The nights; null where a record was read, of which only its lines are known.
    std::array<const Night*, kSides> nights{};
};

/// The first difference with what went before, and what the two amount to, for people. Local times are those of the
/// zone in use.
void Tell(const Comparison& comparison, std::ostream& output);

/// The same for programs. Times are wall clock milliseconds with local time beside them, durations milliseconds.
[[nodiscard]] nlohmann::ordered_json ToJson(const Comparison& comparison);

}  // namespace TARN::Story

#endif  // STORY_COMPARISON_H
