#ifndef STANDBY_SERVICE_STANDBY_CONSTANTS_H
#define STANDBY_SERVICE_STANDBY_CONSTANTS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TARN::DevStandbyMgr {

/// Keys of message parameters.
inline constexpr std::string_view CURRENT_STATE = "CURRENT_STATE";
inline constexpr std::string_view PREVIOUS_STATE = "PREVIOUS_STATE";
inline constexpr std::string_view CURRENT_PHASE = "CURRENT_PHASE";
inline constexpr std::string_view RES_CTRL_CONDITION = "RES_CTRL_CONDITION";
inline constexpr std::string_view SCR_OFF_HALF_HOUR_STATUS = "SCR_OFF_HALF_HOUR_STATUS";
inline constexpr std::string_view NET_IDLE_POLICY_STATUS = "NET_IDLE_POLICY_STATUS";
inline constexpr std::string_view MESSAGE_ENABLE = "MESSAGE_ENABLE";
inline constexpr std::string_view MESSAGE_INTERVAL = "MESSAGE_INTERVAL";
inline constexpr std::string_view BG_TASK_TYPE = "BG_TASK_TYPE";
inline constexpr std::string_view BG_TASK_RESOURCE_STATUS = "BG_TASK_RESOURCE_STATUS";
inline constexpr std::string_view BG_TASK_BUNDLE_NAME = "BG_TASK_BUNDLE_NAME";
inline constexpr std::string_view DEVICE_STATE_TYPE = "DEVICE_STATE_TYPE";
inline constexpr std::string_view DEVICE_STATE = "DEVICE_STATE";

/// How often a subscribed sensor is sampled and how often it reports, nanoseconds.
inline constexpr int64_t SENSOR_SAMPLING_RATE = 100'000'000;
inline constexpr int64_t SENSOR_REPORTING_RATE = 100'000'000;

/// Positions of dump arguments, and the words that the strategies know.
inline constexpr size_t DUMP_FIRST_PARAM = 0;
inline constexpr size_t DUMP_SECOND_PARAM = 1;
inline constexpr size_t DUMP_THIRD_PARAM = 2;
inline constexpr size_t DUMP_FOURTH_PARAM = 3;
inline constexpr size_t DUMP_FIFTH_PARAM = 4;
inline constexpr std::string_view DUMP_DETAIL_INFO = "DUMP_DETAIL_INFO";
inline constexpr std::string_view DUMP_STRATGY_DETAIL = "DUMP_STRATGY_DETAIL";
inline constexpr std::string_view DUMP_SIMULATE_SENSOR = "DUMP_SIMULATE_SENSOR";
inline constexpr std::string_view DUMP_POWEROFF_STRATEGY = "DUMP_POWEROFF_STRATEGY";

/// The device kind: 1 tablet, 2 phone with the daytime proximity check, 3 watch, any other value phone.
/// Set from the configuration before the plugin is loaded.
extern int32_t STANDBT_MODE;

namespace StandbyState {
inline constexpr int32_t WORKING = 0;
inline constexpr int32_t DARK = 1;
inline constexpr int32_t NAP = 2;
inline constexpr int32_t MAINTENANCE = 3;
inline constexpr int32_t SLEEP = 4;
}  // namespace StandbyState

/// Phases within SLEEP.
namespace StandbyPhase {
inline constexpr int32_t LIGHT = 0;
inline constexpr int32_t APP_RES_DEEP = 1;
inline constexpr int32_t SYS_RES_DEEP = 2;
inline constexpr int32_t DEEP = 3;
}  // namespace StandbyPhase

/// The bits of a resource-control condition.
namespace ConditionType {
inline constexpr int32_t DAY_STANDBY = 1;
inline constexpr int32_t NIGHT_STANDBY = 2;
}  // namespace ConditionType

/// The bits of an allow type: which restriction an exemption, or a restrict set, speaks of.
namespace AllowType {
inline constexpr int32_t NETWORK = 1;
inline constexpr int32_t RUNNING_LOCK = 2;
inline constexpr int32_t FREEZE = 64;
}  // namespace AllowType

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_CONSTANTS_H
