#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "night_script.h"
#include "player.h"
#include "silent_sink.h"

namespace TARN::Tests {
namespace {

/// What this process holds.
struct Holdings {
    size_t heapBytes;
    size_t residentKilobytes;
    size_t mappings;
    size_t descriptors;
};

size_t ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    size_t kilobytes = 0;
    while (status >> word && word != "VmRSS:") {
    }
    status >> kilobytes;
    return kilobytes;
}

size_t CountLines(const char* path) {
    std::ifstream file(path);
    return static_cast<size_t>(std::count(std::istreambuf_iterator<char>(file), {}, '\n'));
}

Holdings Look() {
    ::malloc_trim(0);
    const struct mallinfo2 heap = ::mallinfo2();
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return {.heapBytes = heap.uordblks + heap.hblkhd,
            .residentKilobytes = ResidentKilobytes(),
            .mappings = CountLines("/proc/self/maps"),
            .descriptors = static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)))};
}

constexpr int kLoads = 10;  ///< in one run

/// Loads the plugin again and again, each time for a minute that every strategy has a part in: the phone goes to deep
/// sleep, freezes, stretches timers and wakes up.
Replay::Trace BusyMinutes() {
    Night night;
    night.Strategies(R"(["FREEZE", "PUSH", "NETWORK", "RUNNING_LOCK", "SLEEP_CLEAN", "TIMER", "POWER_SAVE_CLEAN"])")
        .Host("persist_allow", R"({"FREEZE": {"1": ["storage"]}})")
        .Device("processes", R"([{"pid": 11, "name": "storage", "native": true}])");
    for (int load = 1; load <= kLoads; ++load) {
        night.ScreenOff().Message(6, R"({"SCR_OFF_HALF_HOUR_STATUS": true})").GoToDeepSleep().AdvanceMs(60'000);
        night.WakeUp().ScreenOn().AdvanceMs(1000);
        if (load < kLoads) {
            night.Restart();
        }
    }
    std::istringstream text(night.Text());
    return Replay::ReadTrace(text, "busy minutes");
}

/// Keeps nothing but the summary.
class Totals : public Replay::SilentSink {
public:
    void OnEnd(int64_t /*t*/, const Replay::Summary& summary) override { last = summary; }

    Replay::Summary last;
};

/// Says how many calls the last run made.
uint64_t PlayTimes(const Replay::Trace& trace, int times) {
    Totals totals;
    for (int i = 0; i < times; ++i) {
        Replay::Play(trace, {.pluginPath = PluginPath(), .progress = {}}, totals);
    }
    return totals.last.calls;
}

TEST(LoadCycles, NothingGrowsBetweenTheThousandthAndTheTenThousandth) {
    const Replay::Trace trace = BusyMinutes();
    const uint64_t calls = PlayTimes(trace, LOAD_CYCLES / kLoads / 10);
    EXPECT_GT(calls, 10 * kLoads) << "the plugin hardly does anything";
    const Holdings early = Look();
    EXPECT_EQ(PlayTimes(trace, LOAD_CYCLES / kLoads * 9 / 10), calls);
    const Holdings late = Look();
    EXPECT_EQ(late.descriptors, early.descriptors);
#ifndef IS_SANITIZED  // whose memory is its own affair; it finds what leaks by itself
    // the allocator fills its caches; one block a cycle would be twice as much
    constexpr size_t kSlackKilobytes = 128;
    EXPECT_LE(late.heapBytes, early.heapBytes + kSlackKilobytes * 1024);
    EXPECT_LE(late.residentKilobytes, early.residentKilobytes + kSlackKilobytes);
    EXPECT_LE(late.mappings, early.mappings + 2);  // the allocator's own
#endif
}

}  // namespace
}  // namespace TARN::Tests
