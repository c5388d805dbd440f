#include "cause.h"

#include <array>
#include <cstddef>

namespace TARN::Story {

namespace {

struct CauseReason {
    Cause cause;
    std::string_view reason;
};

constexpr std::array kReasons = {
    CauseReason{Cause::NONE, ""},
    CauseReason{Cause::START, "the service starts"},
    CauseReason{Cause::STOP, "the service stops"},
    CauseReason{Cause::SCREEN_ON, "screen on"},
    CauseReason{Cause::SCREEN_OFF, "screen off"},
    CauseReason{Cause::CHARGING, "charging"},
    CauseReason{Cause::DISCHARGING, "no longer charging"},
    CauseReason{Cause::POWER_SAVE_MODE, "device mode 603"},
    CauseReason{Cause::HALF_HOUR, "the screen has long been off at night"},
    CauseReason{Cause::ENTERED_SLEEP, "deep standby at night"},
    CauseReason{Cause::LEFT_SLEEP, "deep standby ends"},
    CauseReason{Cause::MAINTENANCE, "maintenance"},
    CauseReason{Cause::MAINTENANCE_OVER, "maintenance is over"},
    CauseReason{Cause::PHASE, "deep standby"},
    CauseReason{Cause::DAY, "the day begins"},
    CauseReason{Cause::NIGHT, "the night begins"},
    CauseReason{Cause::EXEMPTION, "exemptions changed"},
    CauseReason{Cause::DEVICE_STATE, "nothing uses it any more"},
    CauseReason{Cause::ASLEEP, "the user sleeps"},
    CauseReason{Cause::AWAKE, "the user is awake"},
    CauseReason{Cause::COLLECTED, ""},
    CauseReason{Cause::TIME_SERVICE, "the time service has come up"},
    CauseReason{Cause::KEEP_ALIVE, "network keep-alive"},
    CauseReason{Cause::FULL_POWER_SAVE, "device mode 603, screen off for ten minutes"},
    CauseReason{Cause::SLEEP_CLEAN, "once a night, the user sleeps"},
    CauseReason{Cause::DUMP, "asked for by the dump command"},
    CauseReason{Cause::REFRESH, "the service looks again"},
    CauseReason{Cause::LEDGER, "the ledger holds it"},
};

constexpr bool AreInOrder() {
    for (size_t i = 0; i < kReasons.size(); ++i) {
        if (static_cast<size_t>(kReasons[i].cause) != i) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());

}  // namespace

std::string_view Reason(Cause cause) noexcept {
    return kReasons[static_cast<size_t>(cause)].reason;
}

}  // namespace TARN::Story
