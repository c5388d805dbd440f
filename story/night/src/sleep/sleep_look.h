#ifndef STORY_SLEEP_LOOK_H
#define STORY_SLEEP_LOOK_H

#include <cstdint>
#include <optional>

#include "night.h"

namespace TARN::Story {

/// One look of the sleep detector: what it collected, and what its rules alone made of it.
struct SleepLook {
    SleepReading reading;
    float proximity = -1.0F;
    int64_t unlockedAt = -1;  ///< the last unlock
    int64_t screenOns = -1;   ///< counted since the service started
    int64_t judgedAt = -1;
    bool isLightRead = false;      ///< else it is a stand-in, or nothing
    bool isProximityRead = false;  ///< the same
    bool isRuledAsleep = false;    ///< the verdict that the next look goes by
};

/// What the detector remembers when it judges.
struct SleepMemory {
    std::optional<SleepLook> last;
    int64_t alarm = -1;  ///< the next alarm of the last verdict of sleep
};

}  // namespace TARN::Story

#endif  // STORY_SLEEP_LOOK_H
