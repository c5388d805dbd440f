#ifndef PHONE_STRATEGY_POWER_SAVE_CLEAN_STRATEGY_H
#define PHONE_STRATEGY_POWER_SAVE_CLEAN_STRATEGY_H

#include <cstdint>
#include <memory>

#include "event_handler.h"
#include "ibase_strategy.h"
#include "phone_standby_status.h"
#include "process_cleaner.h"
#include "running_process_info.h"

namespace TARN::DevStandbyMgr {

/// Kills background processes in power-save mode, half a minute after the screen went off and at once when the
/// device enters mode 603. Continuous tasks and foreground applications are spared.
///
/// Listens to: COMMON_EVENT (screen, power-save mode). Commands: the resource scheduler's kill, its clean task.
class PowerSaveCleanStrategy : public IBaseStrategy, public std::enable_shared_from_this<PowerSaveCleanStrategy> {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;

    /// Keeps the handler, the list and a waiting task.
    ErrCode OnDestroy() override;
    ~PowerSaveCleanStrategy() override = default;

private:
    void InitConfigList();
    void HandleCommonEvent(const StandbyMessage& message);
    void HandleScrOffAction();
    void HandlePowerSaveModeChanged(const StandbyMessage& message);
    void OnCleanTask();
    [[nodiscard]] static bool IsCharging();
    void CleanProcess();
    [[nodiscard]] bool CankillProcess(const AppExecFwk::RunningProcessInfo& process) const;
    void KillProcessByPid(int32_t pid);

    bool isScreenOn_ = false;
    bool isPowerSaveMode_ = false;
    bool isStrictPowerSaveMode_ = false;  ///< device mode 603 at the last change of the power-save mode
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    ProcessCleaner cleaner_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_POWER_SAVE_CLEAN_STRATEGY_H
