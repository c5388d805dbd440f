#include "sleep_data_collecter.h"

#include <algorithm>
#include <string>
#include <utility>

#include "movement_client.h"
#include "parameters.h"
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

/// Seconds from one time to another, truncated.
int32_t SecondsBetween(int64_t fromMs, int64_t toMs) {
    return static_cast<int32_t>(SaturatingSub(toMs, fromMs) / kMsPerSecond);
}

}  // namespace

Relaxed<float> SleepDataCollecter::currentAmbientLightData_ = kNoReading;
Relaxed<float> SleepDataCollecter::currentProximityData_ = kNoReading;

SleepDataCollecter::SleepDataCollecter() : handler_(StandbyServiceImpl::GetInstance()->GetHandler()) {
    InitSensorUserMap();
    if (const auto light = sensorUserMap_.find(SENSOR_TYPE_ID_AMBIENT_LIGHT); light != sensorUserMap_.end()) {
        light->second.callback = AmbientLightCallback;
    }
    if (const auto proximity = sensorUserMap_.find(SENSOR_TYPE_ID_PROXIMITY); proximity != sensorUserMap_.end()) {
        proximity->second.callback = ProximityCallback;
    }
    isProximityError = SleepSharedPref::GetBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, false);
    STANDBYSERVICE_LOGI("get is_proximity_error is %{public}d", isProximityError);
}

void SleepDataCollecter::InitSensorUserMap() {
    for (const int32_t type : {SENSOR_TYPE_ID_PROXIMITY, SENSOR_TYPE_ID_AMBIENT_LIGHT}) {
        SensorInfo* sensors = nullptr;
        int32_t count = 0;
        if (GetAllSensors(&sensors, &count) != ERR_OK) {
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
    if (event != nullptr && event->data != nullptr && event->dataLen >= sizeof(AmbientLightData)) {
        currentAmbientLightData_ = reinterpret_cast<const AmbientLightData*>(event->data)->intensity;
    }
}

void SleepDataCollecter::ProximityCallback(SensorEvent* event) {
    if (event != nullptr && event->data != nullptr && event->dataLen >= sizeof(ProximityData)) {
        currentProximityData_ = reinterpret_cast<const ProximityData*>(event->data)->distance;
    }
}

void SleepDataCollecter::CollectSleepData(bool isDayCollect) {
    StartMonitoring();
    handler_->PostTask(
        [collecter = shared_from_this(), isDayCollect] {
            collecter->StopSensor();
            collecter->SaveSleepData(isDayCollect);
        },
        {}, kSnapshotMs);
}

void SleepDataCollecter::StartMonitoring() {
    currentAmbientLightData_ = kNoReading;
    currentProximityData_ = kNoReading;
    isMonitoring = true;
    if (StartSensor() != ERR_OK) {
        StopSensor();
    }
}

ErrCode SleepDataCollecter::StartSensor() {
    STANDBYSERVICE_LOGI("StartSensor");
    for (const auto& [id, user] : sensorUserMap_) {
        if (SubscribeSensor(id, &user) != ERR_OK) {
            STANDBYSERVICE_LOGE("subscribe sensor failed for sensor ID %{public}d", id);
            return ERR_SENSOR;
        }
        STANDBYSERVICE_LOGI("subscribe sensor succeed for sensor ID %{public}d", id);
        SetBatch(id, &user, SENSOR_SAMPLING_RATE, SENSOR_REPORTING_RATE);
        if (ActivateSensor(id, &user) != ERR_OK) {
            STANDBYSERVICE_LOGE("activate sensor failed for sensor ID %{public}d", id);
            return ERR_SENSOR;
        }
    }
    return ERR_OK;
}

void SleepDataCollecter::StopSensor() {
    STANDBYSERVICE_LOGI("StopSensor");
    if (!isMonitoring) {
        return;
    }
    for (const auto& [id, user] : sensorUserMap_) {
        if (DeactivateSensor(id, &user) != ERR_OK) {
            STANDBYSERVICE_LOGE("deactivate sensor failed for sensor ID %{public}d", id);
        }
        if (UnsubscribeSensor(id, &user) != ERR_OK) {
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
        StandbyMessage(StandbyMessageType::SLEEP_COLLECT_FINISHED, {}, std::move(want)));
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
    const Msdp::MovementData still =
        Msdp::MovementClient::GetInstance().GetMovementData(Msdp::MovementType::TYPE_STILL);
    switch (still.value) {
        case Msdp::MovementValue::VALUE_ENTER: {
            const int64_t stillNs = SaturatingSub(TimeProviderExt::GetBootTimeNs(), still.timestamp);
            userStationaryDuration = static_cast<int32_t>(stillNs / kNsPerSecond);
            break;
        }
        case Msdp::MovementValue::VALUE_EXIT:
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
    if (helper->Query(uri, g_alarmKey, value) != ERR_OK) {
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
    handler_->PostTask([collecter = shared_from_this()] { collecter->DayCollection(); }, g_dayLoopTask,
                       g_dayLoopPeriodMs);
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
    UpdateProximityError();
    CountDaySamples(record);
}

/// Eight errors at the least, and then a clear majority either way; between the ratios the judgement stays.
void SleepDataCollecter::UpdateProximityError() {
    constexpr float kUndecided = -1.0F;
    float state = kUndecided;
    if (const size_t errors = proximityErrorTimes.size(); errors >= kLeastErrors) {
        const float ratio = static_cast<float>(errors) / static_cast<float>(errors + proximityNormalTimes.size());
        if (ratio >= kErrorRatio) {
            state = 1.0F;
        } else if (ratio < kTrustRatio) {
            state = 0.0F;
        }
    }
    STANDBYSERVICE_LOGI("calculation proximity error state is %{public}f", state);
    if (state == kUndecided || (state == 1.0F) == isProximityError) {
        return;
    }
    isProximityError = state == 1.0F;
    SleepSharedPref::UpdateBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, isProximityError);
    STANDBYSERVICE_LOGI("update proximity error state to %{public}d", isProximityError);
}

void SleepDataCollecter::CountDaySamples(SleepDataRecord& record) const {
    record.mProximityErrorCount = static_cast<int32_t>(proximityErrorTimes.size());
    record.mProximityTotalCount = static_cast<int32_t>(proximityErrorTimes.size() + proximityNormalTimes.size());
}

}  // namespace TARN::DevStandbyMgr
