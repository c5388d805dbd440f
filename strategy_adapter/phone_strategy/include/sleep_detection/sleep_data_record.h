#ifndef SLEEP_DETECTION_SLEEP_DATA_RECORD_H
#define SLEEP_DETECTION_SLEEP_DATA_RECORD_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

/// One snapshot of what tells sleep. Durations in seconds, times in wall-clock milliseconds; -1 is unknown.
struct SleepDataRecord {
    int32_t mUserStationaryDuration = -1;     ///< how long the user has been still; 0 after movement
    int32_t mLightDarkDuration = -1;          ///< length of the current dark spell
    int32_t mScrOffDuration = -1;             ///< since the screen went off; 0 while it is on
    int32_t mBaselineResult = -1;             ///< the baseline model's verdict on this record
    int32_t mScrOnCount = -1;                 ///< screen-on events so far
    float mLight = -1.0F;                     ///< ambient light, lux
    float mProximity = -1.0F;                 ///< proximity as the variant reads it, 0 when covered
    float mLastProximity = -1.0F;             ///< the proximity of the snapshot before
    int32_t mProximityErrorCount = 0;         ///< day samples of 48 hours that were dark while uncovered
    int32_t mProximityTotalCount = 0;         ///< all day samples of 48 hours
    int64_t mUnlockTimestamp = -1;            ///< last unlock
    int64_t mTimestamp = -1;                  ///< this snapshot
    int64_t mNextAlarmClockTriggerTime = -1;  ///< next alarm clock
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_SLEEP_DATA_RECORD_H
