#ifndef PHONE_STRATEGY_SLEEP_CLEAN_STRATEGY_H
#define PHONE_STRATEGY_SLEEP_CLEAN_STRATEGY_H

#include <cstdint>
#include <memory>

#include "event_handler.h"
#include "ibase_strategy.h"
#include "phone_standby_status.h"
#include "process_cleaner.h"
#include "running_process_info.h"

namespace TARN::DevStandbyMgr {

/// Kills background processes once while the user sleeps: two minutes after the user fell asleep, and every two
/// minutes from then on, it looks whether all conditions hold; the first time they do, it kills and stops looking.
///
/// Listens to: COMMON_EVENT (screen, user sleep). Commands: the resource scheduler's kill, its check task.
class SleepCleanStrategy : public IBaseStrategy, public std::enable_shared_from_this<SleepCleanStrategy> {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;

    /// A check that is waiting is not removed; it finds no handler and ends.
    ErrCode OnDestroy() override;
    ~SleepCleanStrategy() override = default;

private:
    void InitConfigList();
    void HandleCommonEvent(const StandbyMessage& message);
    void HandleSleepStateChange();
    void StartMonitor();
    void StopMonitor();
    void PostCheck();
    void StartSleepCleanTask();
    [[nodiscard]] bool StartSleepClean();
    [[nodiscard]] bool CheckBurshCleanConditions(int64_t nowMs) const;
    [[nodiscard]] static bool IsTreatAsChinaProduct();
    [[nodiscard]] static bool IsUserSetupComplete();
    void CleanProcess();
    [[nodiscard]] bool CankillProcess(const AppExecFwk::RunningProcessInfo& process) const;
    void KillProcessByPid(int32_t pid);

    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    ProcessCleaner cleaner_;
    int64_t lastSleepCleanTime_ = 0;  ///< wall clock in milliseconds, 0 never
    bool isScreenOn_ = false;
    bool isSleep_ = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_SLEEP_CLEAN_STRATEGY_H
