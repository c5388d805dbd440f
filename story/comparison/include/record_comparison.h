#ifndef STORY_RECORD_COMPARISON_H
#define STORY_RECORD_COMPARISON_H

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "record_reader.h"

namespace TARN::Story {

/// The two that are held against each other.
inline constexpr size_t kSides = 2;

/// Where two records first say different things.
struct RecordParting {
    int64_t t = 0;                                               ///< the earlier of the two lines' times
    std::vector<Replay::RecordLine> before;                      ///< the last lines that both hold, in order
    std::array<std::optional<Replay::RecordLine>, kSides> next;  ///< what each says then; nothing: it is over
};

/// How many lines are in both records or in one only.
struct LineCounts {
    uint64_t both = 0;
    std::array<uint64_t, kSides> only{};
};

struct RecordComparison {
    std::map<std::string, LineCounts> lines;  ///< by kind
    std::array<uint64_t, kSides> runs{};      ///< how many runs each holds
    std::optional<RecordParting> parting;     ///< nothing: the records are the same

    [[nodiscard]] LineCounts Total() const noexcept;
};

/// Holds two records against each other, the first run of one against the first of the other and so on, the lines of
/// each millisecond among themselves: a line more or less does not make what follows differ. Memory does not grow
/// with the records' length. Throws InputError as the readers do.
[[nodiscard]] RecordComparison CompareRecords(Replay::RecordReader& a, Replay::RecordReader& b);

}  // namespace TARN::Story

#endif  // STORY_RECORD_COMPARISON_H
