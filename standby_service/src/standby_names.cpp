#include "standby_names.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "standby_message.h"

namespace TARN::DevStandbyMgr {

namespace {

template <size_t N>
std::string NameOf(const std::array<const char*, N>& names, int64_t value) {
    const bool isNamed = value >= 0 && static_cast<size_t>(value) < N;
    return isNamed ? names[static_cast<size_t>(value)] : std::to_string(value);
}

struct NamedMessage {
    int32_t id;
    std::string_view name;
};

namespace Type = StandbyMessageType;
constexpr std::array kMessages = {
    NamedMessage{Type::COMMON_EVENT, "COMMON_EVENT"},
    NamedMessage{Type::STATE_TRANSIT, "STATE_TRANSIT"},
    NamedMessage{Type::PHASE_TRANSIT, "PHASE_TRANSIT"},
    NamedMessage{Type::RES_CTRL_CONDITION_CHANGED, "RES_CTRL_CONDITION_CHANGED"},
    NamedMessage{Type::ALLOW_LIST_CHANGED, "ALLOW_LIST_CHANGED"},
    NamedMessage{Type::SCREEN_OFF_HALF_HOUR, "SCREEN_OFF_HALF_HOUR"},
    NamedMessage{Type::DEVICE_STATE_CHANGED, "DEVICE_STATE_CHANGED"},
    NamedMessage{Type::USER_SLEEP_STATE_CHANGED, "USER_SLEEP_STATE_CHANGED"},
    NamedMessage{Type::NET_IDLE_POLICY_TRANSIT, "NET_IDLE_POLICY_TRANSIT"},
    NamedMessage{Type::RESOURCE_APPLY, "RESOURCE_APPLY"},
    NamedMessage{Type::NAT_INTERVAL_CHANGED, "NAT_INTERVAL_CHANGED"},
    NamedMessage{Type::SLEEP_COLLECT_FINISHED, "SLEEP_COLLECT_FINISHED"},
    NamedMessage{Type::BG_TASK_STATUS_CHANGED, "BG_TASK_STATUS_CHANGED"},
    NamedMessage{Type::HOST_REFRESH, "HOST_REFRESH"},
};

}  // namespace

std::string StateName(int64_t state) {
    static constexpr std::array kNames = {"WORKING", "DARK", "NAP", "MAINTENANCE", "SLEEP"};
    return NameOf(kNames, state);
}

std::string PhaseName(int64_t phase) {
    static constexpr std::array kNames = {"LIGHT", "APP_RES_DEEP", "SYS_RES_DEEP", "DEEP"};
    return NameOf(kNames, phase);
}

std::string_view MessageName(int64_t eventId) noexcept {
    const auto* found =
        std::find_if(kMessages.begin(), kMessages.end(), [&](const NamedMessage& one) { return one.id == eventId; });
    return found == kMessages.end() ? std::string_view() : found->name;
}

}  // namespace TARN::DevStandbyMgr
