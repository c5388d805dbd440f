#ifndef DEVICE_SIMULATED_TIME_PORTS_H
#define DEVICE_SIMULATED_TIME_PORTS_H

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "event_handler.h"
#include "phone_core.h"
#include "time_service_client.h"

namespace TARN::Simulated {

/// An event handler whose tasks wait in the phone's one queue.
class QueueHandler : public AppExecFwk::EventHandler {
public:
    explicit QueueHandler(PhoneCore& core) : core_(core) {}
    bool PostTask(Callback task, const std::string& name, int64_t delayMs, Priority priority) override;
    void RemoveTask(const std::string& name) override { core_.time.CancelNamed(name, this); }
    void RemoveAllTasks() override { core_.time.CancelOwned(this); }

private:
    PhoneCore& core_;
};

/// The clocks, and timers that wait in the phone's one queue.
class TimeService : public MiscServices::TimeServiceClient {
public:
    explicit TimeService(PhoneCore& core) : core_(core) {}
    int64_t GetWallTimeMs() override;
    int64_t GetBootTimeNs() override;
    uint64_t CreateTimer(const MiscServices::TimerOptions& options, Callback callback) override;
    bool StartTimer(uint64_t timerId, uint64_t triggerTimeMs) override;
    bool StopTimer(uint64_t timerId) override;
    bool DestroyTimer(uint64_t timerId) override;
    int32_t AdjustTimer(bool isAdjust, uint32_t intervalSeconds) override;
    int32_t SetTimerExemption(const std::unordered_set<std::string>& names, bool isExemption) override;
    int32_t GetTimerBatching(MiscServices::TimerBatching& batching) override;

    /// Forgets every timer; ids go on.
    void DropAll();

private:
    struct Timer {
        MiscServices::TimerOptions options;
        std::shared_ptr<Callback> callback;
        std::optional<VirtualTime::Ticket> waiting;
    };

    void Arm(uint64_t timerId, Timer& timer, int64_t triggerMs);
    void Fire(uint64_t timerId);
    template <class Arguments>
    bool Show(std::string_view operation, const Arguments& arguments, bool isKnown);
    static void Disarm(PhoneCore& core, Timer& timer);

    PhoneCore& core_;
    uint64_t lastId_ = 0;
    std::map<uint64_t, Timer> timers_;
    MiscServices::TimerBatching batching_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_TIME_PORTS_H
