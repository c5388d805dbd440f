#ifndef PHONE_STRATEGY_POWER_SAVE_NETWORK_STRATEGY_H
#define PHONE_STRATEGY_POWER_SAVE_NETWORK_STRATEGY_H

#include <cstdint>
#include <string>
#include <vector>

#include "base_network_strategy.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// The firewall while the user sleeps. UserSleepPowerOffStrategy owns it, forwards every message to it, keeps
/// its state and phase and switches it.
class PowerSaveNetStrategy : public BaseNetworkStrategy {
public:
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

    /// Enables the firewall, or refreshes the allow-list of an enabled one. Not enabling disables it, except
    /// in the deepest phase of SLEEP, where the firewall has to stay. Always OK.
    [[nodiscard]] ErrCode UpdatePowerSaveFirewall(bool enable);

    void SetCurrentState(int32_t state) { curState_ = state; }
    void SetCurrentPhase(int32_t phase) { curPhase_ = phase; }

protected:
    void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) override;

    /// While the user sleeps only the configured exemptions count. RUNNING_PROCESSES_UNAVAILABLE.
    ErrCode InitNetLimitedAppInfo() override;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_POWER_SAVE_NETWORK_STRATEGY_H
