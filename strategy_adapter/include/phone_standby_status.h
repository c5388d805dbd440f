#ifndef STRATEGY_ADAPTER_PHONE_STANDBY_STATUS_H
#define STRATEGY_ADAPTER_PHONE_STANDBY_STATUS_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

/// A 32-bit status; 0 is success, for the plugin's operations and for the calls it makes.
using ErrCode = int32_t;

/// What the plugin's operations answer.
namespace PhoneStatus {
inline constexpr ErrCode OK = 0;
inline constexpr ErrCode SYSTEM_PROCESS_UNAVAILABLE = 980000402;     ///< running system processes not fetched
inline constexpr ErrCode STATE_REQ_NOT_MET = 980000909;              ///< not in the state that the operation needs
inline constexpr ErrCode NOT_LEAVING_SLEEP = 980000910;              ///< a transition that does not leave SLEEP
inline constexpr ErrCode ALREADY_IN_STATE = 980000911;               ///< nothing to do
inline constexpr ErrCode PROCESS_NOT_FOUND = 980000912;              ///< the process named is not running
inline constexpr ErrCode ALLOW_TYPE_MISMATCH = 980000913;            ///< an allow type of another strategy
inline constexpr ErrCode COMMON_EVENT_SUBSCRIBE = 980000915;         ///< subscribing to broadcasts failed
inline constexpr ErrCode COMMON_EVENT_UNSUBSCRIBE = 980000916;       ///< unsubscribing failed
inline constexpr ErrCode SENSOR = 980000917;                         ///< a sensor not subscribed or activated
inline constexpr ErrCode COMMON_EVENT_PUBLISH = 980000918;           ///< publishing a broadcast failed
inline constexpr ErrCode RUNNING_PROCESSES_UNAVAILABLE = 980001001;  ///< running processes or exemptions not fetched
inline constexpr ErrCode RECORD_UNAVAILABLE = 980001002;             ///< the power-off record could not be loaded
inline constexpr ErrCode AIRPLANE_MODE = 980001003;                  ///< airplane mode is on
inline constexpr ErrCode DATA_SHARE_UNAVAILABLE = 980001004;         ///< no settings provider
inline constexpr ErrCode DATA_SHARE_QUERY = 980001005;               ///< a settings query gave no row
}  // namespace PhoneStatus

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STANDBY_STATUS_H
