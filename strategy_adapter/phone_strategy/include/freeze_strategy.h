#ifndef PHONE_STRATEGY_FREEZE_STRATEGY_H
#define PHONE_STRATEGY_FREEZE_STRATEGY_H

#include <set>
#include <string>
#include <vector>

#include "ibase_strategy.h"
#include "native_process_info.h"
#include "phone_standby_status.h"

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

    /// STATE_TRANSIT: leaving SLEEP thaws. ALREADY_IN_STATE when nothing is frozen,
    /// NOT_LEAVING_SLEEP for any other transition, else the calculation's status.
    [[nodiscard]] ErrCode StopFreeze(const StandbyMessage& message);

    /// PHASE_TRANSIT: APP_RES_DEEP in SLEEP freezes. ALREADY_IN_STATE when it is done already,
    /// STATE_REQ_NOT_MET in any other phase or state, else the calculation's status.
    [[nodiscard]] ErrCode StartFreeze(const StandbyMessage& message);

    /// RES_CTRL_CONDITION_CHANGED: thaws the group and freezes the one of the new condition, in any state.
    [[nodiscard]] ErrCode UpdateResourceConfig(const StandbyMessage& message);

    /// ALLOW_LIST_CHANGED: freezes at once a process that loses its exemption while the group is frozen.
    /// ALLOW_TYPE_MISMATCH, SYSTEM_PROCESS_UNAVAILABLE, PROCESS_NOT_FOUND or OK.
    [[nodiscard]] ErrCode UpdateAllowedList(const StandbyMessage& message);

private:
    [[nodiscard]] ErrCode CalculateFreezeInfo();
    [[nodiscard]] ErrCode CreateFreezeInfo();
    void SendFreezeInfo(bool isFreeze);

    bool isDoze_ = false;
    std::set<std::string> defaultNativeProcessSet_;  ///< to be frozen under the present condition
    std::set<std::string> allowProcessNameSet_;      ///< exempted at the last calculation
    std::vector<SuspendManager::NativeProcessInfo> freezedNativeProcess_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_FREEZE_STRATEGY_H
