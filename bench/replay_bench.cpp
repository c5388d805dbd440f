#include <benchmark/benchmark.h>

#include <fstream>

#include "bench_phone.h"
#include "player.h"
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

/// Looks on and wants nothing.
class SilentSink : public Replay::RecordSink {
public:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    [[nodiscard]] bool WantsCalls() const noexcept override { return false; }
    void OnBegin(const Replay::Trace& /*trace*/) override {}
    void OnStep(const Replay::Step& /*step*/) override {}
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnCall(int64_t /*t*/, std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
    void OnDeliver(int64_t /*t*/, const DevStandbyMgr::StandbyMessage& /*message*/) override {}
    void OnDump(int64_t /*t*/, const std::string& /*text*/) override {}
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}
};

/// Playing it, the plugin loaded and unloaded each time; nobody looks on.
void PlayTypicalNight(benchmark::State& state) {
    const Replay::Trace night = ReadNight();
    const uint64_t before = Allocations();
    for (auto _ : state) {
        SilentSink sink;
        Replay::Play(night, {PLUGIN_PATH, {}}, sink);
    }
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(Allocations() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(PlayTypicalNight)->Unit(benchmark::kMicrosecond);

/// What that is held against: as many heap operations alone.
void HeapOfTypicalNight(benchmark::State& state) {
    const Replay::Trace night = ReadNight();
    SilentSink sink;
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
