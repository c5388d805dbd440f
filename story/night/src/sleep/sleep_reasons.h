#ifndef STORY_SLEEP_REASONS_H
#define STORY_SLEEP_REASONS_H

#include <optional>
#include <string>

#include "sleep_look.h"

namespace TARN::Story {

/// Why one look was ruled as sleep, or was not. All is empty where the verdict is not one of the rules known here.
struct SleepReason {
    std::string kind;    ///< what stays the same while only the numbers change
    std::string text;    ///< "still for 1 h 05 min, more than 1 h at night"
    std::string rule;    ///< "night"
    std::string needed;  ///< all that would do
};

/// The reason of a verdict that the record holds. The rules choose the words; they never make the verdict.
[[nodiscard]] SleepReason ReasonOf(const SleepLook& look, const SleepMemory& memory, bool isRuledAsleep);

/// When the user is expected up.
struct Wakeup {
    int64_t t = -1;
    std::string by;      ///< "the alarm of 07:30", "the built-in 06:15"; empty where it is not known
    std::string detail;  ///< "07:55 (the alarm of 07:30 plus the 25 min of 00:25)"
};

/// How the detector came to expect the user up at `t`.
[[nodiscard]] Wakeup WakeupOf(const SleepReading& reading, int64_t t);

}  // namespace TARN::Story

#endif  // STORY_SLEEP_REASONS_H
