#include "user_sleep_power_off_strategy.h"

#include <utility>

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
    const int32_t seconds = StandbyConfigManager::GetInstance()->GetStandbyParam(kRecoverTimeParam);
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
    netStrategy_->OnCreated();
    recoverNetLimitTimerId_ = TimedTask::CreateTimer(false, 0, true, false, [self = weak_from_this()] {
        const auto strategy = std::static_pointer_cast<UserSleepPowerOffStrategy>(self.lock());
        if (strategy != nullptr && userSleepState) {
            strategy->RecoverNetLimitTask();
        }
    });
    if (recoverNetLimitTimerId_ == 0) {
        STANDBYSERVICE_LOGE("timer of recover netlimit is nullptr");
    }
    return ERR_OK;
}

ErrCode UserSleepPowerOffStrategy::OnDestroy() {
    netStrategy_->OnDestroy();
    if (recoverNetLimitTimerId_ != 0) {
        TimeServiceClient::GetInstance()->StopTimer(recoverNetLimitTimerId_);
        TimeServiceClient::GetInstance()->DestroyTimer(recoverNetLimitTimerId_);
        recoverNetLimitTimerId_ = 0;
    }
    STANDBYSERVICE_LOGI("UserSleepPowerOffStrategy is now OnDestroy");
    return ERR_OK;
}

void UserSleepPowerOffStrategy::OnStateChanged(const StandbyMessage& message) {
    netStrategy_->SetCurrentState(message.Params().GetIntParam(CURRENT_STATE, 0));
    if (!userSleepState) {
        return;
    }
    // A state change may have relaxed the firewall; the policy is applied again a little later.
    if (recoverNetLimitTimerId_ != 0) {
        TimeServiceClient::GetInstance()->StopTimer(recoverNetLimitTimerId_);
    }
    STANDBYSERVICE_LOGD("user is sleep recover netlimit, triggerTime: %{public}d", recoverNetlimitTime_);
    const int64_t triggerMs = TimeServiceClient::GetInstance()->GetWallTimeMs() + recoverNetlimitTime_;
    // started also when there is no timer: the time service refuses id 0
    TimeServiceClient::GetInstance()->StartTimer(recoverNetLimitTimerId_, static_cast<uint64_t>(triggerMs));
}

void UserSleepPowerOffStrategy::RecoverNetLimitTask() {
    handler_->PostTask([netStrategy = netStrategy_] { netStrategy->HandleDeviceIdlePolicy(true); }, kRecoverTask, 0,
                       EventHandler::Priority::LOW);
}

void UserSleepPowerOffStrategy::OnPhaseChanged(const StandbyMessage& message) {
    const int32_t state = message.Params().GetIntParam(CURRENT_STATE, 0);
    const int32_t phase = message.Params().GetIntParam(CURRENT_PHASE, 0);
    netStrategy_->SetCurrentPhase(phase);
    netStrategy_->SetCurrentState(state);
    STANDBYSERVICE_LOGD("current_state is %{public}d ,current_phase is %{public}d", state, phase);
}

void UserSleepPowerOffStrategy::OnUserSleepStateChanged(const StandbyMessage& message) {
    const bool isSleep = message.Params().GetBoolParam("isSleep", false);
    // before the duplicate check: a repeated report tries the radio again
    if (isSleep) {
        StartPowerOffStatus();
    } else {
        StopPowerOffStatus();
    }
    if (userSleepState == isSleep) {
        STANDBYSERVICE_LOGW("cur userSleepState is %{public}d, do nothing", isSleep);
        return;
    }
    userSleepState = isSleep;
    netStrategy_->UpdatePowerSaveFirewall(isSleep);
}

ErrCode UserSleepPowerOffStrategy::StartPowerOffStatus() {
    if (GetPowerOffState()) {
        STANDBYSERVICE_LOGW("has already been power off state, do not need to stop");
        return ERR_ALREADY_IN_STATE;
    }
    if (IsAirPlaneMode()) {
        STANDBYSERVICE_LOGW("current is airplane mode, do not need process");
        return ERR_AIRPLANE_MODE;
    }
    SetPowerOffState(true);
    DisableBlueTooth();
    SavePowerOffRecord();
    return ERR_OK;
}

ErrCode UserSleepPowerOffStrategy::StopPowerOffStatus() {
    if (!GetPowerOffState()) {
        STANDBYSERVICE_LOGI("already power on, do not need to stop");
        return ERR_ALREADY_IN_STATE;
    }
    if (!LoadPowerOffRecord()) {
        STANDBYSERVICE_LOGI("failed to load allow record from file");
        return ERR_RECORD_UNAVAILABLE;
    }
    SetPowerOffState(false);
    EnableBlueTooth();
    SavePowerOffRecord();
    return ERR_OK;
}

void UserSleepPowerOffStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    result += "userSleepState: " + std::to_string(static_cast<int>(userSleepState)) + "\n";
    if (IsDumpWord(args, DUMP_FIRST_PARAM, DUMP_DETAIL_INFO) &&
        IsDumpWord(args, DUMP_SECOND_PARAM, DUMP_STRATGY_DETAIL)) {
        netStrategy_->ShellDump(args, result);
    }
}

}  // namespace TARN::DevStandbyMgr
