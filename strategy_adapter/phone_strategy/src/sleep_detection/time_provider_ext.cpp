#include "time_provider_ext.h"

#include <ctime>

#include "standby_service_log.h"
#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

namespace {

using MiscServices::TimeServiceClient;

constexpr int64_t kMsPerSecond = 1000;
constexpr int32_t kSecondsPerMinute = 60;
constexpr int32_t kSecondsPerHour = 3600;

}  // namespace

float TimeProviderExt::TimestampToDayHour(int64_t timestampMs) {
    const std::time_t seconds = timestampMs / kMsPerSecond;
    std::tm local{};
    if (localtime_r(&seconds, &local) == nullptr) {
        STANDBYSERVICE_LOGE("localtime_r failed, can not get valid local time");
        return -1.0F;
    }
    return static_cast<float>(local.tm_hour) + static_cast<float>(local.tm_min) / 60.0F +
           static_cast<float>(local.tm_sec) / 3600.0F;
}

int32_t TimeProviderExt::TimestampToDaySecond(int64_t timestampMs) {
    const std::time_t seconds = timestampMs / kMsPerSecond;
    std::tm local{};
    if (localtime_r(&seconds, &local) == nullptr) {
        STANDBYSERVICE_LOGE("localtime_r failed, can not get valid local time");
        return -1;
    }
    return local.tm_hour * kSecondsPerHour + local.tm_min * kSecondsPerMinute + local.tm_sec;
}

int64_t TimeProviderExt::GetCurMsecTimestamp() {
    return TimeServiceClient::GetInstance()->GetWallTimeMs();
}

int64_t TimeProviderExt::GetBootTimeNs() {
    return TimeServiceClient::GetInstance()->GetBootTimeNs();
}

}  // namespace TARN::DevStandbyMgr
