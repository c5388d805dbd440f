#ifndef SLEEP_DETECTION_PHONE_SLEEP_DATA_COLLECTER_H
#define SLEEP_DETECTION_PHONE_SLEEP_DATA_COLLECTER_H

#include "sleep_data_collecter.h"

namespace TARN::DevStandbyMgr {

/// Phones: covered for good when the sensor is not to be trusted; a missing reading is bridged once.
class PhoneSleepDataCollecter : public SleepDataCollecter {
public:
    float GetProximity() override;

private:
    bool proximitySubstituted = false;
};

/// Tablets: a missing reading is uncovered.
class PadSleepDataCollecter : public SleepDataCollecter {
public:
    float GetProximity() override;
};

/// Watches: the reading as it is.
class WatchSleepDataCollecter : public SleepDataCollecter {
public:
    float GetProximity() override;
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_PHONE_SLEEP_DATA_COLLECTER_H
