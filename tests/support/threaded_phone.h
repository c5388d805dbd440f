#ifndef TESTS_THREADED_PHONE_H
#define TESTS_THREADED_PHONE_H

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "simulated_phone.h"

namespace TARN::Tests {

class ThreadedBroadcasts;
class ThreadedSensors;
class ThreadedTimers;
class ThreadHandler;

/// A phone with threads as a real one has them: a handler's, one for timer callbacks, one for sensor readings, one for
/// broadcasts. Its clocks run a thousand times as fast as ours. All else is a simulated phone that belongs to the
/// handler's thread.
class ThreadedPhone : private Simulated::PhoneObserver, public Simulated::SimulatedPhone {
public:
    ThreadedPhone();
    ~ThreadedPhone() override;

    /// Runs `work` on the handler's thread and waits for its end.
    void OnHandler(const std::function<void()>& work);

    /// Has the simulated rest of the phone do what is due by now. On the handler's thread.
    void CatchUp();

    [[nodiscard]] std::shared_ptr<AppExecFwk::EventHandler> CreateEventHandler() override;
    EventFwk::CommonEventService& CommonEvents() override;
    Sensors::SensorService& Sensors() override;
    MiscServices::TimeServiceClient& Time() override;
    Telephony::CoreServiceClient& Modem() override;
    [[nodiscard]] std::shared_ptr<Wifi::WifiDevice> Wifi(int32_t systemAbilityId, int32_t instance) override;
    void DropPending() override;

    std::atomic<int> timerCallbacks = 0;
    std::atomic<int> readings = 0;
    std::atomic<int> broadcasts = 0;
    std::atomic<int> logLines = 0;

private:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnLog(const LogLine& /*line*/) override { ++logLines; }
    void OnCall(std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}

    std::shared_ptr<ThreadHandler> handler_;
    std::unique_ptr<ThreadedTimers> timers_;
    std::unique_ptr<ThreadedSensors> sensors_;
    std::unique_ptr<ThreadedBroadcasts> broadcasts_;
    std::shared_ptr<Wifi::WifiDevice> wifi_;
    std::unique_ptr<Telephony::CoreServiceClient> modem_;
};

}  // namespace TARN::Tests

#endif  // TESTS_THREADED_PHONE_H
