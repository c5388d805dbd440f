#include <benchmark/benchmark.h>

#include <list>
#include <memory>
#include <utility>
#include <vector>

#include "ability_manager_client.h"
#include "app_mgr_client.h"
#include "bench_phone.h"
#include "common_event_support.h"
#include "freeze_strategy.h"
#include "phone_strategy_manager_adapter_ext.h"
#include "standby_constants.h"

namespace TARN::Bench {

namespace {

using namespace DevStandbyMgr;

constexpr int64_t kHourMs = 3'600'000;

void CountAllocations(benchmark::State& state, uint64_t before) {
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(Allocations() - before), benchmark::Counter::kAvgIterations);
}

/// A message of an identifier that no strategy knows, through all ten strategies.
void MessageThatNobodyHandles(benchmark::State& state) {
    const BenchPhone bench("");
    PhoneStrategyManagerAdapterExt manager;
    manager.Init();
    const StandbyMessage message(7);
    const uint64_t before = Allocations();
    for (auto _ : state) {
        manager.HandleEvent(message);
    }
    CountAllocations(state, before);
    manager.UnInit();
}
BENCHMARK(MessageThatNobodyHandles);

class Callee {
public:
    virtual ~Callee() = default;
    virtual void Hear(const StandbyMessage& message) = 0;
};

template <int>
class OneOfTen : public Callee {
public:
    void Hear(const StandbyMessage& message) override { benchmark::DoNotOptimize(message.eventId); }
};

template <int... I>
std::vector<std::shared_ptr<Callee>> TenCallees(std::integer_sequence<int, I...> /*ten*/) {
    return {std::make_shared<OneOfTen<I>>()...};
}

/// What that is held against: ten bare virtual calls over a vector of shared pointers.
void TenVirtualCalls(benchmark::State& state) {
    const std::vector<std::shared_ptr<Callee>> callees = TenCallees(std::make_integer_sequence<int, 10>());
    const StandbyMessage message(7);
    for (auto _ : state) {
        benchmark::DoNotOptimize(callees.data());
        for (const auto& callee : callees) {
            callee->Hear(message);
        }
    }
}
BENCHMARK(TenVirtualCalls);

/// An hour of the detector's loop, 360 passes, while it does not collect.
void IdleHourOfTheSleepLoop(benchmark::State& state) {
    BenchPhone bench("none");
    std::string dumped;
    bench.Service().ShellDump(
        {std::string(DUMP_SIMULATE_SENSOR), std::string(DUMP_STRATGY_DETAIL), "-ST", "--SetMode", "1"}, dumped);
    bench.Service().DispatchEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT,
                                                 std::string(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF)));
    Simulated::VirtualTime& clock = bench.Phone().Clock();
    const uint64_t before = Allocations();
    for (auto _ : state) {
        clock.RunThrough(clock.NowMs() + kHourMs);
    }
    CountAllocations(state, before);
}
BENCHMARK(IdleHourOfTheSleepLoop);

/// The detector's loop with its collections: a night of ten hours from 21:00.
void NightOfTheSleepLoop(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto bench = std::make_unique<BenchPhone>("none");
        state.ResumeTiming();
        bench->Service().DispatchEvent(StandbyMessage(
            StandbyMessageType::COMMON_EVENT, std::string(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF)));
        bench->Phone().Clock().RunThrough(BenchPhone::kStartMs + 10 * kHourMs);
        state.PauseTiming();
        bench.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(NightOfTheSleepLoop)->Unit(benchmark::kMillisecond);

/// A thousand configured names, ten times as many natives, and as much again for each step of N.
BenchPhone::Load Natives(int64_t n) {
    return {.natives = static_cast<int32_t>(n), .frozenNames = static_cast<int32_t>(n / 10)};
}

/// Freezing and thawing with N natives running, a tenth of them configured.
void FreezeAndThaw(benchmark::State& state) {
    const BenchPhone bench("none", Natives(state.range(0)));
    FreezeStrategy strategy;
    strategy.OnCreated();
    AAFwk::Want deep;
    deep.SetParam(CURRENT_STATE, StandbyState::SLEEP).SetParam(CURRENT_PHASE, StandbyPhase::APP_RES_DEEP);
    AAFwk::Want awake;
    awake.SetParam(PREVIOUS_STATE, StandbyState::SLEEP).SetParam(CURRENT_STATE, StandbyState::WORKING);
    const StandbyMessage freeze(StandbyMessageType::PHASE_TRANSIT, {}, deep);
    const StandbyMessage thaw(StandbyMessageType::STATE_TRANSIT, {}, awake);
    for (auto _ : state) {
        strategy.HandleEvent(freeze);
        strategy.HandleEvent(thaw);
    }
}
BENCHMARK(FreezeAndThaw)->Arg(10'000)->Arg(20'000)->Unit(benchmark::kMicrosecond);

/// What freezing is held against: one pass that copies the list of natives.
void CopyNatives(benchmark::State& state) {
    const BenchPhone bench("none", Natives(state.range(0)));
    for (auto _ : state) {
        std::list<AppExecFwk::SystemProcessInfo> processes;
        benchmark::DoNotOptimize(AppExecFwk::AbilityManagerClient::GetInstance().GetRunningSystemProcess(processes));
    }
}
BENCHMARK(CopyNatives)->Arg(10'000)->Unit(benchmark::kMicrosecond);

BenchPhone::Load Apps(int64_t n) {
    const auto tenth = static_cast<int32_t>(n / 10);
    return {.apps = static_cast<int32_t>(n), .listedNames = tenth, .tasks = tenth};
}

/// A clean of N applications at once, as in device mode 603: half of them are the system's, a tenth is listed, another
/// tenth protected by a continuous task.
void CleanApplications(benchmark::State& state) {
    BenchPhone bench("POWER_SAVE_CLEAN", Apps(state.range(0)));
    Simulated::FactsChange strict;
    strict.deviceMode = 603;
    bench.Phone().Apply(strict);
    const StandbyMessage message(StandbyMessageType::COMMON_EVENT,
                                 std::string(EventFwk::CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED));
    for (auto _ : state) {
        state.PauseTiming();
        bench.StartProcesses();
        state.ResumeTiming();
        bench.Service().DispatchEvent(message);
        bench.Phone().Clock().RunThrough(bench.Phone().Clock().NowMs());
    }
}
BENCHMARK(CleanApplications)->Arg(10'000)->Arg(20'000)->Unit(benchmark::kMicrosecond);

/// What cleaning is held against: one pass that copies the list of applications, which have just been started too.
void CopyApplications(benchmark::State& state) {
    BenchPhone bench("none", Apps(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        bench.StartProcesses();
        state.ResumeTiming();
        std::vector<AppExecFwk::RunningProcessInfo> processes;
        benchmark::DoNotOptimize(AppExecFwk::AppMgrClient::GetInstance().GetAllRunningProcesses(processes));
    }
}
BENCHMARK(CopyApplications)->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace TARN::Bench
