#ifndef STANDBY_SERVICE_STANDBY_SERVICE_LOG_H
#define STANDBY_SERVICE_STANDBY_SERVICE_LOG_H

#include "log_format.h"

/// One macro a level. The format is a literal with the marks `%{public}d`, `u`, `ld`, `lu`, `f`, `s`, checked
/// against the arguments by the compiler; file, function and line of the prefix come from the macro. No
/// argument is evaluated when the level is not wanted.
#define STANDBYSERVICE_LOGD(...) STANDBYSERVICE_LOG(::TARN::LogLevel::DEBUG, __VA_ARGS__)
#define STANDBYSERVICE_LOGI(...) STANDBYSERVICE_LOG(::TARN::LogLevel::INFO, __VA_ARGS__)
#define STANDBYSERVICE_LOGW(...) STANDBYSERVICE_LOG(::TARN::LogLevel::WARN, __VA_ARGS__)
#define STANDBYSERVICE_LOGE(...) STANDBYSERVICE_LOG(::TARN::LogLevel::ERROR, __VA_ARGS__)

#define STANDBYSERVICE_LOG(level, ...)                                                                    \
    do {                                                                                                  \
        if (::TARN::Log::IsLoggable(level)) {                                                             \
            ::TARN::Log::Print({level, ::TARN::DevStandbyMgr::kLogDomain, ::TARN::DevStandbyMgr::kLogTag, \
                                __FILE_NAME__, static_cast<const char*>(__func__), __LINE__},             \
                               __VA_ARGS__);                                                              \
        }                                                                                                 \
    } while (false)

namespace TARN::DevStandbyMgr {

inline constexpr uint32_t kLogDomain = 0xD001718;
inline constexpr char kLogTag[] = "StandbyService";

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_SERVICE_LOG_H
