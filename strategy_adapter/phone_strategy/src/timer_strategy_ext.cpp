#include "timer_strategy_ext.h"

#include <algorithm>

#include "common_event_support.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_config_manager.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

namespace {

using EventFwk::CommonEventSupport;
using MiscServices::TimeServiceClient;

constexpr char kConfigName[] = "TIMER_ADJUST";
constexpr uint32_t kAwakeIntervalSeconds = 300;
constexpr uint32_t kAsleepIntervalSeconds = 600;
constexpr uint32_t kTimerResource = 4;

}  // namespace

ErrCode TimerStrategyExt::OnCreated() {
    STANDBYSERVICE_LOGI("Timer Strategy Ext Created");
    InitConfigList();
    return PhoneStatus::OK;
}

void TimerStrategyExt::InitConfigList() {
    const auto config = StandbyConfigManager::GetInstance();
    const auto tagList = config != nullptr ? config->GetResCtrlConfig(kConfigName) : nullptr;
    if (tagList == nullptr) {
        STANDBYSERVICE_LOGE("tagList is null");
        return;
    }
    const auto enabled = std::find_if(tagList->begin(), tagList->end(), [](const auto& item) { return item.allow; });
    if (enabled != tagList->end()) {
        const std::lock_guard lock(exemptionMutex_);
        exemptionList_.insert(enabled->names.begin(), enabled->names.end());
    }
}

ErrCode TimerStrategyExt::OnDestroy() {
    const std::lock_guard lock(exemptionMutex_);
    exemptionList_.clear();
    return PhoneStatus::OK;
}

void TimerStrategyExt::HandleEvent(const StandbyMessage& message) {
    switch (message.eventId) {
        case StandbyMessageType::NAT_INTERVAL_CHANGED:
            HandleNatIntervalChanged(message);
            break;
        case StandbyMessageType::RESOURCE_APPLY:
            HandleResourceApply(message);
            break;
        case StandbyMessageType::COMMON_EVENT:
            HandleCommonEvent(message);
            break;
        default:
            break;
    }
}

void TimerStrategyExt::HandleCommonEvent(const StandbyMessage& message) {
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
        SetAdjustTimer(false, 0);
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        SetAdjustTimer(true, isSleep_ ? kAsleepIntervalSeconds : kAwakeIntervalSeconds);
    } else if (message.action == COMMON_EVENT_USER_SLEEP_STATE_CHANGED) {
        HandleUserSleepStateChanged(message);
    } else if (message.action == COMMON_EVENT_TIMER_SA_ABILITY) {
        static_cast<void>(TimeServiceClient::GetInstance()->SetTimerExemption(exemptionList_, true));
    } else if (message.action == CommonEventSupport::COMMON_EVENT_CHARGING) {
        isCharging_ = true;
        SetAdjustTimer(false, 0);
    } else if (message.action == CommonEventSupport::COMMON_EVENT_DISCHARGING) {
        isCharging_ = false;
        if (!isScreenOn_) {
            SetAdjustTimer(true, kAwakeIntervalSeconds);  // also while the user sleeps, on purpose
        }
    }
}

void TimerStrategyExt::HandleUserSleepStateChanged(const StandbyMessage& message) {
    isSleep_ = ParamsOf(message).GetBoolParam("isSleep", false);
    if (isSleep_) {
        SetAdjustTimer(true, kAsleepIntervalSeconds);
    } else if (!isScreenOn_) {
        SetAdjustTimer(true, kAwakeIntervalSeconds);
    }
}

void TimerStrategyExt::HandleResourceApply(const StandbyMessage& message) {
    const AAFwk::Want& want = ParamsOf(message);
    const std::string bundleName = want.GetStringParam(BG_TASK_BUNDLE_NAME);
    const bool status = want.GetBoolParam(BG_TASK_RESOURCE_STATUS, false);
    const auto type = static_cast<uint32_t>(want.GetIntParam(BG_TASK_TYPE, 0));
    if ((type & kTimerResource) != 0 && exemptionList_.count(bundleName) == 0) {
        static_cast<void>(TimeServiceClient::GetInstance()->SetTimerExemption({bundleName}, status));
    }
}

void TimerStrategyExt::HandleNatIntervalChanged(const StandbyMessage& message) {
    const bool enable = ParamsOf(message).GetBoolParam(MESSAGE_ENABLE, false);
    const int32_t interval = ParamsOf(message).GetIntParam(MESSAGE_INTERVAL, 0);
    STANDBYSERVICE_LOGI("nat detect enable: %{public}d, interval: %{public}d", enable, interval);
    natDetectEnable_ = enable;
    natDetectInterval_ = interval;
    SetAdjustTimer(true, isSleep_ ? kAsleepIntervalSeconds : kAwakeIntervalSeconds);
}

void TimerStrategyExt::SetAdjustTimer(bool isAdjust, uint32_t interval) {
    if (isAdjust && (isCharging_ || isScreenOn_)) {
        STANDBYSERVICE_LOGI("is charging or screen on, do not exec unified");
        return;
    }
    // the keep-alive's interval counts also when batching is switched off
    const uint32_t intervalSent =
        natDetectEnable_ && natDetectInterval_ != 0 ? static_cast<uint32_t>(natDetectInterval_) : interval;
    STANDBYSERVICE_LOGI("unified timer state: %{public}d, interval: %{public}d", isAdjust, intervalSent);
    static_cast<void>(TimeServiceClient::GetInstance()->AdjustTimer(isAdjust, intervalSent));
}

void TimerStrategyExt::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {
    STANDBYSERVICE_LOGD("Timer Strategy Ext Dump");
}

}  // namespace TARN::DevStandbyMgr
