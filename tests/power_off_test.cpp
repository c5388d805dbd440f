#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

constexpr char kHalfHour[] = R"({"SCR_OFF_HALF_HOUR_STATUS": true})";
constexpr char kRecord[] = "power_off_record";
constexpr char kEverythingOff[] =
    R"("{\"wifi_off\": 2, \"modem_off\": 2, \"cellular_data_off\": 0, \"bluetooth_off\": 2}")";
constexpr char kDetails[] = R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])";

/// A phone under the condition of the night.
Night Bedtime() {
    return Night().Device("condition", "2");
}

/// Bluetooth is off by 21:30.
Night BluetoothOff() {
    return Bedtime().AdvanceTo("21:30").Message(6, kHalfHour).AdvanceTo("22:00");
}

/// Full power save; the screen goes off at 21:00, so that Wi-Fi and the modem do at 21:10.
Night SavingPower() {
    return Bedtime().Device("device_mode", "603").ScreenOff();
}

/// What happened to the radios: `bluetooth off`, `wifi on`, `modem 1 off`.
Record::Texts Radios(const Record& record) {
    Record::Texts texts;
    for (const std::string& call : record.Calls()) {
        if (call.starts_with("BluetoothHost")) {
            texts.emplace_back(call.starts_with("BluetoothHost.EnableBle") ? "bluetooth on" : "bluetooth off");
        } else if (call.starts_with("WifiDevice")) {
            texts.emplace_back(call.starts_with("WifiDevice.Enable") ? "wifi on" : "wifi off");
        } else if (call.starts_with("CoreServiceClient")) {
            const bool isOn = call.find(R"("on":true)") != std::string::npos;
            texts.push_back("modem " + call.substr(call.find(':') + 1, 1) + (isOn ? " on" : " off"));
        }
    }
    return texts;
}

TEST(PowerOff, BluetoothGoesOffUnderTheConditionOfTheNightAfterHalfAnHourWithoutScreen) {
    const Night evening = Night().AdvanceTo("21:30").Message(6, kHalfHour);  // half an hour by day
    const auto later = [&evening](int32_t condition) {
        return Night(evening).AdvanceTo("22:00").Set(R"({"condition": )" + std::to_string(condition) + "}");
    };
    const struct {
        const char* what;
        Night night;
        bool isOff;
    } cases[] = {
        {"half an hour at night", BluetoothOff(), true},
        {"half an hour by day", evening, false},
        {"conditions are compared whole", Night().Device("condition", "3").Message(6, kHalfHour), false},
        {"the screen came on", Bedtime().Message(6, R"({"SCR_OFF_HALF_HOUR_STATUS": false})"), false},
        {"a number is no bool", Bedtime().Message(6, R"({"SCR_OFF_HALF_HOUR_STATUS": 1})"), false},
        {"no want", Bedtime().MessageWithoutWant(6), false},
        {"SLEEP after half an hour", later(2).GoFromTo(2, 4), true},
        {"SLEEP by day", later(1).GoFromTo(2, 4), false},
        {"another state", later(2).GoFromTo(1, 2), false},
        {"SLEEP without half an hour", Bedtime().GoFromTo(2, 4), false},
        {"SLEEP after the screen came on", later(2).Message(6).GoFromTo(2, 4), false},
        {"from SLEEP to SLEEP", later(2).GoFromTo(4, 4), false},
        {"a phase", later(2).EnterPhase(4, 1), false},
    };
    for (const auto& [what, night, isOff] : cases) {
        const Record record = Night(night).AdvanceMs(1).Crash().Play();
        EXPECT_THAT(Radios(record), isOff ? Are({"bluetooth off", "bluetooth on"}) : Are({})) << what;
    }
}

TEST(PowerOff, BluetoothInUseStaysOnAndIsTriedAgainWhenADeviceStateChanges) {
    const std::string call = R"("device_state": {"1": true, "0": true})";
    const std::string connected = R"("bluetooth": {"state": 1, "connection": )";
    const std::string connecting = "info bluetooth is in connecting state, can not disable";
    for (const auto& [facts, line] :  // each with what the later checks would refuse
         {std::pair{R"("bluetooth": {"state": 3, "connection": 1}, )" + call,
                    std::string("info bluetooth is already off, bt state is 3")},
          {R"("bluetooth": {"state": 2, "connection": 1}, )" + call, "info bluetooth is already off, bt state is 2"},
          {connected + "0}, " + call, connecting},
          {connected + "1}, " + call, connecting},
          {connected + "2}, " + call, connecting},
          {call, "info telephone is calling, can not disable"},
          {R"("device_state": {"0": true})", "info discomponent is connecting, can not disable"}}) {
        Night night = Bedtime().Set("{" + facts + "}").Message(6, kHalfHour).AdvanceTo("21:50").Dump(kDetails);
        night.Set(R"({"bluetooth": {"state": 1, "connection": 3}, "device_state": {"0": null, "1": null}})");
        const Record record = night.Message(10).Message(10).AdvanceTo("22:00").Crash().Play();
        EXPECT_EQ(record.At("21:00").LogsOf("power_off_strategy").back(), line);
        EXPECT_THAT(record.Dumps(), Contains(HasSubstr("isPowerOff: 1\nbluetoothStatus_: 0\n"))) << line;
        EXPECT_THAT(Radios(record), Are({"bluetooth off", "bluetooth on"})) << line;
        EXPECT_EQ(record.At("21:50").LogsOf("power_off_strategy").back(),
                  "warn do not need repeatedly disable bluetooth");
    }
    EXPECT_THAT(Bedtime().Message(10).Play().LogsOf("power_off_strategy"),
                Contains("info has not been power off state, do not need to process"));
}

TEST(PowerOff, AFailingBluetoothIsRecordedAllTheSame) {
    Night night = Bedtime().Fail("BluetoothHost.DisableBt", 7).Message(6, kHalfHour).AdvanceTo("22:00");
    const Record off = night.Crash().Play();
    EXPECT_THAT(off.LogsOf("power_off_strategy"),
                IsSupersetOf({"warn failed to disable classic bluetooth", "warn succeed in disabling bluetooth"}));
    EXPECT_THAT(Radios(off), Are({"bluetooth off", "bluetooth on"}));
    const Record on = BluetoothOff().Fail("BluetoothHost.EnableBle").ScreenOn().ScreenOn().PlayUntil("22:01");
    EXPECT_THAT(on.LogsOf("power_off_strategy"),
                IsSupersetOf({"warn failed to enable ble bluetooth", "info succeed in enabling bluetooth"}));
    EXPECT_THAT(Radios(on), Are({"bluetooth off", "bluetooth on"})) << "and not tried again";
}

TEST(PowerOff, EverythingRecordedComesBackInOrder) {
    const Night asleep = BluetoothOff().File(kRecord, kEverythingOff);
    for (const auto& [what, night] : {std::pair{"SLEEP is left", Night(asleep).WakeUp()},
                                      {"for maintenance", Night(asleep).GoFromTo(4, 3)},
                                      {"the day", Night(asleep).ChangeCondition(1)},
                                      {"the end", Night(asleep).Restart()},
                                      {"screen on", Night(asleep).ScreenOn()},
                                      {"a start", Night(asleep).Crash()}}) {
        const Record record = Night(night).AdvanceMs(1).Crash().Play();
        EXPECT_THAT(Radios(record.At("22:00")), Are({"bluetooth on", "wifi on", "modem 0 on", "modem 1 on"})) << what;
    }
}

TEST(PowerOff, WhatIsNotTheEndOfSleepKeepsTheRadiosOff) {
    Night night = BluetoothOff().GoFromTo(3, 4).GoFromTo(2, 0).MessageWithoutWant(4).Message(6);
    night.Message(4, R"({"RES_CTRL_CONDITION": 2})").Message(4, R"({"RES_CTRL_CONDITION": 3})");
    const Record record = night.PlayUntil("22:01");
    EXPECT_THAT(Radios(record.At("22:00")), IsEmpty());
    const Record idle = Night().File(kRecord, kEverythingOff).ChangeCondition(1).WakeUp().PlayUntil("21:01");
    EXPECT_THAT(Radios(idle), IsEmpty()) << "nothing was switched off, and the record is left alone";
    EXPECT_THAT(idle.LogsOf("power_off_strategy"), Contains("info already power on, do not need to stop").Times(3));
}

TEST(PowerOff, TheScreenBringsBluetoothBackOnceAndTheNextNightBeginsWithTheNextStop) {
    Night night = BluetoothOff().ScreenOn().ScreenOff().AdvanceTo("22:30").Dump(kDetails).Message(6, kHalfHour);
    const Record record = night.AdvanceTo("23:00").WakeUp().AdvanceTo("23:30").Message(6, kHalfHour).Play();
    EXPECT_THAT(Radios(record.At("22:")), Are({"bluetooth on"}));
    EXPECT_THAT(record.Dumps(), Are({StartsWith("\"=================PowerOff=========================\n"
                                                "power off strategy\nisPowerOff: 1\nbluetoothStatus_: 0\n")}));
    EXPECT_THAT(record.At("22:30").LogsOf("power_off_strategy"),
                Contains("warn has already been power off state, do not need to stop"));
    EXPECT_THAT(Radios(record.At("23:00")), IsEmpty());
    EXPECT_THAT(Radios(record.At("23:30")), Are({"bluetooth off", "bluetooth on"})) << "the end brings it back";
}

TEST(PowerOff, ARestartBringsBackWhatTheRecordNamesAndOnlyThat) {
    const auto refuse = [](Night night) { return night.Fail("JsonUtils.DumpJsonValueToFile"); };
    const Night bluetoothIsRecorded = BluetoothOff();
    const Night bluetoothIsNot = refuse(Bedtime()).Message(6, kHalfHour).AdvanceTo("22:00");
    const Night netIsRecorded = SavingPower().AdvanceTo("22:00");
    const Night netIsNot = refuse(SavingPower()).AdvanceTo("22:00");
    const auto on = [](const Night& night) { return Night(night).ScreenOn(); };
    const auto awake = [](const Night& night) { return Night(night).WakeUp(); };
    const struct {
        const char* what;
        Night night;
        Record::Texts radios;
    } cases[] = {
        {"before Bluetooth is recorded", bluetoothIsNot, {}},
        {"after", bluetoothIsRecorded, {"bluetooth on"}},
        {"before Wi-Fi and the modem are", netIsNot, {}},
        {"after", netIsRecorded, {"wifi on", "modem 0 on", "modem 1 on"}},
        {"before their restore is", on(refuse(netIsRecorded)), {"wifi on", "modem 0 on", "modem 1 on"}},
        {"after", on(netIsRecorded), {}},
        {"before the stop is", awake(refuse(bluetoothIsRecorded)), {"bluetooth on"}},
        {"after", awake(bluetoothIsRecorded), {}},
    };
    for (const auto& [what, night, radios] : cases) {
        for (const bool isCrash : {true, false}) {
            Night last = Night(night).AdvanceTo("23:30");
            const Record record = (isCrash ? last.Crash() : last.Restart()).Play();
            EXPECT_THAT(Radios(record.At("23:30")), ::testing::ElementsAreArray(radios)) << what << ' ' << isCrash;
        }
    }
}

TEST(PowerOff, InFullPowerSaveWifiAndModemGoOffTenMinutesAfterTheScreen) {
    Night night = SavingPower().AdvanceTo("21:20").Dump(kDetails).ScreenOn().AdvanceTo("21:30").ScreenOn();
    const Record record = night.Play();
    EXPECT_THAT(
        record.At("21:00").Of({"TimedTask", "TimeServiceClient"}),
        IsSupersetOf({R"(call TimedTask.CreateTimer {"repeat":false,"interval":0,"exact":false,"idle":false} -> 2)",
                      R"(call TimeServiceClient.StartTimer {"id":2,"trigger":1772399400000} -> true)"}));
    EXPECT_THAT(record.At("21:10:00").Of({"WifiDevice", "CommonEvent", "CoreServiceClient"}),
                Are({"call WifiDevice.Disable {} -> 0",
                     R"(call CommonEventManager.PublishCommonEvent {"action":"COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK",)"
                     R"("want":{"ctrl_network_status":false},"permissions":[]} -> true)",
                     R"(call CoreServiceClient.SetRadioState {"slot":0,"on":false} -> 0)",
                     R"(call CoreServiceClient.SetRadioState {"slot":1,"on":false} -> 0)"}));
    EXPECT_THAT(record.Dumps(), Contains(HasSubstr("isPowerOff: 0\n")));
    EXPECT_THAT(Radios(record.At("21:20")), Are({"wifi on", "modem 0 on", "modem 1 on"}));
    EXPECT_THAT(Radios(record.At("21:30")), IsEmpty());
    EXPECT_THAT(record.At("21:30").Calls("TimeServiceClient.StopTimer"), Contains(HasSubstr(R"({"id":2} -> true)")))
        << "the timer is kept";
}

TEST(PowerOff, WifiAndModemStayOnUnlessTheScreenIsOffInFullPowerSaveTenMinutesLater) {
    const auto off = Are({"wifi off", "modem 0 off", "modem 1 off"});
    const Night noMode = SavingPower().AdvanceTo("21:05").Set(R"({"device_mode": 600})");
    for (const auto& [what, night] :
         {std::pair{"the screen comes on before", SavingPower().AdvanceTo("21:09:59.999").ScreenOn()},
          {"an older timer is due", SavingPower().AdvanceTo("21:05").ScreenOff().AdvanceTo("21:07").ScreenOn()},
          {"the mode is left", noMode},
          {"the mode begins later", Bedtime().ScreenOff().AdvanceTo("21:01").Set(R"({"device_mode": 603})")},
          {"another mode", Bedtime().Device("device_mode", "602").ScreenOff()}}) {
        EXPECT_THAT(Radios(night.PlayUntil("21:30")), IsEmpty()) << what;
    }
    const Night modeIsBack = Night(noMode).AdvanceTo("21:09").Set(R"({"device_mode": 603})");
    EXPECT_THAT(Radios(modeIsBack.PlayUntil("21:30")), off);
    for (const auto& [operation, id] :
         {std::pair{"TimedTask.CreateTimer", "0"}, {"TimeServiceClient.StartTimer", "2"}}) {
        const Record record = SavingPower().Fail(operation).PlayUntil("21:30");
        EXPECT_THAT(Radios(record), IsEmpty()) << operation;
        EXPECT_THAT(record.LogsOf("power_off_strategy"),
                    Contains(std::string("warn failed to start timer, timer ID: ") + id));
    }
    const Record twice = SavingPower().AdvanceTo("21:05").ScreenOff().AdvanceTo("21:17").ScreenOn().Play();
    EXPECT_THAT(Radios(twice.At("21:10:00")), off);
    EXPECT_THAT(Radios(twice.At("21:15:00")), off) << "each screen-off has a timer of its own";
    EXPECT_THAT(twice.At("21:17").Calls("TimeServiceClient.StopTimer"), Contains(HasSubstr(R"({"id":3})")))
        << "and the last one is stopped";
}

TEST(PowerOff, WifiAndModemThatFailCountAsOffAndTheirReturnIsTriedOnce) {
    const std::string noWifi = "warn can not get wifiDevice or failed to disable wifi";
    const std::string modemOn = "info succeed in enabling modem";
    const Record::Texts bothSlots = {"wifi off", "modem 0 off", "modem 1 off", "wifi on", "modem 0 on", "modem 1 on"};
    const Record::Texts modemOnly = {"modem 0 off", "modem 1 off", "modem 0 on", "modem 1 on"};
    const Record::Texts wifiOnly = {"wifi off", "wifi on"};
    const struct {
        Night night;
        Record::Texts radios;
        std::string line;
    } cases[] = {
        {SavingPower().Device("wifi", R"({"present": false})"), modemOnly, noWifi},
        {SavingPower().Fail("WifiDevice.GetInstance"), modemOnly, "warn can not get wifiDevice"},
        {SavingPower().Fail("WifiDevice.Disable"), bothSlots, noWifi},
        {SavingPower().Fail("WifiDevice.Enable"), bothSlots, "warn failed enable wifi"},
        {SavingPower().Fail("CoreServiceClient.SetRadioState"), bothSlots, modemOn},
        {SavingPower().Device("modem", R"({"slots": 0})"), wifiOnly, modemOn},
        {SavingPower().Fail("CoreServiceClient.GetMaxSimCount", -1), wifiOnly, modemOn},
        {SavingPower().Fail("CommonEventManager.PublishCommonEvent"), bothSlots,
         "error PublishCommonEvent for ctrl network failed"},
    };
    for (const auto& [night, radios, line] : cases) {
        const Record record = Night(night).AdvanceTo("22:00").ScreenOn().AdvanceTo("23:00").ScreenOn().Play();
        EXPECT_THAT(Radios(record), ::testing::ElementsAreArray(radios));
        EXPECT_THAT(record.LogsOf("power_off_strategy"), Contains(line));
        EXPECT_THAT(record.At("23:00").LogsOf("power_off_strategy"),
                    IsSupersetOf({"warn do not need enable wifi", "warn do not need enable Modem"}));
    }
}

TEST(PowerOff, AConnectionThatTheRecordNamesKeepsTheBroadcastBack) {
    const auto saved = [](const char* record) {
        return SavingPower().File(kRecord, record).ScreenOn().ScreenOff().PlayUntil("21:10").At("21:10");
    };
    const Record held = saved(R"("{\"cellular_data_off\": 1}")");
    EXPECT_THAT(held.Calls("CommonEventManager.Publish"), IsEmpty());
    EXPECT_THAT(held.LogsOf("power_off_strategy"),
                Contains("debug network connection is still existing, can not send network ctrl common event"));
    EXPECT_THAT(saved(R"("{\"cellular_data_off\": 2}")").Calls("CommonEventManager.Publish"), ::testing::SizeIs(1))
        << "2 is no connection";
}

}  // namespace
}  // namespace TARN::Tests
