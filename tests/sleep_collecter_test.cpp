#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <sstream>

#include "are.h"
#include "night_script.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;

constexpr const char* kSource = "sleep_data_collecter";

int64_t Ms(const std::string& local) {
    Replay::TimeZone("UTC").Use();
    return Replay::TimeZone::ParseLocal(local);
}

Night& DumpTest(Night& night, const std::string& words) {
    return night.Dump(R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL", "-ST", )" + words + "]");
}

/// Takes one snapshot, which ends a second later.
Night& Collect(Night& night) {
    return DumpTest(night, R"("--CollectSleepData", "predict")");
}

Night& Unlock(Night& night) {
    return night.System("COMMON_EVENT_SCREEN_UNLOCKED");
}

/// These values of each snapshot in turn: `0.5 -1`.
Record::Texts Values(const Record& record, std::initializer_list<const char*> keys) {
    Record::Texts texts;
    for (const std::string& delivery : record.Deliveries({100})) {
        const auto want = nlohmann::json::parse(delivery.substr(delivery.find('{')));
        std::ostringstream text;
        for (const char* key : keys) {
            text << (text.tellp() > 0 ? " " : "");
            if (want.at(key).is_number_float()) {
                text << want.at(key).get<float>();
            } else {
                text << want.at(key).get<int64_t>();
            }
        }
        texts.push_back(text.str());
    }
    return texts;
}

/// `Subscribe5 SetBatch5 Activate5`
std::string SensorCalls(const Record& record) {
    std::string text;
    for (const std::string& call : record.Calls("SensorAgent.")) {
        const std::string name = call.substr(call.find('.') + 1, call.find(' ') - call.find('.') - 1);
        const size_t number = call.find(':') + 1;
        text += (text.empty() ? "" : " ") + name.substr(0, name.find("Sensor")) +
                call.substr(number, call.find('}') - number);
    }
    return text;
}

TEST(SleepCollecter, ASnapshotListensForOneSecond) {
    Night night;
    night.Device("light", "3").Device("proximity", "4");
    const Record record = Collect(night.AdvanceTo("21:30")).PlayUntil("22:00");
    EXPECT_EQ(SensorCalls(record.At("21:30:00")), "Subscribe5 SetBatch5 Activate5 Subscribe12 SetBatch12 Activate12");
    EXPECT_EQ(SensorCalls(record.At("21:30:01")), "Deactivate5 Unsubscribe5 Deactivate12 Unsubscribe12");
    EXPECT_THAT(record.At("21:30:01").Deliveries(),
                Are({R"(100 {"mLight":3.0,"mLightDarkDuration":1772400601,"mNextAlarmClockTriggerTime":-1,)"
                     R"("mProximity":4.0,"mScrOffDuration":0,"mScrOnCount":0,"mTimestamp":1772400601000,)"
                     R"("mUnlockTimestamp":-1,"mUserStationaryDuration":-1})"}));
    for (const auto& [afterMs, reading] : {std::pair{0, "8 9"}, {999, "8 9"}, {1000, "8 9"}, {1001, "3 4"}}) {
        Night changing;
        Collect(changing.Device("light", "3").Device("proximity", "4"));
        changing.AdvanceMs(afterMs).Set(R"({"light": 8, "proximity": 9})");
        EXPECT_THAT(Values(changing.PlayUntil("21:01"), {"mLight", "mProximity"}), Are({reading})) << afterMs;
    }
}

TEST(SleepCollecter, AFailingSensorStepIsLoggedAndTheSnapshotStillComes) {
    for (const auto& [step, expected, values] :
         {std::tuple{"SubscribeSensor",
                     "StartSensor, subscribe sensor failed for sensor ID 5, StopSensor, unsubscribe sensor failed for "
                     "sensor ID 5, StopSensor",
                     "-1 -1"},
          {"SetBatch",
           "StartSensor, subscribe sensor succeed for sensor ID 5, subscribe sensor succeed for sensor ID 12, "
           "StopSensor",
           "3 4"},
          {"ActivateSensor",
           "StartSensor, subscribe sensor succeed for sensor ID 5, activate sensor failed for sensor ID 5, StopSensor, "
           "StopSensor",
           "-1 -1"},
          {"DeactivateSensor",
           "StartSensor, subscribe sensor succeed for sensor ID 5, subscribe sensor succeed for sensor ID 12, "
           "StopSensor, deactivate sensor failed for sensor ID 5, deactivate sensor failed for sensor ID 12",
           "3 4"},
          {"UnsubscribeSensor",
           "StartSensor, subscribe sensor succeed for sensor ID 5, subscribe sensor succeed for sensor ID 12, "
           "StopSensor, unsubscribe sensor failed for sensor ID 5, unsubscribe sensor failed for sensor ID 12",
           "3 4"}}) {
        Night night;
        night.Device("light", "3").Device("proximity", "4");
        Collect(night.AdvanceTo("21:30").Fail(std::string("SensorAgent.") + step, 7));
        const Record record = night.PlayUntil("22:00");
        std::string logs;
        for (const std::string& line : record.At("21:30").LogsOf(kSource)) {
            EXPECT_EQ(line.starts_with("error "), line.find("failed") != std::string::npos) << line;
            logs += line.substr(line.find(' ') + 1) + ", ";
        }
        EXPECT_EQ(logs, expected + std::string(", query nearest alarm clock failed, "));
        EXPECT_THAT(Values(record, {"mLight", "mProximity"}), Are({values})) << step;
    }
}

TEST(SleepCollecter, APhoneWithoutSensorsStillTakesSnapshots) {
    constexpr const char* kNone = "error do not find any usable sensor to detect motion";
    constexpr const char* kNoList = "error get all sensors failed, sensors are not available";
    constexpr const char* kFlag = "info get is_proximity_error is 0";
    const auto check = [](const char* fact, const char* json, const char* calls, const Record::Texts& logs) {
        Night night;
        const Record record = Collect(night.Device(fact, json)).PlayUntil("22:00");
        const Record::Texts all = record.LogsOf(kSource);
        EXPECT_EQ(Record::Texts(all.begin(), std::find(all.begin(), all.end(), "info StartSensor")), logs) << json;
        EXPECT_THAT(Values(record, {"mLight", "mProximity"}), Are({"-1 -1"}));
        EXPECT_EQ(SensorCalls(record), calls);
    };
    check("sensors", "[1, 13]", "", {kNone, kFlag});
    check("sensors", "[12]", "Subscribe12 SetBatch12 Activate12 Deactivate12 Unsubscribe12", {kFlag});
    check("fail", R"({"SensorAgent.GetAllSensors": 3})", "", {kNoList, kNoList, kNone, kFlag});
}

TEST(SleepCollecter, AMissingReadingIsBridgedOnceAsTheDeviceKindDoesIt) {
    struct Case {
        const char* mode;
        const char* darkBridged;
        const char* missing;
        const char* brightBridged;
    };
    for (const Case& c : {Case{"0", "3 2", "-1 -1", "50 7"},
                          {"1", "3 5.1", "-1 5.1", "50 5.1"},
                          {"2", "3 2", "-1 -1", "50 7"},
                          {"3", "3 -1", "-1 -1", "50 -1"}}) {
        Night night;
        Collect(night.Host("standby_mode", c.mode).Set(R"({"light": 3, "proximity": 2})"));
        Collect(night.AdvanceTo("21:10").Set(R"({"light": null, "proximity": null})"));
        Collect(night.AdvanceTo("21:20"));
        Collect(night.AdvanceTo("21:30").Set(R"({"light": 60, "proximity": 7})"));
        Collect(night.AdvanceTo("21:40").Set(R"({"light": null, "proximity": null})"));
        EXPECT_THAT(Values(night.PlayUntil("22:00"), {"mLight", "mProximity"}),
                    Are({"3 2", c.darkBridged, c.missing, "60 7", c.brightBridged}))
            << c.mode;
    }
}

/// Takes a snapshot every ten minutes, each after such a change of facts, and expects this length of the dark spell.
void Spell(const std::vector<std::pair<std::string, int64_t>>& steps) {
    Night night;
    Record::Texts expected;
    for (const auto& [facts, seconds] : steps) {
        Collect(night.Set("{" + facts + "}")).AdvanceMs(600'000);
        expected.push_back(std::to_string(seconds));
    }
    EXPECT_EQ(Values(night.PlayUntil("22:50"), {"mLightDarkDuration"}), expected) << steps.at(3).first;
}

TEST(SleepCollecter, ADarkSpellLastsUntilLightOrMovementUnderCover) {
    const std::string bright = R"("light": 5.01, "proximity": 9.0)";
    const std::string dark = R"("light": 5.0, "proximity": 0.011)";
    Spell({{dark, Ms("2026-03-01T21:00:01") / 1000}, {bright, 0}, {dark, 0}, {"", 600}, {"", 1200}, {bright, 0}});
    Spell({{R"("light": 0.0, "proximity": 0.01)", 0}, {"", 0}, {dark, 0}, {"", 600}});
    // at 21:30:01, ten minutes after the snapshot before
    const auto covered = [](const std::string& value, const std::string& since) {
        return R"("proximity": 0.01, "movement": {"value": )" + value + R"(, "at": )" +
               std::to_string(Ms("2026-03-01T" + since)) + "}";
    };
    const std::string still = covered("1", "21:20:00");
    Spell({{bright, 0}, {dark, 0}, {"", 600}, {still, 1200}, {covered("1", "21:30:01"), 0}, {dark, 0}, {"", 600}});
    for (const std::string& moved : {covered("1", "21:20:01"), covered("2", "21:00:00"), covered("0", "21:00:00")}) {
        Spell({{bright, 0}, {dark, 0}, {"", 600}, {moved, 0}, {still, 0}, {dark, 0}, {"", 600}});
    }
}

TEST(SleepCollecter, AnUnlockSinceTheSnapshotBeforeEndsTheDarkSpell) {
    for (const auto& [afterMs, duration] : {std::pair{1000, "1200"}, {1001, "0"}}) {
        Night night;
        Collect(night.Set(R"({"light": 9, "proximity": 5})"));
        Collect(night.AdvanceTo("21:10").Set(R"({"light": 0})"));
        Collect(night.AdvanceTo("21:20"));
        Unlock(night.AdvanceMs(afterMs));
        Collect(night.AdvanceTo("21:30"));
        const Record record = night.PlayUntil("22:00");
        EXPECT_EQ(Values(record, {"mLightDarkDuration"}).back(), duration) << afterMs;
        EXPECT_EQ(Values(record, {"mUnlockTimestamp"}).back(), std::to_string(Ms("2026-03-01T21:20:00") + afterMs));
    }
}

TEST(SleepCollecter, ScreenAndStillnessAreToldInWholeSeconds) {
    Night night;
    DumpTest(night, R"("--SetMode", "1")");
    Collect(night.ScreenOn());
    Collect(night.AdvanceTo("21:10").ScreenOff().AdvanceMs(998).Set(R"({"movement": {"value": 1, "at": )" +
                                                                    std::to_string(Ms("2026-03-01T21:00:00")) + "}}"));
    Collect(night.AdvanceTo("21:20").ScreenOn().ScreenOff().AdvanceMs(999).Set(R"({"movement": {"value": 2}})"));
    Collect(night.AdvanceTo("21:30")
                .ScreenOn()
                .Set(R"({"movement": {"value": 1}})")
                .Fail("MovementClient.GetMovementData"));
    EXPECT_THAT(Values(night.PlayUntil("22:00"), {"mScrOffDuration", "mScrOnCount", "mUserStationaryDuration"}),
                Are({"0 1 -1", "1 1 601", "1 2 0", "0 3 -1"}));
}

TEST(SleepCollecter, TheNextAlarmIsTheNumberInTheSettings) {
    for (const std::string text : {"1772434800000=1772434800000", "=0", "soon=0", "12h=12", " 7=7", "-5=-5", "0=0"}) {
        Night night;
        night.Device("settings",
                     R"({"SETTINGSDATA": {"nearestAlarmingTime": ")" + text.substr(0, text.find('=')) + R"("}})");
        EXPECT_THAT(Values(Collect(night).PlayUntil("22:00"), {"mNextAlarmClockTriggerTime"}),
                    Are({text.substr(text.find('=') + 1)}));
    }
    for (const char* broken :
         {"", "DataShareHelper.Creator", "DataShareHelper.Query", "DataShareResultSet.GoToFirstRow",
          "SystemAbilityManager.GetSystemAbility", "SystemAbilityManagerClient.GetSystemAbilityManager"}) {
        Night night;
        if (*broken != 0) {
            night.Device("settings", R"({"SETTINGSDATA": {"nearestAlarmingTime": "1772434800000"}})").Fail(broken);
        }
        const Record record = Collect(night).PlayUntil("22:00");
        EXPECT_THAT(Values(record, {"mNextAlarmClockTriggerTime"}), Are({"-1"})) << broken;
        EXPECT_THAT(record.LogsOf(kSource), Contains("error query nearest alarm clock failed")) << broken;
    }
}

/// What the strategy appended to the only dump, without what others did.
std::string DumpOf(const Night& night) {
    const std::string text = night.Play().Dumps().at(0);
    const std::string others = "userSleepState: 0\n\"";
    EXPECT_TRUE(text.ends_with(others)) << text;
    return text.substr(1, text.size() - 1 - others.size());
}

TEST(SleepDump, DumpsSayWhatTheyDid) {
    const std::string title = "\n\n=================SleepTest=========================\n";
    const std::map<std::string, std::string> answers = {
        {R"("--CollectSleepData", "predict")", "collect sleep data to predict\n"},
        {R"("--SendMessage", "start")", "send start slp message\n"},
        {R"("--SendMessage", "stop")", "send stop slp message\n"},
        {R"("--SetMode", "1")", "Set InSleepTestMode true\n"},
        {R"("--SetMode", "0", "more")", "Set InSleepTestMode false\n"}};
    for (const auto& [words, answer] : answers) {
        Night night;
        EXPECT_EQ(DumpOf(DumpTest(night, words)), title + answer);
    }
    for (const char* words :
         {R"("--SetMode", "2")", R"("--SendMessage", "1")", R"("--CollectSleepData", "start")", R"("--SetMode")"}) {
        Night night;
        EXPECT_EQ(DumpOf(DumpTest(night, words)), title) << words;
    }
    for (const char* words : {"[]", R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL"])",
                              R"(["DUMP_DETAIL_INFO", "DUMP_SIMULATE_SENSOR", "-ST", "--SetMode", "1"])"}) {
        EXPECT_EQ(DumpOf(Night().Dump(words)), "") << words;
    }
}

}  // namespace
}  // namespace TARN::Tests
