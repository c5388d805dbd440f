#ifndef STORY_CLOCK_CHANGE_H
#define STORY_CLOCK_CHANGE_H

#include <cstdint>
#include <optional>
#include <string>

namespace TARN::Story {

/// An instant at which the local clock jumps, as twice a year in many zones.
struct ClockChange {
    int64_t t = 0;             ///< wall clock, milliseconds
    int64_t offsetBefore = 0;  ///< how far the local clock was ahead of UTC, milliseconds
    int64_t offsetAfter = 0;

    [[nodiscard]] bool IsBack() const noexcept { return offsetAfter < offsetBefore; }

    /// What the clock would show at the instant, had it not been changed, in strftime's terms.
    [[nodiscard]] std::string Before(const char* format) const;
    /// What it shows instead.
    [[nodiscard]] std::string After(const char* format) const;

    /// "goes back an hour: it is 02:00 again".
    [[nodiscard]] std::string Sentence() const;
};

/// A change after `from`, up to and including `to`; nothing where the clock is as far ahead of UTC at both.
[[nodiscard]] std::optional<ClockChange> FindClockChange(int64_t from, int64_t to);

/// Whether two instants lie in one local day on which the clock is the same at both.
[[nodiscard]] bool AreOfOneDay(int64_t a, int64_t b);

}  // namespace TARN::Story

#endif  // STORY_CLOCK_CHANGE_H
