#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "are.h"
#include "night_reader.h"
#include "night_script.h"
#include "phrases.h"
#include "player.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kAsleep[] = R"({"isSleep": true})";
constexpr char kOff[] = "22:10:00 call BluetoothHost.DisableBt {} -> 0";
constexpr char kNoRecord[] = "JsonUtils.DumpJsonValueToFile";

/// A night on which the host decides by itself, from 21:00 on, awake and lit.
Night Automatic() {
    return Night().Automatic();
}

/// The user falls asleep at 22:10, ten minutes after the screen went off.
Night Asleep() {
    return Automatic().AdvanceTo("22:00").ScreenOff().AdvanceTo("22:10").Message(11, kAsleep);
}

/// The same, but what is off cannot be recorded, and the record is lost.
Night AsleepUnrecorded() {
    return Automatic().Fail(kNoRecord).AdvanceTo("22:00").ScreenOff().AdvanceTo("22:10").Message(11, kAsleep);
}

/// The morning: the screen goes on at 07:00 and stays on.
Record Morning(Night night) {
    return night.AdvanceTo("07:00").ScreenOn().PlayUntil("07:30");
}

Record::Texts Bluetooth(const Record& record) {
    return record.Timed().Of({"BluetoothHost"});
}

TEST(RadioLedger, WhatTwoStrategiesWriteOverEachOtherComesBackAMinuteAfterTheScreen) {
    Night saving = Automatic().Device("device_mode", "603").AdvanceTo("22:00").ScreenOff();
    saving.AdvanceTo("22:20").Message(11, kAsleep);
    const auto network = [](const Record& record, const char* on) {
        return record.At(on).Timed().Of({"WifiDevice", "CoreServiceClient"});
    };
    EXPECT_THAT(network(Morning(saving), "0"), IsEmpty()) << "the plugin alone leaves them off";
    const Record mended = Morning(saving.WithRadioLedger());
    EXPECT_THAT(network(mended, "0"),
                Are({HasSubstr(R"(07:01:00 call CoreServiceClient.SetRadioState {"slot":0,"on":true})"),
                     HasSubstr(R"({"slot":1,"on":true})"), "07:01:00 call WifiDevice.Enable {} -> 0"}));
    EXPECT_THAT(mended.At("07:01:00").LogsOf("radio_book"),
                Are({"warn forgotten: modem 0 is off since 1772403000000, switched off by a timer",
                     "warn forgotten: modem 1 is off since 1772403000000, switched off by a timer",
                     "warn forgotten: wifi is off since 1772403000000, switched off by a timer"}));

    Night sleeping = Automatic().Device("device_mode", "603").AdvanceTo("22:00").ScreenOff();
    sleeping.AdvanceTo("22:05").Message(11, kAsleep);
    EXPECT_THAT(Bluetooth(Morning(sleeping)), Are({HasSubstr("22:05:00 call BluetoothHost.DisableBt")}));
    EXPECT_THAT(Bluetooth(Morning(sleeping.WithRadioLedger())), Are({HasSubstr("22:05:00 call BluetoothHost.DisableBt"),
                                                                     "07:01:00 call BluetoothHost.EnableBle {} -> 0"}));
}

TEST(RadioLedger, WhatIsOffWithoutARecordComesBackWhenTheServiceStarts) {
    Night stopped = AsleepUnrecorded().AdvanceTo("22:20").Restart();
    Night crashed = AsleepUnrecorded().AdvanceTo("22:20").Crash();
    for (Night* const night : {&stopped, &crashed}) {
        EXPECT_THAT(Bluetooth(night->PlayUntil("22:45")), Are({kOff})) << "the plugin alone leaves it off";
        const Record mended = night->WithRadioLedger().PlayUntil("22:45");
        EXPECT_THAT(Bluetooth(mended), Are({kOff, "22:20:00 call BluetoothHost.EnableBle {} -> 0"}));
        EXPECT_THAT(
            mended.LogsOf("radio_book"),
            Are({"warn forgotten: bluetooth is off since 1772403000000, switched off by USER_SLEEP_STATE_CHANGED"}));
    }
}

TEST(RadioLedger, WhatThePluginBringsBackByItselfIsNotForgotten) {
    Night night = Asleep().AdvanceTo("06:50").Message(11);
    const Record alone = Morning(night);
    const Record watched = Morning(night.WithRadioLedger());
    EXPECT_THAT(watched.Timed().Of({""}), ::testing::ContainerEq(alone.Timed().Of({""})));
}

/// Full power saving switches off at 22:10 what is on, and gives back at 22:15.
Night SavingWhileSomeIsOff() {
    Night night = Automatic().Device("device_mode", "603").Device("wifi", R"({"enabled": false})");
    night.Device("modem", R"({"off": [1]})").AdvanceTo("22:00").ScreenOff().AdvanceTo("22:15").ScreenOn();
    return night;
}

TEST(RadioLedger, ARadioThatTheUserHasOffStaysOff) {
    const std::string first = R"(call CoreServiceClient.SetRadioState {"slot":0,"on":true} -> 0)";
    EXPECT_THAT(SavingWhileSomeIsOff().PlayUntil("22:30").At("22:15").Of({"WifiDevice", "CoreServiceClient"}),
                Are({"call WifiDevice.Enable {} -> 0", first, HasSubstr(R"({"slot":1,"on":true})")}));
    const Record kept = SavingWhileSomeIsOff().WithRadioLedger().PlayUntil("22:30");
    EXPECT_THAT(kept.At("22:15").Of({"WifiDevice", "CoreServiceClient", "radio_book"}),
                Are({"info radio_book: left off: wifi was switched off by somebody else", first,
                     "info radio_book: left off: modem 1 was switched off by somebody else"}));
}

TEST(RadioLedger, WhatTheUserSwitchedMeanwhileStaysAsTheUserLeftIt) {
    const auto evening = [](const char* first, const char* second) {
        Night night = AsleepUnrecorded().AdvanceTo("22:15").Set(first).Set(second);
        return Bluetooth(Morning(night.WithRadioLedger()));
    };
    constexpr char kOn[] = R"({"bluetooth": {"state": 1}})";
    EXPECT_THAT(evening(kOn, R"({"bluetooth": {"state": 3}})"), Are({kOff}));
    EXPECT_THAT(evening(kOn, R"({"plugged": 0})"), Are({kOff})) << "on already";
    EXPECT_THAT(evening(R"({"bluetooth": {"state": 2}})", R"({"bluetooth": {"state": 3}})"),
                Contains(HasSubstr("07:01:00 call BluetoothHost.EnableBle")))
        << "never on in between";
}

TEST(RadioLedger, ARefusedSwitchIsTriedAgainAsLongAsTheScreenIsOn) {
    Night night = AsleepUnrecorded().Fail("BluetoothHost.EnableBle", 5).AdvanceTo("07:00").ScreenOn();
    night.AdvanceTo("07:02:30").ScreenOff().AdvanceTo("07:10").ScreenOn().AdvanceTo("07:10:20").ScreenOff();
    night.AdvanceTo("07:20").ScreenOn().AdvanceTo("07:21:30").Heal("BluetoothHost.EnableBle");
    EXPECT_THAT(
        Bluetooth(night.WithRadioLedger().PlayUntil("07:30")),
        Are({kOff, "07:01:00 call BluetoothHost.EnableBle {} -> 5", "07:02:00 call BluetoothHost.EnableBle {} -> 5",
             "07:21:00 call BluetoothHost.EnableBle {} -> 5", "07:22:00 call BluetoothHost.EnableBle {} -> 0"}));
}

TEST(RadioLedger, WhatGoesOffUnderALitScreenIsBackAMinuteLater) {
    Night night = Automatic().Device("device_state", R"({"1": true})").AdvanceTo("22:00").ScreenOff();
    night.AdvanceTo("22:33").ScreenOn().AdvanceTo("22:34").Set(R"({"device_state": {"1": false}})");
    EXPECT_THAT(Bluetooth(night.PlayUntil("23:00").At("22")),
                Are({HasSubstr("22:34:00 call BluetoothHost.DisableBt")}));
    EXPECT_THAT(
        Bluetooth(night.WithRadioLedger().PlayUntil("23:00").At("22")),
        Are({HasSubstr("22:34:00 call BluetoothHost.DisableBt"), "22:35:00 call BluetoothHost.EnableBle {} -> 0"}));
}

TEST(RadioLedger, TheSleepingUsersBluetoothStaysOffUnderAScreenThatBringsNothingBack) {
    Night night = AsleepUnrecorded().Host("half_hour_switches", R"({"poweroff": false})").WithRadioLedger();
    night.AdvanceTo("03:00").ScreenOn();
    EXPECT_THAT(Bluetooth(night.PlayUntil("03:30")), Are({kOff}));
    EXPECT_THAT(Bluetooth(night.AdvanceTo("04:00").Message(11).PlayUntil("05:00")),
                Are({kOff, "04:01:00 call BluetoothHost.EnableBle {} -> 0"}));
}

/// What a timeline tells of the radios in one hour.
Record::Texts Told(const Night& night, const std::string& hour) {
    std::istringstream text(night.Text(hour + ":30"));
    Replay::Trace trace = Replay::ReadTrace(text, "test");
    trace.host.policy.hasRadioLedger = true;
    Story::NightReader reader;
    Replay::Play(trace, {PluginPath(), {}}, reader);
    Record::Texts told;
    for (const Story::Event& event : reader.Result().events) {
        const bool isRadio = event.subject >= Story::Subject::BLUETOOTH && event.subject <= Story::Subject::MODEM;
        const std::string clock = Story::Clock(event.t);
        if (isRadio && !event.isRepeat && clock.starts_with(hour)) {
            told.push_back(clock + " " + event.text + (event.reason.empty() ? "" : ": " + event.reason));
        }
    }
    return told;
}

TEST(RadioLedger, IsToldInPlainWords) {
    Night refused = AsleepUnrecorded().Fail("BluetoothHost.EnableBle", 5).AdvanceTo("07:00").ScreenOn();
    EXPECT_THAT(
        Told(refused.AdvanceTo("07:03:30").Heal("BluetoothHost.EnableBle"), "07"),
        Are({"07:01 switching on failed (code 5): the ledger: forgotten since 22:10, switched off as the user slept",
             "07:04 back on: the ledger: forgotten since 22:10, switched off as the user slept"}));
    EXPECT_THAT(
        Told(SavingWhileSomeIsOff(), "22"),
        Are({HasSubstr("22:10 told to go off, although the user had it off already"), HasSubstr("22:10 off, 2 slots"),
             "22:15 stays off: somebody else switched it off", "22:15 back on, 1 slot: screen on"}));
}

TEST(RadioLedger, AHostThatDecidesNothingHasNone) {
    Night night = Night().Fail(kNoRecord).AdvanceTo("22:10").Message(11, kAsleep).AdvanceTo("22:20").Crash();
    const Record alone = Morning(night);
    EXPECT_THAT(Morning(night.WithRadioLedger()).Timed().Of({""}), ::testing::ContainerEq(alone.Timed().Of({""})));
    EXPECT_THAT(Bluetooth(alone), Are({kOff}));
}

}  // namespace
}  // namespace TARN::Tests
