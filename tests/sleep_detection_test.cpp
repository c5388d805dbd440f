#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "are.h"
#include "night.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kPublish = "CommonEventManager.PublishCommonEvent";
constexpr const char* kAsleep = R"("mUserStationaryDuration": 5000, "mLightDarkDuration": 5000)";
constexpr const char* kAwake = R"("mUserStationaryDuration": 0)";
constexpr int64_t kDayMs = 86'400'000;
/// What the baseline alone takes for sleep in the night.
constexpr const char* kLightSleep = R"("mUserStationaryDuration": 1500, "mLightDarkDuration": 1500)";

/// Milliseconds of a local time of the first evening or, before noon, of the morning after it.
int64_t Ms(const std::string& time) {
    Replay::TimeZone("UTC").Use();
    return Replay::TimeZone::ParseLocal((time < "12" ? "2026-03-02T" : "2026-03-01T") + time);
}

/// A collection of `timestampMs` arrives now.
Night& Collected(Night& night, int64_t timestampMs, const std::string& record) {
    return night.Message(100, "{" + record + R"(, "mTimestamp": )" + std::to_string(timestampMs) + "}");
}

/// At `time` of the first night a collection of that moment arrives.
Night& Collected(Night& night, const std::string& time, const std::string& record) {
    return Collected(night.AdvanceTo(time), Ms(time), record);
}

Night& Unlock(Night& night) {
    return night.System("COMMON_EVENT_SCREEN_UNLOCKED");
}

Night& Task(Night& night, int32_t type, bool isStarted) {
    return night.Message(
        101, R"({"typeId": )" + std::to_string(type) + R"(, "started": )" + (isStarted ? "true" : "false") + "}");
}

Night& DumpTest(Night& night, const std::string& words) {
    return night.Dump(R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL", "-ST", )" + words + "]");
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

/// What the strategy appended to the only dump, without what others did.
std::string DumpOf(const Night& night) {
    const std::string text = night.Play().Dumps().at(0);
    const std::string others = "userSleepState: 0\n\"";
    EXPECT_TRUE(text.ends_with(others)) << text;
    return text.substr(1, text.size() - 1 - others.size());
}

TEST(SleepDetection, EachChangeIsPublishedOnceAndThenToldWithinTheService) {
    Night night;
    Collected(night, "03:00:00", kAsleep);
    Collected(night, "03:10:00", kAsleep);
    Collected(night, "03:20:00", kAwake);
    Collected(night, "03:30:00", kAwake);
    const Record record = night.Play();
    EXPECT_THAT(Told(record), Are({"03:00:00 asleep, up at 06:15:00", "03:20:00 awake, up at 06:35:00"}));
    const std::string want = R"({"isSleep":true,"wakeupTime":)" + std::to_string(Ms("06:15:00")) + "}";
    EXPECT_THAT(record.At("03:00").Of({kPublish, "deliver 1 ", "deliver 11 "}),
                Are({R"(call CommonEventManager.PublishCommonEvent {"action":"COMMON_EVENT_USER_SLEEP_STATE_CHANGED",)"
                     R"("want":)" + want + R"(,"permissions":["tarn.permission.MANAGER_USER_SLEEP_STATUS"]} -> true)",
                     "deliver 1 COMMON_EVENT_USER_SLEEP_STATE_CHANGED " + want, "deliver 11 " + want}));
    EXPECT_THAT(
        record.At("03:00").LogsOf("sleep_detection_strategy"),
        Are({"info collected data: user stationary duration:(5000); light dark duration(5000); screen off "
             "duration(-1); baseline result(-1); screen on count(-1); light(-1.000000); proximity(-1.000000); unlock "
             "time(-1); collect time(" + std::to_string(Ms("03:00:00")) + "); next alarm clock time(-1)",
             "info predict baseline result: 1, wakeup time: " + std::to_string(Ms("06:15:00")), "info into slp",
             "info PublishCommonEvent for user slp state changed success, isSleep: 1, " +
                 std::to_string(Ms("06:15:00"))}));
    EXPECT_THAT(record.At("03:10").Calls(), IsEmpty());
}

TEST(SleepDetection, AFailedPublishInformsNobodyButTheStateIsKept) {
    Night night;
    Collected(night.Fail(kPublish), "03:00:00", kAsleep);
    Collected(night.AdvanceTo("03:05").Heal(kPublish), "03:10:00", kAsleep);
    Collected(night, "03:20:00", kAwake);
    const Record record = night.Play();
    EXPECT_THAT(record.At("03:00").Deliveries({1, 11}), IsEmpty());
    EXPECT_THAT(record.At("03:00").LogsOf("sleep_detection_strategy"),
                Contains("warn PublishCommonEvent for user slp state changed fail"));
    EXPECT_THAT(Told(record), Are({"03:00:00 asleep, up at 06:15:00", "03:20:00 awake, up at 06:35:00"}))
        << "nothing is made up for";
}

TEST(SleepDetection, SleepEndsFifteenMinutesBeforeTheWakeUp) {
    const std::string deep = kAsleep + std::string(R"(, "mScrOffDuration": 30000, "mLight": 0.0)");
    for (const auto& [time, isNear] : {std::pair{"05:59:59.999", false}, {"06:00:00", true}, {"06:20:00", true}}) {
        Night night;
        Collected(night.AdvanceTo(time), Ms("03:00:00"), deep);
        const Record record = night.Play();
        EXPECT_EQ(Told(record).empty(), isNear) << time;
        EXPECT_THAT(record.LogsOf("sleep_detection_strategy"), Contains(StartsWith("info predict baseline result: 1")));
        const auto stopped = Contains("info standby stopped because the time is near or later than alarm.");
        EXPECT_THAT(record.LogsOf("sleep_detection_strategy"), ::testing::Conditional(isNear, stopped, Not(stopped)));
    }
    Night night;
    Collected(night, "03:00:00", kAsleep);
    Collected(night.AdvanceTo("06:00"), Ms("03:00:00"), kAsleep);
    EXPECT_THAT(Told(night.Play()), Are({"03:00:00 asleep, up at 06:15:00", "06:00:00 awake, up at 06:15:00"}));
}

TEST(SleepDetection, TheHourAfterTheAlarmOfTheLastSleepIsAwake) {
    for (const bool hasSlept : {true, false}) {
        Night night;
        const std::string alarm = R"(, "mNextAlarmClockTriggerTime": )" + std::to_string(Ms("03:30:00"));
        Collected(night, "03:00:00", (hasSlept ? kAsleep : kAwake) + alarm);
        Collected(night, "03:50:00", kAsleep);
        EXPECT_EQ(Told(night.Play().At("03:50")).back(),
                  hasSlept ? "03:50:00 awake, up at 07:05:00" : "03:50:00 asleep, up at 07:05:00");
    }
}

TEST(SleepDetection, AnUserWhoProvesAwakeMakesTheEnhancedModelTheBetter) {
    struct Case {
        const char* what;
        std::string mode;
        std::string verdict;
        bool isInCall, isUnlocked, isLit;
        bool isBetter;
    };
    for (const Case& c : {Case{"nothing", "0", kLightSleep, true, false, false, false},
                          {"unlocked", "0", kLightSleep, false, true, false, true},
                          {"unlocked, both models wrong", "0", kAsleep, false, true, false, false},
                          {"unlocked, none wrong", "0", kAwake, false, true, false, false},
                          {"screen on", "0", kLightSleep, false, false, true, false},
                          {"screen on in a call", "0", kLightSleep, true, false, true, true},
                          {"screen on in a call, both models wrong", "0", kAsleep, true, false, true, false},
                          {"screen on in a call on a watch", "3", kLightSleep, true, false, true, false},
                          {"unlocked on a watch", "3", kLightSleep, false, true, false, true}}) {
        Night night;
        DumpTest(night.Host("standby_mode", c.mode), R"("--SetMode", "1")");
        Collected(night, "00:30:00", c.verdict);
        Task(night, 8, c.isInCall);
        if (c.isUnlocked) {
            Unlock(night);
        }
        if (c.isLit) {
            night.ScreenOn().ScreenOff();
        }
        Collected(Task(night, 8, false), "00:40:00", kAwake);
        Collected(night, "00:50:00", kLightSleep);
        EXPECT_EQ(Told(night.Play().At("00:50")).empty(), c.isBetter) << c.what;
    }
}

/// From 00:10 on the enhanced model is the better.
Night Enhanced() {
    Night night;
    Collected(night, "00:05:00", kLightSleep);
    Collected(Unlock(night.AdvanceTo("00:10:00")), Ms("00:10:00"), kAwake);
    return night;
}

TEST(SleepDetection, TheEnhancedModelWantsHalfAnHourAndTheHoursBeforeSix) {
    for (const auto& [record, timestamp, isAsleep] :
         {std::tuple{R"(, "mScrOffDuration": 1799)", "00:30:00", false}, {R"(, "mScrOffDuration": 1800)", "00:30:00", true},
          {R"(, "mUserStationaryDuration": 1799)", "00:30:00", false},
          {R"(, "mUserStationaryDuration": 1800)", "00:30:00", true},
          {R"(, "mScrOffDuration": 1800)", "05:59:59", true}, {R"(, "mScrOffDuration": 1800)", "06:00:00", false}}) {
        Night night = Enhanced();
        Collected(night.AdvanceTo("00:30"), Ms(timestamp), kLightSleep + std::string(record));
        const Record played = night.Play().At("00:30");
        EXPECT_EQ(!Told(played).empty(), isAsleep) << record << timestamp;
        EXPECT_THAT(played.LogsOf("sleep_detection_strategy"), Contains(StartsWith("info predict baseline result: 1")));
    }
}

TEST(SleepDetection, AnOverruledVerdictIsNoSleepToContinue) {
    for (const bool isOverruled : {true, false}) {
        Night night = Enhanced();
        Collected(night, "00:30:00", kLightSleep + std::string(isOverruled ? "" : R"(, "mScrOffDuration": 1800)"));
        Task(night, 2, true);  // active use applies no verdict, but the record counts
        Collected(night, "00:40:00", R"("mUserStationaryDuration": 1, "mScrOffDuration": 10800)");
        EXPECT_THAT(night.Play().At("00:40").LogsOf("sleep_detection_strategy"),
                    Contains(StartsWith("info predict baseline result: " + std::to_string(isOverruled ? 0 : 1))));
    }
}

TEST(SleepDetection, TheEnhancedModelIsTheBetterForThreeDays) {
    constexpr int64_t kThreeDaysMs = 259'200'000;
    for (const auto& [ageMs, isOver] : {std::pair{kThreeDaysMs, false}, {kThreeDaysMs + 1, true}}) {
        Night night = Enhanced();
        Collected(night.AdvanceTo("00:30"), Ms("00:10:00") + ageMs, kLightSleep);
        const Record record = night.Play().At("00:30");
        EXPECT_EQ(!Told(record).empty(), isOver) << ageMs;
        EXPECT_EQ(record.LogsOf("sleep_detection_strategy")[2] == "info update IsEnhanceModelBetter to 0", isOver);
    }
}

TEST(SleepDetection, ActiveUseEndsSleepAndIsNamedInOrder) {
    constexpr const char* kAudio = "info playing or recording audio now";
    for (const auto& [types, line] :
         {std::pair{std::vector{4, 8, 2}, kAudio}, {{2}, kAudio}, {{4, 8}, "info calling now"}, {{4}, "info sporting now"}}) {
        Night night;
        Collected(night, "03:00:00", kAsleep);
        for (const int32_t type : types) {
            Task(night.AdvanceTo("03:05"), type, true);
        }
        Collected(night, "03:10:00", kAsleep);
        Collected(night, "03:20:00", kAsleep);
        for (const int32_t type : types) {
            Task(night, type, false);
        }
        Collected(night, "03:30:00", kAsleep);
        const Record record = night.Play();
        EXPECT_THAT(Told(record), Are({"03:00:00 asleep, up at 06:15:00", "03:10:00 awake, up at -1",
                                       "03:30:00 asleep, up at 06:45:00"}));
        const Record::Texts logs = record.At("03:10").LogsOf("sleep_detection_strategy");
        EXPECT_THAT(Record::Texts(logs.begin() + 2, logs.end()),
                    Are({line, "info exit slp",
                         "info PublishCommonEvent for user slp state changed success, isSleep: 0, -1"}));
    }
    Night night;
    Collected(Task(Task(night, 1, true), 16, true).Message(101), "03:00:00", kAsleep);
    EXPECT_THAT(Told(night.Play()), Are({"03:00:00 asleep, up at 06:15:00"})) << "other tasks are no active use";
}

TEST(SleepDetection, ALitScreenEndsSleepAndNoSleepIsAnnouncedUnderIt) {
    Night night;
    Collected(night, "03:00:00", kAsleep);
    night.AdvanceTo("03:05").ScreenOn();
    Collected(night, "03:10:00", kAsleep);
    Collected(night, "03:20:00", kAwake);
    Collected(night, "03:30:00", kAsleep);
    night.AdvanceTo("03:40").ScreenOn().ScreenOn();
    const Record record = night.Play();
    EXPECT_THAT(Told(record), Are({"03:00:00 asleep, up at 06:15:00", "03:05:00 awake, up at -1",
                                   "03:20:00 awake, up at 06:35:00", "03:40:00 awake, up at -1"}));
    EXPECT_THAT(record.At("03:30").LogsOf("sleep_detection_strategy"), Not(Contains("info into slp")));
}

TEST(SleepDetection, SnapshotsAreTenMinutesApartOnTheLoopsGrid) {
    for (const auto& [offAgain, next] :
         {std::pair{"22:05:00", "22:10:01"}, {"22:05:03", "22:10:04"}, {"22:04:59.999", "22:10:10.999"}}) {
        Night night;
        night.AdvanceTo("22:00").ScreenOff().AdvanceTo("22:01").ScreenOn().AdvanceTo(offAgain).ScreenOff();
        EXPECT_THAT(Snapshots(night.PlayUntil("22:19")), Are({"22:00:01", next})) << offAgain;
    }
    EXPECT_THAT(Snapshots(Night().AdvanceTo("22:00").ScreenOff().AdvanceTo("22:00:05").ScreenOn().PlayUntil("23:00")),
                Are({"22:00:01"}))
        << "a lit screen ends the loop";
}

TEST(SleepDetection, TheDayKeepsPredictingOnlyForASleeperAndUntilNoon) {
    struct Case {
        const char* off;
        bool isAsleep;
        bool isCollected;
    };
    for (const Case& c : {Case{"07:59:59", false, true}, {"08:00:00", false, false}, {"08:00:00", true, true},
                          {"11:59:59", true, true}, {"12:00:00", true, false}, {"20:59:59", true, false},
                          {"21:00:00", false, true}}) {
        Night night("UTC", "2026-03-02T07:00:00");
        // collected, so it says, tomorrow night: the wake-up is far
        Collected(night.AdvanceTo("07:30"), Ms("03:00:00") + kDayMs,
                  R"("mScrOffDuration": 3601, "mUserStationaryDuration": )" + std::to_string(c.isAsleep ? 14'401 : 0));
        const Record record = night.AdvanceTo(c.off).ScreenOff().AdvanceMs(2000).ScreenOn().Play();
        EXPECT_EQ(Snapshots(record).size() == 2, c.isCollected) << c.off;
        EXPECT_EQ(record.At(c.off).LogsOf("sleep_detection_strategy") == Record::Texts{"info cur time is keep predict"},
                  c.isAsleep && c.isCollected);
    }
}

TEST(SleepDetection, ALateAlarmKeepsItPredictingUntilTheAlarmIsNear) {
    Night night("UTC", "2026-03-02T04:00:00");
    night.Device("movement", R"({"value": 1, "at": 0})").Device("proximity", "5").Device("light", "0");
    night.Device("settings", R"({"SETTINGSDATA": {"nearestAlarmingTime": ")" + std::to_string(Ms("08:59:00")) + R"("}})");
    const Record record = night.AdvanceTo("06:25").ScreenOff().PlayUntil("21:05");
    EXPECT_THAT(Told(record.At("0")), Are({"07:25:01 asleep, up at 09:24:01", "08:45:01 awake, up at 09:44:01"}));
    EXPECT_THAT(Snapshots(record.At("08")), Are({"08:05:01", "08:15:01", "08:25:01", "08:35:01", "08:45:01"}));
    EXPECT_THAT(record.Timed().LogsOf("sleep_detection_strategy"),
                Contains("08:45:00 info cur time is keep predict"));
    EXPECT_THAT(Snapshots(record).back(), "21:00:01");
    EXPECT_THAT(Snapshots(record), ::testing::SizeIs(16));
}

TEST(SleepDetection, AnIdlePassOfTheDayForgetsTheVerdicts) {
    for (const bool isIdlePass : {true, false}) {
        Night night("UTC", "2026-03-02T11:00:00");
        Collected(night, Ms("06:00:00") + kDayMs, R"("mScrOffDuration": 3601, "mUserStationaryDuration": 14401)");
        DumpTest(night.AdvanceTo("12:00"), R"("--SetMode", "0")");
        if (isIdlePass) {
            night.ScreenOff();
        }
        DumpTest(Unlock(night.AdvanceTo("12:00:05")).AdvanceTo("12:00:06"), R"("--SetMode", "1")");
        Collected(night.AdvanceTo("22:00"), Ms("22:00:00") + kDayMs, kAsleep);
        EXPECT_EQ(Told(night.Play().At("22:00")).empty(), isIdlePass) << "the unlock contradicts no verdict";
    }
}

TEST(SleepDetection, TheTestModeStopsTheLoopsSnapshotsOnly) {
    Night night;
    DumpTest(night, R"("--SetMode", "1")");
    DumpTest(night.AdvanceTo("23:00").ScreenOff().AdvanceTo("23:05"), R"("--CollectSleepData", "predict")");
    DumpTest(night.AdvanceTo("23:20"), R"("--SetMode", "0")");
    EXPECT_THAT(Snapshots(night.PlayUntil("23:25")), Are({"23:05:01", "23:20:01"}));
}

TEST(SleepDetection, DumpsSayWhatTheyDid) {
    const std::string title = "\n\n=================SleepTest=========================\n";
    for (const auto& [words, answer] : {std::pair{R"("--CollectSleepData", "predict")", "collect sleep data to predict\n"},
                                        {R"("--SendMessage", "start")", "send start slp message\n"},
                                        {R"("--SendMessage", "stop")", "send stop slp message\n"},
                                        {R"("--SetMode", "1")", "Set InSleepTestMode true\n"},
                                        {R"("--SetMode", "0", "more")", "Set InSleepTestMode false\n"},
                                        {R"("--SetMode", "2")", ""},
                                        {R"("--SendMessage", "1")", ""},
                                        {R"("--CollectSleepData", "start")", ""},
                                        {R"("--SetMode")", ""}}) {
        Night night;
        DumpTest(night, words);
        EXPECT_EQ(DumpOf(night), title + answer) << words;
    }
    for (const char* words : {"[]", R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL"])",
                              R"(["DUMP_DETAIL_INFO", "DUMP_SIMULATE_SENSOR", "-ST", "--SetMode", "1"])"}) {
        EXPECT_EQ(DumpOf(Night().Dump(words)), "") << words;
    }
}

TEST(SleepDetection, ADumpedMessageChangesNoState) {
    Night night;
    DumpTest(night, R"("--SendMessage", "stop")");
    DumpTest(night, R"("--SendMessage", "start")");
    Collected(night.AdvanceTo("02:50").ScreenOn(), "03:00:00", kAwake);
    const Record record = night.Play();
    EXPECT_THAT(Told(record), Are({"21:00:00 awake, up at -1", "21:00:00 asleep, up at -1"}));
    EXPECT_THAT(record.Deliveries({11}), ::testing::SizeIs(2));
}

TEST(SleepDetection, TheDebugSwitchIsReadWhenTheServiceStarts) {
    Night night("UTC", "2026-03-02T14:00:00");
    night.Set(R"({"parameters": {"persist.sys.standby_ext_debug_on": "true"}})").ScreenOff();
    const char* detail = R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])";
    const Record record = night.Dump(detail)
                              .AdvanceTo("14:01")
                              .ScreenOn()
                              .Restart()
                              .Dump(detail)
                              .AdvanceTo("14:02")
                              .ScreenOff()
                              .PlayUntil("14:02:40");
    EXPECT_THAT(Snapshots(record), Are({"14:02:01", "14:02:17", "14:02:33"})) << "steps of 4 s, 15 s at the least";
    const std::string title = "\n\n=================SleepDetectionStrategy=========================\n";
    EXPECT_THAT(record.Dumps(), Are({HasSubstr(title + "DEBUG_ON: 0 \nuserSleepState"), HasSubstr(title + "DEBUG_ON: 1 \nuserSleepState")}));
}

TEST(SleepDetection, ACollectionWithoutContentsIsAllUnknown) {
    const Record record = Night().AdvanceTo("03:00").MessageWithoutWant(100).Play();
    EXPECT_THAT(record.LogsOf("sleep_detection_strategy"),
                Contains("info collected data: user stationary duration:(-1); light dark duration(-1); screen off "
                         "duration(-1); baseline result(-1); screen on count(-1); light(-1.000000); "
                         "proximity(-1.000000); unlock time(-1); collect time(-1); next alarm clock time(-1)"));
    EXPECT_THAT(record.LogsOf("sleep_detection_strategy"),
                Contains(StartsWith("info predict baseline result: 0, ")));
    EXPECT_THAT(Told(record), IsEmpty());
}

}  // namespace
}  // namespace TARN::Tests
