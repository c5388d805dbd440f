#include "sleep_data_collecter.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>

#include "movement_client.h"
#include "parameters.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "saturating.h"
#include "sensor_agent.h"
#include "sleep_shared_pref.h"
#include "standby_constants.h"
#include "standby_datashare_helper.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "string_utils.h"
#include "time_provider_ext.h"

namespace TARN::DevStandbyMgr {

namespace {

const std::string g_dayLoopTask = "day_collection_loop_task";
const std::string g_alarmKey = "nearestAlarmingTime";
const std::string g_alarmUri =
    "datashare:///com.tarn.settingsdata/entry/settingsdata/SETTINGSDATA?Proxy=true&key=nearestAlarmingTime";
const bool g_isDebugOn = system::GetBoolParameter("persist.sys.standby_ext_debug_on", false);
const int64_t g_dayLoopPeriodMs = g_isDebugOn ? 15'000 : 600'000;

constexpr int32_t kAmbientLightSensor = 5;
constexpr int32_t kProximitySensor = 12;
constexpr size_t kAmbientLightBytes = 12;  // a reading's record; the intensity stands first
constexpr size_t kProximityBytes = 4;      // the distance alone

constexpr int32_t kStillness = 4;
constexpr int32_t kStillnessEntered = 1;
constexpr int32_t kStillnessExited = 2;

constexpr float kNoReading = -1.0F;
constexpr float kDarkLux = 5.0F;
constexpr float kForcedBrightLux = 50.0F;
constexpr float kCovered = 0.01F;
constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kSnapshotMs = 1000;

constexpr int64_t kDayCollectIntervalMs = 600'000;
constexpr int64_t kDayQuietMs = 3'600'000;
constexpr int64_t kDayScreenOffSeconds = 900;
constexpr float kDayBeginHour = 8.0F;
constexpr float kDayEndHour = 21.0F;

constexpr float kDaySampleBrightLux = 0.5F;
constexpr int64_t kSampleLifeMs = 172'800'000;  // 48 hours
constexpr size_t kLeastErrors = 8;
constexpr float kErrorRatio = 0.5F;
constexpr float kTrustRatio = 0.4F;
constexpr float kProximityError = 1.0F;
constexpr float kProximityTrusted = 0.0F;
constexpr float kProximityUndecided = -1.0F;

/// Seconds from one time to another, truncated.
int32_t SecondsBetween(int64_t fromMs, int64_t toMs) {
    return static_cast<int32_t>(SaturatingSub(toMs, fromMs) / kMsPerSecond);
}

/// Takes the value that a sensor's record begins with; what is not a whole record is ignored. The bytes are copied,
/// since the sensor service promises no alignment.
void TakeReading(const SensorEvent* event, size_t recordBytes, Relaxed<float>& reading) {
    if (event != nullptr && event->data != nullptr && event->dataLen >= recordBytes) {
        float value = kNoReading;
        std::memcpy(&value, event->data, sizeof(value));
        reading = value;
    }
}

}  // namespace

Relaxed<float> SleepDataCollecter::currentAmbientLightData_ = kNoReading;
Relaxed<float> SleepDataCollecter::currentProximityData_ = kNoReading;

SleepDataCollecter::SleepDataCollecter() : handler_(StandbyServiceImpl::GetInstance()->GetHandler()) {
    InitSensorUserMap();
    if (const auto light = sensorUserMap_.find(kAmbientLightSensor); light != sensorUserMap_.end()) {
        light->second.callback = AmbientLightCallback;
    }
    if (const auto proximity = sensorUserMap_.find(kProximitySensor); proximity != sensorUserMap_.end()) {
        proximity->second.callback = ProximityCallback;
    }
    isProximityError = SleepSharedPref::GetBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, false);
    STANDBYSERVICE_LOGI("get is_proximity_error is %{public}d", isProximityError);
}

void SleepDataCollecter::InitSensorUserMap() {
    for (const int32_t type : {kProximitySensor, kAmbientLightSensor}) {
        SensorInfo* sensors = nullptr;
        int32_t count = 0;
        if (GetAllSensors(&sensors, &count) != PhoneStatus::OK) {
            STANDBYSERVICE_LOGE("get all sensors failed, sensors are not available");
            continue;
        }
        if (std::any_of(sensors, sensors + count,
                        [type](const SensorInfo& info) { return info.sensorTypeId == type; })) {
            sensorUserMap_[type] = SensorUser{};
        }
    }
    if (sensorUserMap_.empty()) {
        STANDBYSERVICE_LOGE("do not find any usable sensor to detect motion");
    }
}

void SleepDataCollecter::AmbientLightCallback(SensorEvent* event) {
    TakeReading(event, kAmbientLightBytes, currentAmbientLightData_);
}

void SleepDataCollecter::ProximityCallback(SensorEvent* event) {
    TakeReading(event, kProximityBytes, currentProximityData_);
}

void SleepDataCollecter::CollectSleepData(bool isDayCollect) {
    StartMonitoring();
    static_cast<void>(handler_->PostTask(
        [collecter = shared_from_this(), isDayCollect] {
            collecter->StopSensor();
            collecter->SaveSleepData(isDayCollect);
        },
        {}, kSnapshotMs));
}

void SleepDataCollecter::StartMonitoring() {
    currentAmbientLightData_ = kNoReading;
    currentProximityData_ = kNoReading;
    isMonitoring = true;
    if (StartSensor() != PhoneStatus::OK) {
        StopSensor();
    }
}

ErrCode SleepDataCollecter::StartSensor() {
    STANDBYSERVICE_LOGI("StartSensor");
    for (const auto& [id, user] : sensorUserMap_) {
        if (SubscribeSensor(id, &user) != PhoneStatus::OK) {
            STANDBYSERVICE_LOGE("subscribe sensor failed for sensor ID %{public}d", id);
            return PhoneStatus::SENSOR;
        }
        STANDBYSERVICE_LOGI("subscribe sensor succeed for sensor ID %{public}d", id);
        static_cast<void>(SetBatch(id, &user, SENSOR_SAMPLING_RATE, SENSOR_REPORTING_RATE));
        if (ActivateSensor(id, &user) != PhoneStatus::OK) {
            STANDBYSERVICE_LOGE("activate sensor failed for sensor ID %{public}d", id);
            return PhoneStatus::SENSOR;
        }
    }
    return PhoneStatus::OK;
}

void SleepDataCollecter::StopSensor() {
    STANDBYSERVICE_LOGI("StopSensor");
    if (!isMonitoring) {
        return;
    }
    for (const auto& [id, user] : sensorUserMap_) {
        if (DeactivateSensor(id, &user) != PhoneStatus::OK) {
            STANDBYSERVICE_LOGE("deactivate sensor failed for sensor ID %{public}d", id);
        }
        if (UnsubscribeSensor(id, &user) != PhoneStatus::OK) {
            STANDBYSERVICE_LOGE("unsubscribe sensor failed for sensor ID %{public}d", id);
        }
    }
    isMonitoring = false;
}

void SleepDataCollecter::SaveSleepData(bool isDayCollect) {
    SleepDataRecord record = SaveSleepCollectData();
    if (isDayCollect) {
        FinishDayCollect(record);
        return;
    }
    AAFwk::Want want;
    want.SetParam("mUserStationaryDuration", record.mUserStationaryDuration);
    want.SetParam("mLightDarkDuration", record.mLightDarkDuration);
    want.SetParam("mScrOffDuration", record.mScrOffDuration);
    want.SetParam("mScrOnCount", record.mScrOnCount);
    want.SetParam("mLight", record.mLight);
    want.SetParam("mProximity", record.mProximity);
    want.SetParam("mUnlockTimestamp", record.mUnlockTimestamp);
    want.SetParam("mTimestamp", record.mTimestamp);
    want.SetParam("mNextAlarmClockTriggerTime", record.mNextAlarmClockTriggerTime);
    StandbyServiceImpl::GetInstance()->DispatchEvent(
        MakeMessage(StandbyMessageType::SLEEP_COLLECT_FINISHED, {}, std::move(want)));
}

SleepDataRecord SleepDataCollecter::SaveSleepCollectData() {
    SleepDataRecord record;
    curTimestamp = TimeProviderExt::GetCurMsecTimestamp();
    record.mTimestamp = curTimestamp;
    record.mScrOffDuration = scrOffStartTimestamp >= 1 ? SecondsBetween(scrOffStartTimestamp, curTimestamp) : 0;
    UpdateUserStationaryDuration();
    record.mUserStationaryDuration = userStationaryDuration;
    UpdateLight();
    record.mLight = mLight;
    record.mLastProximity = mProximity;  // before GetProximity replaces it
    record.mProximity = GetProximity();
    record.mUnlockTimestamp = unlockTimestamp;
    record.mScrOnCount = scrOnCount;
    record.mLightDarkDuration = GetLightDarkDuration();
    CountDaySamples(record);
    record.mNextAlarmClockTriggerTime = GetNextAlarmClockTriggerTime();
    lastCollectTime = curTimestamp;
    return record;
}

void SleepDataCollecter::UpdateUserStationaryDuration() {
    constexpr int64_t kNsPerSecond = 1'000'000'000;
    const auto still = Msdp::MovementClient::GetInstance().GetMovementData(static_cast<Msdp::MovementType>(kStillness));
    switch (static_cast<int32_t>(still.value)) {
        case kStillnessEntered: {
            const int64_t stillNs = SaturatingSub(TimeProviderExt::GetBootTimeNs(), still.timestamp);
            userStationaryDuration = static_cast<int32_t>(stillNs / kNsPerSecond);
            break;
        }
        case kStillnessExited:
            userStationaryDuration = 0;
            break;
        default:
            userStationaryDuration = -1;
            break;
    }
}

/// A missing reading is bridged once by the light that the dark-spell logic kept.
void SleepDataCollecter::UpdateLight() {
    mLight = currentAmbientLightData_;
    lightSubstituted = mLight == kNoReading && !lightSubstituted;
    if (lightSubstituted) {
        mLight = mLastLight;
    }
}

int32_t SleepDataCollecter::GetLightDarkDuration() {
    const bool isUnlockedSince = lastCollectTime < unlockTimestamp;
    if (mLight > kDarkLux || isUnlockedSince) {
        return RestartDarkSpell(mProximity);
    }
    const bool isCovered = mProximity <= kCovered;
    const bool wasDark = mLastLight <= kDarkLux;
    if (wasDark) {
        const bool hasMoved = (curTimestamp - lastCollectTime) / kMsPerSecond >= userStationaryDuration;
        if (isCovered && hasMoved) {
            return RestartDarkSpell(kCovered);
        }
    } else if (isCovered) {
        return RestartDarkSpell(kCovered);
    }
    if (std::exchange(lightDarkRestart, false)) {
        lightDarkStartTime = curTimestamp;
    }
    mLastLight = mLight;
    mLastProximity = mProximity;
    return wasDark ? SecondsBetween(lightDarkStartTime, curTimestamp) : 0;
}

int32_t SleepDataCollecter::RestartDarkSpell(float proximity) {
    lightDarkStartTime = curTimestamp;
    lightDarkRestart = true;
    mLastLight = kForcedBrightLux;
    mLastProximity = proximity;
    return 0;
}

int64_t SleepDataCollecter::GetNextAlarmClockTriggerTime() {
    const auto helper = std::make_shared<StandbyDataShareHelper>(SETTINGS_DATA_ABILITY_ID);
    Uri uri(g_alarmUri);
    std::string value;
    if (helper->Query(uri, g_alarmKey, value) != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("query nearest alarm clock failed");
        return -1;
    }
    return StringUtils::StringToNumber(value);
}

void SleepDataCollecter::DayCollection() {
    if (IsMeetDayDataCollectCondition()) {
        dayCollectTime = TimeProviderExt::GetCurMsecTimestamp();
        CollectSleepData(true);
    }
    handler_->RemoveTask(g_dayLoopTask);
    static_cast<void>(handler_->PostTask([collecter = shared_from_this()] { collecter->DayCollection(); },
                                         g_dayLoopTask, g_dayLoopPeriodMs));
}

bool SleepDataCollecter::IsMeetDayDataCollectCondition() const {
    const int64_t nowMs = TimeProviderExt::GetCurMsecTimestamp();
    if (nowMs < dayCollectTime + kDayCollectIntervalMs) {
        return false;
    }
    const float hour = TimeProviderExt::TimestampToDayHour(nowMs);
    if (!(hour > kDayBeginHour && hour < kDayEndHour)) {
        return false;
    }
    const bool isQuiet = nowMs - lastCollectTime >= kDayQuietMs;
    const bool isUnlockedSince = lastCollectTime < unlockTimestamp;
    return isQuiet && isUnlockedSince && scrOffStartTimestamp >= 1 &&
           (nowMs - scrOffStartTimestamp) / kMsPerSecond >= kDayScreenOffSeconds;
}

void SleepDataCollecter::FinishDayCollect(SleepDataRecord& record) {
    const bool isNormal = record.mLight >= kDaySampleBrightLux || record.mLastProximity <= kCovered;
    (isNormal ? proximityNormalTimes : proximityErrorTimes).push_back(record.mTimestamp);
    for (auto* times : {&proximityNormalTimes, &proximityErrorTimes}) {
        times->erase(std::remove_if(times->begin(), times->end(),
                                    [&record](int64_t time) { return time < record.mTimestamp - kSampleLifeMs; }),
                     times->end());
    }
    const float state = JudgeProximity();
    STANDBYSERVICE_LOGI("calculation proximity error state is %{public}f", state);
    const bool isError = state == kProximityError;
    if (state != kProximityUndecided && isError != isProximityError) {
        isProximityError = isError;
        SleepSharedPref::UpdateBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, isProximityError);
        STANDBYSERVICE_LOGI("update proximity error state to %{public}d", isProximityError);
    }
    CountDaySamples(record);
}

/// Eight errors at the least, and then a clear majority either way; between the ratios the judgement stays.
float SleepDataCollecter::JudgeProximity() const {
    const size_t errors = proximityErrorTimes.size();
    if (errors < kLeastErrors) {
        return kProximityUndecided;
    }
    const float ratio = static_cast<float>(errors) / static_cast<float>(errors + proximityNormalTimes.size());
    if (ratio >= kErrorRatio) {
        return kProximityError;
    }
    return ratio < kTrustRatio ? kProximityTrusted : kProximityUndecided;
}

void SleepDataCollecter::CountDaySamples(SleepDataRecord& record) const {
    record.mProximityErrorCount = static_cast<int32_t>(proximityErrorTimes.size());
    record.mProximityTotalCount = static_cast<int32_t>(proximityErrorTimes.size() + proximityNormalTimes.size());
}

}  // namespace TARN::DevStandbyMgr
