#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "comparison.h"
#include "json_fields.h"
#include "night.h"
#include "night_pair.h"
#include "record_comparison.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using namespace Story;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// "5 a 5 b": a record with a call a and a call b at 5, and its summary.
std::string Record(const std::string& calls, int64_t end = 9) {
    std::istringstream words(calls);
    std::string text;
    for (std::string t, call; words >> t >> call;) {
        text += R"({"t":)" + t + R"(,"call":{"operation":")" + call + "\"}}\n";
    }
    return text + R"({"t":)" + std::to_string(end) + R"(,"summary":{}})" + "\n";
}

RecordComparison Compare(const std::string& a, const std::string& b) {
    std::istringstream inputA(a);
    std::istringstream inputB(b);
    Replay::RecordReader readerA(inputA, "a");
    Replay::RecordReader readerB(inputB, "b");
    return CompareRecords(readerA, readerB);
}

std::vector<uint64_t> Counts(const RecordComparison& comparison) {
    const LineCounts total = comparison.Total();
    return {total.both, total.only[0], total.only[1]};
}

TEST(RecordComparison, CountsWhatIsInOneOnlyAndGoesOnBehindIt) {
    struct Case {
        const char* a;
        const char* b;
        std::vector<uint64_t> counts;  // both, only A, only B; the summary is one
        std::vector<std::string> next;
    };
    const std::string over = "-";
    for (const Case& one : {
             Case{"1 a 2 b 3 c", "1 a 2 b 3 c", {4, 0, 0}, {}},
             Case{"1 a 2 b 3 c", "1 a 2 b 2 x 3 c", {4, 0, 1}, {"3 c", "2 x"}},
             Case{"1 a 1 x 1 b 3 c", "1 a 1 b 3 c", {4, 1, 0}, {"1 x", "1 b"}},
             Case{"1 a 1 b 1 c", "1 b 1 c 1 a", {3, 1, 1}, {"1 a", "1 b"}},
             Case{"1 a 2 b 3 c", "1 a 3 b 3 c", {3, 1, 1}, {"2 b", "3 b"}},
             Case{"", "1 a", {1, 0, 1}, {"9 -", "1 a"}},
         }) {
        const RecordComparison comparison = Compare(Record(one.a), Record(one.b));
        EXPECT_EQ(Counts(comparison), one.counts) << one.a << " | " << one.b;
        std::vector<std::string> next;
        if (comparison.parting) {
            for (const auto& line : comparison.parting->next) {
                const auto json = nlohmann::json::parse(line->text);
                next.push_back(std::to_string(line->t) + " " +
                               (line->kind == "call" ? json["call"]["operation"].get<std::string>() : over));
            }
        }
        EXPECT_EQ(next, one.next) << one.a << " | " << one.b;
    }
}

TEST(RecordComparison, ShowsTheLastLinesThatBothHold) {
    const RecordComparison comparison = Compare(Record("1 a 2 b 3 c 4 d 4 e 5 f"), Record("1 a 2 b 3 c 4 d 4 x 5 f"));
    ASSERT_TRUE(comparison.parting);
    EXPECT_EQ(comparison.parting->t, 4);
    std::vector<int64_t> times;
    for (const auto& line : comparison.parting->before) {
        times.push_back(line.t);
    }
    EXPECT_THAT(times, ElementsAre(2, 3, 4));
    EXPECT_THAT(comparison.parting->before.back().text, HasSubstr("\"d\""));
}

TEST(RecordComparison, HoldsRunAgainstRun) {
    const RecordComparison comparison = Compare(Record("5 a") + Record("1 b"), Record("5 a") + Record("2 b 3 c"));
    EXPECT_THAT(Counts(comparison), ElementsAre(3, 1, 2));
    EXPECT_THAT(Counts(Compare(Record("5 a") + Record("1 b"), Record("5 a", 20) + Record("1 b"))),
                ElementsAre(3, 1, 1));
    const RecordComparison shorter = Compare(Record("5 a") + Record("1 b"), Record("5 a"));
    EXPECT_THAT(Counts(shorter), ElementsAre(2, 2, 0));
    EXPECT_THAT(shorter.runs, ElementsAre(2, 1));
    ASSERT_TRUE(shorter.parting);
    EXPECT_FALSE(shorter.parting->next[1]);
}

TEST(RecordComparison, CopesWithAnInstantOfManyLines) {
    std::string calls;
    for (int i = 0; i < 2500; ++i) {
        calls += "1 call" + std::to_string(i) + " ";
    }
    const RecordComparison same = Compare(Record(calls), Record(calls));
    EXPECT_THAT(Counts(same), ElementsAre(2501, 0, 0));
    EXPECT_FALSE(same.parting);
    const LineCounts one = Compare(Record(calls), Record("1 new " + calls)).Total();
    EXPECT_EQ(one.both + one.only[0], 2501U);
    EXPECT_EQ(one.both + one.only[1], 2502U);
    EXPECT_GE(one.both, 2490U);
}

TEST(RecordReader, RefusesWhatIsNoWholeRecord) {
    const std::string call = R"({"t":5,"call":{"operation":"a"}})";
    const std::string end = R"({"t":9,"summary":{}})";
    struct Case {
        std::string text;
        std::string complaint;
    };
    for (const Case& one : {
             Case{call + "\n" + end, "a:2: the record ends in the middle of a line"},
             Case{call + "\n", "a:1: the record ends before the summary"},
             Case{call + "\n" + call.substr(0, 20) + "\n", "a:2: not a line of a record"},
             Case{call + "\n\n", "a:2: not a line of a record"},
             Case{"[5]\n", "a:1: not a line of a record"},
             Case{R"({"call":{"t":5}})"
                  "\n",
                  "a:1: not a line of a record"},
             Case{R"({"t":5})"
                  "\n",
                  "a:1: not a line of a record"},
             Case{R"({"t":5.5,"call":{}})"
                  "\n",
                  "a:1: not a line of a record"},
             Case{"{\"t\":5,\"log\":\"\xFF\"}\n", "a:1: not a line of a record"},
             Case{R"({"t":5,"call":)" + std::string(100, '[') + std::string(100, ']') + "}\n",
                  "a:1: not a line of a record"},
             Case{call + "\n" + R"({"t":4,"call":{}})" + "\n", "a:2: t: 4 goes back; expected a time from 5"},
             Case{std::string(20'000'000, ' '), "a:1: a line of more than 16 megabytes"},
         }) {
        try {
            Compare(one.text, Record("5 a"));
            ADD_FAILURE() << one.complaint;
        } catch (const DevStandbyMgr::InputError& error) {
            EXPECT_THAT(error.what(), AllOf(StartsWith(one.complaint), HasSubstr("; expected ")));
        }
    }
    EXPECT_TRUE(Replay::IsRecordLine(R"({"call":{"t":"5"},"t":5,"more":6})"));
    EXPECT_FALSE(Replay::IsRecordLine(R"({"t":5,"set":{}})")) << "a trace's step";
}

constexpr int64_t kStart = 1'772'395'200'000;
constexpr int64_t kMinute = 60'000;

/// Two hours that begin at 21:00 in Berlin: dark after a quarter, asleep for `asleep` minutes from 22:00 on.
Story::Night TwoHours(int64_t asleep, const std::string& state) {
    Story::Night night;
    night.start = kStart;
    night.end = kStart + 120 * kMinute;
    for (Lane& lane : night.lanes) {
        lane.Set(kStart, "off");
    }
    night.At(LaneId::STATE).Set(kStart, "WORKING");
    night.At(LaneId::STATE).Set(kStart + 15 * kMinute, "DARK");
    night.At(LaneId::STATE).Set(kStart + 60 * kMinute, state);
    night.At(LaneId::TIMERS).Set(kStart + 5 * kMinute, "stretched", asleep);
    night.At(LaneId::SLEEP).Set(kStart + 60 * kMinute, "asleep");
    night.At(LaneId::SLEEP).Set(kStart + (60 + asleep) * kMinute, "awake");
    for (Lane& lane : night.lanes) {
        lane.End(night.end);
    }
    const auto happens = [&night](int64_t t, Subject subject, const std::string& text, const char* reason = "") {
        Event& event = night.events.emplace_back();
        event.t = t;
        event.subject = subject;
        event.text = text;
        event.reason = reason;
        return &event;
    };
    for (const char* text : {"off", "unlocked", "on"}) {
        happens(kStart, Subject::SCREEN, text);
    }
    happens(kStart + 1, Subject::STATE, "stays " + state)->isRepeat = true;
    happens(kStart + 60 * kMinute, Subject::STATE, "changes", state.c_str());
    for (const std::string& name : {std::string("music"), state}) {
        ++night.kills;
        night.killed.insert(static_cast<uint32_t>(night.apps.size()));
        night.apps.push_back({-1, -1, name, {}});
    }
    ++night.kills;  // one is killed again
    return night;
}

TEST(Comparison, SaysByHowMuchTwoNightsDifferAndFromWhenOn) {
    Replay::TimeZone("Europe/Berlin").Use();
    const Story::Night a = TwoHours(30, "NAP");
    const Story::Night b = TwoHours(20, "SLEEP");
    const Comparison comparison{{"one", "other"}, Compare(Record("1 a"), Record("1 b")), {&a, &b}};
    const auto json = ToJson(comparison);
    EXPECT_FALSE(json["same"]);
    const auto& asleep = json["figures"][0];
    EXPECT_EQ(asleep["name"], "asleep");
    EXPECT_EQ(asleep["a"], 30 * kMinute);
    EXPECT_EQ(asleep["difference"], -10 * kMinute);
    EXPECT_EQ(asleep["apart"]["local"], "2026-03-01T22:20:00+0100");
    const auto& stretched = json["figures"][8];
    EXPECT_EQ(stretched["name"], "timers stretched");
    EXPECT_EQ(stretched["difference"], 0);
    EXPECT_EQ(stretched["apart"]["t"], kStart + 5 * kMinute) << "to other lengths";
    EXPECT_EQ(json["states_part"]["t"], kStart + 60 * kMinute);
    EXPECT_EQ(json["states_part"]["b"], "SLEEP (off)");
    EXPECT_EQ(json["killed"]["only_a"], nlohmann::ordered_json({"NAP"}));
    EXPECT_EQ(json["figures"][9]["a"], 2) << "applications";
    EXPECT_EQ(json["figures"][10]["a"], 3) << "kills";

    std::ostringstream text;
    Tell(comparison, text);
    EXPECT_THAT(text.str(), HasSubstr("First difference in the story: Sun 1 Mar 2026 22:00:00.000 CET\n"
                                      "     21:00:00  screen     off\n"
                                      "     21:00:00  screen     unlocked\n"
                                      "     21:00:00  screen     on\n"
                                      "  A  22:00:00  state      changes: NAP\n"
                                      "  B  22:00:00  state      changes: SLEEP\n"));
    EXPECT_THAT(text.str(), HasSubstr("asleep            30 min        20 min        −10 min       Sun 1 Mar 22:20\n"));
    EXPECT_THAT(text.str(), HasSubstr("The states part on Sun 1 Mar at 22:00: A is in NAP (off), B in SLEEP (off).\n"));
}

TEST(Comparison, LooksOnlyAtTheTimeThatBothNightsCover) {
    const Story::Night whole = TwoHours(30, "NAP");
    Story::Night part = TwoHours(20, "SLEEP");
    part.end = kStart + 50 * kMinute;
    const auto json = ToJson({{"one", "other"}, Compare(Record("1 a"), Record("1 b")), {&whole, &part}});
    EXPECT_TRUE(json["states_part"].is_null());
    EXPECT_TRUE(json["figures"][0]["apart"].is_null());
}

TEST(Comparison, ClaimsNothingOfRecordsThatItsLinesDoNotSay) {
    Replay::TimeZone("UTC").Use();
    const Story::Night played = TwoHours(30, "NAP");
    for (const Story::Night* night : {static_cast<const Story::Night*>(nullptr), &played}) {
        const Comparison comparison{{"one", "other"}, Compare(Record("1 a"), Record("1 b")), {nullptr, night}};
        EXPECT_FALSE(ToJson(comparison).contains("figures"));
        std::ostringstream text;
        Tell(comparison, text);
        EXPECT_THAT(text.str(), AllOf(HasSubstr("  B  00:00:00.001  call b"), Not(HasSubstr("asleep"))));
    }
}

TEST(PairTally, OrdersTheDifferencesOfManyNightsAndNamesThoseThatChangedMost) {
    PairTally tally;
    const auto add = [&tally](const std::string& trace, int64_t differenceMs, int64_t kills) {
        const NightPair pair{trace,
                             "2026-03-01T21:00:00+01:00",
                             {{"bluetooth off", true, {60'000, 60'000 + differenceMs}}, {"kills", false, {0, kills}}},
                             differenceMs != 0 ? "2026-03-01T22:00:00+01:00" : ""};
        tally.Add(UnpackPair(Pack(pair)));
    };
    const std::vector<int64_t> minutes = {0, -1, 7, 3, 9, 0, -20, 5};
    for (size_t i = 0; i < minutes.size(); ++i) {
        add("night " + std::to_string(i), minutes[i] * 60'000, static_cast<int64_t>(i) * 100);
    }
    const auto json = tally.ToJson({"as it is", "tried"});
    EXPECT_EQ(json["nights_different"], 6);
    const auto& bluetooth = json["figures"][0];
    EXPECT_EQ(bluetooth["name"], "bluetooth_off_s");
    // -20 -1 0 0 3 5 7 9
    EXPECT_EQ(bluetooth["difference_min"], -1200.0);
    EXPECT_EQ(bluetooth["difference_p25"], -15.0);
    EXPECT_EQ(bluetooth["difference_median"], 90.0);
    EXPECT_EQ(bluetooth["difference_p75"], 330.0);
    EXPECT_EQ(bluetooth["difference_max"], 540.0);
    EXPECT_EQ(bluetooth["b_mean"], 60.0 + 22.5);
    EXPECT_EQ(bluetooth["nights_different"], 6);
    EXPECT_EQ(json["figures"][1]["name"], "kills");
    EXPECT_EQ(json["figures"][1]["difference_max"], 700);
    std::vector<std::string> most;
    for (const auto& one : json["most_changed"]) {
        most.push_back(one["trace"]);
    }
    EXPECT_THAT(most, ElementsAre("night 6", "night 4", "night 2", "night 7", "night 3"));
}

}  // namespace
}  // namespace TARN::Tests
