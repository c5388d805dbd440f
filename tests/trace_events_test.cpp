#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "night.h"
#include "night_reader.h"
#include "night_script.h"
#include "player.h"
#include "trace.h"
#include "trace_events.h"

namespace TARN::Tests {
namespace {

namespace fs = std::filesystem;
using namespace Story;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

using Texts = std::vector<std::string>;

json Written(const Story::Night& night) {
    std::ostringstream output;
    WriteTraceEvents(night, output);
    return json::parse(output.str());  // which accepts UTF-8 only
}

/// Looks at a file as a viewer does and says what it would stumble over.
class Viewer {
public:
    explicit Viewer(const json& file) {
        Expect(file.at("otherData").at("timezone").is_string() && file["otherData"].at("start_local").is_string(),
               "no facts about the file", file["otherData"]);
        for (const json& event : file.at("traceEvents")) {
            Take(event);
        }
        for (const auto& [id, event] : open_) {
            Expect(false, "never ends", event);
        }
        for (const auto& [id, flow] : flows_) {
            Expect(flow.size() == 2 && flow[0].at("ph") == "s" && flow[1].at("ph") == "f" &&
                       flow[0].at("ts") <= flow[1].at("ts") && flow[1].at("bp") == "e",
                   "not an arrow from one place to a later one", flow);
            for (const json& event : flow) {
                Expect(IsHeld(event), "in no slice", event);
            }
        }
        for (const auto& [track, slices] : slices_) {
            Expect(names_.contains(track), "a track without a name", track);
        }
    }

    Texts faults;
    std::map<std::string, size_t> phases;

private:
    using TrackId = std::pair<int64_t, int64_t>;
    static TrackId IdOf(const json& event) { return {event.at("pid"), event.at("tid")}; }

    void Expect(bool isSo, const std::string& fault, const json& what) {
        if (!isSo) {
            faults.push_back(fault + ": " + what.dump());
        }
    }

    void Take(const json& event) {
        const std::string phase = event.at("ph");
        ++phases[phase];
        Expect(event.at("name").is_string() && event.at("pid").is_number_integer() &&
                   event.at("tid").is_number_integer() && event.at("tid") != 0,
               "without its place", event);
        if (phase == "M") {
            if (event["name"] == "thread_name") {
                names_.insert(IdOf(event));
            }
            Expect(event.at("args").at(event["name"].get<std::string>().ends_with("_name") ? "name" : "sort_index") !=
                       json(),
                   "names nothing", event);
            return;
        }
        Expect(event.at("ts").is_number_integer() && event["ts"] >= 0 && event.at("cat").is_string(), "without a time",
               event);
        if (phase == "X") {
            auto& track = slices_[IdOf(event)];
            const int64_t from = event["ts"];
            Expect(event.at("dur").is_number_integer() && event["dur"] > 0, "lasts no time", event);
            Expect(track.empty() || track.rbegin()->second <= from, "overlaps the one before", event);
            track[from] = from + event["dur"].get<int64_t>();
        } else if (phase == "b" || phase == "e") {
            const std::string id = json({event["pid"], event.at("id"), event["cat"], event["name"]}).dump();
            Expect(open_.contains(id) == (phase == "e"), "begins twice or ends before it begins", event);
            Expect(phase == "b" || open_[id].at("ts") <= event["ts"], "ends before it begins", event);
            phase == "b" ? void(open_[id] = event) : void(open_.erase(id));
        } else if (phase == "s" || phase == "f") {
            flows_[event.at("id")].push_back(event);
        } else if (phase == "C") {
            Expect(event.at("args").size() == 1 && event["args"].begin()->is_number(), "not a number", event);
        } else if (phase == "i") {
            Expect(event.at("s") == "t" && names_.contains(IdOf(event)), "an instant on no track", event);
        } else {
            Expect(false, "a phase that is not written", event);
        }
    }

    [[nodiscard]] bool IsHeld(const json& event) const {
        const auto track = slices_.find(IdOf(event));
        if (track == slices_.end()) {
            return false;
        }
        const auto next = track->second.upper_bound(event["ts"]);
        return next != track->second.begin() && event["ts"] < std::prev(next)->second;
    }

    std::set<TrackId> names_;
    std::map<TrackId, std::map<int64_t, int64_t>> slices_;  ///< beginnings and ends
    std::map<std::string, json> open_;
    std::map<int64_t, json> flows_;
};

/// What lies on the tracks, in the file's order: "X state DARK 60000000+1000", "i bluetooth stays on 60000000".
Texts Drawn(const json& file, const std::string& phases) {
    std::map<int64_t, std::string> names;
    Texts drawn;
    for (const json& event : file["traceEvents"]) {
        const std::string phase = event["ph"];
        if (event["name"] == "thread_name" || event["name"] == "process_name") {
            names[event["tid"]] = event["args"]["name"];
        }
        if (phase != "M" && phases.find(phase) != std::string::npos) {
            drawn.push_back(phase + " " + names[event["tid"]] + " " + event["name"].get<std::string>() + " " +
                            (phase == "C" ? event["args"]["value"].dump() + " " : "") + event["ts"].dump() +
                            (phase == "X" ? "+" + event["dur"].dump() : ""));
        }
    }
    return drawn;
}

constexpr int64_t kStart = 1'772'395'200'000;
constexpr int64_t kMinute = 60'000;

Event Happens(int64_t t, Subject subject, Outcome outcome, std::string text, std::string reason = {},
              uint32_t cause = kNoEvent) {
    Event event;
    event.t = t;
    event.subject = subject;
    event.outcome = outcome;
    event.cause = cause;
    event.text = std::move(text);
    event.reason = std::move(reason);
    return event;
}

/// Ten minutes: audio begins, the state changes, Bluetooth goes off and cannot, and at the end sleep is looked at.
Story::Night TenMinutes() {
    const int64_t dark = kStart + kMinute;
    Story::Night night;
    night.name = "night \"\xFF\"";
    night.timezone = "UTC";
    night.start = kStart;
    night.end = kStart + 10 * kMinute;
    night.events = {Happens(kStart, Subject::TASK, Outcome::HAPPENED, "audio begins"),
                    Happens(dark, Subject::STATE, Outcome::DONE, "WORKING → DARK"),
                    Happens(dark, Subject::BLUETOOTH, Outcome::DONE, "off", "the state", 1),
                    Happens(dark, Subject::BLUETOOTH, Outcome::FAILED, "could not\n\xC3(", "audio", 0),
                    Happens(dark, Subject::STATE, Outcome::KEPT, "stays DARK", "", 1),
                    Happens(night.end, Subject::SLEEP, Outcome::KEPT, "not asleep", "", 1)};
    night.At(LaneId::STATE).Set(kStart, "WORKING");
    night.At(LaneId::STATE).Set(dark, "DARK", 1, 1);
    night.At(LaneId::PHASE).Set(kStart, "", -1);
    night.At(LaneId::BLUETOOTH).Set(kStart, "on");
    night.At(LaneId::BLUETOOTH).Set(dark, "off", 1, 2);
    night.At(LaneId::SLEEP).Set(kStart, kNotKnown);
    night.At(LaneId::FROZEN).Set(kStart, kNotKnown);
    night.At(LaneId::FROZEN).Set(dark, "frozen", 2);
    for (Lane& lane : night.lanes) {
        lane.End(night.end);
    }
    night.light = {{kStart, 12.5F}, {dark, std::nullopt}, {night.end, std::numeric_limits<float>::infinity()}};
    night.apps = {{7, -1, "media", {}}, {8, -1, "a\xFF", {}}};
    const auto changes = [&night](int64_t t, uint32_t app, Aspect aspect, const char* value, const char* reason = "") {
        night.appEvents.push_back({t, app, aspect, value, reason});
    };
    changes(kStart, 0, Aspect::FROZEN, "frozen", "the night begins");
    changes(dark, 1, Aspect::FROZEN, "frozen");
    changes(dark, 0, Aspect::FROZEN, "frozen");  // again
    changes(dark + 1, 0, Aspect::FROZEN, "thawed");
    changes(dark, 1, Aspect::CLEAN, "spared", "audio");
    changes(dark, 0, Aspect::CLEAN, "killed");
    return night;
}

TEST(TraceEvents, TracksHoldOneStateAtATimeAndWhatOverlapsHasRowsOfItsOwn) {
    const json file = Written(TenMinutes());
    EXPECT_THAT(Viewer(file).faults, IsEmpty());
    // the last millisecond is part of the night; outside SLEEP there is no phase
    EXPECT_THAT(Drawn(file, "X"), ElementsAre("X state WORKING 0+60000000", "X state DARK 60000000+540001000",
                                              "X sleep not known 0+600001000", "X bluetooth on 0+60000000",
                                              "X bluetooth off 60000000+540001000", "X frozen not known 0+60000000",
                                              "X frozen frozen 60000000+540001000", "X task audio begins 0+1"));
    // what changed its lane is the slice; the rest shows in the order in which it happened
    EXPECT_THAT(Drawn(file, "i"),
                ElementsAre("i bluetooth could not\n\xEF\xBF\xBD(: audio 60000002", "i state stays DARK 60000003",
                            "i sleep not asleep 600000000", "i clean spared a\xEF\xBF\xBD (8): audio 60000000"));
    // from slice to slice, and none within one
    EXPECT_THAT(Drawn(file, "sf"),
                ElementsAre("s state because 60000000", "f bluetooth because 60000001", "s task because 0",
                            "f bluetooth because 60000002", "s state because 60000000", "f sleep because 600000000"));
    EXPECT_THAT(Drawn(file, "be"), ElementsAre("b frozen media (7) 0", "b frozen a\xEF\xBF\xBD (8) 60000000",
                                               "e frozen media (7) 60001000", "e frozen a\xEF\xBF\xBD (8) 600001000"));
    const Texts curves = Drawn(file, "C");
    const std::string phone = "C phone: night \"\xEF\xBF\xBD\" ";
    EXPECT_THAT(curves, IsSupersetOf({phone + "light (lux) 12.5 0", phone + "light (lux) -1.0 60000000",
                                      phone + "frozen natives -1.0 0", phone + "frozen natives 2.0 60000000"}));
}

TEST(TraceEvents, ArgumentsSayWhenAndWhy) {
    Story::Night night = TenMinutes();
    night.events[3].values = {{"connected", "1 device"}};
    night.events[3].next = "after the call";
    Replay::TimeZone("Europe/Berlin").Use();
    const json file = Written(night);
    json failure;
    json off;
    for (const json& event : file["traceEvents"]) {
        failure = event.value("cat", "") == "failed" ? event["args"] : failure;
        off = event["ph"] == "X" && event["name"] == "off" ? event["args"] : off;
    }
    EXPECT_EQ(failure["time"], "Sun 1 Mar 21:01:00");
    EXPECT_EQ(failure["values"], json({{"connected", "1 device"}}));
    EXPECT_EQ(failure["next"], "after the call");
    EXPECT_EQ(off["told"], "off: the state");
    EXPECT_EQ(off["because"], "Sun 1 Mar 21:01:00 state WORKING → DARK");
    EXPECT_EQ(off["until"], "Sun 1 Mar 21:10:00");
    EXPECT_EQ(off["off by the plugin"], 1);
    EXPECT_EQ(file["otherData"]["start_local"], "2026-03-01T21:00:00+0100");
}

TEST(TraceEvents, AMillisecondMayHoldMoreEventsThanMicroseconds) {
    Story::Night night = TenMinutes();
    night.events.resize(1);
    for (uint32_t i = 0; i < 2500; ++i) {
        night.events.push_back(
            Happens(kStart, i % 2 == 0 ? Subject::CLEAN : Subject::BLUETOOTH, Outcome::KEPT, "", "", i));
    }
    for (Lane& lane : night.lanes) {
        lane = {};
    }
    night.At(LaneId::BLUETOOTH).Set(kStart, "on");
    EXPECT_THAT(Viewer(Written(night)).faults, IsEmpty());
}

class ShippedNights : public ::testing::TestWithParam<std::string> {};

TEST_P(ShippedNights, BecomeFilesThatAViewerOpens) {
    std::ifstream input(GetParam());
    NightReader reader;
    Replay::Play(Replay::ReadTrace(input, GetParam()), {PluginPath(), {}}, reader);
    const Story::Night& night = reader.Result();
    Viewer viewer(Written(night));
    EXPECT_THAT(viewer.faults, IsEmpty());
    // nothing of the night is missing
    size_t slices = 0;
    size_t shown = 0;
    for (const Lane& lane : night.lanes) {
        for (const Interval& interval : lane.Intervals()) {
            slices += interval.value.empty() ? 0U : 1U;
        }
    }
    size_t effects = 0;
    for (const Event& event : night.events) {
        effects += event.cause != kNoEvent ? 1U : 0U;
        shown += event.outcome == Outcome::KEPT || event.outcome == Outcome::FAILED ? 1U : 0U;
    }
    EXPECT_GE(viewer.phases["X"], slices);
    EXPECT_GE(viewer.phases["X"] - slices + viewer.phases["i"], shown);
    EXPECT_LE(viewer.phases["f"], effects);
    EXPECT_GE(viewer.phases["f"] * 2, effects) << "most causes have an arrow";
    EXPECT_GE(viewer.phases["C"], night.light.size() + night.proximity.size() + night.stillness.size());
}

Texts Traces() {
    Texts names;
    for (const auto& entry : fs::directory_iterator(TRACES_FOLDER)) {
        if (entry.path().extension() == ".jsonl") {
            names.push_back(entry.path());
        }
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(Of, ShippedNights, ::testing::ValuesIn(Traces()), [](const auto& night) {
    std::string name = fs::path(night.param).stem();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace TARN::Tests
