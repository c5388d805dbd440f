#ifndef STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
#define STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H

#include <cstdint>
#include <string>

#include "relaxed.h"

namespace TARN::DevStandbyMgr {

/// The broadcasts that this plugin names itself, by action.
inline const std::string COMMON_EVENT_USER_SLEEP_STATE_CHANGED = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";
inline const std::string COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK = "COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK";
inline const std::string COMMON_EVENT_TIMER_SA_ABILITY = "COMMON_EVENT_TIMER_SA_ABILITY";

/// The numbers below are the service's and the platform's; the plugin compares them and passes them on.

/// The resource-control conditions that strategies compare with.
namespace PhoneCondition {
inline constexpr int32_t DAY = 1;
inline constexpr int32_t NIGHT = 2;
}  // namespace PhoneCondition

/// Which restriction an exemption, or a restrict set, speaks of.
namespace PhoneAllowType {
inline constexpr int32_t RUNNING_LOCK = 2;
inline constexpr int32_t FREEZE = 64;
}  // namespace PhoneAllowType

/// The service that hosts the settings data.
inline constexpr int SETTINGS_DATA_ABILITY_ID = 1914;

/// The device mode, as the power manager counts, in which power is saved beyond comfort ("ecm" in the logs).
inline constexpr int DEVICE_MODE_ECM = 603;

/// The event handler's priority of cleaning and of renewing the network policy.
inline constexpr uint32_t PHONE_TASK_PRIORITY = 3;

/// Whether the user is reported asleep. Process-wide, false when the library is loaded, never persisted; only
/// UserSleepPowerOffStrategy writes it. Timer callbacks read it on their own thread.
extern Relaxed<bool> userSleepState;

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
