#ifndef STANDBY_SERVICE_LOCAL_TIME_H
#define STANDBY_SERVICE_LOCAL_TIME_H

#include <cstdint>
#include <ctime>
#include <string>

#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

inline constexpr int64_t kMsPerSecond = 1000;

/// The wall clock, in milliseconds since 1970.
[[nodiscard]] inline int64_t NowMs() {
    return MiscServices::TimeServiceClient::GetInstance()->GetWallTimeMs();
}

/// The local calendar time of a wall-clock time in milliseconds; all zero where there is none.
[[nodiscard]] inline std::tm LocalTime(int64_t wallMs) {
    const std::time_t seconds = wallMs / kMsPerSecond;
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

/// The same as people write it, "2026-03-02 02:13:00".
[[nodiscard]] inline std::string LocalTimeText(int64_t wallMs) {
    constexpr size_t kRoom = 64;
    const std::tm local = LocalTime(wallMs);
    char text[kRoom];
    return {text, std::strftime(text, sizeof text, "%F %T", &local)};
}

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_LOCAL_TIME_H
