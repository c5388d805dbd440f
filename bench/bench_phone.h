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
    [[nodiscard]] bool WantsLog(LogLevel /*level*/) const noexcept override { return false; }
    void OnLog(const LogLine& /*line*/) override {}
    void OnCall(std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
};

/// A phone with a scripted service on it, 2026-03-01 21:00 UTC, the plugin's adapters registered and initialised.
class BenchPhone {
public:
    static constexpr int64_t kStartMs = 1'772'398'800'000;

    /// Fills the phone with `processes` natives, every second one configured to be frozen, and as many apps.
    explicit BenchPhone(const std::string& strategy, int32_t processes = 0);
    ~BenchPhone();
    BenchPhone(const BenchPhone&) = delete;
    BenchPhone& operator=(const BenchPhone&) = delete;

    /// Starts all processes anew.
    void StartProcesses();

    Simulated::SimulatedPhone& Phone() { return phone_; }
    DevStandbyMgr::StandbyServiceImpl& Service() { return *service_; }

private:
    int32_t processes_;
    SilentObserver observer_;
    Simulated::SimulatedPhone phone_;
    std::shared_ptr<DevStandbyMgr::StandbyServiceImpl> service_;
};

}  // namespace TARN::Bench

#endif  // BENCH_BENCH_PHONE_H
