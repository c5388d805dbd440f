#ifndef PHONE_STRATEGY_FREEZE_STRATEGY_H
#define PHONE_STRATEGY_FREEZE_STRATEGY_H

#include <cstdint>
#include <list>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "ibase_strategy.h"
#include "native_process_info.h"
#include "system_process_info.h"

namespace TARN::DevStandbyMgr {

/// Freezes configured native processes in deep standby and thaws them when the phone leaves it.
///
/// Listens to: STATE_TRANSIT, PHASE_TRANSIT, RES_CTRL_CONDITION_CHANGED, ALLOW_LIST_CHANGED.
/// Commands: the suspend manager, always with the whole group, except for a process that loses its exemption.
class FreezeStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;

    /// Thaws nothing and forgets no doze: what is frozen stays so, by design.
    ErrCode OnDestroy() override;

    /// STATE_TRANSIT: leaving SLEEP thaws. ERR_ALREADY_IN_STATE when nothing is frozen,
    /// ERR_NOT_LEAVING_SLEEP for any other transition, else the calculation's status.
    ErrCode StopFreeze(const StandbyMessage& message);

    /// PHASE_TRANSIT: APP_RES_DEEP in SLEEP freezes. ERR_ALREADY_IN_STATE when it is done already,
    /// ERR_STATE_REQ_NOT_MET in any other phase or state, else the calculation's status.
    ErrCode StartFreeze(const StandbyMessage& message);

    /// RES_CTRL_CONDITION_CHANGED: thaws the group and freezes the one of the new condition, in any state.
    ErrCode UpdateResourceConfig(const StandbyMessage& message);

    /// ALLOW_LIST_CHANGED: freezes at once a process that loses its exemption while the group is frozen.
    /// ERR_ALLOW_TYPE_MISMATCH, ERR_SYSTEM_PROCESS_UNAVAILABLE, ERR_PROCESS_NOT_FOUND or ERR_OK.
    ErrCode UpdateAllowedList(const StandbyMessage& message);

private:
    ErrCode CalculateFreezeInfo();
    ErrCode CreateFreezeInfo();
    void SendFreezeInfo(bool isFreeze);
    static ErrCode FetchSystemProcesses(std::list<AppExecFwk::SystemProcessInfo>& processes);

    bool isDoze_ = false;
    std::set<std::string> defaultNativeProcessSet_;  ///< to be frozen under the present condition
    std::set<std::string> allowProcessNameSet_;      ///< exempted at the last calculation
    std::vector<SuspendManager::NativeProcessInfo> freezedNativeProcess_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_FREEZE_STRATEGY_H
