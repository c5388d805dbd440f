#include <benchmark/benchmark.h>

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

/// Freezing and thawing with N natives running, half of them configured.
void FreezeAndThaw(benchmark::State& state) {
    const BenchPhone bench("none", static_cast<int32_t>(state.range(0)));
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
    state.SetComplexityN(state.range(0));
}
BENCHMARK(FreezeAndThaw)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

/// Killing every one of N applications at once, as in device mode 603.
void CleanApplications(benchmark::State& state) {
    BenchPhone bench("POWER_SAVE_CLEAN", static_cast<int32_t>(state.range(0)));
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
    state.SetComplexityN(state.range(0));
}
BENCHMARK(CleanApplications)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace

}  // namespace TARN::Bench
