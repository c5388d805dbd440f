#include "user_sleep_power_off_strategy.h"

#include <string>
#include <vector>

#include "phone_dump_words.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_config_manager.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "time_service_client.h"
#include "timed_task.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::EventHandler;
using MiscServices::TimeServiceClient;

constexpr char kRecoverTimeParam[] = "recover_netlimit_time";
constexpr char kRecoverTask[] = "abnormal_state_change_recover_netlimit";
constexpr int32_t kDefaultRecoverMs = 5000;

int32_t ConfiguredRecoverMs() {
    constexpr uint32_t kMsPerSecond = 1000;
    const auto config = StandbyConfigManager::GetInstance();
    const int32_t seconds = config != nullptr ? config->GetStandbyParam(kRecoverTimeParam) : 0;
    return seconds > 0 ? static_cast<int32_t>(static_cast<uint32_t>(seconds) * kMsPerSecond) : kDefaultRecoverMs;
}

}  // namespace

UserSleepPowerOffStrategy::UserSleepPowerOffStrategy()
    : handler_(StandbyServiceImpl::GetInstance()->GetHandler()),
      netStrategy_(std::make_shared<PowerSaveNetStrategy>()),
      recoverNetlimitTime_(ConfiguredRecoverMs()) {}

void UserSleepPowerOffStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter UserSleepPowerOffStrategy HandleEvent, eventId is %{public}d", message.eventId);
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            OnStateChanged(message);
            break;
        case StandbyMessageType::PHASE_TRANSIT:
            OnPhaseChanged(message);
            break;
        case StandbyMessageType::USER_SLEEP_STATE_CHANGED:
            OnUserSleepStateChanged(message);
            break;
        default:
            break;
    }
    netStrategy_->HandleEvent(message);
}

ErrCode UserSleepPowerOffStrategy::OnCreated() {
    static_cast<void>(netStrategy_->OnCreated());
    recoverNetLimitTimerId_ = TimedTask::CreateTimer(false, 0, true, false, [self = weak_from_this()] {
        const auto strategy = std::static_pointer_cast<UserSleepPowerOffStrategy>(self.lock());
        if (strategy != nullptr && userSleepState) {
            strategy->RecoverNetLimitTask();
        }
    });
    if (recoverNetLimitTimerId_ == 0) {
        STANDBYSERVICE_LOGE("timer of recover netlimit is nullptr");
    }
    return PhoneStatus::OK;
}

ErrCode UserSleepPowerOffStrategy::OnDestroy() {
    static_cast<void>(netStrategy_->OnDestroy());
    if (recoverNetLimitTimerId_ != 0) {
        static_cast<void>(TimeServiceClient::GetInstance()->StopTimer(recoverNetLimitTimerId_));
        static_cast<void>(TimeServiceClient::GetInstance()->DestroyTimer(recoverNetLimitTimerId_));
        recoverNetLimitTimerId_ = 0;
    }
    STANDBYSERVICE_LOGI("UserSleepPowerOffStrategy is now OnDestroy");
    return PhoneStatus::OK;
}

void UserSleepPowerOffStrategy::OnStateChanged(const StandbyMessage& message) {
    netStrategy_->SetCurrentState(ParamsOf(message).GetIntParam(CURRENT_STATE, 0));
    if (!userSleepState) {
        return;
    }
    // A state change may have relaxed the firewall; the policy is applied again a little later.
    if (recoverNetLimitTimerId_ != 0) {
        static_cast<void>(TimeServiceClient::GetInstance()->StopTimer(recoverNetLimitTimerId_));
    }
    STANDBYSERVICE_LOGD("user is sleep recover netlimit, triggerTime: %{public}d", recoverNetlimitTime_);
    const int64_t triggerMs = TimeServiceClient::GetInstance()->GetWallTimeMs() + recoverNetlimitTime_;
    // started also when there is no timer: the time service refuses id 0
    static_cast<void>(
        TimeServiceClient::GetInstance()->StartTimer(recoverNetLimitTimerId_, static_cast<uint64_t>(triggerMs)));
}

void UserSleepPowerOffStrategy::RecoverNetLimitTask() {
    static_cast<void>(handler_->PostTask([netStrategy = netStrategy_] { netStrategy->HandleDeviceIdlePolicy(true); },
                                         kRecoverTask, 0, static_cast<EventHandler::Priority>(PHONE_TASK_PRIORITY)));
}

void UserSleepPowerOffStrategy::OnPhaseChanged(const StandbyMessage& message) {
    const int32_t state = ParamsOf(message).GetIntParam(CURRENT_STATE, 0);
    const int32_t phase = ParamsOf(message).GetIntParam(CURRENT_PHASE, 0);
    netStrategy_->SetCurrentPhase(phase);
    netStrategy_->SetCurrentState(state);
    STANDBYSERVICE_LOGD("current_state is %{public}d ,current_phase is %{public}d", state, phase);
}

void UserSleepPowerOffStrategy::OnUserSleepStateChanged(const StandbyMessage& message) {
    const bool isSleep = ParamsOf(message).GetBoolParam("isSleep", false);
    // before the duplicate check: a repeated report tries the radio again
    if (isSleep) {
        static_cast<void>(StartPowerOffStatus());
    } else {
        static_cast<void>(StopPowerOffStatus());
    }
    if (userSleepState == isSleep) {
        STANDBYSERVICE_LOGW("cur userSleepState is %{public}d, do nothing", isSleep);
        return;
    }
    userSleepState = isSleep;
    static_cast<void>(netStrategy_->UpdatePowerSaveFirewall(isSleep));
}

ErrCode UserSleepPowerOffStrategy::StartPowerOffStatus() {
    if (GetPowerOffState()) {
        STANDBYSERVICE_LOGW("has already been power off state, do not need to stop");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    if (IsAirPlaneMode()) {
        STANDBYSERVICE_LOGW("current is airplane mode, do not need process");
        return PhoneStatus::AIRPLANE_MODE;
    }
    SetPowerOffState(true);
    static_cast<void>(DisableBlueTooth());
    static_cast<void>(SavePowerOffRecord());
    return PhoneStatus::OK;
}

ErrCode UserSleepPowerOffStrategy::StopPowerOffStatus() {
    if (!GetPowerOffState()) {
        STANDBYSERVICE_LOGI("already power on, do not need to stop");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    if (!LoadPowerOffRecord()) {
        STANDBYSERVICE_LOGI("failed to load allow record from file");
        return PhoneStatus::RECORD_UNAVAILABLE;
    }
    SetPowerOffState(false);
    static_cast<void>(EnableBlueTooth());
    static_cast<void>(SavePowerOffRecord());
    return PhoneStatus::OK;
}

void UserSleepPowerOffStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    result += "userSleepState: " + std::to_string(static_cast<int>(userSleepState)) + "\n";
    if (AsksForDetails(args)) {
        netStrategy_->ShellDump(args, result);
    }
}

}  // namespace TARN::DevStandbyMgr
