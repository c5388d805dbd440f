#ifndef STANDBY_SERVICE_STANDBY_SERVICE_LOG_H
#define STANDBY_SERVICE_STANDBY_SERVICE_LOG_H

#include "log_format.h"

/// One macro a level.
#define STANDBYSERVICE_LOGD(...) STANDBYSERVICE_LOG(::TARN::LogLevel::DEBUG, __VA_ARGS__)
#define STANDBYSERVICE_LOGI(...) STANDBYSERVICE_LOG(::TARN::LogLevel::INFO, __VA_ARGS__)
#define STANDBYSERVICE_LOGW(...) STANDBYSERVICE_LOG(::TARN::LogLevel::WARN, __VA_ARGS__)
#define STANDBYSERVICE_LOGE(...) STANDBYSERVICE_LOG(::TARN::LogLevel::ERROR, __VA_ARGS__)

#define STANDBYSERVICE_LOG(level, ...) \
    PLATFORM_LOG(level, ::TARN::DevStandbyMgr::kLogDomain, ::TARN::DevStandbyMgr::kLogTag, __VA_ARGS__)

namespace TARN::DevStandbyMgr {

inline constexpr uint32_t kLogDomain = 0xD001718;
inline constexpr char kLogTag[] = "StandbyService";

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_SERVICE_LOG_H
