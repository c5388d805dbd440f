#ifndef STORY_SLEEP_REASONS_H
#define STORY_SLEEP_REASONS_H

#include <string>
#include <string_view>

#include "night.h"

namespace TARN::Story {

/// Why a record was not judged as sleep.
struct SleepReason {
    std::string_view kind;  ///< what stays the same while only the numbers change
    std::string text;
};

/// The reason in a record that the plugin judged as awake. `rememberedAlarm` is the alarm that stood when the
/// user last slept.
[[nodiscard]] SleepReason WhyNotAsleep(const SleepReading& record, int64_t rememberedAlarm);

/// Whether the plugin takes the wake-up time from the alarm that the record holds.
[[nodiscard]] bool IsWakeupByAlarm(const SleepReading& record);

}  // namespace TARN::Story

#endif  // STORY_SLEEP_REASONS_H
