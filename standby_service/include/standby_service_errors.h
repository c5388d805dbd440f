#ifndef STANDBY_SERVICE_STANDBY_SERVICE_ERRORS_H
#define STANDBY_SERVICE_STANDBY_SERVICE_ERRORS_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

/// A 32-bit status; ERR_OK is success.
using ErrCode = int32_t;

inline constexpr ErrCode ERR_OK = 0;

/// The standby error range.
inline constexpr ErrCode ERR_SYSTEM_PROCESS_UNAVAILABLE = 980000402;  ///< running system processes not fetched
inline constexpr ErrCode ERR_STATE_REQ_NOT_MET = 980000909;           ///< not in the state that the operation needs
inline constexpr ErrCode ERR_NOT_LEAVING_SLEEP = 980000910;           ///< a transition that does not leave SLEEP
inline constexpr ErrCode ERR_ALREADY_IN_STATE = 980000911;            ///< nothing to do
inline constexpr ErrCode ERR_PROCESS_NOT_FOUND = 980000912;           ///< the process named is not running
inline constexpr ErrCode ERR_ALLOW_TYPE_MISMATCH = 980000913;         ///< an allow type of another strategy
inline constexpr ErrCode ERR_COMMON_EVENT_SUBSCRIBE = 980000915;      ///< subscribing to broadcasts failed
inline constexpr ErrCode ERR_COMMON_EVENT_UNSUBSCRIBE = 980000916;    ///< unsubscribing failed
inline constexpr ErrCode ERR_SENSOR = 980000917;                      ///< a sensor could not be subscribed or activated
inline constexpr ErrCode ERR_COMMON_EVENT_PUBLISH = 980000918;        ///< publishing a broadcast failed
inline constexpr ErrCode ERR_RUNNING_PROCESSES_UNAVAILABLE =
    980001001;                                                    ///< running processes or exemptions not fetched
inline constexpr ErrCode ERR_RECORD_UNAVAILABLE = 980001002;      ///< the power-off record could not be loaded
inline constexpr ErrCode ERR_AIRPLANE_MODE = 980001003;           ///< airplane mode is on
inline constexpr ErrCode ERR_DATA_SHARE_UNAVAILABLE = 980001004;  ///< no settings provider
inline constexpr ErrCode ERR_DATA_SHARE_QUERY = 980001005;        ///< a settings query gave no row

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_SERVICE_ERRORS_H
