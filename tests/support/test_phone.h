#ifndef TESTS_TEST_PHONE_H
#define TESTS_TEST_PHONE_H

#include <functional>
#include <string>
#include <vector>

#include "simulated_phone.h"
#include "standby_config.h"
#include "standby_service_impl.h"

namespace TARN::Tests {

/// A simulated phone that is the process's device while it lives, and what was done to it.
class TestPhone : private Simulated::PhoneObserver {
public:
    static constexpr int64_t kStartMs = 1'772'400'000'000;
    static constexpr int64_t kBootNs = 60'000'000'000;

    explicit TestPhone(int64_t startMs = kStartMs, FileUtil::FileService* files = nullptr);
    ~TestPhone() override;

    Simulated::SimulatedPhone* operator->() { return &phone_; }
    [[nodiscard]] int64_t Now() { return phone_.Clock().NowMs(); }

    void Change(const std::function<void(Simulated::FactsChange&)>& describe);
    void Fail(const std::string& operation, int32_t code = 1);
    void Heal(const std::string& operation);

    /// Runs the work of the next `ms` milliseconds, by default what waits for now.
    void Run(int64_t ms = 0);

    /// A service without a plugin; it ends with the phone.
    DevStandbyMgr::StandbyServiceImpl& StartService(DevStandbyMgr::StandbyConfig config = {});

    /// What was called and logged since it was last taken: `DisableBt {} -> 0`, `info text`.
    std::vector<std::string> TakeCalls() { return std::exchange(calls_, {}); }
    std::vector<std::string> TakeLogs() { return std::exchange(logs_, {}); }

    /// Which log lines are wanted from now on; all of them to begin with.
    void WantLogs(LogLevel least);

    /// Sees each log line whole.
    std::function<void(const LogLine&)> onLine;

private:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return leastLog_; }
    void OnLog(const LogLine& line) override;
    void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;

    LogLevel leastLog_ = LogLevel::DEBUG;
    Simulated::SimulatedPhone phone_;
    std::vector<std::string> calls_;
    std::vector<std::string> logs_;
};

}  // namespace TARN::Tests

#endif  // TESTS_TEST_PHONE_H
