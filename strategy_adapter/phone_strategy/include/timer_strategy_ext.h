#ifndef PHONE_STRATEGY_TIMER_STRATEGY_EXT_H
#define PHONE_STRATEGY_TIMER_STRATEGY_EXT_H

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "ibase_strategy.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// Tells the time service when to batch wake-up timers, to what interval, and whom to exempt. Batching is on
/// while the screen is off and nothing charges: 300 seconds, 600 while the user sleeps, or the interval of the
/// network keep-alive when the service reports one.
///
/// Listens to: COMMON_EVENT (screen, charging, user sleep, the time service coming up), RESOURCE_APPLY,
/// NAT_INTERVAL_CHANGED. Commands: timer adjustment and exemption.
///
/// What it last saw of screen, sleep, charger and keep-alive survives OnDestroy.
class TimerStrategyExt : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;

    /// What was granted stays granted; only the configured list is forgotten.
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

private:
    void InitConfigList();
    void HandleCommonEvent(const StandbyMessage& message);
    void HandleUserSleepStateChanged(const StandbyMessage& message);
    void HandleResourceApply(const StandbyMessage& message);
    void HandleNatIntervalChanged(const StandbyMessage& message);

    /// The one place that adjusts timers; `interval` is in seconds.
    void SetAdjustTimer(bool isAdjust, uint32_t interval);

    std::unordered_set<std::string> exemptionList_;  ///< bundle names that are always exempt
    std::mutex exemptionMutex_;                      ///< guards filling and clearing the list
    bool isScreenOn_ = true;
    bool isSleep_ = false;
    bool isCharging_ = false;
    bool natDetectEnable_ = false;
    int32_t natDetectInterval_ = 0;  ///< seconds
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_TIMER_STRATEGY_EXT_H
