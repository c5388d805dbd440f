#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <sstream>

#include "are.h"
#include "night.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

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

TEST(SleepCollecter, ASnapshotListensForOneSecond) {
    Night night;
    night.Device("light", "3").Device("proximity", "4");
    const Record record = Collect(night.AdvanceTo("21:30")).PlayUntil("22:00");
    EXPECT_THAT(record.At("21:30:00").Calls("SensorAgent"),
                Are({R"(SensorAgent.SubscribeSensor {"sensor":5} -> 0)", R"(SensorAgent.SetBatch {"sensor":5} -> 0)",
                     R"(SensorAgent.ActivateSensor {"sensor":5} -> 0)", R"(SensorAgent.SubscribeSensor {"sensor":12} -> 0)",
                     R"(SensorAgent.SetBatch {"sensor":12} -> 0)", R"(SensorAgent.ActivateSensor {"sensor":12} -> 0)"}));
    EXPECT_THAT(
        record.At("21:30:01").Of({"SensorAgent", "deliver 100 "}),
        Are({R"(call SensorAgent.DeactivateSensor {"sensor":5} -> 0)", R"(call SensorAgent.UnsubscribeSensor {"sensor":5} -> 0)",
             R"(call SensorAgent.DeactivateSensor {"sensor":12} -> 0)",
             R"(call SensorAgent.UnsubscribeSensor {"sensor":12} -> 0)",
             R"(deliver 100 {"mLight":3.0,"mLightDarkDuration":)" + std::to_string(Ms("2026-03-01T21:30:01") / 1000) +
                 R"(,"mNextAlarmClockTriggerTime":-1,"mProximity":4.0,"mScrOffDuration":0,"mScrOnCount":0,)"
                 R"("mTimestamp":)" + std::to_string(Ms("2026-03-01T21:30:01")) +
                 R"(,"mUnlockTimestamp":-1,"mUserStationaryDuration":-1})"}));
    for (const auto& [afterMs, reading] : {std::pair{0, "8 9"}, {999, "8 9"}, {1000, "8 9"}, {1001, "3 4"}}) {
        Night changing;
        Collect(changing.Device("light", "3").Device("proximity", "4"));
        changing.AdvanceMs(afterMs).Set(R"({"light": 8, "proximity": 9})");
        EXPECT_THAT(Values(changing.PlayUntil("21:01"), {"mLight", "mProximity"}), Are({reading})) << afterMs;
    }
}

TEST(SleepCollecter, AFailingSensorStepIsLoggedAndTheSnapshotStillComes) {
    struct Case {
        const char* step;
        Record::Texts logs;
        const char* values;
    };
    const std::string subscribed = "info subscribe sensor succeed for sensor ID ";
    for (const Case& c : {
             Case{"SubscribeSensor",
                  {"info StartSensor", "error subscribe sensor failed for sensor ID 5", "info StopSensor",
                   "error unsubscribe sensor failed for sensor ID 5", "info StopSensor"},
                  "-1 -1"},
             {"SetBatch", {"info StartSensor", subscribed + "5", subscribed + "12", "info StopSensor"}, "3 4"},
             {"ActivateSensor",
              {"info StartSensor", subscribed + "5", "error activate sensor failed for sensor ID 5", "info StopSensor",
               "info StopSensor"},
              "-1 -1"},
             {"DeactivateSensor",
              {"info StartSensor", subscribed + "5", subscribed + "12", "info StopSensor",
               "error deactivate sensor failed for sensor ID 5", "error deactivate sensor failed for sensor ID 12"},
              "3 4"},
             {"UnsubscribeSensor",
              {"info StartSensor", subscribed + "5", subscribed + "12", "info StopSensor",
               "error unsubscribe sensor failed for sensor ID 5", "error unsubscribe sensor failed for sensor ID 12"},
              "3 4"},
         }) {
        Night night;
        night.Device("light", "3").Device("proximity", "4");
        Collect(night.AdvanceTo("21:30").Fail(std::string("SensorAgent.") + c.step, 7));
        const Record record = night.PlayUntil("22:00");
        EXPECT_EQ(record.At("21:30").LogsOf(kSource).size(), c.logs.size() + 1) << c.step << ", and the alarm's line";
        for (size_t i = 0; i < c.logs.size(); ++i) {
            EXPECT_EQ(record.At("21:30").LogsOf(kSource).at(i), c.logs[i]) << c.step;
        }
        EXPECT_THAT(Values(record, {"mLight", "mProximity"}), Are({c.values})) << c.step;
    }
}

TEST(SleepCollecter, APhoneWithoutSensorsStillTakesSnapshots) {
    for (const auto& [fact, json, calls, first] :
         {std::tuple{"sensors", "[]", 0, "error do not find any usable sensor to detect motion"},
          {"sensors", "[1, 13]", 0, "error do not find any usable sensor to detect motion"},
          {"sensors", "[12]", 5, "info get is_proximity_error is 0"},
          {"fail", R"({"SensorAgent.GetAllSensors": 3})", 0, "error get all sensors failed, sensors are not available"}}) {
        Night night;
        const Record record = Collect(night.Device(fact, json)).PlayUntil("22:00");
        EXPECT_EQ(record.LogsOf(kSource).at(0), first) << json;
        EXPECT_THAT(Values(record, {"mLight", "mProximity"}), Are({"-1 -1"}));
        EXPECT_THAT(record.Calls("SensorAgent"), ::testing::SizeIs(static_cast<size_t>(calls))) << json;
    }
}

TEST(SleepCollecter, AMissingReadingIsBridgedOnceAsTheDeviceKindDoesIt) {
    struct Case {
        const char* mode;
        const char* darkBridged;
        const char* missing;
        const char* brightBridged;
    };
    for (const Case& c : {Case{"0", "3 2", "-1 -1", "50 7"}, {"1", "3 5.1", "-1 5.1", "50 5.1"},
                          {"2", "3 2", "-1 -1", "50 7"}, {"3", "3 -1", "-1 -1", "50 -1"}}) {
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

TEST(SleepCollecter, ADarkSpellLastsUntilLightAnUnlockOrMovementUnderCover) {
    const std::string first = std::to_string(Ms("2026-03-01T21:00:01") / 1000);
    // still for ten minutes at 22:10:01, the length of one step
    const std::string movement = R"("movement": {"value": 1, "at": )";
    const std::string still600 = movement + std::to_string(Ms("2026-03-01T22:00:01")) + "}";
    const std::string still601 = movement + std::to_string(Ms("2026-03-01T22:00:00")) + "}";
    struct Step {
        std::string facts;
        std::string duration;
    };
    const auto story = [](const std::vector<Step>& steps) {
        Night night;
        Record::Texts expected;
        for (const Step& step : steps) {
            Collect(night.Set("{" + step.facts + "}")).AdvanceMs(600'000);
            expected.push_back(step.duration);
        }
        EXPECT_EQ(Values(night.PlayUntil("23:50"), {"mLightDarkDuration"}), expected) << steps.back().facts;
    };
    const Step dark{R"("light": 5.0, "proximity": 0.011)", "0"};
    story({{dark.facts, first}, {R"("light": 5.01)", "0"}, dark, {"", "600"}, {"", "1200"}, {R"("light": 9.0)", "0"}});
    story({{R"("light": 0.0, "proximity": 0.01)", "0"}, {"", "0"}, dark, {"", "600"}});
    const std::vector<Step> hour = {{R"("light": 6.0, "proximity": 9.0)", "0"}, dark, {"", "600"}, {"", "1200"}, {"", "1800"},
                                    {"", "2400"}, {"", "3000"}};
    for (const auto& [facts, next, after] :
         {std::tuple{still601, "3600", "0"}, {still600, "0", "0"},
          {std::string(R"("movement": {"value": 2, "at": 0})"), "0", "0"}, {std::string(R"("movement": {"value": 0})"), "0", "0"}}) {
        std::vector<Step> steps = hour;
        steps.push_back({R"("proximity": 0.01, )" + facts, next});
        steps.push_back({R"("movement": {"value": 2})", after});
        steps.push_back({R"("proximity": 0.011)", "0"});
        steps.push_back({"", "600"});
        story(steps);
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
    Collect(night.AdvanceTo("21:10").ScreenOff().AdvanceMs(998).Set(
        R"({"movement": {"value": 1, "at": )" + std::to_string(Ms("2026-03-01T21:00:00")) + "}}"));
    Collect(night.AdvanceTo("21:20").ScreenOn().ScreenOff().AdvanceMs(999).Set(R"({"movement": {"value": 2}})"));
    Collect(night.AdvanceTo("21:30").ScreenOn().Set(R"({"movement": {"value": 1}})").Fail("MovementClient.GetMovementData"));
    EXPECT_THAT(Values(night.PlayUntil("22:00"), {"mScrOffDuration", "mScrOnCount", "mUserStationaryDuration"}),
                Are({"0 1 -1", "1 1 601", "1 2 0", "0 3 -1"}));
}

TEST(SleepCollecter, TheNextAlarmIsTheNumberInTheSettings) {
    for (const auto& [text, alarm] : {std::pair{"1772434800000", "1772434800000"}, {"", "0"}, {"soon", "0"}, {"12h", "12"},
                                      {" 7", "7"}, {"-5", "-5"}, {"0", "0"}}) {
        Night night;
        night.Device("settings", R"({"SETTINGSDATA": {"nearestAlarmingTime": ")" + std::string(text) + R"("}})");
        EXPECT_THAT(Values(Collect(night).PlayUntil("22:00"), {"mNextAlarmClockTriggerTime"}), Are({alarm})) << text;
    }
    for (const char* broken : {"", "DataShareHelper.Creator", "DataShareHelper.Query", "DataShareResultSet.GoToFirstRow",
                               "SystemAbilityManager.GetSystemAbility",
                               "SystemAbilityManagerClient.GetSystemAbilityManager"}) {
        Night night;
        if (*broken != 0) {
            night.Device("settings", R"({"SETTINGSDATA": {"nearestAlarmingTime": "1772434800000"}})").Fail(broken);
        }
        const Record record = Collect(night).PlayUntil("22:00");
        EXPECT_THAT(Values(record, {"mNextAlarmClockTriggerTime"}), Are({"-1"})) << broken;
        EXPECT_THAT(record.LogsOf(kSource), Contains("error query nearest alarm clock failed")) << broken;
    }
}

/// A phone with the day check that takes no snapshots for prediction.
Night Day(const std::string& start) {
    Night night("UTC", start);
    night.Host("standby_mode", "2").Device("proximity", "5").Device("light", "0");
    DumpTest(night, R"("--SetMode", "1")");
    return night;
}

/// When day snapshots were judged, and how: `10:15:01 -1.000000`.
Record::Texts Votes(const Record& record) {
    Record::Texts texts;
    for (const std::string& line : record.Timed().LogsOf(kSource)) {
        if (const size_t found = line.find(" info calculation proximity error state is "); found != std::string::npos) {
            texts.push_back(line.substr(0, found) + line.substr(line.rfind(' ')));
        }
    }
    return texts;
}

TEST(SleepCollecter, TheDayCheckComesAfterAnUnlockWhenTheScreenWasDarkLongEnough) {
    struct Case {
        const char* off;
        const char* check;
    };
    for (const Case& c : {Case{"10:00:00", "10:15:01"}, {"10:00:00.001", "10:15:01.001"}, {"07:40:00", "08:00:11"},
                          {"07:40:01", "08:00:02"}, {"20:44:50", "20:59:51"}, {"20:44:59", "21:00:00"}}) {
        Night night = Day("2026-03-02T07:00:00");
        Unlock(night).AdvanceTo(c.off).ScreenOff();
        EXPECT_THAT(Votes(night.PlayUntil("23:00")), Are({std::string(c.check) + " -1.000000"})) << c.off;
        for (const char* mode : {"0", "1", "3"}) {
            EXPECT_THAT(Votes(night.Host("standby_mode", mode).PlayUntil("23:00")), IsEmpty()) << mode;
        }
    }
    Night night = Day("2026-03-02T07:00:00");
    EXPECT_THAT(Votes(Unlock(night).AdvanceTo("20:45:00").ScreenOff().PlayUntil("23:00")), IsEmpty());
    Night locked = Day("2026-03-02T07:00:00");
    EXPECT_THAT(Votes(locked.ScreenOff().PlayUntil("20:00")), IsEmpty());
    Night lit = Day("2026-03-02T09:00:00");
    Unlock(lit).ScreenOff().AdvanceTo("09:14:59").ScreenOn();
    EXPECT_THAT(Votes(lit.PlayUntil("20:00")), IsEmpty());
}

TEST(SleepCollecter, TheDayCheckKeepsAnHourFromTheSnapshotBefore) {
    for (const auto& [off, check] : {std::pair{"10:30:01", "11:00:02 -1.000000"}, {"10:30:00.999", "11:00:11.999 -1.000000"}}) {
        Night night = Day("2026-03-02T09:00:00");
        Collect(night.AdvanceTo("10:00"));
        Unlock(night.AdvanceMs(1001)).AdvanceTo(off).ScreenOff();
        EXPECT_THAT(Votes(night.PlayUntil("20:00")), Are({check})) << "once, for want of another unlock";
    }
    Night night = Day("2026-03-02T09:00:00");
    Unlock(Collect(night.AdvanceTo("10:00")).AdvanceMs(1000)).ScreenOff();
    EXPECT_THAT(Votes(night.PlayUntil("20:00")), IsEmpty()) << "an unlock of the snapshot's own millisecond";
}

/// Day checks 61 minutes apart, 'n' in the light and 'e' in the dark, from 09:15:01 on; ' ' is the night between.
Night& Samples(Night& night, const std::string& samples) {
    night.AdvanceTo("09:00");
    for (const char sample : samples) {
        if (sample == ' ') {
            night.AdvanceTo("09:00");
            continue;
        }
        Unlock(night.ScreenOn().Set(sample == 'n' ? R"({"light": 0.5})" : R"({"light": 0.49})"));
        night.ScreenOff().AdvanceMs(960'000).ScreenOn().AdvanceMs(2'700'000);
    }
    return night;
}

std::string States(const Record& record) {
    std::string states;
    for (const std::string& vote : Votes(record)) {
        const std::string state = vote.substr(vote.find(' ') + 1);
        states += state == "1.000000" ? '1' : state == "0.000000" ? '0' : '-';
    }
    return states;
}

Record::Texts Judgements(const Record& record) {
    Record::Texts logs = record.LogsOf(kSource);
    std::erase_if(logs, [](const std::string& line) {
        return line.find("proximity error state to") == std::string::npos && line.find("get is_proximity") == std::string::npos;
    });
    return logs;
}

TEST(SleepCollecter, EightErrorsJudgeTheProximitySensorForGood) {
    Night night = Day("2026-03-02T08:30:00");
    // the first is no error, for nothing is known of the proximity before it
    Samples(night, "eeeeeeee");
    EXPECT_EQ(States(night.Play()), "--------");
    Night more = Day("2026-03-02T08:30:00");
    Collect(Samples(more, "eeeeeeeee").Restart().Set(R"({"proximity": null})"));
    Collect(more.AdvanceTo("22:00").Crash().Set(R"({"proximity": 5})"));
    const Record record = more.PlayUntil("23:00");
    EXPECT_EQ(States(record), "--------1");
    EXPECT_THAT(Judgements(record),
                Are({"info get is_proximity_error is 0", "info update proximity error state to 1",
                     "info get is_proximity_error is 1", "info get is_proximity_error is 1"}));
    EXPECT_THAT(Values(record, {"mProximity"}), Are({"0.0001", "0.0001"}));
    EXPECT_THAT(record.At("22:00").LogsOf("phone_sleep_data_collecter"), Are({"info the device uses a wallet-style holster"}));
}

TEST(SleepCollecter, TheJudgementTurnsOnlyAtAClearMajority) {
    for (const auto& [samples, states] :
         {std::pair{"nnnnnnnneeee eeeennnnn", "---------------1----0"},  // 8 of 16; 8 of 20 stays, 8 of 21 clears
          {"nnnnnnnnneee eeeeeennnnn", "-----------------1----0"}}) {    // 8 of 17, 9 of 18; 9 of 22, 9 of 23
        Night night = Day("2026-03-02T08:30:00");
        const Record record = Samples(night, samples).Restart().Play();
        EXPECT_EQ(States(record), states);
        EXPECT_THAT(Judgements(record),
                    Are({"info get is_proximity_error is 0", "info update proximity error state to 1",
                         "info update proximity error state to 0", "info get is_proximity_error is 0"}));
    }
}

TEST(SleepCollecter, ACoveredSensorInTheDarkIsNoError) {
    for (const auto& [proximity, state] : {std::pair{"0.01", "---------"}, {"0.011", "--------1"}}) {
        Night night = Day("2026-03-02T08:30:00");
        Samples(night.Device("proximity", proximity), "eeeeeeeee");
        EXPECT_EQ(States(night.Play()), state) << proximity;
    }
}

TEST(SleepCollecter, SamplesCountForFortyEightHours) {
    constexpr int64_t kDayMs = 86'400'000;
    struct Case {
        const char* samples;
        const char* again;
        int64_t waitMs;
        char state;
    };
    for (const Case& c : {Case{"eeeeeeee", "10:01", kDayMs, '1'}, {"eeeeeeee", "10:01", kDayMs + 1, '-'},
                          {"nnnnnnnnnn eeeeeeee", "09:00", 0, '-'}, {"nnnnnnnnnn eeeeeeee", "09:00", 1, '1'}}) {
        Night night = Day("2026-03-02T08:30:00");
        Unlock(Samples(night, c.samples).AdvanceTo(c.again).AdvanceMs(c.waitMs).ScreenOn().Set(R"({"light": 0})"));
        const std::string states = States(night.ScreenOff().PlayUntil("10:30"));
        EXPECT_EQ(states.find_first_not_of('-'), c.state == '1' ? states.size() - 1 : std::string::npos);
        EXPECT_EQ(states.back(), c.state) << c.samples << " " << c.waitMs;
    }
}

}  // namespace
}  // namespace TARN::Tests
