#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"
#include "test_phone.h"

namespace TARN::Tests {
namespace {

using DevStandbyMgr::StandbyMessage;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;

constexpr char kUserSleep[] = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";
constexpr char kPowerSaveMode[] = "COMMON_EVENT_POWER_SAVE_MODE_CHANGED";
constexpr char kListProcesses[] = "AppMgrHelper.GetAllRunningProcesses";

/// "kept" belongs to the system; so do "listed" and "near", of which one is on the list; 33 is there twice.
constexpr char kProcesses[] =
    R"([{"pid": 31, "uid": 10, "name": "kept", "bundles": ["com.kept"], "system": true},
        {"pid": 32, "uid": 11, "name": "listed", "bundles": ["com.other", "com.listed"], "system": true},
        {"pid": 33, "uid": 12, "name": "app", "bundles": ["com.app"]}, {"pid": 33, "uid": 12, "name": "app:push"},
        {"pid": 34, "uid": 13, "name": "near", "bundles": ["com.liste", "com.listed2", "COM.LISTED"], "system": true},
        {"pid": 35, "uid": 14, "name": "daemon", "native": true}, {"pid": 30, "uid": 15, "name": "last"}])";

/// Everything allows a clean, but nobody sleeps.
Night SleepCleanNight() {
    Night night;
    night.Strategies(R"(["SLEEP_CLEAN"])");
    night.Host("res_ctrl", R"({"SLEEP_CLEAN": [{"allow": true, "names": ["com.kept"]},
        {"allow": false, "names": ["com.listed"]}, {"allow": false, "names": ["com.kept"]}]})");
    night.Device("parameters", R"({"const.global.locale": "zh-Hans-CN"})");
    night.Device("settings", R"({"USER_SETTINGSDATA_SECURE_100": {"user_setup_complete": "1"}})");
    night.Device("sensors", "[]").Device("processes", kProcesses);
    return night;
}

/// The user falls asleep, or wakes up, at a time of that night.
Night Sleep(Night night, const std::string& time, bool isSleep = true) {
    return night.AdvanceTo(time).Message(1, isSleep ? R"({"isSleep": true})" : R"({"isSleep": false})", kUserSleep);
}

/// What was killed, in order: `22:02:00 32`, with the status if it was refused.
Record::Texts Kills(const Record& record) {
    Record::Texts kills;
    for (const std::string& call : record.Timed().Calls("ResSchedClient.KillProcess")) {
        const size_t pid = call.find(R"({"pid":")") + 8;
        const std::string status = call.substr(call.rfind(' '));
        kills.push_back(call.substr(0, call.find(' ') + 1) + call.substr(pid, call.find('"', pid) - pid) +
                        (status == " 0" ? "" : status));
    }
    return kills;
}

/// What the checks came to: `22:02:00 debug not brush clean because screen on`.
Record::Texts Checks(const Record& record) {
    Record::Texts checks = record.Timed().LogsOf("sleep_clean_strategy");
    std::erase_if(checks, [](const std::string& line) { return line.find("brush clean") == std::string::npos; });
    return checks;
}

TEST(SleepClean, KillsTwoMinutesAfterTheUserFellAsleepAndOnlyOnce) {
    const Record record = Sleep(SleepCleanNight().ScreenOn().ScreenOff(), "22:00").PlayUntil("07:00");
    EXPECT_THAT(Checks(record), Are({"22:02:00 info brush clean when sleepclean"}));
    EXPECT_THAT(Kills(record), Are({"22:02:00 32", "22:02:00 33", "22:02:00 33", "22:02:00 30"}))
        << "from one list, in its order";
    EXPECT_THAT(record.At("22:02").LogsOf("sleep_clean_strategy"),
                Are({"info run sleepClean start",
                     "debug uri : datashare:///com.tarn.settingsdata/entry/settingsdata/USER_SETTINGSDATA_SECURE_100"
                     "?Proxy=true&key=user_setup_complete",
                     "debug user_setup_complete is 1", "info brush clean when sleepclean",
                     "debug system app can kill in list, process name: listed, uid : 11", "info kill process pid: 32",
                     "info kill process pid: 33", "info kill process pid: 33", "info kill process pid: 30",
                     "info sleepClean sucess"}));
}

TEST(SleepClean, AsksItsConditionsInOrderEveryTwoMinutesAndTwelveHoursAreTooFew) {
    Night night = Sleep(Sleep(SleepCleanNight(), "22:00"), "07:00", false).AdvanceTo("09:50").ScreenOn();
    night.Set(R"({"processes": [{"pid": 9, "name": "new"}], "parameters": {"const.global.locale": "zh-Hant-CN"},
                  "settings": {"USER_SETTINGSDATA_SECURE_100": {"user_setup_complete": "0"}}})");
    night = Sleep(night, "09:50").AdvanceTo("09:53").ScreenOff().AdvanceTo("09:55");
    night.Set(R"({"parameters": {"const.global.locale": "zh-Hans-CN"}})").AdvanceTo("10:05");
    night.Set(R"({"settings": {"USER_SETTINGSDATA_SECURE_100": {"user_setup_complete": "1"}}})");
    const Record record = night.PlayUntil("12:00");
    const std::string tooSoon = " debug not brush clean because not reach time interval since last sleep clean";
    EXPECT_THAT(Checks(record),
                Are({"22:02:00 info brush clean when sleepclean", "09:52:00 debug not brush clean because screen on",
                     "09:54:00 debug not brush clean because not china product", "09:56:00" + tooSoon,
                     "09:58:00" + tooSoon, "10:00:00" + tooSoon, "10:02:00" + tooSoon,
                     "10:04:00 debug not brush clean because user setup not complete",
                     "10:06:00 info brush clean when sleepclean"}));
    EXPECT_THAT(Kills(record.At("10:")), Are({"10:06:00 9"}));
    EXPECT_THAT(Checks(Sleep(Sleep(SleepCleanNight(), "22:00"), "10:00:00.001").PlayUntil("10:30").At("10:")),
                Are({"10:02:00.001 info brush clean when sleepclean"}));
}

TEST(SleepClean, WorksForOneLocaleOnly) {
    const char* line = "22:02:00 debug not brush clean because not china product";
    for (const std::string locale : {"zh-Hans-TW", "zh-hans-CN", "zh-Hans-CN ", "zh-Hans", ""}) {
        const Night night = SleepCleanNight().Device("parameters", R"({"const.global.locale": ")" + locale + "\"}");
        EXPECT_THAT(Checks(Sleep(night, "22:00").PlayUntil("22:03")), Are({line})) << locale;
    }
    const Night unreadable = SleepCleanNight().Fail("system.GetStringParameter");
    EXPECT_THAT(Checks(Sleep(unreadable, "22:00").PlayUntil("22:03")), Are({line}));
}

TEST(SleepClean, SetupMustBeExactlyOneForTheFirstAccount) {
    const auto with = [](const char* accounts, const std::string& value, const char* failing) {
        Night night = SleepCleanNight().Device("accounts", accounts);
        night.Device("settings", R"({"USER_SETTINGSDATA_SECURE_200": {"user_setup_complete": ")" + value + "\"}}");
        return Sleep(*failing == '\0' ? night : night.Fail(failing), "22:00").PlayUntil("22:03");
    };
    EXPECT_THAT(Checks(with("[200, 100]", "1", "")), Are({HasSubstr("info brush clean")}));
    const char* incomplete = "22:02:00 debug not brush clean because user setup not complete";
    for (const char* value : {"01", "1 ", "true", "", "2"}) {
        EXPECT_THAT(Checks(with("[200]", value, "")), Are({incomplete})) << value;
    }
    for (const auto& [accounts, failing, asks] : {std::tuple{"[]", "", 0},
                                                  {"[200]", "OsAccountManager.QueryActiveOsAccountIds", 0},
                                                  {"[100, 200]", "", 1},
                                                  {"[200]", "DataShareHelper.Query", 1}}) {
        const Record record = with(accounts, "1", failing);
        EXPECT_THAT(Checks(record), Are({incomplete})) << accounts << failing;
        EXPECT_THAT(record.LogsOf("sleep_clean_strategy"),
                    Contains("error query user_setup_complete failed").Times(asks));
    }
}

TEST(SleepClean, FallingAsleepAgainBeginsTheTwoMinutesAnewAndWakingEndsTheChecks) {
    const Night night = Sleep(SleepCleanNight(), "22:00");
    EXPECT_THAT(Checks(Sleep(night, "22:01:30").PlayUntil("23:00")), Are({HasSubstr("22:03:30 info")}));
    const Record record = Sleep(night, "22:01:59.999", false).PlayUntil("23:00");
    EXPECT_THAT(record.LogsOf("sleep_clean_strategy"), Contains("info sleepClean stop monitor"));
    EXPECT_THAT(record.LogsOf("sleep_clean_strategy"), Not(Contains("info run sleepClean start")));
    EXPECT_THAT(Checks(Night(night).MessageWithoutWant(1, kUserSleep).PlayUntil("23:00")), IsEmpty())
        << "without a word of sleep the user is awake";
    Night deaf = SleepCleanNight().Message(11, R"({"isSleep": true})");
    EXPECT_THAT(Checks(deaf.Message(1, R"({"isSleep": true})", "COMMON_EVENT_USER_SLEEP").PlayUntil("23:00")),
                IsEmpty());
}

TEST(SleepClean, WhoeverCannotBeClassifiedIsKilledAndFailuresAreLeftAtThat) {
    const Night unknown = SleepCleanNight().Fail("BundleManagerHelper.CheckIsSystemAppByUid");
    EXPECT_THAT(Kills(Sleep(unknown, "22:00").PlayUntil("22:03")),
                Are({"22:02:00 31", "22:02:00 32", "22:02:00 33", "22:02:00 33", "22:02:00 34", "22:02:00 30"}));
    const Record refused = Sleep(SleepCleanNight().Fail("ResSchedClient.KillProcess", 7), "22:00").PlayUntil("23:00");
    EXPECT_THAT(Kills(refused), Are({"22:02:00 32 7", "22:02:00 33 7", "22:02:00 33 7", "22:02:00 30 7"}));
    EXPECT_THAT(refused.LogsOf("sleep_clean_strategy"),
                IsSupersetOf({"error failed to kill process, pid: 30", "info sleepClean sucess"}));
    const Night blind = Sleep(SleepCleanNight().Fail(kListProcesses), "22:00").AdvanceTo("22:05").Heal(kListProcesses);
    const Record record = Sleep(blind, "22:10").PlayUntil("22:13");
    EXPECT_THAT(Kills(record), IsEmpty());
    EXPECT_THAT(record.LogsOf("sleep_clean_strategy"),
                IsSupersetOf({"error get all running processes failed", "info sleepClean sucess"}));
    EXPECT_THAT(Checks(record.At("22:12")), Are({HasSubstr("not reach time")})) << "it counts as the night's clean";
}

TEST(SleepClean, WithoutAListOfItsOwnEverySystemApplicationIsKept) {
    for (const auto& [config, missing] :
         {std::pair{R"({"POWER_SAVE_CLEAN": [{"allow": false, "names": ["com.listed"]}]})", 1},
          {R"({"SLEEP_CLEAN": [{"allow": true, "names": ["com.listed"]}]})", 0}}) {
        const Record record = Sleep(SleepCleanNight().Host("res_ctrl", config), "22:00").PlayUntil("22:03");
        EXPECT_THAT(Kills(record), Are({"22:02:00 33", "22:02:00 33", "22:02:00 30"})) << config;
        EXPECT_THAT(record.LogsOf("sleep_clean_strategy"), Contains("error tagList is null").Times(missing));
    }
}

/// Power-save mode is on, and its list is another than that of the sleep clean.
Night PowerSaveNight() {
    Night night = SleepCleanNight();
    night.Strategies(R"(["POWER_SAVE_CLEAN"])");
    night.Host("res_ctrl", R"({"SLEEP_CLEAN": [{"allow": false, "names": ["com.kept"]}],
                               "POWER_SAVE_CLEAN": [{"allow": false, "names": ["com.listed"]}]})");
    return night.Message(1, R"({"current_power_mode": true})", kPowerSaveMode).AdvanceTo("22:00");
}

Night EnterMode(Night night, int32_t mode, const char* want = R"({"current_power_mode": true})") {
    return night.Set(R"({"device_mode": )" + std::to_string(mode) + "}").Message(1, want, kPowerSaveMode);
}

/// The moments at which it killed.
Record::Texts CleanTimes(const Night& night) {
    Record::Texts times;
    for (const std::string& kill : Kills(night.PlayUntil("23:00"))) {
        if (kill.ends_with(" 30")) {
            times.push_back(kill.substr(0, kill.find(' ')));
        }
    }
    return times;
}

TEST(PowerSaveClean, KillsHalfAMinuteAfterTheScreenWentOffAllButForegroundAndContinuousTasks) {
    Night night = PowerSaveNight();
    night.Set(R"({"processes": [{"pid": 30, "name": "last"}, {"pid": 1, "name": "looked at",
        "foreground": true}, {"pid": 32, "uid": 11, "name": "listed", "bundles": ["com.listed"], "system": true},
        {"pid": 31, "name": "kept", "uid": 10, "bundles": ["com.kept"], "system": true}, {"pid": 7, "name": "idle"},
        {"pid": 8, "uid": 11, "name": "listed:ui", "bundles": ["com.listed"]}],
        "continuous_tasks": [{"type": 2, "uid": 11, "pid": 32}, {"type": 8, "uid": 99, "pid": 99}]})");
    const Record record = night.ScreenOff().PlayUntil("23:00");
    EXPECT_THAT(Kills(record), Are({"22:00:30 30", "22:00:30 7", "22:00:30 8"}));
    EXPECT_THAT(
        record.At("22:00:30").LogsOf("power_save_clean_strategy"),
        Are({"info continuous task type: 2, uid: 11. no clean", "info continuous task type: 8, uid: 99. no clean",
             "info kill process pid: 30", "debug system app can kill in list, process name: listed, uid : 11",
             "info kill process pid: 7", "debug system app can kill in list, process name: listed:ui, uid : 11",
             "info kill process pid: 8"}));
}

TEST(PowerSaveClean, WaitsOncePerScreenOffAndScreenOnCallsItOff) {
    const auto refill = [](Night night) {
        return night.AdvanceTo("22:10").Set(R"({"processes": [{"pid": 30, "name": "last"}]})");
    };
    EXPECT_THAT(CleanTimes(refill(PowerSaveNight().ScreenOff())), Are({"22:00:30"}));
    EXPECT_THAT(CleanTimes(PowerSaveNight().ScreenOff().AdvanceMs(20'000).ScreenOff()), Are({"22:00:50"}));
    EXPECT_THAT(CleanTimes(PowerSaveNight().ScreenOff().AdvanceMs(29'999).ScreenOn()), IsEmpty());
    EXPECT_THAT(CleanTimes(PowerSaveNight().ScreenOff().AdvanceMs(30'000).ScreenOn()), Are({"22:00:30"}));
    EXPECT_THAT(CleanTimes(PowerSaveNight().Message(2, "{}", "COMMON_EVENT_SCREEN_OFF")), IsEmpty());
    for (const auto& [operation, line] :
         {std::pair{kListProcesses, "error get all running processes failed"},
          {"AppMgrHelper.GetForegroundApplications", "error get fg running processes failed"}}) {
        const Night night = refill(PowerSaveNight().Fail(operation).ScreenOff().AdvanceTo("22:05").Heal(operation));
        EXPECT_THAT(CleanTimes(night), IsEmpty()) << operation;
        EXPECT_EQ(night.Play().At("22:00:30").LogsOf("power_save_clean_strategy").back(), line);
    }
    Night unasked = PowerSaveNight().Set(R"({"continuous_tasks": [{"type": 2, "uid": 15, "pid": 30}]})");
    EXPECT_THAT(CleanTimes(unasked.ScreenOff()), IsEmpty());
    EXPECT_THAT(CleanTimes(unasked.Fail("BackgroundTaskMgrHelper.GetContinuousTaskApps")), Are({"22:00:30"}));
}

TEST(PowerSaveClean, NeedsTheModeAndNoChargerWhenTheWaitEnds) {
    for (const char* want : {R"({"current_power_mode": false})", "{}", R"({"current_power_mode": 1})"}) {
        EXPECT_THAT(CleanTimes(PowerSaveNight().ScreenOff().Message(1, want, kPowerSaveMode)), IsEmpty()) << want;
    }
    for (const char* fact : {R"({"plugged": 1})", R"({"plugged": 2})", R"({"plugged": -1})"}) {
        EXPECT_THAT(CleanTimes(PowerSaveNight().ScreenOff().AdvanceMs(29'000).Set(fact)), IsEmpty()) << fact;
        EXPECT_THAT(CleanTimes(PowerSaveNight().Set(fact).ScreenOff().AdvanceMs(29'000).Set(R"({"plugged": 0})")),
                    Are({"22:00:30"}));
    }
}

TEST(PowerSaveClean, EnteringTheStrictestModeKillsAtOnceWhateverElseHolds) {
    for (const char* want : {R"({"current_power_mode": true})", R"({"current_power_mode": false})", "{}"}) {
        const Night night = PowerSaveNight().ScreenOn().Set(R"({"plugged": 1})");
        EXPECT_THAT(CleanTimes(EnterMode(night, 603, want)), Are({"22:00:00"})) << want;
    }
    EXPECT_THAT(CleanTimes(EnterMode(PowerSaveNight(), 602)), IsEmpty());
    EXPECT_THAT(CleanTimes(PowerSaveNight().Set(R"({"device_mode": 603})")), IsEmpty()) << "nobody told it";
}

TEST(PowerSaveClean, InTheStrictestModeTenSecondsDoAndTheWaitIsChosenAtScreenOff) {
    const std::string refill = R"({"plugged": 1, "processes": [{"pid": 30, "name": "last"}]})";
    const Night strict = EnterMode(PowerSaveNight(), 603).AdvanceTo("22:01").Set(refill);
    EXPECT_THAT(CleanTimes(Night(strict).ScreenOff()), Are({"22:00:00", "22:01:10"}))
        << "and a charger is no hindrance";
    EXPECT_THAT(CleanTimes(Night(strict).Message(1, "{}", kPowerSaveMode).Set(refill).ScreenOff()),
                Are({"22:00:00", "22:01:00"}))
        << "but the mode's own flag is asked";
    const Night leaving = Night(strict).Set(R"({"plugged": 0})").ScreenOff().AdvanceMs(5'000);
    EXPECT_THAT(CleanTimes(EnterMode(leaving, 600)), Are({"22:00:00", "22:01:10"}));
    const Night entering = PowerSaveNight().ScreenOff().AdvanceMs(5'000);
    EXPECT_THAT(CleanTimes(EnterMode(entering, 603).AdvanceMs(1'000).Set(refill)), Are({"22:00:05", "22:00:30"}));
}

TEST(Cleans, AStopOfTheServiceEndsTheSleepChecksButNotAWaitingPowerSaveClean) {
    TestPhone phone;
    DevStandbyMgr::StandbyConfig config;
    config.mode = DevStandbyMgr::HostMode::SCRIPTED;
    config.strategies = {"SLEEP_CLEAN", "POWER_SAVE_CLEAN"};
    config.resCtrl["POWER_SAVE_CLEAN"] =
        std::make_shared<std::vector<DevStandbyMgr::ResCtrlItem>>(1, DevStandbyMgr::ResCtrlItem{false, {"com.listed"}});
    auto& service = phone.StartService(config);
    std::string error;
    ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
    service.Init();
    phone.Change([](auto& change) {
        change.processes = {Simulated::Process{32, 11, "listed", {"com.listed"}, false, true}};
    });
    service.DispatchEvent(StandbyMessage(1, kPowerSaveMode, AAFwk::Want().SetParam("current_power_mode", true)));
    service.DispatchEvent(StandbyMessage(1, "COMMON_EVENT_SCREEN_OFF"));
    service.DispatchEvent(StandbyMessage(1, kUserSleep, AAFwk::Want().SetParam("isSleep", true)));
    phone.Run();
    service.UnInit();
    phone.Run(29'999);
    EXPECT_THAT(phone.TakeLogs(), Not(Contains("info kill process pid: 32")));
    phone.Run(500'000);
    EXPECT_THAT(phone.TakeLogs(),
                Are({"debug system app can kill in list, process name: listed, uid : 11", "info kill process pid: 32",
                     "info run sleepClean start", "error handler is null"}));
    phone->DropPending();
    service.UnloadPlugin();
}

}  // namespace
}  // namespace TARN::Tests
