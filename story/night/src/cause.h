#ifndef STORY_CAUSE_H
#define STORY_CAUSE_H

#include <cstdint>
#include <string_view>

namespace TARN::Story {

/// What set off the work that is going on, as far as it is told as a reason.
enum class Cause : uint8_t {
    NONE,
    START,
    STOP,
    SCREEN_ON,
    SCREEN_OFF,
    CHARGING,
    DISCHARGING,
    POWER_SAVE_MODE,
    HALF_HOUR,
    ENTERED_SLEEP,
    LEFT_SLEEP,
    MAINTENANCE,
    MAINTENANCE_OVER,
    PHASE,
    DAY,
    NIGHT,
    EXEMPTION,
    DEVICE_STATE,
    ASLEEP,
    AWAKE,
    COLLECTED,
    TIME_SERVICE,
    KEEP_ALIVE,
    FULL_POWER_SAVE,
    SLEEP_CLEAN,
    DUMP,
    REFRESH,
    LEDGER,
};

/// The cause as the reason behind a colon; empty where it would say nothing.
[[nodiscard]] std::string_view Reason(Cause cause) noexcept;

}  // namespace TARN::Story

#endif  // STORY_CAUSE_H
