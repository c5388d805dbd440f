#ifndef BENCH_BENCH_PHONE_H
#define BENCH_BENCH_PHONE_H

#include <cstdint>
#include <memory>
#include <string>

#include "phone_observer.h"
#include "simulated_phone.h"
#include "standby_config.h"
#include "standby_service_impl.h"

namespace TARN::Bench {

/// Allocations of this process so far.
[[nodiscard]] uint64_t Allocations();

/// Watches a phone and wants nothing: what remains is the cost of the work itself.
class SilentObserver : public Simulated::PhoneObserver {
public:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    [[nodiscard]] bool WantsCall(std::string_view /*operation*/) const noexcept override { return false; }
    void OnLog(const LogLine& /*line*/) override {}
    void OnCall(std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
};

/// A phone with a scripted service on it, 2026-03-01 21:00 UTC, the plugin's adapters registered and initialised.
class BenchPhone {
public:
    static constexpr int64_t kStartMs = 1'772'398'800'000;

    /// How much runs on it, and how much of that is in lists.
    struct Load {
        int32_t natives = 0;
        int32_t frozenNames = 0;  ///< of the natives, configured to be frozen
        int32_t apps = 0;         ///< half of them the system's
        int32_t listedNames = 0;  ///< bundles of the system's that may be killed nonetheless
        int32_t tasks = 0;        ///< apps with a continuous task
    };

    /// A phone with one configured strategy, all of them where its name is empty.
    explicit BenchPhone(const std::string& strategy);
    BenchPhone(const std::string& strategy, const Load& load);
    ~BenchPhone();
    BenchPhone(const BenchPhone&) = delete;
    BenchPhone& operator=(const BenchPhone&) = delete;

    /// Starts all processes anew.
    void StartProcesses();

    Simulated::SimulatedPhone& Phone() { return phone_; }
    DevStandbyMgr::StandbyServiceImpl& Service() { return *service_; }

private:
    Load load_;
    SilentObserver observer_;
    Simulated::SimulatedPhone phone_;
    std::shared_ptr<DevStandbyMgr::StandbyServiceImpl> service_;
};

}  // namespace TARN::Bench

#endif  // BENCH_BENCH_PHONE_H
