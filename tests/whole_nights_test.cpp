#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "log_names.h"
#include "night_script.h"
#include "player.h"
#include "record_sink.h"
#include "time_zone.h"
#include "trace.h"
#include "want_json.h"

namespace TARN::Tests {
namespace {

namespace fs = std::filesystem;

/// Set to a folder, it has the records written there anew. Nothing is compared then, and every night fails.
constexpr char kWriteTo[] = "STANDBY_WRITE_NIGHTS_TO";

/// The host's own sources speak for themselves elsewhere; the plugin's lines are compared, all of them.
bool IsHostSource(const std::string& source) {
    const fs::path host(HOST_FOLDER);
    return fs::exists(host / "src" / (source + ".cpp")) || fs::exists(host / "include" / (source + ".h"));
}

/// What the host's base classes call by themselves.
bool IsHostCall(std::string_view operation) {
    return operation.starts_with("NetPolicyClient.") || operation.starts_with("PowerMgrClient.");
}

/// Writes down a whole night, a line for each thing that the plugin logged, called, received or dumped.
class Scribe : public Replay::RecordSink {
public:
    std::vector<std::string> lines;

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnBegin(const Replay::Trace& /*trace*/) override {}
    void OnStep(const Replay::Step& /*step*/) override {}
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

    void OnLog(int64_t t, const LogLine& line) override {
        const std::string source(Replay::SourceName(line.file));
        if (!IsHostSource(source)) {
            Add(t, std::string(Replay::LevelName(line.level)) + " " + source + " " + line.function + ": " +
                       std::string(line.text));
        }
    }

    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override {
        if (!IsHostCall(operation)) {
            Add(t, "call " + std::string(operation) + " " + arguments.dump() + " -> " + result.dump());
        }
    }

    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override {
        Add(t, "deliver " + std::to_string(message.eventId) + " " + (message.action.empty() ? "-" : message.action) +
                   " " + (message.want ? Simulated::ToJson(*message.want).dump() : "null"));
    }

    void OnDump(int64_t t, const std::string& text) override { Add(t, "dump " + nlohmann::json(text).dump()); }

private:
    void Add(int64_t t, const std::string& text) {
        constexpr int64_t kMsPerSecond = 1000;
        char milliseconds[8];
        std::snprintf(milliseconds, sizeof milliseconds, ".%03d", static_cast<int>(t % kMsPerSecond));
        lines.push_back(Replay::TimeZone::Format(t, "%m-%d %H:%M:%S") + milliseconds + " " + text);
    }
};

std::vector<std::string> Play(const fs::path& trace) {
    std::ifstream input(trace);
    Scribe scribe;
    Replay::Play(Replay::ReadTrace(input, trace.filename()), {PluginPath(), {}}, scribe);
    return scribe.lines;
}

std::vector<std::string> ReadLines(const fs::path& path) {
    std::ifstream input(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(input, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The first lines in which two records part, with what led to them; empty if they do not.
std::string FirstDifference(const std::vector<std::string>& expected, const std::vector<std::string>& played) {
    constexpr std::ptrdiff_t kBefore = 4;
    constexpr std::ptrdiff_t kAfter = 6;
    const auto [expectedEnd, playedEnd] = std::mismatch(expected.begin(), expected.end(), played.begin(), played.end());
    if (expectedEnd == expected.end() && playedEnd == played.end()) {
        return {};
    }
    const auto place = expectedEnd - expected.begin();
    std::string text = "line " + std::to_string(place + 1) + "\n";
    const auto add = [&text, place](const char* mark, const auto& lines, std::ptrdiff_t from, std::ptrdiff_t to) {
        const auto size = static_cast<std::ptrdiff_t>(lines.size());
        for (auto i = std::max<std::ptrdiff_t>(place + from, 0); i < std::min(place + to, size); ++i) {
            text += mark + lines[static_cast<size_t>(i)] + "\n";
        }
    };
    add("  ", expected, -kBefore, 0);
    add("- ", expected, 0, kAfter);
    add("+ ", played, 0, kAfter);
    return text;
}

std::vector<std::string> Nights() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(NIGHTS_FOLDER)) {
        if (entry.path().extension() == ".jsonl") {
            names.push_back(entry.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

class WholeNights : public ::testing::TestWithParam<std::string> {};

TEST_P(WholeNights, PlaysAsRecorded) {
    const fs::path night = fs::path(NIGHTS_FOLDER) / GetParam();
    const std::vector<std::string> played = Play(night.string() + ".jsonl");
    if (const char* folder = std::getenv(kWriteTo); folder != nullptr) {
        std::ofstream output(fs::path(folder) / (GetParam() + ".record"));
        for (const std::string& line : played) {
            output << line << '\n';
        }
        FAIL() << "written to " << folder << ", not compared";
    }
    const std::vector<std::string> recorded = ReadLines(night.string() + ".record");
    ASSERT_THAT(recorded, ::testing::Not(::testing::IsEmpty())) << "no record";
    EXPECT_EQ(FirstDifference(recorded, played), "") << "recorded -, played +";
}

INSTANTIATE_TEST_SUITE_P(Of, WholeNights, ::testing::ValuesIn(Nights()), [](const auto& night) { return night.param; });

}  // namespace
}  // namespace TARN::Tests
