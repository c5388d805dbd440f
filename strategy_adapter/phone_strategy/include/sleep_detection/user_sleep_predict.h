#ifndef SLEEP_DETECTION_USER_SLEEP_PREDICT_H
#define SLEEP_DETECTION_USER_SLEEP_PREDICT_H

#include <cstdint>

#include "sleep_data_record.h"

namespace TARN::DevStandbyMgr {

/// The two fixed-rule models that turn a record into decisions: asleep or not, and when the user will wake.
/// Nothing is learned here.
class UserSleepPredict {
public:
    explicit UserSleepPredict(int64_t lastClockTimeMs) : lastClockTime(lastClockTimeMs) {}

    /// Remembers the alarm that was next when the user was judged asleep; it blocks the hour after it.
    void UpdateLastClockTime(int64_t clockTimeMs) { lastClockTime = clockTimeMs; }

    /// 1 when the user is asleep now, else 0. `last` is the record of the previous collection.
    [[nodiscard]] int32_t SleepBaselinePredict(const SleepDataRecord& last, const SleepDataRecord& cur) const;

    /// The night rule, for the hours before six.
    [[nodiscard]] bool IsSleepBaselineDurZeroToSixClock(const SleepDataRecord& last, const SleepDataRecord& cur) const;

    /// The expected wake-up, wall-clock milliseconds. Whole hours are added to the collection time, so its
    /// minutes and seconds are carried into the result, on purpose.
    [[nodiscard]] int64_t WakeupPredict(const SleepDataRecord& cur) const;

private:
    int64_t lastClockTime;
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_USER_SLEEP_PREDICT_H
