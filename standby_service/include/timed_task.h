#ifndef STANDBY_SERVICE_TIMED_TASK_H
#define STANDBY_SERVICE_TIMED_TASK_H

#include <cstdint>
#include <functional>

namespace TARN::DevStandbyMgr {

/// Makes time-service timers.
class TimedTask {
public:
    /// A timer that is not running yet. Returns its id, 0 when there is none to be had. `callback` runs on
    /// the thread that delivers timer callbacks.
    [[nodiscard]] static uint64_t CreateTimer(bool repeat, uint64_t intervalMs, bool isExact, bool isIdle,
                                              const std::function<void()>& callback);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_TIMED_TASK_H
