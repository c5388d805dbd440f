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
constexpr int64_t kQuarterMs = 900'000;
constexpr int64_t kLatestMs = 253'402'300'800'000;  // the year 10000; libc does not know all that comes later

float DayHour(int32_t hour, int32_t minute, int32_t second) {
    return static_cast<float>(hour) + static_cast<float>(minute) / 60.0F + static_cast<float>(second) / 3600.0F;
}

}  // namespace

float TimeProviderExt::TimestampToDayHour(int64_t timestampMs) {
    const std::time_t seconds = timestampMs / kMsPerSecond;
    std::tm local{};
    if (localtime_r(&seconds, &local) == nullptr) {
        STANDBYSERVICE_LOGE("localtime_r failed, can not get valid local time");
        return -1.0F;
    }
    return DayHour(local.tm_hour, local.tm_min, local.tm_sec);
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

DayHourMemory::Zone DayHourMemory::Zone::Current() {
    return {timezone, tzname[0], tzname[1]};
}

float DayHourMemory::At(int64_t timestampMs) {
    if (timestampMs < beginMs_ || timestampMs >= endMs_ || Zone::Current() != zone_) {
        Remember(timestampMs);
        return TimeProviderExt::TimestampToDayHour(timestampMs);
    }
    const int32_t second = beginSecond_ + static_cast<int32_t>((timestampMs - beginMs_) / kMsPerSecond);
    return DayHour(second / kSecondsPerHour, second / kSecondsPerMinute % kSecondsPerMinute,
                   second % kSecondsPerMinute);
}

/// A quarter in which the local clock jumps, or begins another day, is not remembered.
void DayHourMemory::Remember(int64_t timestampMs) {
    endMs_ = beginMs_;
    if (timestampMs < 0 || timestampMs >= kLatestMs) {
        return;
    }
    beginMs_ = timestampMs - timestampMs % kQuarterMs;
    beginSecond_ = TimeProviderExt::TimestampToDaySecond(beginMs_);
    const int64_t lastMs = beginMs_ + kQuarterMs - kMsPerSecond;
    const bool isEven =
        TimeProviderExt::TimestampToDaySecond(lastMs) - beginSecond_ == (lastMs - beginMs_) / kMsPerSecond;
    endMs_ = isEven ? beginMs_ + kQuarterMs : beginMs_;
    zone_ = Zone::Current();
}

}  // namespace TARN::DevStandbyMgr
