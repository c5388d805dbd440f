#include "state_manager_adapter.h"

#include <algorithm>
#include <utility>

#include "battery_srv_client.h"
#include "common_event_support.h"
#include "iconstraint_manager_adapter.h"
#include "power_mgr_client.h"
#include "standby_config_manager.h"
#include "standby_service_impl.h"
#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

namespace {

using EventFwk::CommonEventSupport;

constexpr char kStepTask[] = "standby_state_step_task";
constexpr char kHalfHourTask[] = "standby_screen_off_half_hour_task";
constexpr int64_t kMsPerSecond = 1000;

int64_t NowMs() {
    return MiscServices::TimeServiceClient::GetInstance()->GetWallTimeMs();
}

const StandbyPolicy& Policy() {
    return StandbyServiceImpl::GetInstance()->GetConfigManager()->Config().policy;
}

void Dispatch(int32_t eventId, AAFwk::Want want) {
    StandbyServiceImpl::GetInstance()->DispatchEvent(StandbyMessage(eventId, {}, std::move(want)));
}

std::shared_ptr<AppExecFwk::EventHandler> Handler() {
    return StandbyServiceImpl::GetInstance()->GetHandler();
}

bool IsPlugged() {
    return PowerMgr::BatterySrvClient::GetInstance().GetPluggedType() != 0;
}

}  // namespace

bool StateManagerAdapter::Init() {
    isAutomatic_ = StandbyServiceImpl::GetInstance()->IsAutomatic();
    if (isAutomatic_ && !PowerMgr::PowerMgrClient::GetInstance().IsScreenOn()) {
        OnScreenOff();  // the service started again in the middle of the night
    }
    return true;
}

bool StateManagerAdapter::UnInit() {
    StopEvalution();
    return true;
}

void StateManagerAdapter::HandleEvent(const StandbyMessage& message) {
    if (!isAutomatic_ || message.eventId != StandbyMessageType::COMMON_EVENT) {
        return;
    }
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        OnScreenOn();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        OnScreenOff();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_CHARGING) {
        TransitToState(StandbyState::WORKING);
    } else if (message.action == CommonEventSupport::COMMON_EVENT_DISCHARGING && !isScreenOn_ &&
               curState_ == StandbyState::WORKING) {
        TransitToState(StandbyState::DARK);
    }
}

void StateManagerAdapter::OnScreenOn() {
    isScreenOn_ = true;
    screenOffTimeStamp_ = 0;
    Handler()->RemoveTask(kHalfHourTask);
    OnScreenOffHalfHour(false, false);
    TransitToState(StandbyState::WORKING);
}

void StateManagerAdapter::OnScreenOff() {
    if (std::exchange(isScreenOn_, false)) {
        screenOffTimeStamp_ = NowMs();
        Handler()->RemoveTask(kHalfHourTask);
        Handler()->PostTask([this] { OnScreenOffHalfHour(true, false); }, kHalfHourTask,
                            Policy().halfHourSeconds * kMsPerSecond);
    }
    if (curState_ == StandbyState::WORKING && !IsPlugged()) {
        TransitToState(StandbyState::DARK);
    }
}

void StateManagerAdapter::OnScreenOffHalfHour(bool scrOffHalfHour, bool repeated) {
    if (repeated) {
        return;
    }
    scrOffHalfHourCtrl_ = scrOffHalfHour;
    AAFwk::Want want;
    want.SetParam(SCR_OFF_HALF_HOUR_STATUS, scrOffHalfHour);
    Dispatch(StandbyMessageType::SCREEN_OFF_HALF_HOUR, std::move(want));
}

uint32_t StateManagerAdapter::TransitToState(uint32_t nextState) {
    if (isBlocked_ || nextState == curState_) {
        return ERR_ALREADY_IN_STATE;
    }
    return TransitToStateInner(nextState);
}

uint32_t StateManagerAdapter::TransitToStateInner(uint32_t nextState) {
    preState_ = std::exchange(curState_, nextState);
    AAFwk::Want want;
    want.SetParam(PREVIOUS_STATE, static_cast<int32_t>(preState_));
    want.SetParam(CURRENT_STATE, static_cast<int32_t>(curState_));
    Dispatch(StandbyMessageType::STATE_TRANSIT, std::move(want));
    if (curState_ == StandbyState::SLEEP) {
        const bool isResumed = preState_ == StandbyState::MAINTENANCE;
        sleepStartMs_ = NowMs();
        maintenanceCount_ = isResumed ? maintenanceCount_ + 1 : 0;
        EnterPhase(isResumed ? curPhase_ : StandbyPhase::LIGHT);
    }
    ScheduleStep();
    return ERR_OK;
}

void StateManagerAdapter::EnterPhase(int32_t phase) {
    curPhase_ = phase;
    phaseStartMs_ = NowMs();
    AAFwk::Want want;
    want.SetParam(CURRENT_STATE, static_cast<int32_t>(curState_)).SetParam(CURRENT_PHASE, curPhase_);
    Dispatch(StandbyMessageType::PHASE_TRANSIT, std::move(want));
}

int64_t StateManagerAdapter::MaintenanceAfterMs() const {
    const std::vector<int64_t>& stretches = Policy().maintenanceAfterSeconds;
    return stretches[std::min(maintenanceCount_, stretches.size() - 1)] * kMsPerSecond;
}

void StateManagerAdapter::ScheduleStep() {
    int64_t delayMs = 0;
    switch (curState_) {
        case StandbyState::DARK:
            delayMs = Policy().napAfterSeconds * kMsPerSecond;
            break;
        case StandbyState::NAP:
            delayMs = Policy().sleepAfterSeconds * kMsPerSecond;
            break;
        case StandbyState::MAINTENANCE:
            delayMs = Policy().maintenanceSeconds * kMsPerSecond;
            break;
        case StandbyState::SLEEP: {
            const int64_t maintenanceMs = sleepStartMs_ + MaintenanceAfterMs();
            const int64_t phaseMs = phaseStartMs_ + Policy().phaseEverySeconds * kMsPerSecond;
            delayMs = (curPhase_ < StandbyPhase::DEEP ? std::min(maintenanceMs, phaseMs) : maintenanceMs) - NowMs();
            break;
        }
        default:
            Handler()->RemoveTask(kStepTask);
            return;
    }
    Handler()->RemoveTask(kStepTask);
    Handler()->PostTask([this] { Step(); }, kStepTask, delayMs);
}

void StateManagerAdapter::Step() {
    if (isBlocked_) {
        return;
    }
    if (curState_ == StandbyState::MAINTENANCE) {
        TransitToState(StandbyState::SLEEP);
    } else if (curState_ == StandbyState::SLEEP) {
        StepWithinSleep();
    } else {
        StartEvalCurrentState();
    }
}

void StateManagerAdapter::StepWithinSleep() {
    if (NowMs() >= sleepStartMs_ + MaintenanceAfterMs()) {
        TransitToState(StandbyState::MAINTENANCE);
        return;
    }
    EnterPhase(curPhase_ + 1);
    ScheduleStep();
}

void StateManagerAdapter::StartEvalCurrentState() {
    const int32_t current = static_cast<int32_t>(curState_);
    const int32_t next = current == StandbyState::DARK ? StandbyState::NAP : StandbyState::SLEEP;
    StandbyServiceImpl::GetInstance()->GetConstraintManager()->StartEvalution({current, next});
}

void StateManagerAdapter::EndEvalCurrentState(bool evalResult) {
    if (!evalResult) {
        ScheduleStep();
    } else if (curState_ == StandbyState::DARK) {
        TransitToState(StandbyState::NAP);
    } else if (curState_ == StandbyState::NAP) {
        TransitToState(StandbyState::SLEEP);
    }
}

void StateManagerAdapter::StopEvalution() {
    Handler()->RemoveTask(kStepTask);
    Handler()->RemoveTask(kHalfHourTask);
}

void StateManagerAdapter::BlockCurrentState() {
    isBlocked_ = true;
    Handler()->RemoveTask(kStepTask);
}

void StateManagerAdapter::UnblockCurrentState() {
    isBlocked_ = false;
    ScheduleStep();
}

void StateManagerAdapter::ShellDump(const std::vector<std::string>& /*args*/, std::string& result) {
    result += "state: " + std::to_string(curState_) + " phase: " + std::to_string(curPhase_) +
              " previous state: " + std::to_string(preState_) + "\n";
}

}  // namespace TARN::DevStandbyMgr
