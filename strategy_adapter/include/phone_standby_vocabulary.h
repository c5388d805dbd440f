#ifndef STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
#define STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H

#include <string_view>

#include "relaxed.h"

namespace TARN::DevStandbyMgr {

/// The broadcasts that this plugin names itself, by action.
inline constexpr std::string_view COMMON_EVENT_USER_SLEEP_STATE_CHANGED = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";
inline constexpr std::string_view COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK = "COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK";
inline constexpr std::string_view COMMON_EVENT_TIMER_SA_ABILITY = "COMMON_EVENT_TIMER_SA_ABILITY";

/// The service that hosts the settings data.
inline constexpr int SETTINGS_DATA_ABILITY_ID = 1914;

/// The device mode, as the power manager counts, in which power is saved beyond comfort ("ecm" in the logs).
inline constexpr int DEVICE_MODE_ECM = 603;

/// Whether the user is reported asleep. Process-wide, false when the library is loaded, never persisted; only
/// UserSleepPowerOffStrategy writes it. Timer callbacks read it on their own thread.
extern Relaxed<bool> userSleepState;

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
