#include "user_sleep_predict.h"

#include <algorithm>

#include "saturating.h"
#include "standby_constants.h"
#include "time_provider_ext.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr int32_t kAsleep = 1;
constexpr int32_t kAwake = 0;

constexpr uint64_t kAlarmNearMs = 900'000;       // 15 minutes either side of the next alarm
constexpr uint64_t kAfterAlarmMs = 3'600'000;    // the hour after the remembered alarm
constexpr uint64_t kLatestAlarmMs = 32'400'000;  // an alarm within 9 hours wakes
constexpr int32_t kLatestAlarmSecond = 32'400;   // and before 09:00
constexpr int32_t kTabletWakeupSecond = 29'700;  // 08:15
constexpr int32_t kPhoneWakeupSecond = 22'500;   // 06:15
constexpr int32_t kTabletMode = 1;

constexpr float kSixOClock = 6.0F;
constexpr float kNoon = 12.0F;
constexpr float kEvening = 21.0F;
constexpr float kMidnight = 24.0F;

constexpr float kLightEps = 0.01F;
constexpr float kBrightLux = 50.0F;
constexpr float kLightJumpRatio = 2.0F;

uint64_t Distance(int64_t a, int64_t b) {
    return a > b ? static_cast<uint64_t>(a) - static_cast<uint64_t>(b)
                 : static_cast<uint64_t>(b) - static_cast<uint64_t>(a);
}

bool HasLightJumped(const SleepDataRecord& last, const SleepDataRecord& cur) {
    return cur.mLight - last.mLight >= kBrightLux &&
           (cur.mLight + kLightEps) / (last.mLight + kLightEps) >= kLightJumpRatio;
}

/// Whether a user who was asleep a collection ago still is.
bool IsSleepContinued(const SleepDataRecord& last, const SleepDataRecord& cur) {
    constexpr int32_t kLongStaySeconds = 10'800;
    const bool isShortStay = cur.mScrOffDuration < kLongStaySeconds && cur.mUserStationaryDuration < kLongStaySeconds;
    if ((isShortStay || HasLightJumped(last, cur)) && cur.mLightDarkDuration <= last.mLightDarkDuration) {
        return false;
    }
    return cur.mUnlockTimestamp == last.mUnlockTimestamp && cur.mUserStationaryDuration > 0 &&
           static_cast<int64_t>(cur.mScrOnCount) - last.mScrOnCount < 2;
}

/// Whether one record alone says asleep in the night.
bool IsAsleepAtNight(const SleepDataRecord& cur) {
    const int32_t still = cur.mUserStationaryDuration;
    if (cur.mLight > kBrightLux) {
        return still > 7200;
    }
    if (still <= 0) {
        return std::min(cur.mLightDarkDuration, cur.mScrOffDuration) >= 1800;
    }
    if (still > 3600) {
        return true;
    }
    if (still >= 1800 && cur.mLight <= kLightEps && cur.mProximity <= kLightEps) {
        return true;
    }
    return cur.mLightDarkDuration > 1200 && still > 1200;
}

bool IsAsleepInTheEvening(const SleepDataRecord& cur, float hour) {
    // 3000 s at 21:00, falling to 1200 s towards midnight
    const auto threshold = static_cast<int32_t>((kMidnight - hour) * 600.0F + 1200.0F);
    return cur.mLightDarkDuration >= threshold && cur.mUserStationaryDuration >= threshold;
}

bool IsAsleepInTheMorning(const SleepDataRecord& cur) {
    return cur.mScrOffDuration > 3600 && (cur.mUserStationaryDuration > 14'400 ||
                                          (cur.mUserStationaryDuration > 1800 && cur.mLightDarkDuration > 1800));
}

}  // namespace

int32_t UserSleepPredict::SleepBaselinePredict(const SleepDataRecord& last, const SleepDataRecord& cur) const {
    const int64_t nowMs = TimeProviderExt::GetCurMsecTimestamp();
    const float hour = TimeProviderExt::TimestampToDayHour(nowMs);
    if (Distance(nowMs, cur.mNextAlarmClockTriggerTime) < kAlarmNearMs) {
        return kAwake;
    }
    // unsigned on purpose: an alarm of this instant, of the future or never (-1) does not block
    if (static_cast<uint64_t>(nowMs) - static_cast<uint64_t>(lastClockTime) - 1 < kAfterAlarmMs - 1) {
        return kAwake;
    }
    if (hour >= kNoon && hour < kEvening) {
        return kAwake;
    }
    bool isAsleep = false;
    if (hour >= kEvening) {
        isAsleep = IsAsleepInTheEvening(cur, hour);
    } else if (hour < kSixOClock) {
        isAsleep = IsSleepBaselineDurZeroToSixClock(last, cur);
    } else {
        isAsleep = IsAsleepInTheMorning(cur);
    }
    return isAsleep ? kAsleep : kAwake;
}

bool UserSleepPredict::IsSleepBaselineDurZeroToSixClock(const SleepDataRecord& last, const SleepDataRecord& cur) const {
    return (last.mBaselineResult == kAsleep && IsSleepContinued(last, cur)) || IsAsleepAtNight(cur);
}

int64_t UserSleepPredict::WakeupPredict(const SleepDataRecord& cur) const {
    const int64_t collectMs = cur.mTimestamp;
    const int64_t alarmMs = cur.mNextAlarmClockTriggerTime;
    int32_t wakeupSecond = STANDBT_MODE == kTabletMode ? kTabletWakeupSecond : kPhoneWakeupSecond;
    if (alarmMs != 0 && TimeProviderExt::TimestampToDayHour(alarmMs) < kNoon &&
        static_cast<uint64_t>(alarmMs) - static_cast<uint64_t>(collectMs) < kLatestAlarmMs &&
        TimeProviderExt::TimestampToDaySecond(alarmMs) < kLatestAlarmSecond) {
        wakeupSecond = TimeProviderExt::TimestampToDaySecond(alarmMs);
    }
    constexpr int32_t kHoursPerDay = 24;
    constexpr int32_t kSecondsPerHour = 3600;
    constexpr int64_t kMsPerSecond = 1000;
    const float hour = TimeProviderExt::TimestampToDayHour(collectMs);
    const int32_t dayOffset = hour > kNoon ? kHoursPerDay : 0;
    const int32_t seconds = (dayOffset - static_cast<int32_t>(hour)) * kSecondsPerHour + wakeupSecond;
    return SaturatingAdd(collectMs, seconds * kMsPerSecond);
}

}  // namespace TARN::DevStandbyMgr
