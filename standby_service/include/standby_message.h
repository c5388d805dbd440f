#ifndef STANDBY_SERVICE_STANDBY_MESSAGE_H
#define STANDBY_SERVICE_STANDBY_MESSAGE_H

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "want.h"

namespace TARN::DevStandbyMgr {

/// What happened; the value of StandbyMessage::eventId. The number in brackets after a parameter is its type.
namespace StandbyMessageType {
inline constexpr int32_t COMMON_EVENT = 1;                ///< a system broadcast; `action` names it
inline constexpr int32_t STATE_TRANSIT = 2;               ///< PREVIOUS_STATE, CURRENT_STATE (int)
inline constexpr int32_t PHASE_TRANSIT = 3;               ///< CURRENT_STATE, CURRENT_PHASE (int)
inline constexpr int32_t RES_CTRL_CONDITION_CHANGED = 4;  ///< RES_CTRL_CONDITION (int)
inline constexpr int32_t ALLOW_LIST_CHANGED = 5;          ///< "allowType" (int), "name" (string), "added" (bool)
inline constexpr int32_t SCREEN_OFF_HALF_HOUR = 6;        ///< SCR_OFF_HALF_HOUR_STATUS (bool)
inline constexpr int32_t DEVICE_STATE_CHANGED = 10;       ///< DEVICE_STATE_TYPE (int), DEVICE_STATE (bool)
inline constexpr int32_t USER_SLEEP_STATE_CHANGED = 11;   ///< "isSleep" (bool), "wakeupTime" (long)
inline constexpr int32_t NET_IDLE_POLICY_TRANSIT = 12;    ///< NET_IDLE_POLICY_STATUS (bool)
inline constexpr int32_t RESOURCE_APPLY = 13;           ///< BG_TASK_TYPE, BG_TASK_RESOURCE_STATUS, BG_TASK_BUNDLE_NAME
inline constexpr int32_t NAT_INTERVAL_CHANGED = 14;     ///< MESSAGE_ENABLE (bool), MESSAGE_INTERVAL (int)
inline constexpr int32_t SLEEP_COLLECT_FINISHED = 100;  ///< one collected sleep record
inline constexpr int32_t BG_TASK_STATUS_CHANGED = 101;  ///< "typeId" (int), "started" (bool)

/// The service's own, far from what strategies know: what it keeps of the applications changed, or it is time to try
/// again what was refused. No parameters.
inline constexpr int32_t HOST_REFRESH = 1'000'000;
}  // namespace StandbyMessageType

/// One message from the service, or from the plugin through the service, to every strategy. Built on the
/// sender's stack; whoever wants it after HandleEvent has returned keeps a copy.
struct StandbyMessage {
    StandbyMessage() = default;
    explicit StandbyMessage(int32_t id, std::string actionName = {}, std::optional<AAFwk::Want> parameters = {})
        : eventId(id), action(std::move(actionName)), want(std::move(parameters)) {}

    /// The parameters, none when the message carries no Want.
    [[nodiscard]] const AAFwk::Want& Params() const;

    int32_t eventId = 0;
    std::string action;               ///< the broadcast's name for COMMON_EVENT, else empty
    std::optional<AAFwk::Want> want;  ///< the event's parameters, absent when it carries none
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_MESSAGE_H
