#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <map>
#include <sstream>

#include "are.h"
#include "night_script.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::StartsWith;

constexpr const char* kSource = "sleep_detection_strategy";
constexpr const char* kPublish = "CommonEventManager.PublishCommonEvent";
constexpr int64_t kDayMs = 86'400'000;
/// The records that a story names. What is "light" only the baseline takes for sleep in the night.
const std::map<std::string, std::string> kRecords = {
    {"asleep", R"("mUserStationaryDuration": 5000, "mLightDarkDuration": 5000)"},
    {"light", R"("mUserStationaryDuration": 1500, "mLightDarkDuration": 1500)"},
    {"awake", R"("mUserStationaryDuration": 0)"},
    {"morning", R"("mUserStationaryDuration": 14401, "mScrOffDuration": 3601)"}};
const std::map<std::string, int32_t> kTasks = {{"other", 1}, {"audio", 2}, {"sport", 4}, {"call", 8}};

/// Milliseconds of a local time of the first evening or, before noon, of the morning after it.
int64_t Ms(const std::string& time) {
    Replay::TimeZone("UTC").Use();
    return Replay::TimeZone::ParseLocal((time < "12" ? "2026-03-02T" : "2026-03-01T") + time);
}

/// A collection that calls itself one of `timestampMs` arrives now.
Night& Collected(Night& night, int64_t timestampMs, const std::string& name, const std::string& more = {}) {
    auto record = nlohmann::json::parse("{" + kRecords.at(name) + "}");
    record["mTimestamp"] = timestampMs;
    record.update(nlohmann::json::parse("{" + more + "}"));
    return night.Message(100, record.dump());
}

Night& DumpTest(Night& night, const std::string& words) {
    return night.Dump(R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL", "-ST", )" + words + "]");
}

/// Goes on with a story of lines such as "03:00:00 asleep", "03:05:00 on", "03:05:00 unlock" or "03:10:00 call +".
Night& Tell(Night& night, std::initializer_list<const char*> lines) {
    for (const char* line : lines) {
        std::istringstream words(line);
        std::string time;
        std::string what;
        std::string sign;
        words >> time >> what >> sign;
        night.AdvanceTo(time);
        if (what == "on" || what == "off") {
            what == "on" ? night.ScreenOn() : night.ScreenOff();
        } else if (what == "unlock") {
            night.System("COMMON_EVENT_SCREEN_UNLOCKED");
        } else if (what == "test") {
            DumpTest(night, sign == "+" ? R"("--SetMode", "1")" : R"("--SetMode", "0")");
        } else if (const auto task = kTasks.find(what); task != kTasks.end()) {
            night.Message(101, R"({"typeId": )" + std::to_string(task->second) + R"(, "started": )" +
                                   (sign == "+" ? "true}" : "false}"));
        } else {
            Collected(night, Ms(time), what);
        }
    }
    return night;
}

Record Played(std::initializer_list<const char*> lines) {
    Night night;
    return Tell(night, lines).Play();
}

/// What was published: `23:00:00 asleep, up at 06:15:00`, `23:10:00 awake, up at -1`.
Record::Texts Told(const Record& record) {
    Record::Texts texts;
    for (const std::string& call : record.Timed().Calls(kPublish)) {
        const size_t from = call.find('{');
        const auto want = nlohmann::json::parse(call.substr(from, call.rfind(" -> ") - from)).at("want");
        const int64_t wakeUp = want.at("wakeupTime").get<int64_t>();
        texts.push_back(call.substr(0, call.find(' ')) + (want.at("isSleep").get<bool>() ? " asleep" : " awake") +
                        ", up at " + (wakeUp == -1 ? "-1" : Replay::TimeZone::Format(wakeUp, "%H:%M:%S")));
    }
    return texts;
}

/// When snapshots of the collector arrived.
Record::Texts Snapshots(const Record& record) {
    Record::Texts times;
    for (const std::string& line : record.Timed().Deliveries({100})) {
        times.push_back(line.substr(0, line.find(' ')));
    }
    return times;
}

TEST(SleepDetection, SleepEndsFifteenMinutesBeforeTheWakeUp) {
    for (const auto& [time, isNear] : {std::pair{"05:59:59.999", false}, {"06:00:00", true}}) {
        Night night;
        Collected(Tell(night, {"03:00:00 asleep"}).AdvanceTo(time), Ms("03:00:00"), "morning");
        const Record record = night.Play();
        EXPECT_EQ(Told(record).back() == "06:00:00 awake, up at 06:15:00", isNear) << time;
        const Record::Texts logs = record.At(time).LogsOf(kSource);
        EXPECT_THAT(logs.at(1), StartsWith("info predict baseline result: 1"));
        EXPECT_EQ(logs.at(2) == "info standby stopped because the time is near or later than alarm.", isNear);
    }
}

TEST(SleepDetection, TheHourAfterTheAlarmOfTheLastSleepIsAwake) {
    for (const auto& [before, after] :
         {std::pair{"asleep", "03:50:00 awake, up at 07:05:00"}, {"awake", "03:50:00 asleep, up at 07:05:00"}}) {
        Night night;
        Collected(night.AdvanceTo("03:00"), Ms("03:00:00"), before,
                  R"("mNextAlarmClockTriggerTime": )" + std::to_string(Ms("03:30:00")));
        EXPECT_EQ(Told(Tell(night, {"03:50:00 asleep"}).Play()).back(), after);
    }
}

TEST(SleepDetection, AUserWhoProvesAwakeMakesTheEnhancedModelTheBetter) {
    const auto isBetter = [](std::initializer_list<const char*> proof, const char* mode = "0") {
        Night night;
        Tell(night.Host("standby_mode", mode), {"23:50:00 test +"});
        Tell(night, proof);
        return Told(Tell(night, {"00:40:00 call -", "00:40:00 awake", "00:50:00 light"}).Play().At("00:50")).empty();
    };
    EXPECT_FALSE(isBetter({"00:30:00 light", "00:31:00 call +"}));
    EXPECT_TRUE(isBetter({"00:30:00 light", "00:31:00 unlock"}));
    EXPECT_TRUE(isBetter({"00:30:00 light", "00:31:00 unlock"}, "3"));
    EXPECT_FALSE(isBetter({"00:30:00 asleep", "00:31:00 unlock"})) << "the enhanced model was no better";
    EXPECT_FALSE(isBetter({"00:30:00 awake", "00:31:00 unlock"}));
    EXPECT_FALSE(isBetter({"00:30:00 light", "00:31:00 on", "00:32:00 off"}));
    EXPECT_TRUE(isBetter({"00:30:00 light", "00:31:00 call +", "00:31:00 on", "00:32:00 off"}));
    EXPECT_FALSE(isBetter({"00:30:00 light", "00:31:00 call +", "00:31:00 on", "00:32:00 off"}, "3")) << "a watch";
    EXPECT_FALSE(isBetter({"00:30:00 asleep", "00:31:00 call +", "00:31:00 on", "00:32:00 off"}));
}

/// From 00:10 on the enhanced model is the better.
Night Enhanced() {
    Night night;
    return Tell(night, {"00:05:00 light", "00:10:00 unlock", "00:10:00 awake"});
}

TEST(SleepDetection, TheEnhancedModelWantsHalfAnHourAndTheHoursBeforeSix) {
    const auto isAsleep = [](const char* timestamp, const std::string& more) {
        Night night = Enhanced();
        const Record record = Collected(night.AdvanceTo("00:30"), Ms(timestamp), "light", more).Play().At("00:30");
        EXPECT_THAT(record.LogsOf(kSource), Contains(StartsWith("info predict baseline result: 1")));
        return !Told(record).empty();
    };
    EXPECT_FALSE(isAsleep("00:30:00", R"("mScrOffDuration": 1799)"));
    EXPECT_TRUE(isAsleep("00:30:00", R"("mScrOffDuration": 1800)"));
    EXPECT_FALSE(isAsleep("00:30:00", R"("mUserStationaryDuration": 1799, "mProximity": 5.0)"));
    EXPECT_TRUE(isAsleep("00:30:00", R"("mUserStationaryDuration": 1800, "mProximity": 5.0)"));
    EXPECT_TRUE(isAsleep("05:59:59", R"("mScrOffDuration": 1800)"));
    EXPECT_FALSE(isAsleep("06:00:00", R"("mScrOffDuration": 1800)"));
}

TEST(SleepDetection, AnOverruledVerdictIsNoSleepToContinue) {
    for (const bool isOverruled : {true, false}) {
        Night night = Enhanced();
        Tell(night, {"00:29:00 audio +"});  // active use applies no verdict, but the record counts
        Collected(night.AdvanceTo("00:30"), Ms("00:30:00"), "light", isOverruled ? "" : R"("mScrOffDuration": 1800)");
        Collected(night.AdvanceTo("00:40"), Ms("00:40:00"), "light",
                  R"("mLightDarkDuration": 0, "mScrOffDuration": 10800)");
        EXPECT_THAT(night.Play().At("00:40").LogsOf(kSource),
                    Contains(StartsWith("info predict baseline result: " + std::to_string(isOverruled ? 0 : 1))));
    }
}

TEST(SleepDetection, ALitScreenEndsSleepAndNoSleepIsAnnouncedUnderIt) {
    const Record record = Played({"03:00:00 asleep", "03:05:00 on", "03:10:00 asleep", "03:20:00 awake",
                                  "03:30:00 asleep", "03:40:00 on", "03:40:00 on"});
    EXPECT_THAT(Told(record), Are({"03:00:00 asleep, up at 06:15:00", "03:05:00 awake, up at -1",
                                   "03:20:00 awake, up at 06:35:00", "03:40:00 awake, up at -1"}));
}

TEST(SleepDetection, SnapshotsAreTenMinutesApartOnTheLoopsGrid) {
    for (const auto& [offAgain, next] :
         {std::pair{"22:05:00 off", "22:10:01"}, {"22:05:03 off", "22:10:04"}, {"22:04:59.999 off", "22:10:10.999"}}) {
        Night night;
        Tell(night, {"22:00:00 off", "22:01:00 on", offAgain});
        EXPECT_THAT(Snapshots(night.PlayUntil("22:19")), Are({"22:00:01", next})) << offAgain;
    }
    Night lit;
    EXPECT_THAT(Snapshots(Tell(lit, {"22:00:00 off", "22:00:05 on"}).PlayUntil("23:00")), Are({"22:00:01"}));
    Night tested;
    DumpTest(Tell(tested, {"22:00:00 test +", "22:01:00 off"}).AdvanceTo("22:05"),
             R"("--CollectSleepData", "predict")");
    EXPECT_THAT(Snapshots(Tell(tested, {"22:20:00 test -"}).PlayUntil("22:25")), Are({"22:05:01", "22:20:01"}));
}

TEST(SleepDetection, TheDayKeepsPredictingOnlyForASleeperAndUntilNoon) {
    const auto collects = [](const char* name, const char* off) {
        Night night("UTC", "2026-03-02T07:00:00");
        Collected(night, Ms("03:00:00") + kDayMs, name);  // its wake-up is far
        const Record record = night.AdvanceTo(off).ScreenOff().AdvanceMs(2000).ScreenOn().Play();
        return Snapshots(record).size() == 2;
    };
    EXPECT_TRUE(collects("awake", "07:59:59"));
    EXPECT_FALSE(collects("awake", "08:00:00"));
    EXPECT_TRUE(collects("morning", "08:00:00"));
    EXPECT_TRUE(collects("morning", "11:59:59"));
    EXPECT_FALSE(collects("morning", "12:00:00"));
    EXPECT_FALSE(collects("morning", "20:59:59"));
    EXPECT_TRUE(collects("awake", "21:00:00"));
}

TEST(SleepDetection, ALateAlarmKeepsItPredictingUntilTheAlarmIsNear) {
    Night night("UTC", "2026-03-02T04:00:00");
    night.Device("movement", R"({"value": 1, "at": 0})").Device("proximity", "5").Device("light", "0");
    night.Device("settings",
                 R"({"SETTINGSDATA": {"nearestAlarmingTime": ")" + std::to_string(Ms("08:59:00")) + R"("}})");
    const Record record = night.AdvanceTo("06:25").ScreenOff().PlayUntil("21:05");
    EXPECT_THAT(Told(record.At("0")), Are({"07:25:01 asleep, up at 09:24:01", "08:45:01 awake, up at 09:44:01"}));
    EXPECT_THAT(Snapshots(record.At("08")), Are({"08:05:01", "08:15:01", "08:25:01", "08:35:01", "08:45:01"}));
    EXPECT_THAT(record.At("08:45:00").LogsOf(kSource), Are({"info cur time is keep predict"}));
    EXPECT_THAT(Snapshots(record), ::testing::SizeIs(16)) << "the last of them at 21:00";
}

TEST(SleepDetection, AnIdlePassOfTheDayForgetsTheVerdicts) {
    for (const bool isIdlePass : {true, false}) {
        Night night("UTC", "2026-03-02T11:00:00");
        Collected(night, Ms("06:00:00") + kDayMs, "morning");
        if (isIdlePass) {
            Tell(night, {"12:00:00 off"});
        }
        Tell(night, {"12:00:05 unlock", "12:00:06 test +"});
        Collected(night.AdvanceTo("22:00"), Ms("22:00:00") + kDayMs, "asleep");
        EXPECT_EQ(Told(night.Play().At("22:00")).empty(), isIdlePass) << "the unlock contradicts no verdict";
    }
}

}  // namespace
}  // namespace TARN::Tests
