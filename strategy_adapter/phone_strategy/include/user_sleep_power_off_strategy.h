#ifndef PHONE_STRATEGY_USER_SLEEP_POWER_OFF_STRATEGY_H
#define PHONE_STRATEGY_USER_SLEEP_POWER_OFF_STRATEGY_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "event_handler.h"
#include "phone_standby_status.h"
#include "power_off_strategy.h"
#include "power_save_network_strategy.h"

namespace TARN::DevStandbyMgr {

/// Follows the user's sleep instead of the standby states: asleep, Bluetooth goes off and the power-save
/// firewall on; awake, both come back. It restores nothing when it is created or destroyed.
///
/// Listens to: STATE_TRANSIT, PHASE_TRANSIT, USER_SLEEP_STATE_CHANGED; every message goes on to the network
/// strategy that it owns. Commands: Bluetooth, that firewall, a timer that re-applies the device-idle policy.
class UserSleepPowerOffStrategy : public PowerOffStrategy {
public:
    UserSleepPowerOffStrategy();
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    ~UserSleepPowerOffStrategy() override = default;

    /// As the base's, for Bluetooth only; the stop ends the power-off state before it switches on.
    [[nodiscard]] ErrCode StartPowerOffStatus();
    [[nodiscard]] ErrCode StopPowerOffStatus();

private:
    void OnStateChanged(const StandbyMessage& message);
    void OnPhaseChanged(const StandbyMessage& message);
    void OnUserSleepStateChanged(const StandbyMessage& message);
    void RecoverNetLimitTask();

    uint64_t recoverNetLimitTimerId_ = 0;
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    std::shared_ptr<PowerSaveNetStrategy> netStrategy_;
    int32_t recoverNetlimitTime_;  ///< milliseconds from a state change to the policy's renewal
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_USER_SLEEP_POWER_OFF_STRATEGY_H
