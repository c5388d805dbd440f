#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kAsleep[] = R"({"isSleep": true})";
constexpr char kOff[] = "call BluetoothHost.DisableBt {} -> 0";
constexpr char kOn[] = "call BluetoothHost.EnableBle {} -> 0";
constexpr char kPolicyOn[] = R"(call NetPolicyClient.SetDeviceIdlePolicy {"enable":true} -> 0)";
constexpr char kPolicyOff[] = R"(call NetPolicyClient.SetDeviceIdlePolicy {"enable":false} -> 0)";

/// The user falls asleep at 22:00.
Night Asleep() {
    return Night().AdvanceTo("22:00").Message(11, kAsleep);
}

Record::Texts Acts(const Record& record) {
    return record.Of({"BluetoothHost", "NetPolicyClient"});
}

TEST(UserSleepPowerOff, BluetoothAndTheNetworkFollowTheUsersSleep) {
    const Record record = Asleep().AdvanceTo("22:30").Message(11).PlayUntil("23:00");
    EXPECT_THAT(Acts(record.At("22:00")), Are({kOff, kPolicyOn}));
    EXPECT_THAT(Acts(record.At("22:30")), Are({kOn, kPolicyOff})) << "a report that does not say is one of waking";
}

TEST(UserSleepPowerOff, ARepeatedReportTriesTheRadioOnly) {
    Night night = Asleep().AdvanceTo("22:10").Message(11, kAsleep).AdvanceTo("22:20").Message(11).AdvanceTo("22:30");
    const Record record = night.Message(11).PlayUntil("23:00");
    EXPECT_THAT(record.At("22:10").LogsOf("user_sleep_power_off_strategy"),
                Are({HasSubstr("eventId is 11"), "warn has already been power off state, do not need to stop",
                     "warn cur userSleepState is 1, do nothing"}));
    EXPECT_THAT(record.At("22:30").LogsOf("user_sleep_power_off_strategy"),
                Are({HasSubstr("eventId is 11"), "info already power on, do not need to stop",
                     "warn cur userSleepState is 0, do nothing"}));
    EXPECT_THAT(Acts(record.At("22:10")), IsEmpty());
    EXPECT_THAT(Acts(record.At("22:30")), IsEmpty());
    const char* flying = R"({"SETTINGSDATA": {"settings.telephony.airplanemode": "1"}})";
    Night flight = Asleep().Device("settings", flying).AdvanceTo("22:10");
    flight.Set(R"({"settings": {"SETTINGSDATA": {"settings.telephony.airplanemode": "0"}}})").Message(11, kAsleep);
    const Record retried = flight.PlayUntil("23:00");
    EXPECT_THAT(Acts(retried.At("22:00")), Are({kPolicyOn})) << "airplane mode is about the radio alone";
    EXPECT_THAT(retried.At("22:00").LogsOf("user_sleep_power_off_strategy"),
                Contains("warn current is airplane mode, do not need process"));
    EXPECT_THAT(Acts(retried.At("22:10")), Are({kOff}));
}

TEST(UserSleepPowerOff, WakingBringsBluetoothBackAloneAndKeepsTheOtherEntries) {
    const char* all = R"("{\"wifi_off\": 2, \"modem_off\": 2, \"cellular_data_off\": 1, \"bluetooth_off\": 2}")";
    Night night = Asleep().AdvanceTo("22:10").File("power_off_record", all).Message(11).AdvanceTo("22:20").Crash();
    const Record record = night.PlayUntil("23:00");
    const auto radios = [&record](const char* time) {
        return record.At(time).Of({"BluetoothHost", "WifiDevice", "CoreServiceClient"});
    };
    EXPECT_THAT(radios("22:10"), Are({kOn}));
    EXPECT_THAT(radios("22:20"), Are({"call WifiDevice.Enable {} -> 0", HasSubstr(R"({"slot":0,"on":true})"),
                                      HasSubstr(R"({"slot":1,"on":true})")}));
}

TEST(UserSleepPowerOff, ThePowerOffStateIsOneForBothStrategies) {
    const auto bluetooth = [](const Record& record) { return record.Of({"BluetoothHost"}); };
    const char* halfHour = R"({"SCR_OFF_HALF_HOUR_STATUS": true})";
    const Record sleepFirst =
        Asleep().Device("condition", "2").Message(6, halfHour).AdvanceTo("22:10").WakeUp().PlayUntil("23:00");
    EXPECT_THAT(sleepFirst.At("22:00").LogsOf("power_off_strategy"),
                Contains("warn has already been power off state, do not need to stop"));
    EXPECT_THAT(bluetooth(sleepFirst), Are({kOff, kOn})) << "leaving SLEEP restores what the user's sleep switched off";
    Night night = Night().Device("condition", "2").AdvanceTo("21:30").Message(6, halfHour);
    night.AdvanceTo("22:00").Message(11, kAsleep).AdvanceTo("22:10").Message(11).AdvanceTo("22:20").WakeUp();
    const Record halfHourFirst = night.PlayUntil("23:00");
    EXPECT_THAT(bluetooth(halfHourFirst.Timed()),
                Are({std::string("21:30:00 ") + kOff, std::string("22:10:00 ") + kOn}));
}

TEST(UserSleepPowerOff, NothingComesBackWithTheStrategyItself) {
    for (const bool isCrash : {false, true}) {
        Night night = Asleep().Host("half_hour_switches", "{}").AdvanceTo("22:10");
        const Record record = (isCrash ? night.Crash() : night.Restart()).AdvanceTo("22:20").Message(11).Play();
        EXPECT_THAT(record.Of({"BluetoothHost"}), Are({kOff})) << isCrash;
    }
    Night night = Asleep().AdvanceTo("22:10").Crash();
    EXPECT_THAT(night.Play().At("22:10").Of({"BluetoothHost"}), Are({kOn})) << "the other strategy restores it";
}

TEST(UserSleepPowerOff, AStateChangeWhileAsleepRenewsThePolicyAfterTheConfiguredTime) {
    for (const auto& [params, time] : {std::pair{"{}", "22:10:05"},
                                       {R"({"recover_netlimit_time": 0})", "22:10:05"},
                                       {R"({"recover_netlimit_time": -3})", "22:10:05"},
                                       {R"({"recover_netlimit_time": 30})", "22:10:30"}}) {
        const Record record =
            Asleep().Host("params", params).AdvanceTo("22:10").GoFromTo(1, 2).PlayUntil("22:20").At("22:10");
        EXPECT_THAT(record.Timed().Of({"NetPolicyClient"}), Are({std::string(time) + " " + kPolicyOn})) << params;
        EXPECT_THAT(record.At("22:10:00").Calls("TimeServiceClient"),
                    Are({HasSubstr(R"(StopTimer {"id":1} -> true)"), HasSubstr(R"(StartTimer {"id":1,)")}));
    }
    Night night = Asleep().AdvanceTo("22:10").GoFromTo(1, 2).AdvanceMs(4000).GoFromTo(2, 4).AdvanceTo("22:20");
    EXPECT_THAT(night.PlayUntil("22:20").At("22:1").Timed().Of({"NetPolicyClient"}),
                Are({std::string("22:10:09 ") + kPolicyOn}))
        << "each change starts the time anew";
}

TEST(UserSleepPowerOff, NoRenewalForAUserWhoIsAwakeAndNoneWithoutATimer) {
    const Record awake = Night().AdvanceTo("22:10").GoFromTo(1, 2).PlayUntil("22:20").At("22:1");
    EXPECT_THAT(awake.Calls("TimeServiceClient"), IsEmpty());
    const Record woken = Asleep().AdvanceTo("22:10").GoFromTo(1, 2).AdvanceMs(2000).Message(11).PlayUntil("22:20");
    EXPECT_THAT(Acts(woken.At("22:10")), Are({kOn, kPolicyOff}));
    Night late = Asleep().Device("fail", R"({"TimedTask.CreateTimer": 1})").AdvanceTo("22:10").GoFromTo(1, 2);
    const Record noTimer = late.PlayUntil("22:20");
    EXPECT_THAT(noTimer.LogsOf("user_sleep_power_off_strategy"),
                Contains("error timer of recover netlimit is nullptr"));
    EXPECT_THAT(noTimer.At("22:10").Calls("TimeServiceClient"),
                Are({AllOf(HasSubstr(R"(StartTimer {"id":0,)"), HasSubstr("-> false"))}));
    EXPECT_THAT(Acts(noTimer.At("22:10")), IsEmpty());
    EXPECT_THAT(Asleep().PlayUntil("22:20").Of({"TimeServiceClient", "TimedTask"}),
                Are({R"(call TimedTask.CreateTimer {"repeat":false,"interval":0,"exact":true,"idle":false} -> 1)",
                     R"(call TimeServiceClient.StopTimer {"id":1} -> true)",
                     R"(call TimeServiceClient.DestroyTimer {"id":1} -> true)"}));
}

TEST(UserSleepPowerOff, TheDumpTellsWhetherTheUserSleeps) {
    Night night = Asleep().Host("half_hour_switches", "{}").Dump("[]").AdvanceTo("22:10");
    night.Dump(R"(["DUMP_DETAIL_INFO", "x"])").Dump(R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])");
    const Record record = night.Play();
    EXPECT_THAT(record.Dumps(),
                Are({"\"userSleepState: 0\n\"", "\"userSleepState: 1\n\"",
                     HasSubstr("userSleepState: 1\n=================PowerSaveFireWall=======================\n\"")}));
}

}  // namespace
}  // namespace TARN::Tests
