#ifndef STANDBY_SERVICE_STATE_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_STATE_MANAGER_ADAPTER_H

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "istate_manager_adapter.h"
#include "owned_tasks.h"
#include "standby_constants.h"

namespace TARN::DevStandbyMgr {

/// The service's own state manager: WORKING, DARK, NAP, SLEEP with its phases, MAINTENANCE.
///
/// In automatic mode the screen going off leads to DARK and from there, step by step, deeper; the lengths
/// of the steps are those of StandbyPolicy, the conditions those of the constraint manager. Screen on and a
/// plugged charger lead to WORKING at once. A phone that lies plugged in with its screen off is looked at again and
/// again, should nobody tell that it was unplugged. A service that starts with the screen off starts towards DARK.
/// SLEEP is interrupted by MAINTENANCE and resumes in the phase it had reached. Each change dispatches one
/// STATE_TRANSIT, each phase one PHASE_TRANSIT. In scripted mode it stays where it is.
///
/// Why it went to a state, or looked at the phone and stayed, it tells as a StateReason.
///
/// Lengths are delays of the handler's tasks and so run on the boot clock; the wall clock decides nothing here. While a
/// state is blocked no time counts; what would have woken the phone meanwhile takes effect when it is unblocked.
///
/// In automatic mode it can be moved by hand, with dump words: `step` goes on as if the time of the present state or
/// phase were over, `force-idle light` or `force-idle deep` goes to SLEEP, to its first or last phase, whatever would
/// hold it back, and blocks it there, `unforce` unblocks. Each answers with one line, the state in which that ended.
class StateManagerAdapter : public IStateManagerAdapter {
public:
    bool Init() override;
    bool UnInit() override;
    void HandleEvent(const StandbyMessage& message) override;
    void StartEvalCurrentState() override;
    void EndEvalCurrentState(bool evalResult) override;
    void TakeFound(std::vector<ConditionFound> found) override { found_ = std::move(found); }
    uint32_t TransitToState(uint32_t nextState) override;
    uint32_t TransitToStateInner(uint32_t nextState) override;
    void OnMoved() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    [[nodiscard]] uint32_t GetCurState() override { return curState_; }
    [[nodiscard]] uint32_t GetPreState() override { return preState_; }
    void BlockCurrentState() override;
    void UnblockCurrentState() override;
    void OnScreenOffHalfHour(bool scrOffHalfHour, bool repeated) override;
    void StopEvalution() override;
    [[nodiscard]] int64_t GetScreenOffTimeStamp() override { return screenOffTimeStamp_; }
    [[nodiscard]] bool IsScrOffHalfHourCtrl() override { return scrOffHalfHourCtrl_; }

private:
    /// While it lives, what is done is done for one cause.
    class Because {
    public:
        Because(StateManagerAdapter& manager, StateCause cause);
        ~Because();
        Because(const Because&) = delete;
        Because& operator=(const Because&) = delete;

    private:
        StateManagerAdapter& manager_;
    };

    void OnScreenOn();
    void OnScreenOff();
    void LookAtScreen();
    void LookAtPlug();
    void Wake(uint32_t state);
    void ScheduleStep();
    void OnStepOver();
    void TakeStep();
    [[nodiscard]] std::optional<int64_t> StepDelayMs() const;
    void SchedulePhase();
    void RemoveSteps();
    void OnPhaseOver();
    void EnterPhase(int32_t phase);
    bool MoveByHand(const std::vector<std::string>& args);
    void StepByHand();
    void ForceSleep(int32_t phase);
    void TellReason(uint32_t from, uint32_t target);
    void TellStay(uint32_t target) { TellReason(curState_, target); }

    std::unique_ptr<OwnedTasks> tasks_;
    uint32_t curState_ = StandbyState::WORKING;
    uint32_t preState_ = StandbyState::WORKING;
    int32_t curPhase_ = StandbyPhase::LIGHT;
    bool isAutomatic_ = false;
    bool isBlocked_ = false;
    std::optional<uint32_t> missed_;  ///< the least deep state that was asked for while blocked
    bool isScreenOn_ = true;
    bool isScreenKnown_ = true;  ///< false: the power manager did not tell when this began
    bool scrOffHalfHourCtrl_ = false;
    int64_t screenOffTimeStamp_ = 0;
    int64_t stateSinceMs_ = 0;     ///< wall clock, for people
    int64_t phaseSinceMs_ = 0;     ///< the same
    size_t maintenanceCount_ = 0;  ///< interruptions of this stretch of SLEEP so far
    StateCause cause_ = StateCause::ASKED;
    std::vector<ConditionFound> found_;  ///< that is looked at for this cause
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STATE_MANAGER_ADAPTER_H
