#include "threaded_phone.h"

#include <condition_variable>
#include <deque>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "common_event_service.h"
#include "core_service_client.h"
#include "event_handler.h"
#include "sensor_service.h"
#include "time_service_client.h"
#include "wifi_device.h"

namespace TARN::Tests {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int64_t kStartMs = 1'772'400'000'000;
constexpr int64_t kBootNs = 60'000'000'000;
constexpr int64_t kSpeed = 1000;
constexpr int64_t kNsPerMs = 1'000'000;

/// The phone's clock: milliseconds of the wall since the epoch.
int64_t NowMs() {
    static const Clock::time_point start = Clock::now();
    return kStartMs + kSpeed * std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

std::chrono::microseconds RealTime(int64_t phoneMs) {
    constexpr int64_t kUsPerMs = 1000;
    return std::chrono::microseconds(phoneMs * kUsPerMs / kSpeed);
}

/// A thread that does one piece of work after the other until it is stopped; `Next` waits for a piece.
class Worker {
public:
    virtual ~Worker() = default;

    void Stop() {
        {
            const std::lock_guard lock(mutex);
            isStopped = true;
        }
        changed.notify_all();
        if (thread_.joinable()) {
            thread_.join();
        }
    }

protected:
    using Work = AppExecFwk::EventHandler::Callback;

    void Start() {
        thread_ = std::thread([this] {
            for (;;) {
                Work work;
                {
                    std::unique_lock lock(mutex);
                    work = Next(lock);
                    if (isStopped) {
                        return;
                    }
                }
                if (work) {
                    work();
                }
                work = Work();
                {
                    const std::lock_guard lock(mutex);
                    running = nullptr;
                }
                changed.notify_all();
            }
        });
    }

    /// Takes a piece of work, marks in `running` whose callback it is; may wait on `changed`.
    virtual Work Next(std::unique_lock<std::mutex>& lock) = 0;

    /// Waits until no callback of that owner, or of anybody, runs; not for itself.
    void WaitFor(std::unique_lock<std::mutex>& lock, const void* owner) {
        if (std::this_thread::get_id() != thread_.get_id()) {
            changed.wait(lock, [this, owner] { return running == nullptr || (owner != nullptr && running != owner); });
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    const void* running = nullptr;
    bool isStopped = false;

private:
    std::thread thread_;
};

}  // namespace

class ThreadHandler : public AppExecFwk::EventHandler, private Worker {
public:
    ThreadHandler() { Start(); }
    using Worker::Stop;

    bool PostTask(Callback task, const std::string& name, int64_t delayMs, Priority /*priority*/) override {
        {
            const std::lock_guard lock(mutex);
            tasks_.emplace(Clock::now() + RealTime(delayMs), Task{std::move(task), name});
        }
        changed.notify_all();
        return true;
    }

    void RemoveTask(const std::string& name) override {
        Tasks dropped;  // destroyed outside the lock: what a task holds may post or remove
        const std::lock_guard lock(mutex);
        for (auto task = tasks_.begin(); task != tasks_.end();) {
            const auto one = task++;
            if (one->second.name == name) {
                dropped.insert(tasks_.extract(one));
            }
        }
    }

    void RemoveAllTasks() override {
        Tasks dropped;
        const std::lock_guard lock(mutex);
        dropped.swap(tasks_);
    }

private:
    struct Task {
        Callback work;
        std::string name;
    };
    using Tasks = std::multimap<Clock::time_point, Task>;  // equals stay in the order of posting

    Work Next(std::unique_lock<std::mutex>& lock) override {
        while (!isStopped && (tasks_.empty() || tasks_.begin()->first > Clock::now())) {
            if (tasks_.empty()) {
                changed.wait(lock);
            } else {
                changed.wait_until(lock, tasks_.begin()->first);
            }
        }
        return isStopped ? Work() : std::move(tasks_.extract(tasks_.begin()).mapped().work);
    }

    Tasks tasks_;
};

class ThreadedTimers : public MiscServices::TimeServiceClient, private Worker {
public:
    explicit ThreadedTimers(std::atomic<int>& callbacks) : callbacks_(callbacks) { Start(); }
    using Worker::Stop;

    int64_t GetWallTimeMs() override { return NowMs(); }
    int64_t GetBootTimeNs() override { return kBootNs + (NowMs() - kStartMs) * kNsPerMs; }

    uint64_t CreateTimer(const MiscServices::TimerOptions& /*options*/, Callback callback) override {
        const std::lock_guard lock(mutex);
        timers_[++lastId_].callback = std::make_shared<Callback>(std::move(callback));
        return lastId_;
    }

    bool StartTimer(uint64_t timerId, uint64_t triggerTimeMs) override {
        return Arm(timerId, static_cast<int64_t>(triggerTimeMs));
    }

    bool StopTimer(uint64_t timerId) override { return Arm(timerId, std::nullopt); }

    bool DestroyTimer(uint64_t timerId) override {
        Timer destroyed;
        std::unique_lock lock(mutex);
        const auto timer = timers_.find(timerId);
        if (timer == timers_.end()) {
            return false;
        }
        destroyed = timer->second;
        timers_.erase(timer);
        WaitFor(lock, destroyed.callback.get());
        return true;
    }

    int32_t AdjustTimer(bool /*isAdjust*/, uint32_t /*intervalSeconds*/) override { return 0; }
    int32_t SetTimerExemption(const std::unordered_set<std::string>& /*names*/, bool /*isExemption*/) override {
        return 0;
    }
    int32_t GetTimerBatching(MiscServices::TimerBatching& /*batching*/) override { return 1; }

    void DropAll() {
        std::map<uint64_t, Timer> dropped;
        std::unique_lock lock(mutex);
        dropped.swap(timers_);
        WaitFor(lock, nullptr);
    }

private:
    struct Timer {
        std::shared_ptr<Callback> callback;
        std::optional<int64_t> dueMs;
    };

    bool Arm(uint64_t timerId, std::optional<int64_t> dueMs) {
        {
            const std::lock_guard lock(mutex);
            const auto timer = timers_.find(timerId);
            if (timer == timers_.end()) {
                return false;
            }
            timer->second.dueMs = dueMs;
        }
        changed.notify_all();
        return true;
    }

    Work Next(std::unique_lock<std::mutex>& lock) override {
        while (!isStopped) {
            std::optional<int64_t> firstMs;
            for (auto& [id, timer] : timers_) {
                if (timer.dueMs && *timer.dueMs <= NowMs()) {
                    timer.dueMs.reset();
                    running = timer.callback.get();
                    ++callbacks_;
                    return [callback = timer.callback.get()] { (*callback)(); };  // kept until it does not run
                }
                if (timer.dueMs) {
                    firstMs = std::min(firstMs.value_or(*timer.dueMs), *timer.dueMs);
                }
            }
            if (firstMs) {
                changed.wait_for(lock, RealTime(*firstMs - NowMs()));
            } else {
                changed.wait(lock);
            }
        }
        return {};
    }

    std::atomic<int>& callbacks_;
    uint64_t lastId_ = 0;
    std::map<uint64_t, Timer> timers_;
};

class ThreadedSensors : public Sensors::SensorService, private Worker {
public:
    explicit ThreadedSensors(std::atomic<int>& readings) : readings_(readings) {
        infos_[0].sensorTypeId = SENSOR_TYPE_ID_AMBIENT_LIGHT;
        infos_[1].sensorTypeId = SENSOR_TYPE_ID_PROXIMITY;
        Start();
    }
    using Worker::Stop;

    int32_t GetAll(SensorInfo** sensorInfos, int32_t* count) override {
        *sensorInfos = infos_;
        *count = 2;
        return 0;
    }

    int32_t Subscribe(int32_t sensorTypeId, const SensorUser* user) override {
        const std::lock_guard lock(mutex);
        sensors_[sensorTypeId] = {user->callback, false};
        return 0;
    }

    int32_t SetBatch(int32_t /*sensorTypeId*/, const SensorUser* /*user*/, int64_t /*samplingIntervalNs*/,
                     int64_t /*reportIntervalNs*/) override {
        return 0;
    }

    int32_t Activate(int32_t sensorTypeId, const SensorUser* /*user*/) override {
        {
            const std::lock_guard lock(mutex);
            sensors_[sensorTypeId].isActive = true;
        }
        changed.notify_all();
        return 0;
    }

    int32_t Deactivate(int32_t sensorTypeId, const SensorUser* /*user*/) override {
        std::unique_lock lock(mutex);
        sensors_[sensorTypeId].isActive = false;
        WaitFor(lock, nullptr);
        return 0;
    }

    int32_t Unsubscribe(int32_t sensorTypeId, const SensorUser* /*user*/) override {
        std::unique_lock lock(mutex);
        sensors_.erase(sensorTypeId);
        WaitFor(lock, nullptr);
        return 0;
    }

    void DropAll() {
        std::unique_lock lock(mutex);
        sensors_.clear();
        WaitFor(lock, nullptr);
    }

private:
    struct Sensor {
        RecordSensorCallback callback = nullptr;
        bool isActive = false;
    };

    Work Next(std::unique_lock<std::mutex>& lock) override {
        while (!isStopped) {
            for (const auto& [type, sensor] : sensors_) {
                if (sensor.isActive && sensor.callback != nullptr && (++turn_ % 2 == 0 || sensors_.size() == 1)) {
                    running = this;
                    ++readings_;
                    return [callback = sensor.callback, type = type, value = static_cast<float>(turn_ % 100)] {
                        AmbientLightData data{value, 0, 0};  // its first member is where proximity has its own
                        SensorEvent event{};
                        event.sensorTypeId = type;
                        event.data = reinterpret_cast<uint8_t*>(&data);
                        event.dataLen = sizeof data;
                        callback(&event);
                        std::this_thread::sleep_for(std::chrono::microseconds(20));
                    };
                }
            }
            changed.wait_for(lock, std::chrono::milliseconds(1));
        }
        return {};
    }

    std::atomic<int>& readings_;
    uint64_t turn_ = 0;
    SensorInfo infos_[2] = {};
    std::map<int32_t, Sensor> sensors_;
};

class ThreadedBroadcasts : public EventFwk::CommonEventService, private Worker {
public:
    explicit ThreadedBroadcasts(std::atomic<int>& deliveries) : deliveries_(deliveries) { Start(); }
    using Worker::Stop;

    bool Subscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) override {
        const std::lock_guard lock(mutex);
        subscribers_.push_back(subscriber);
        return true;
    }

    bool Unsubscribe(const std::shared_ptr<EventFwk::CommonEventSubscriber>& subscriber) override {
        std::unique_lock lock(mutex);
        const bool isKnown = std::erase(subscribers_, subscriber) != 0;
        std::erase_if(queue_, [&](const auto& delivery) { return delivery.first == subscriber; });
        WaitFor(lock, subscriber.get());
        return isKnown;
    }

    bool Publish(const EventFwk::CommonEventData& data, const EventFwk::CommonEventPublishInfo& /*info*/) override {
        {
            const std::lock_guard lock(mutex);
            for (const auto& subscriber : subscribers_) {
                for (const std::string& action : subscriber->GetSubscribeInfo().GetMatchingSkills().GetEvents()) {
                    if (action == data.GetWant().GetAction()) {
                        queue_.emplace_back(subscriber, data);
                    }
                }
            }
        }
        changed.notify_all();
        return true;
    }

    void DropAll() {
        Queue dropped;
        std::vector<std::shared_ptr<EventFwk::CommonEventSubscriber>> subscribers;
        std::unique_lock lock(mutex);
        dropped.swap(queue_);
        subscribers.swap(subscribers_);
        WaitFor(lock, nullptr);
    }

private:
    using Queue = std::deque<std::pair<std::shared_ptr<EventFwk::CommonEventSubscriber>, EventFwk::CommonEventData>>;

    Work Next(std::unique_lock<std::mutex>& lock) override {
        changed.wait(lock, [this] { return isStopped || !queue_.empty(); });
        if (isStopped) {
            return {};
        }
        auto [subscriber, data] = std::move(queue_.front());
        queue_.pop_front();
        running = subscriber.get();
        ++deliveries_;
        return [subscriber = std::move(subscriber), data = std::move(data)] { subscriber->OnReceiveEvent(data); };
    }

    std::atomic<int>& deliveries_;
    std::vector<std::shared_ptr<EventFwk::CommonEventSubscriber>> subscribers_;
    Queue queue_;
};

namespace {

/// Wi-Fi that two threads may switch.
class ThreadedWifi : public Wifi::WifiDevice {
public:
    int32_t Enable() override { return 0; }
    int32_t Disable() override { return 0; }
    std::optional<bool> IsEnabled() override { return std::nullopt; }
};

/// The same of the modem.
class ThreadedModem : public Telephony::CoreServiceClient {
public:
    int32_t GetMaxSimCount() override { return 2; }
    int32_t SetRadioState(int32_t /*slotId*/, bool /*isOn*/, const RadioCallback& /*callback*/) override { return 0; }
    std::optional<bool> IsRadioOn(int32_t /*slotId*/) override { return std::nullopt; }
};

}  // namespace

ThreadedPhone::ThreadedPhone()
    : SimulatedPhone(kStartMs, kBootNs, *this),
      handler_(std::make_shared<ThreadHandler>()),
      timers_(std::make_unique<ThreadedTimers>(timerCallbacks)),
      sensors_(std::make_unique<ThreadedSensors>(readings)),
      broadcasts_(std::make_unique<ThreadedBroadcasts>(broadcasts)),
      wifi_(std::make_shared<ThreadedWifi>()),
      modem_(std::make_unique<ThreadedModem>()) {
    Device::Install(this);
}

ThreadedPhone::~ThreadedPhone() {
    broadcasts_->Stop();
    sensors_->Stop();
    timers_->Stop();
    handler_->Stop();
    handler_->RemoveAllTasks();
    Device::Install(nullptr);
}

void ThreadedPhone::OnHandler(const std::function<void()>& work) {
    std::promise<void> done;
    handler_->PostTask(
        [&] {
            work();
            done.set_value();
        },
        {}, 0, AppExecFwk::EventHandler::Priority::LOW);
    done.get_future().wait();
}

void ThreadedPhone::CatchUp() {
    Clock().RunThrough(NowMs());
}

std::shared_ptr<AppExecFwk::EventHandler> ThreadedPhone::CreateEventHandler() {
    return handler_;
}

EventFwk::CommonEventService& ThreadedPhone::CommonEvents() {
    return *broadcasts_;
}

Sensors::SensorService& ThreadedPhone::Sensors() {
    return *sensors_;
}

MiscServices::TimeServiceClient& ThreadedPhone::Time() {
    return *timers_;
}

Telephony::CoreServiceClient& ThreadedPhone::Modem() {
    return *modem_;
}

std::shared_ptr<Wifi::WifiDevice> ThreadedPhone::Wifi(int32_t /*systemAbilityId*/, int32_t /*instance*/) {
    return wifi_;
}

void ThreadedPhone::DropPending() {
    broadcasts_->DropAll();
    timers_->DropAll();
    sensors_->DropAll();
    SimulatedPhone::DropPending();
    handler_->RemoveAllTasks();
}

}  // namespace TARN::Tests
