#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>

#include "jsonl_writer.h"
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

/// Playing it, the plugin loaded and unloaded each time, the record written to memory.
void PlayTypicalNight(benchmark::State& state) {
    const Replay::Trace night = ReadNight();
    for (auto _ : state) {
        std::ostringstream record;
        Replay::JsonlWriter writer(record);
        Replay::Play(night, {PLUGIN_PATH, {}}, writer);
        benchmark::DoNotOptimize(record.str().size());
    }
}
BENCHMARK(PlayTypicalNight)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace TARN::Bench
