#include "sleep_detection_strategy.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common_event_manager.h"
#include "common_event_support.h"
#include "parameters.h"
#include "phone_dump_words.h"
#include "phone_sleep_data_collecter.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "saturating.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using EventFwk::CommonEventSupport;

const std::string g_loopTask = "user_sleep_detection_loop_task";
const std::string g_permission = "tarn.permission.MANAGER_USER_SLEEP_STATUS";
const std::string g_dumpTestOption = "-ST";
const bool g_isDebugOn = system::GetBoolParameter("persist.sys.standby_ext_debug_on", false);
const int64_t g_collectIntervalMs = g_isDebugOn ? 15'000 : 600'000;
const int64_t g_loopPeriodMs = g_isDebugOn ? 4'000 : 10'000;

constexpr int32_t kPadMode = 1;
constexpr int32_t kDayCheckMode = 2;
constexpr int32_t kWatchMode = 3;

constexpr int32_t kAudioTask = 2;
constexpr int32_t kLocationTask = 4;
constexpr int32_t kCallTask = 8;

constexpr float kNightBeginHour = 21.0F;
constexpr float kNightEndHour = 8.0F;
constexpr float kNoon = 12.0F;
constexpr float kEnhanceEndHour = 6.0F;
constexpr int32_t kEnhanceLeastSeconds = 1800;
constexpr int64_t kEnhanceLifeMs = 259'200'000;  // three days
constexpr int64_t kWakeupNearMs = 900'000;

constexpr int32_t kBaselineAsleep = 1;
constexpr int32_t kBaselineOverruled = -2;
constexpr int64_t kNoWakeup = -1;

/// A collected record as SLEEP_COLLECT_FINISHED carries it.
SleepDataRecord RecordOf(const AAFwk::Want& want) {
    SleepDataRecord record;
    record.mUserStationaryDuration = want.GetIntParam("mUserStationaryDuration", -1);
    record.mLightDarkDuration = want.GetIntParam("mLightDarkDuration", -1);
    record.mScrOffDuration = want.GetIntParam("mScrOffDuration", -1);
    record.mScrOnCount = want.GetIntParam("mScrOnCount", -1);
    record.mLight = want.GetFloatParam("mLight", -1.0F);
    record.mProximity = want.GetFloatParam("mProximity", -1.0F);
    record.mUnlockTimestamp = want.GetLongParam("mUnlockTimestamp", -1);
    record.mTimestamp = want.GetLongParam("mTimestamp", -1);
    record.mNextAlarmClockTriggerTime = want.GetLongParam("mNextAlarmClockTriggerTime", -1);
    return record;
}

}  // namespace

SleepDetectionStrategy::SleepDetectionStrategy() : handler_(StandbyServiceImpl::GetInstance()->GetHandler()) {}

void SleepDetectionStrategy::HandleEvent(const StandbyMessage& message) {
    switch (message.eventId) {
        case StandbyMessageType::COMMON_EVENT:
            HandleCommonEvent(message);
            break;
        case StandbyMessageType::SLEEP_COLLECT_FINISHED:
            HandleEventFinishCollect(message);
            break;
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
            HandleBgTaskStatusChange(message);
            break;
        default:
            break;
    }
}

ErrCode SleepDetectionStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("SleepDetectionStrategy is OnCreated now");
    switch (STANDBT_MODE) {
        case kPadMode:
            sleepDataCollecter_ = std::make_shared<PadSleepDataCollecter>();
            break;
        case kWatchMode:
            sleepDataCollecter_ = std::make_shared<WatchSleepDataCollecter>();
            break;
        default:
            sleepDataCollecter_ = std::make_shared<PhoneSleepDataCollecter>();
            break;
    }
    constexpr int64_t kNoClockTime = -1;
    userSleepPredict_ = std::make_shared<UserSleepPredict>(kNoClockTime);
    return PhoneStatus::OK;
}

ErrCode SleepDetectionStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("SleepDetectionStrategy is OnDestroy now");
    return PhoneStatus::OK;
}

void SleepDetectionStrategy::HandleCommonEvent(const StandbyMessage& message) {
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
        HandleScrOnAction();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        sleepDataCollecter_->SetScrOffStartTimestamp(TimeProviderExt::GetCurMsecTimestamp());
        Predict();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED) {
        sleepDataCollecter_->SetUnlockTimestamp(TimeProviderExt::GetCurMsecTimestamp());
        DistrustBaseline();
    }
}

void SleepDetectionStrategy::HandleScrOnAction() {
    if (std::exchange(isUserSleep_, false)) {
        STANDBYSERVICE_LOGI("exit slp");
        SendUserSleepAICommonEvent(false, kNoWakeup);
    }
    handler_->RemoveTask(g_loopTask);
    sleepDataCollecter_->SetScrOnCount(sleepDataCollecter_->GetScrOnCount() + 1);
    sleepDataCollecter_->SetScrOffStartTimestamp(0);
    if (STANDBT_MODE != kWatchMode && isCalling_) {  // the call, not the unlock, is what counts here
        DistrustBaseline();
    }
}

/// The baseline said asleep, the enhanced model did not, and the user is up: the enhanced model is the better.
void SleepDetectionStrategy::DistrustBaseline() {
    if (isBaselineSleep_ && !isEnhanceSleep_) {
        enhanceModelBetterTime_ = TimeProviderExt::GetCurMsecTimestamp();
        IsEnhanceModelBetter = true;
    }
}

void SleepDetectionStrategy::Predict() {
    if (IsMeetDataCollectCondition()) {
        lastCollectTime_ = TimeProviderExt::GetCurMsecTimestamp();
        sleepDataCollecter_->CollectSleepData(false);
    }
    handler_->RemoveTask(g_loopTask);
    static_cast<void>(
        handler_->PostTask([strategy = shared_from_this()] { strategy->Predict(); }, g_loopTask, g_loopPeriodMs));
    if (STANDBT_MODE == kDayCheckMode) {
        sleepDataCollecter_->DayCollection();
    }
}

bool SleepDetectionStrategy::IsMeetDataCollectCondition() {
    if (InSleepTestMode) {
        return false;
    }
    const int64_t nowMs = TimeProviderExt::GetCurMsecTimestamp();
    if (nowMs < lastCollectTime_ + g_collectIntervalMs) {
        return false;
    }
    if (g_isDebugOn) {
        return true;
    }
    const float hour = dayHour_.At(nowMs);
    if (hour >= kNightBeginHour || hour < kNightEndHour) {
        return true;
    }
    if (hour < kNoon && isSleep_) {
        STANDBYSERVICE_LOGI("cur time is keep predict");
        return true;
    }
    baselineResult_ = 0;
    wakeupTime_ = kNoWakeup;
    isBaselineSleep_ = false;
    isEnhanceSleep_ = false;
    return false;
}

void SleepDetectionStrategy::HandleEventFinishCollect(const StandbyMessage& message) {
    curSleepData_ = RecordOf(ParamsOf(message));
    STANDBYSERVICE_LOGI(
        "collected data: user stationary duration:(%{public}d); light dark duration(%{public}d); screen off "
        "duration(%{public}d); baseline result(%{public}d); screen on count(%{public}d); light(%{public}f); "
        "proximity(%{public}f); unlock time(%{public}ld); collect time(%{public}ld); next alarm clock "
        "time(%{public}ld)",
        curSleepData_.mUserStationaryDuration, curSleepData_.mLightDarkDuration, curSleepData_.mScrOffDuration,
        curSleepData_.mBaselineResult, curSleepData_.mScrOnCount, curSleepData_.mLight, curSleepData_.mProximity,
        curSleepData_.mUnlockTimestamp, curSleepData_.mTimestamp, curSleepData_.mNextAlarmClockTriggerTime);
    baselineResult_ = userSleepPredict_->SleepBaselinePredict(lastSleepData_, curSleepData_);
    wakeupTime_ = userSleepPredict_->WakeupPredict(curSleepData_);
    STANDBYSERVICE_LOGI("predict baseline result: %{public}d, wakeup time: %{public}ld", baselineResult_, wakeupTime_);
    const bool isWakeupNear = TimeProviderExt::GetCurMsecTimestamp() >= SaturatingSub(wakeupTime_, kWakeupNearMs);
    JudgeModels(isWakeupNear);
    if (isWakeupNear) {
        STANDBYSERVICE_LOGI("standby stopped because the time is near or later than alarm.");
    }
    if (IsEnhanceModelBetter && SaturatingSub(curSleepData_.mTimestamp, enhanceModelBetterTime_) > kEnhanceLifeMs) {
        IsEnhanceModelBetter = false;
        STANDBYSERVICE_LOGI("update IsEnhanceModelBetter to %{public}d", IsEnhanceModelBetter);
    }
    CombineModels();
    if (isSleep_) {
        userSleepPredict_->UpdateLastClockTime(curSleepData_.mNextAlarmClockTriggerTime);
    }
    if (!IsOnActiveUsing()) {
        UpdateUserSleepState(isSleep_, wakeupTime_);
    } else if (std::exchange(isUserSleep_, false)) {
        STANDBYSERVICE_LOGI("exit slp");
        SendUserSleepAICommonEvent(false, kNoWakeup);
    }
    lastSleepData_ = curSleepData_;
}

void SleepDetectionStrategy::JudgeModels(bool isWakeupNear) {
    isBaselineSleep_ = !isWakeupNear && baselineResult_ == kBaselineAsleep;
    isEnhanceSleep_ =
        isBaselineSleep_ &&
        std::max(curSleepData_.mUserStationaryDuration, curSleepData_.mScrOffDuration) >= kEnhanceLeastSeconds &&
        TimeProviderExt::TimestampToDayHour(curSleepData_.mTimestamp) < kEnhanceEndHour;
}

void SleepDetectionStrategy::CombineModels() {
    isSleep_ = IsEnhanceModelBetter ? isEnhanceSleep_ : isBaselineSleep_;
    if (IsEnhanceModelBetter && isBaselineSleep_ && !isEnhanceSleep_) {
        baselineResult_ = kBaselineOverruled;
    }
    curSleepData_.mBaselineResult = baselineResult_;
}

bool SleepDetectionStrategy::IsOnActiveUsing() const {
    if (isAudioRunning_) {
        STANDBYSERVICE_LOGI("playing or recording audio now");
        return true;
    }
    if (isCalling_) {
        STANDBYSERVICE_LOGI("calling now");
        return true;
    }
    if (isSporting_) {
        STANDBYSERVICE_LOGI("sporting now");
        return true;
    }
    return false;
}

void SleepDetectionStrategy::UpdateUserSleepState(bool isSleep, int64_t wakeupTime) {
    if (isSleep == isUserSleep_) {
        return;
    }
    isUserSleep_ = isSleep;
    if (!isSleep) {
        STANDBYSERVICE_LOGI("exit slp");
        SendUserSleepAICommonEvent(false, wakeupTime);
    } else if (!isScreenOn_) {  // no announcement with the screen lit, though the state is kept
        STANDBYSERVICE_LOGI("into slp");
        SendUserSleepAICommonEvent(true, wakeupTime);
    }
}

void SleepDetectionStrategy::SendUserSleepAICommonEvent(bool isSleep, int64_t wakeupTime) {
    AAFwk::Want want;
    want.SetAction(COMMON_EVENT_USER_SLEEP_STATE_CHANGED);
    want.SetParam("isSleep", isSleep);
    want.SetParam("wakeupTime", wakeupTime);
    EventFwk::CommonEventPublishInfo publishInfo;
    publishInfo.SetSubscriberPermissions({g_permission});
    if (!EventFwk::CommonEventManager::PublishCommonEvent(EventFwk::CommonEventData(want), publishInfo)) {
        STANDBYSERVICE_LOGW("PublishCommonEvent for user slp state changed fail");
        return;
    }
    StandbyServiceImpl::GetInstance()->DispatchEvent(
        MakeMessage(StandbyMessageType::COMMON_EVENT, COMMON_EVENT_USER_SLEEP_STATE_CHANGED, want));
    STANDBYSERVICE_LOGI("PublishCommonEvent for user slp state changed success, isSleep: %{public}d, %{public}ld",
                        isSleep, wakeupTime);
}

void SleepDetectionStrategy::HandleBgTaskStatusChange(const StandbyMessage& message) {
    const int32_t typeId = ParamsOf(message).GetIntParam("typeId", -1);
    const bool started = ParamsOf(message).GetBoolParam("started", false);
    STANDBYSERVICE_LOGI("Background task status change, typeId: %{public}d, started: %{public}d", typeId, started);
    switch (typeId) {
        case kCallTask:
            isCalling_ = started;
            break;
        case kLocationTask:
            isSporting_ = started;
            break;
        case kAudioTask:
            isAudioRunning_ = started;
            break;
        default:
            break;
    }
}

void SleepDetectionStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    STANDBYSERVICE_LOGI("SleepDetectionStrategy ShellDump");
    if (AsksForDetails(args)) {
        DumpShowDetailInfo(result);
    } else if (IsWordAt(args, DUMP_FIRST_PARAM, DUMP_SIMULATE_SENSOR) &&
               IsWordAt(args, DUMP_SECOND_PARAM, DUMP_STRATGY_DETAIL) &&
               IsWordAt(args, DUMP_THIRD_PARAM, g_dumpTestOption)) {
        DumpSleepTest(args, result);
    }
}

void SleepDetectionStrategy::DumpShowDetailInfo(std::string& result) {
    result += "\n\n=================SleepDetectionStrategy=========================\n";
    result += "DEBUG_ON: " + std::to_string(static_cast<int>(g_isDebugOn)) + " \n";
}

void SleepDetectionStrategy::DumpSleepTest(const std::vector<std::string>& args, std::string& result) {
    result += "\n\n=================SleepTest=========================\n";
    const auto isTest = [&args](std::string_view option, std::string_view value) {
        return IsWordAt(args, DUMP_FOURTH_PARAM, option) && IsWordAt(args, DUMP_FIFTH_PARAM, value);
    };
    if (isTest("--CollectSleepData", "predict")) {
        sleepDataCollecter_->CollectSleepData(false);
        result += "collect sleep data to predict\n";
    } else if (isTest("--SendMessage", "start")) {
        SendUserSleepAICommonEvent(true, kNoWakeup);
        result += "send start slp message\n";
    } else if (isTest("--SendMessage", "stop")) {
        SendUserSleepAICommonEvent(false, kNoWakeup);
        result += "send stop slp message\n";
    } else if (isTest("--SetMode", "1")) {
        InSleepTestMode = true;
        result += "Set InSleepTestMode true\n";
    } else if (isTest("--SetMode", "0")) {
        InSleepTestMode = false;
        result += "Set InSleepTestMode false\n";
    }
}

}  // namespace TARN::DevStandbyMgr
