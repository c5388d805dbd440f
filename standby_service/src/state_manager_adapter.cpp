#include "state_manager_adapter.h"

#include <algorithm>
#include <utility>

#include "battery_srv_client.h"
#include "common_event_support.h"
#include "constraint_manager_adapter.h"
#include "dump_words.h"
#include "local_time.h"
#include "power_mgr_client.h"
#include "standby_config_manager.h"
#include "standby_names.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using EventFwk::CommonEventSupport;

const std::string g_stepTask = "standby_state_step_task";
const std::string g_phaseTask = "standby_phase_task";
const std::string g_halfHourTask = "standby_screen_off_half_hour_task";

const StandbyPolicy& Policy() {
    return StandbyServiceImpl::GetInstance()->GetConfigManager()->Config().policy;
}

void Dispatch(int32_t eventId, AAFwk::Want want) {
    StandbyServiceImpl::GetInstance()->DispatchEvent(StandbyMessage(eventId, {}, std::move(want)));
}

}  // namespace

StateManagerAdapter::Because::Because(StateManagerAdapter& manager, StateCause cause) : manager_(manager) {
    manager_.cause_ = cause;
    manager_.found_.clear();
}

StateManagerAdapter::Because::~Because() {
    manager_.cause_ = StateCause::ASKED;
    manager_.found_.clear();
}

// A service that is stopped and initialised again, be it without unloading, begins as one that starts.
bool StateManagerAdapter::Init() {
    const auto service = StandbyServiceImpl::GetInstance();
    tasks_ = std::make_unique<OwnedTasks>(service->GetHandler());
    isAutomatic_ = service->IsAutomatic();
    curState_ = preState_ = StandbyState::WORKING;
    curPhase_ = StandbyPhase::LIGHT;
    isBlocked_ = false;
    missed_.reset();
    isScreenOn_ = isScreenKnown_ = true;
    scrOffHalfHourCtrl_ = false;
    screenOffTimeStamp_ = 0;
    maintenanceCount_ = 0;
    stateSinceMs_ = phaseSinceMs_ = NowMs();
    if (isAutomatic_) {
        LookAtScreen();
    }
    return true;
}

/// A service may start again in the middle of the night. While nobody tells, the phone counts as used: nothing is lost.
void StateManagerAdapter::LookAtScreen() {
    const Because because(*this, StateCause::START);
    const std::optional<bool> isOn = PowerMgr::PowerMgrClient::GetInstance().IsScreenOn();
    isScreenKnown_ = isOn.has_value();
    if (!isScreenKnown_) {
        STANDBYSERVICE_LOGW("the power manager does not tell whether the screen is on");
        StandbyServiceImpl::GetInstance()->RefreshLater();
        found_.push_back({"screen off", false, "no answer, counts as on"});
        TellStay(StandbyState::DARK);
    } else if (!*isOn) {
        OnScreenOff();
    }
}

bool StateManagerAdapter::UnInit() {
    StopEvalution();
    isAutomatic_ = false;  // a message that is still queued moves nothing any more
    return true;
}

void StateManagerAdapter::HandleEvent(const StandbyMessage& message) {
    if (!isAutomatic_) {
        return;
    }
    if (message.eventId == StandbyMessageType::HOST_REFRESH && !isScreenKnown_) {
        LookAtScreen();
    }
    if (message.eventId != StandbyMessageType::COMMON_EVENT) {
        return;
    }
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        const Because because(*this, StateCause::SCREEN_ON);
        OnScreenOn();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        const Because because(*this, StateCause::SCREEN_OFF);
        OnScreenOff();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_CHARGING) {
        const Because because(*this, StateCause::CHARGING);
        static_cast<void>(TransitToState(StandbyState::WORKING));
    } else if (message.action == CommonEventSupport::COMMON_EVENT_DISCHARGING && !isScreenOn_ &&
               curState_ == StandbyState::WORKING) {
        const Because because(*this, StateCause::DISCHARGING);
        static_cast<void>(TransitToState(StandbyState::DARK));
    }
}

void StateManagerAdapter::OnScreenOn() {
    isScreenOn_ = isScreenKnown_ = true;
    screenOffTimeStamp_ = 0;
    tasks_->Remove(g_halfHourTask);
    OnScreenOffHalfHour(false, false);
    static_cast<void>(TransitToState(StandbyState::WORKING));
}

void StateManagerAdapter::OnScreenOff() {
    isScreenKnown_ = true;
    if (std::exchange(isScreenOn_, false)) {
        screenOffTimeStamp_ = NowMs();
        tasks_->Post([this] { OnScreenOffHalfHour(true, false); }, g_halfHourTask,
                     Policy().halfHourSeconds * kMsPerSecond);
    }
    if (curState_ == StandbyState::WORKING && !isBlocked_) {
        LookAtPlug();
    }
}

void StateManagerAdapter::LookAtPlug() {
    if (isScreenOn_) {
        return;
    }
    const int32_t plugged = PowerMgr::BatterySrvClient::GetInstance().GetPluggedType();
    found_.push_back(Unplugged(plugged));
    if (plugged != 0) {
        STANDBYSERVICE_LOGD("plugged in, type %{public}d: the phone stays WORKING", plugged);
        ScheduleStep();
        TellStay(StandbyState::DARK);
    } else {
        static_cast<void>(TransitToState(StandbyState::DARK));
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
    const bool isThere = nextState == curState_;
    if (isBlocked_) {
        missed_ = std::min(missed_.value_or(nextState), nextState);
        if (!isThere) {
            found_.push_back({"not blocked", false, "blocked"});
            TellStay(nextState);
        }
    }
    return isBlocked_ || isThere ? ERR_ALREADY_IN_STATE : TransitToStateInner(nextState);
}

uint32_t StateManagerAdapter::TransitToStateInner(uint32_t nextState) {
    preState_ = std::exchange(curState_, nextState);
    stateSinceMs_ = NowMs();
    const bool isResumed = preState_ == StandbyState::MAINTENANCE;
    if (curState_ == StandbyState::SLEEP) {
        maintenanceCount_ = isResumed ? maintenanceCount_ + 1 : 0;
    }
    TellReason(preState_, curState_);
    AAFwk::Want want;
    want.SetParam(PREVIOUS_STATE, static_cast<int32_t>(preState_));
    want.SetParam(CURRENT_STATE, static_cast<int32_t>(curState_));
    Dispatch(StandbyMessageType::STATE_TRANSIT, std::move(want));
    if (curState_ == StandbyState::SLEEP) {
        EnterPhase(isResumed ? curPhase_ : StandbyPhase::LIGHT);
    }
    ScheduleStep();
    return ERR_OK;
}

void StateManagerAdapter::EnterPhase(int32_t phase) {
    curPhase_ = phase;
    phaseSinceMs_ = NowMs();
    AAFwk::Want want;
    want.SetParam(CURRENT_STATE, static_cast<int32_t>(curState_)).SetParam(CURRENT_PHASE, curPhase_);
    Dispatch(StandbyMessageType::PHASE_TRANSIT, std::move(want));
}

void StateManagerAdapter::OnMoved() {
    if (curState_ > StandbyState::DARK) {
        const Because because(*this, StateCause::MOVED);
        static_cast<void>(TransitToState(StandbyState::DARK));
    }
}

void StateManagerAdapter::ScheduleStep() {
    if (tasks_ == nullptr) {
        return;  // not initialised yet
    }
    RemoveSteps();
    if (const std::optional<int64_t> delayMs = StepDelayMs()) {
        tasks_->Post([this] { OnStepOver(); }, g_stepTask, *delayMs);
    }
    if (curState_ == StandbyState::SLEEP) {
        SchedulePhase();  // after the maintenance: of two that are due at one time that comes first
    }
}

/// How long the phone stays as it is before it is looked at again; nothing where nobody looks.
std::optional<int64_t> StateManagerAdapter::StepDelayMs() const {
    const StandbyPolicy& policy = Policy();
    const std::vector<int64_t>& stretches = policy.maintenanceAfterSeconds;
    switch (curState_) {
        case StandbyState::WORKING:
            return isScreenOn_ ? std::nullopt : std::optional(policy.napAfterSeconds * kMsPerSecond);
        case StandbyState::DARK:
            return policy.napAfterSeconds * kMsPerSecond;
        case StandbyState::NAP:
            return policy.sleepAfterSeconds * kMsPerSecond;
        case StandbyState::MAINTENANCE:
            return policy.maintenanceSeconds * kMsPerSecond;
        case StandbyState::SLEEP:
            return stretches[std::min(maintenanceCount_, stretches.size() - 1)] * kMsPerSecond;
        default:
            return std::nullopt;
    }
}

void StateManagerAdapter::OnStepOver() {
    const Because because(*this, curState_ == StandbyState::SLEEP         ? StateCause::MAINTENANCE_DUE
                                 : curState_ == StandbyState::MAINTENANCE ? StateCause::MAINTENANCE_OVER
                                                                          : StateCause::TIME);
    TakeStep();
}

void StateManagerAdapter::TakeStep() {
    switch (curState_) {
        case StandbyState::WORKING:
            LookAtPlug();
            break;
        case StandbyState::MAINTENANCE:
            static_cast<void>(TransitToState(StandbyState::SLEEP));
            break;
        case StandbyState::SLEEP:
            static_cast<void>(TransitToState(StandbyState::MAINTENANCE));
            break;
        default:
            StartEvalCurrentState();
            break;
    }
}

void StateManagerAdapter::SchedulePhase() {
    if (curPhase_ < StandbyPhase::DEEP) {
        tasks_->Post([this] { OnPhaseOver(); }, g_phaseTask, Policy().phaseEverySeconds * kMsPerSecond);
    }
}

void StateManagerAdapter::OnPhaseOver() {
    EnterPhase(curPhase_ + 1);
    SchedulePhase();
}

void StateManagerAdapter::RemoveSteps() {
    tasks_->Remove(g_stepTask);
    tasks_->Remove(g_phaseTask);
}

void StateManagerAdapter::StartEvalCurrentState() {
    const int32_t current = static_cast<int32_t>(curState_);
    const int32_t next = current == StandbyState::DARK ? StandbyState::NAP : StandbyState::SLEEP;
    StandbyServiceImpl::GetInstance()->GetConstraintManager()->StartEvalution({current, next});
}

void StateManagerAdapter::EndEvalCurrentState(bool evalResult) {
    const uint32_t target = curState_ == StandbyState::DARK ? StandbyState::NAP : StandbyState::SLEEP;
    if (!evalResult) {
        ScheduleStep();
        TellStay(target);
    } else if (curState_ == StandbyState::DARK || curState_ == StandbyState::NAP) {
        static_cast<void>(TransitToState(target));
    }
}

void StateManagerAdapter::StopEvalution() {
    if (tasks_ != nullptr) {
        RemoveSteps();
        tasks_->Remove(g_halfHourTask);
    }
}

void StateManagerAdapter::BlockCurrentState() {
    if (tasks_ != nullptr && !std::exchange(isBlocked_, true)) {
        RemoveSteps();
    }
}

void StateManagerAdapter::UnblockCurrentState() {
    if (!std::exchange(isBlocked_, false)) {
        return;
    }
    const Because because(*this, StateCause::UNBLOCKED);
    const std::optional<uint32_t> missed = std::exchange(missed_, std::nullopt);
    if (isScreenOn_) {
        found_.push_back({"screen off", false, "on"});
    } else {
        found_.push_back(Unplugged(PowerMgr::BatterySrvClient::GetInstance().GetPluggedType()));
    }
    if (!found_.back().isMet) {
        Wake(StandbyState::WORKING);
    } else if (missed || curState_ == StandbyState::WORKING) {
        Wake(StandbyState::DARK);  // it was used or moved meanwhile, or its screen went off
    } else {
        Wake(curState_);
    }
}

void StateManagerAdapter::Wake(uint32_t state) {
    if (TransitToState(state) != ERR_OK) {
        ScheduleStep();
        TellStay(state);
    }
}

/// Whether these are words that move the state.
bool StateManagerAdapter::MoveByHand(const std::vector<std::string>& args) {
    using Words = std::vector<std::string>;
    if (args == Words{"step"}) {
        StepByHand();
    } else if (args == Words{"force-idle"} || args == Words{"force-idle", "deep"}) {
        ForceSleep(StandbyPhase::DEEP);
    } else if (args == Words{"force-idle", "light"}) {
        ForceSleep(StandbyPhase::LIGHT);
    } else if (args == Words{"unforce"}) {
        UnblockCurrentState();
    } else {
        return false;
    }
    return true;
}

void StateManagerAdapter::StepByHand() {
    if (isBlocked_) {
        return;
    }
    const Because because(*this, StateCause::ASKED);
    if (curState_ == StandbyState::SLEEP && curPhase_ < StandbyPhase::DEEP) {
        tasks_->Remove(g_phaseTask);
        OnPhaseOver();
    } else {
        TakeStep();
    }
}

void StateManagerAdapter::ForceSleep(int32_t phase) {
    isBlocked_ = true;
    if (curState_ == StandbyState::WORKING) {
        static_cast<void>(TransitToStateInner(StandbyState::DARK));
    }
    if (curState_ == StandbyState::DARK) {
        static_cast<void>(TransitToStateInner(StandbyState::NAP));
    }
    if (curState_ != StandbyState::SLEEP) {
        static_cast<void>(TransitToStateInner(StandbyState::SLEEP));
    }
    while (curPhase_ < phase) {
        EnterPhase(curPhase_ + 1);
    }
    RemoveSteps();
}

void StateManagerAdapter::TellReason(uint32_t from, uint32_t target) {
    std::vector<ConditionFound> found = std::exchange(found_, {});
    const auto service = StandbyServiceImpl::GetInstance();
    if (!service->WantsReasons()) {
        return;
    }
    int64_t nextTryMs = isScreenKnown_ ? -1 : service->NextRefreshMs();
    if (const std::optional<int64_t> delayMs = StepDelayMs(); delayMs && !isBlocked_) {
        nextTryMs = NowMs() + *delayMs;
    }
    service->TellReason(StateReason{cause_, from, curState_, target, std::move(found), nextTryMs});
}

void StateManagerAdapter::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (!isAutomatic_) {
        return;
    }
    if (MoveByHand(args)) {
        const bool hasPhase = curState_ == StandbyState::SLEEP;
        result += StateName(curState_) + (hasPhase ? ", phase " + PhaseName(curPhase_) : "") +
                  (isBlocked_ ? ", forced" : "") + "\n";
        return;
    }
    if (!IsDetailDump(args)) {
        return;
    }
    result += "state: " + StateName(curState_) + " since " + LocalTimeText(stateSinceMs_) +
              ", before: " + StateName(preState_) + (isBlocked_ ? ", blocked" : "") + "\n";
    if (curState_ == StandbyState::SLEEP || curState_ == StandbyState::MAINTENANCE) {
        result += "phase: " + PhaseName(curPhase_) + " since " + LocalTimeText(phaseSinceMs_) + "\n";
    }
    result += isScreenOn_ ? "screen: on\n"
                          : "screen: off since " + LocalTimeText(screenOffTimeStamp_) +
                                (scrOffHalfHourCtrl_ ? ", for half an hour reported" : "") + "\n";
}

}  // namespace TARN::DevStandbyMgr
