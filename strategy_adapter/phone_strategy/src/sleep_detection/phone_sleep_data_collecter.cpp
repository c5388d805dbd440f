#include "phone_sleep_data_collecter.h"

#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr float kNoReading = -1.0F;
constexpr float kHolsterProximity = 0.0001F;
constexpr float kPadProximity = 5.1F;

}  // namespace

float PhoneSleepDataCollecter::GetProximity() {
    if (isProximityError) {
        STANDBYSERVICE_LOGI("the device uses a wallet-style holster");
        mProximity = kHolsterProximity;
        return mProximity;
    }
    const float reading = currentProximityData_;
    proximitySubstituted = reading == kNoReading && !proximitySubstituted;
    mProximity = proximitySubstituted ? mLastProximity : reading;
    return mProximity;
}

float PadSleepDataCollecter::GetProximity() {
    const float reading = currentProximityData_;
    mProximity = reading == kNoReading ? kPadProximity : reading;
    return mProximity;
}

float WatchSleepDataCollecter::GetProximity() {
    mProximity = currentProximityData_;
    return mProximity;
}

}  // namespace TARN::DevStandbyMgr
