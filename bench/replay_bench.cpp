#include <benchmark/benchmark.h>

#include <fstream>

#include "bench_phone.h"
#include "player.h"
#include "silent_sink.h"
#include "trace.h"

namespace TARN::Bench {

namespace {

constexpr char kNight[] = TRACE_FOLDER "/typical-night.jsonl";

Replay::Trace ReadNight() {
    std::ifstream file(kNight);
    return Replay::ReadTrace(file, kNight);
}

/// Reading and checking the typical night.
void ReadTypicalNight(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(ReadNight());
    }
}
BENCHMARK(ReadTypicalNight)->Unit(benchmark::kMillisecond);

/// Playing it, the plugin loaded and unloaded each time; nobody looks on.
void PlayTypicalNight(benchmark::State& state) {
    const Replay::Trace night = ReadNight();
    const uint64_t before = Allocations();
    for (auto _ : state) {
        Replay::SilentSink sink;
        Replay::Play(night, {PLUGIN_PATH, {}}, sink);
    }
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(Allocations() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(PlayTypicalNight)->Unit(benchmark::kMicrosecond);

/// What that is held against: as many heap operations alone.
void HeapOfTypicalNight(benchmark::State& state) {
    const Replay::Trace night = ReadNight();
    Replay::SilentSink sink;
    Replay::Play(night, {PLUGIN_PATH, {}}, sink);
    const uint64_t before = Allocations();
    Replay::Play(night, {PLUGIN_PATH, {}}, sink);
    const uint64_t allocations = Allocations() - before;
    constexpr size_t kUsualBytes = 48;
    for (auto _ : state) {
        for (uint64_t i = 0; i < allocations; ++i) {
            void* memory = ::operator new(kUsualBytes);
            benchmark::DoNotOptimize(memory);
            ::operator delete(memory);
        }
    }
}
BENCHMARK(HeapOfTypicalNight)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace TARN::Bench
