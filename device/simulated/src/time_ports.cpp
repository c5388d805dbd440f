#include "time_ports.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace TARN::Simulated {

namespace {

using Json = nlohmann::ordered_json;

Json IdOf(uint64_t timerId) {
    return {{"id", timerId}};
}

}  // namespace

bool QueueHandler::PostTask(Callback task, const std::string& name, int64_t delayMs, Priority /*priority*/) {
    core_.time.Post(core_.time.NowMs() + std::max<int64_t>(delayMs, 0), std::move(task), name, this);
    return true;
}

int64_t TimeService::GetWallTimeMs() {
    const int32_t code = core_.Fault("TimeServiceClient.GetWallTimeMs");
    return code != 0 ? code : core_.time.NowMs();
}

int64_t TimeService::GetBootTimeNs() {
    const int32_t code = core_.Fault("TimeServiceClient.GetBootTimeNs");
    return code != 0 ? code : core_.BootNsAt(core_.time.NowMs());
}

uint64_t TimeService::CreateTimer(const MiscServices::TimerOptions& options, Callback callback) {
    constexpr std::string_view kOperation = "TimedTask.CreateTimer";
    uint64_t id = 0;
    if (core_.Fault(kOperation) == 0) {
        id = ++lastId_;
        timers_[id] = {options, std::make_shared<Callback>(std::move(callback)), {}};
    }
    const auto arguments = [&options] {
        return Json{{"repeat", options.repeat},
                    {"interval", options.intervalMs},
                    {"exact", options.exact},
                    {"idle", options.idle}};
    };
    core_.Show(kOperation, arguments, id);
    return id;
}

template <class Arguments>
bool TimeService::Show(std::string_view operation, const Arguments& arguments, bool isKnown) {
    const bool result = isKnown && core_.Fault(operation) == 0;
    core_.Show(operation, arguments, result);
    return result;
}

bool TimeService::StartTimer(uint64_t timerId, uint64_t triggerTimeMs) {
    const auto timer = timers_.find(timerId);
    const auto triggerMs = static_cast<int64_t>(triggerTimeMs);
    const auto arguments = [&] { return Json{{"id", timerId}, {"trigger", triggerMs}}; };
    if (!Show("TimeServiceClient.StartTimer", arguments, timer != timers_.end())) {
        return false;
    }
    Disarm(core_, timer->second);
    Arm(timerId, timer->second, triggerMs);
    return true;
}

bool TimeService::StopTimer(uint64_t timerId) {
    const auto timer = timers_.find(timerId);
    if (!Show(
            "TimeServiceClient.StopTimer", [&] { return IdOf(timerId); }, timer != timers_.end())) {
        return false;
    }
    Disarm(core_, timer->second);
    return true;
}

bool TimeService::DestroyTimer(uint64_t timerId) {
    const auto timer = timers_.find(timerId);
    if (!Show(
            "TimeServiceClient.DestroyTimer", [&] { return IdOf(timerId); }, timer != timers_.end())) {
        return false;
    }
    Disarm(core_, timer->second);
    timers_.erase(timer);
    return true;
}

void TimeService::Arm(uint64_t timerId, Timer& timer, int64_t triggerMs) {
    timer.waiting = core_.time.Post(triggerMs, [this, timerId] { Fire(timerId); });
}

void TimeService::Disarm(PhoneCore& core, Timer& timer) {
    if (timer.waiting) {
        core.time.Cancel(*timer.waiting);
        timer.waiting.reset();
    }
}

void TimeService::Fire(uint64_t timerId) {
    Timer& timer = timers_.at(timerId);
    timer.waiting.reset();
    if (timer.options.repeat && timer.options.intervalMs > 0) {
        Arm(timerId, timer, core_.time.NowMs() + static_cast<int64_t>(timer.options.intervalMs));
    }
    const std::shared_ptr<Callback> callback = timer.callback;  // the callback may destroy its own timer
    if (*callback) {
        (*callback)();
    }
}

int32_t TimeService::AdjustTimer(bool isAdjust, uint32_t intervalSeconds) {
    const int32_t code = core_.Call("TimeServiceClient.AdjustTimer", [&] {
        return Json{{"adjust", isAdjust}, {"interval", intervalSeconds}};
    });
    if (code == 0) {
        batching_.isAdjusted = isAdjust;
        batching_.intervalSeconds = intervalSeconds;
    }
    return code;
}

int32_t TimeService::SetTimerExemption(const std::unordered_set<std::string>& names, bool isExemption) {
    std::vector<std::string> sorted(names.begin(), names.end());
    std::sort(sorted.begin(), sorted.end());
    const int32_t code = core_.Call("TimeServiceClient.SetTimerExemption", [&] {
        return Json{{"names", sorted}, {"exempt", isExemption}};
    });
    if (code == 0 && isExemption) {
        batching_.exemptedNames.insert(sorted.begin(), sorted.end());
    } else if (code == 0) {
        for (const std::string& name : sorted) {
            batching_.exemptedNames.erase(name);
        }
    }
    return code;
}

int32_t TimeService::GetTimerBatching(MiscServices::TimerBatching& batching) {
    const int32_t code = core_.Fault("TimeServiceClient.GetTimerBatching");
    if (code == 0) {
        batching = batching_;
    }
    return code;
}

void TimeService::DropAll() {
    std::map<uint64_t, Timer> dropped;
    dropped.swap(timers_);
    for (auto& [id, timer] : dropped) {
        Disarm(core_, timer);
    }
}

}  // namespace TARN::Simulated
