#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "want.h"

namespace TARN::DevStandbyMgr {
struct StandbyMessage {
    StandbyMessage();
    int32_t eventId;
    std::string action;
    std::optional<AAFwk::Want> want;
};

struct StandbyMessageType {
    enum {
        COMMON_EVENT = 1,
        STATE_TRANSIT,
        PHASE_TRANSIT,
        RES_CTRL_CONDITION_CHANGED,
        ALLOW_LIST_CHANGED,
        SCREEN_OFF_HALF_HOUR,
        DEVICE_STATE_CHANGED = 10,
        USER_SLEEP_STATE_CHANGED,
        NET_IDLE_POLICY_TRANSIT,
        RESOURCE_APPLY,
        NAT_INTERVAL_CHANGED,
        SLEEP_COLLECT_FINISHED = 100,
        BG_TASK_STATUS_CHANGED
    };
};
}  // namespace TARN::DevStandbyMgr
