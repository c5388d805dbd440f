#ifndef STANDBY_SERVICE_CONDITION_WATCH_H
#define STANDBY_SERVICE_CONDITION_WATCH_H

#include <cstdint>
#include <memory>

#include "event_handler.h"
#include "owned_tasks.h"
#include "standby_config.h"

namespace TARN::DevStandbyMgr {

/// The condition of a wall clock time by the local clock: day or night.
[[nodiscard]] uint32_t ConditionAt(const StandbyPolicy& policy, int64_t wallMs);

/// Knows the resource-control condition: day or night by the local clock in automatic mode, where each
/// change, be it that the clock was set, dispatches RES_CTRL_CONDITION_CHANGED; the value that was set last in scripted
/// mode.
class ConditionWatch {
public:
    ConditionWatch(const StandbyConfig& config, std::shared_ptr<AppExecFwk::EventHandler> handler);

    /// Starts watching the clock; does nothing in scripted mode.
    void Start();
    void Stop();

    /// Somebody set the wall clock or the time zone: looks anew.
    void OnClockChanged();

    /// The condition `offsetMs` from now.
    [[nodiscard]] uint32_t At(int64_t offsetMs) const;

    /// Sets the scripted condition.
    void Set(uint32_t condition) noexcept { scripted_ = condition; }

private:
    void Look();
    void WaitForChange();

    StandbyPolicy policy_;
    bool isAutomatic_;
    bool isWatching_ = false;
    uint32_t scripted_;
    uint32_t reported_ = 0;
    OwnedTasks tasks_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_CONDITION_WATCH_H
