#ifndef PLATFORM_TIME_SERVICE_CLIENT_H
#define PLATFORM_TIME_SERVICE_CLIENT_H

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <unordered_set>

#include "device.h"

namespace TARN::MiscServices {

/// What a timer shall be. `intervalMs` counts for repeating timers only.
struct TimerOptions {
    bool repeat = false;
    uint64_t intervalMs = 0;
    bool exact = false;
    bool idle = false;
};

/// The batching of wake-up timers that is in force.
struct TimerBatching {
    bool isAdjusted = false;
    uint32_t intervalSeconds = 0;
    std::set<std::string> exemptedNames;
};

/// The time service: the clocks, timers that wake the phone, and their batching.
class TimeServiceClient {
public:
    using Callback = std::function<void()>;

    virtual ~TimeServiceClient() = default;

    static TimeServiceClient* GetInstance() { return &Device::Current().Time(); }

    /// Milliseconds since the epoch.
    virtual int64_t GetWallTimeMs() = 0;

    /// Nanoseconds since boot, time asleep included.
    virtual int64_t GetBootTimeNs() = 0;

    /// Makes a timer that is not running yet. Returns its id, 0 when there is none to be had. The callback
    /// runs on the thread that delivers timer callbacks.
    virtual uint64_t CreateTimer(const TimerOptions& options, Callback callback) = 0;

    /// Arms the timer for a wall-clock time in milliseconds, anew if it runs. False for an unknown id.
    virtual bool StartTimer(uint64_t timerId, uint64_t triggerTimeMs) = 0;

    /// Disarms the timer, which stays. False for an unknown id.
    virtual bool StopTimer(uint64_t timerId) = 0;

    /// Forgets the timer. False for an unknown id. Waits until a callback of it that runs is done, unless the call
    /// comes from within that callback; what the callback holds is released by then. StopTimer does not wait.
    virtual bool DestroyTimer(uint64_t timerId) = 0;

    /// Batches wake-up timers to multiples of `intervalSeconds`, or ends that. Returns 0 on success.
    virtual int32_t AdjustTimer(bool isAdjust, uint32_t intervalSeconds) = 0;

    /// Exempts the named bundles from batching, or ends that. Returns 0 on success.
    virtual int32_t SetTimerExemption(const std::unordered_set<std::string>& names, bool isExemption) = 0;

    /// Tells the batching that is in force: whether there is any, its interval in seconds, and who is exempted.
    /// Returns 0 on success; else `batching` is untouched.
    virtual int32_t GetTimerBatching(TimerBatching& batching) = 0;
};

}  // namespace TARN::MiscServices

#endif  // PLATFORM_TIME_SERVICE_CLIENT_H
