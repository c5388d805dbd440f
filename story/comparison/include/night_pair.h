#ifndef STORY_NIGHT_PAIR_H
#define STORY_NIGHT_PAIR_H

#include <array>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "night.h"
#include "record_comparison.h"

namespace TARN::Story {

/// A figure of one night on both sides: milliseconds, or a number.
struct PairFigure {
    std::string name;  ///< "bluetooth off"
    bool isDuration = true;
    std::array<int64_t, kSides> values{};

    [[nodiscard]] int64_t Difference() const noexcept { return values[1] - values[0]; }
};

/// One trace under two policies: what each night amounted to, and where they part.
struct NightPair {
    std::string trace;
    std::string start;  ///< local time with its offset
    std::vector<PairFigure> figures;
    /// The first minute at which the state, the phase or a lane behind a figure differs, as local time with its offset;
    /// empty: never.
    std::string apart;

    /// How much of the night is different: the sum over the durations, milliseconds.
    [[nodiscard]] int64_t Change() const noexcept;
};

[[nodiscard]] NightPair ComparePair(const std::array<const Night*, kSides>& nights);

/// The pair as one line, and back: the way from one process to another.
[[nodiscard]] std::string Pack(const NightPair& pair);
[[nodiscard]] NightPair UnpackPair(std::string_view line);

/// For programs: seconds for durations, the unit in the member's name.
[[nodiscard]] nlohmann::ordered_json ToJson(const NightPair& pair);

/// The same as lines of CSV, without the end of the line.
[[nodiscard]] std::string CsvHead(const NightPair& pair);
[[nodiscard]] std::string ToCsvLine(const NightPair& pair);

/// What many pairs come to. Keeps of each its differences only, eight bytes a figure.
class PairTally {
public:
    void Add(const NightPair& pair);

    /// A table for people; `names` tell one side from the other.
    void Tell(const std::array<std::string, kSides>& names, std::ostream& output) const;
    [[nodiscard]] nlohmann::ordered_json ToJson(const std::array<std::string, kSides>& names) const;

private:
    struct Row {
        std::string name;
        bool isDuration = true;
        std::array<int64_t, kSides> sums{};
        std::vector<int64_t> differences;  ///< a night each
    };

    std::vector<Row> rows_;
    std::vector<NightPair> most_;  ///< those that changed most, the most changed first
    int64_t nights_ = 0;
    int64_t differing_ = 0;
};

}  // namespace TARN::Story

#endif  // STORY_NIGHT_PAIR_H
