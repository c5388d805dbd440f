#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

/// The state transitions and phases as `21:05:00 1-2` and `21:45:00 phase 1`.
Record::Texts Steps(const Record& record) {
    Record::Texts steps;
    for (const std::string& line : record.Timed().Deliveries({2, 3})) {
        const auto number = [&line](const std::string& key) { return line.substr(line.find(key) + key.size() + 2, 1); };
        const std::string time = line.substr(0, line.find(' ') + 1);
        steps.push_back(line.find("CURRENT_PHASE") != std::string::npos
                            ? time + "phase " + number("CURRENT_PHASE")
                            : time + number("PREVIOUS_STATE") + "-" + number("CURRENT_STATE"));
    }
    return steps;
}

Night AutomaticNight() {
    return Night().Automatic();
}

TEST(AutomaticHost, AStillUnpluggedPhoneGoesDeeperStepByStep) {
    EXPECT_THAT(Steps(AutomaticNight().ScreenOff().PlayUntil("12:00")),
                Are({"21:00:00 0-1", "21:05:00 1-2", "21:35:00 2-4", "21:35:00 phase 0", "21:45:00 phase 1",
                     "21:55:00 phase 2", "22:05:00 phase 3", "22:35:00 4-3", "22:40:00 3-4", "22:40:00 phase 3",
                     "00:40:00 4-3", "00:45:00 3-4", "00:45:00 phase 3", "04:45:00 4-3", "04:50:00 3-4",
                     "04:50:00 phase 3", "08:50:00 4-3", "08:55:00 3-4", "08:55:00 phase 3"}));
}

TEST(AutomaticHost, ScreenOnWakesFromEveryDepthAndTheNextNightBeginsAnew) {
    for (const auto& [time, transition] :
         {std::pair{"21:03", "1-0"}, {"21:10", "2-0"}, {"21:50", "4-0"}, {"22:37", "3-0"}}) {
        Night night = AutomaticNight().ScreenOff().AdvanceTo(time).ScreenOn();
        EXPECT_THAT(Steps(night.PlayUntil("20:00")).back(), HasSubstr(std::string(time) + ":00 " + transition));
        EXPECT_THAT(Steps(night.AdvanceTo("23:00").ScreenOff().PlayUntil("00:40").At("23:")),
                    Are({"23:00:00 0-1", "23:05:00 1-2", "23:35:00 2-4", "23:35:00 phase 0", "23:45:00 phase 1",
                         "23:55:00 phase 2"}))
            << time;
    }
    EXPECT_THAT(Steps(AutomaticNight().ScreenOn().ScreenOn().PlayUntil("22:00")), IsEmpty());
}

TEST(AutomaticHost, DumpWordsMoveTheStateByHand) {
    const Night used = AutomaticNight().Dump(R"(["step"])");
    EXPECT_THAT(used.Play().Dumps(), Are({"\"WORKING\n\""})) << "the screen is on";
    Night stepped = AutomaticNight().ScreenOff().AdvanceTo("21:02").Dump(R"(["step"])").AdvanceTo("21:03");
    EXPECT_THAT(Steps(stepped.Set(R"({"plugged": 1})").Dump(R"(["step"])").AdvanceTo("21:04").PlayUntil("21:32")),
                Are({"21:00:00 0-1", "21:02:00 1-2"}))
        << "what holds a step back counts, and the time of the next try begins anew";
    Night deep = AutomaticNight().ScreenOff().AdvanceTo("21:40").Dump(R"(["step"])").AdvanceTo("21:41");
    deep.Dump(R"(["step"])").Dump(R"(["step"])").AdvanceTo("21:42").Dump(R"(["step"])").AdvanceTo("21:43");
    EXPECT_THAT(Steps(deep.Dump(R"(["step"])").PlayUntil("22:00").At("21:4")),
                Are({"21:40:00 phase 1", "21:41:00 phase 2", "21:41:00 phase 3", "21:42:00 4-3", "21:43:00 3-4",
                     "21:43:00 phase 3"}));

    Night forced = AutomaticNight().Set(R"({"movement": {"value": 2}})").AdvanceTo("21:01");
    forced.Dump(R"(["force-idle", "light"])").AdvanceTo("21:50").Dump(R"(["step"])").Dump(R"(["force-idle"])");
    forced.AdvanceTo("23:50").ScreenOff().Dump(R"(["force-idle", "aside"])").AdvanceTo("23:55").Dump(R"(["unforce"])");
    const Record record = forced.PlayUntil("23:57");
    EXPECT_THAT(Steps(record), Are({"21:01:00 0-1", "21:01:00 1-2", "21:01:00 2-4", "21:01:00 phase 0",
                                    "21:50:00 phase 1", "21:50:00 phase 2", "21:50:00 phase 3"}))
        << "screen and movement do not count, and no time passes";
    EXPECT_THAT(record.Dumps(),
                Are({"\"SLEEP, phase LIGHT, forced\n\"", "\"SLEEP, phase LIGHT, forced\n\"",
                     "\"SLEEP, phase DEEP, forced\n\"", "\"userSleepState: 0\n\"", "\"SLEEP, phase DEEP\n\""}));
    EXPECT_THAT(Night().Dump(R"(["step"])").Play().Dumps(), Are({"\"userSleepState: 0\n\""}))
        << "a scripted host decides nothing";
}

TEST(AutomaticHost, ReportsTheScreenOffForHalfAnHourAndItsEnd) {
    const auto reports = [](const Night& night) { return night.PlayUntil("23:00").Timed().Deliveries({6}); };
    const std::string yes = R"( 6 {"SCR_OFF_HALF_HOUR_STATUS":true})";
    const std::string no = R"( 6 {"SCR_OFF_HALF_HOUR_STATUS":false})";
    EXPECT_THAT(reports(AutomaticNight().ScreenOff().AdvanceTo("22:00").ScreenOn()),
                Are({"21:30:00" + yes, "22:00:00" + no}));
    EXPECT_THAT(reports(AutomaticNight().ScreenOff().AdvanceTo("21:29").ScreenOn()), Are({"21:29:00" + no}));
    EXPECT_THAT(reports(AutomaticNight().ScreenOff().AdvanceTo("21:20").ScreenOff()), Are({"21:30:00" + yes}));
    EXPECT_THAT(reports(AutomaticNight().Device("plugged", "1").ScreenOff()), Are({"21:30:00" + yes}))
        << "whatever the state";
    EXPECT_THAT(reports(AutomaticNight().ScreenOff().AdvanceTo("21:20").Restart()), Are({"21:50:00" + yes}))
        << "a service that starts again counts anew";
}

TEST(AutomaticHost, AChargerKeepsThePhoneAwake) {
    EXPECT_THAT(Steps(AutomaticNight().Device("plugged", "1").ScreenOff().PlayUntil("23:00")), IsEmpty());
    EXPECT_THAT(Steps(AutomaticNight()
                          .Device("plugged", "1")
                          .ScreenOff()
                          .AdvanceTo("22:00")
                          .Set(R"({"plugged": 0})")
                          .Broadcast("COMMON_EVENT_DISCHARGING")
                          .PlayUntil("22:06")),
                Are({"22:00:00 0-1", "22:05:00 1-2"}));
    EXPECT_THAT(Steps(AutomaticNight().Broadcast("COMMON_EVENT_DISCHARGING").PlayUntil("23:00")), IsEmpty())
        << "the screen is on";
    EXPECT_THAT(Steps(AutomaticNight()
                          .ScreenOff()
                          .AdvanceTo("21:40")
                          .Set(R"({"plugged": 2})")
                          .Broadcast("COMMON_EVENT_CHARGING")
                          .PlayUntil("23:00")
                          .At("21:4")),
                Are({"21:40:00 4-0"}));
    EXPECT_THAT(Steps(AutomaticNight()
                          .ScreenOff()
                          .AdvanceTo("21:02")
                          .Set(R"({"plugged": 1})")
                          .AdvanceTo("21:12")
                          .Set(R"({"plugged": 0})")
                          .PlayUntil("21:16")),
                Are({"21:00:00 0-1", "21:15:00 1-2"}))
        << "asked again every five minutes";
}

TEST(AutomaticHost, MovementLeadsBackToDarkAndHoldsThePhoneThere) {
    for (const auto& [time, transition] : {std::pair{"21:10", "2-1"}, {"21:50", "4-1"}, {"22:37", "3-1"}}) {
        Night night = AutomaticNight().ScreenOff().AdvanceTo(time).Set(R"({"movement": {"value": 2, "at": 0}})");
        EXPECT_THAT(Steps(night.PlayUntil("20:00")).back(), HasSubstr(std::string(time) + ":00 " + transition));
    }
    const Record record = AutomaticNight()
                              .AdvanceTo("21:30")
                              .Set(R"({"movement": {"value": 2, "at": 0}})")
                              .ScreenOff()
                              .AdvanceTo("21:32")
                              .Set(R"({"movement": {"value": 2, "at": 1}})")
                              .AdvanceTo("21:43")
                              .Set(R"({"movement": {"value": 1, "at": 2}})")
                              .PlayUntil("21:46");
    EXPECT_THAT(Steps(record), Are({"21:30:00 0-1", "21:45:00 1-2"}));
    for (const char* movement : {R"({"value": 1, "at": 0})", R"({"value": 0, "at": 0})", R"({"value": -1, "at": 0})"}) {
        EXPECT_THAT(Steps(AutomaticNight()
                              .ScreenOff()
                              .AdvanceTo("21:10")
                              .Set(std::string(R"({"movement": )") + movement + "}")
                              .PlayUntil("21:36")
                              .At("21:3")),
                    Are({"21:35:00 2-4", "21:35:00 phase 0"}))
            << movement;
    }
    EXPECT_THAT(
        Steps(
            AutomaticNight().Device("fail", R"({"MovementClient.GetMovementData": 1})").ScreenOff().PlayUntil("21:06")),
        Are({"21:00:00 0-1", "21:05:00 1-2"}))
        << "no answer counts as still";
}

TEST(AutomaticHost, NightBeginsAt22AndEndsAt7ByTheLocalClock) {
    for (const auto& [zone, start] : {std::pair{"UTC", "2026-03-01T21:00:00"},
                                      {"Europe/Berlin", "2026-03-28T12:00:00"},  // the night has 23 hours' day
                                      {"Europe/Berlin", "2026-10-24T12:00:00"},  // and 25
                                      {"Asia/Kathmandu", "2026-03-01T21:59:59.999"},
                                      {"Pacific/Apia", "2011-12-29T12:00:00"}}) {  // the next day is left out
        const Record record = Night(zone, start).Automatic().AdvanceTo("23:00").PlayUntil("08:00");
        EXPECT_THAT(record.Timed().Deliveries({4}),
                    Are({R"(22:00:00 4 {"RES_CTRL_CONDITION":2})", R"(07:00:00 4 {"RES_CTRL_CONDITION":1})"}))
            << zone << start;
    }
    EXPECT_THAT(Night("UTC", "2026-03-01T22:00:00").Automatic().PlayUntil("06:59").Deliveries({4}), IsEmpty())
        << "what holds at the start is no change";
    EXPECT_THAT(
        AutomaticNight().AdvanceTo("21:30").Restart().AdvanceTo("22:30").Restart().PlayUntil("08:00").Deliveries({4}),
        SizeIs(2));
}

TEST(AutomaticHost, StrategiesGetTheConditionOfTheLocalClock) {
    const Record record =
        AutomaticNight()
            .Strategies(R"(["FREEZE"])")
            .Host("persist_allow", R"({"FREEZE": {"1": ["day"], "2": ["night"]}})")
            .Device("processes",
                    R"([{"pid": 1, "name": "day", "native": true}, {"pid": 2, "name": "night", "native": true}])")
            .ScreenOff()
            .AdvanceTo("07:30")
            .ScreenOn()
            .Play();
    EXPECT_THAT(record.At("21:45").Calls("SuspendManager"), Are({HasSubstr(R"("name":"day","freeze":true)")}));
    EXPECT_THAT(record.At("22:00").Calls("SuspendManager"),
                Are({HasSubstr(R"("name":"day","freeze":false)"), HasSubstr(R"("name":"night","freeze":true)")}));
    EXPECT_THAT(record.At("22:35").Calls("SuspendManager"), Are({HasSubstr(R"("name":"night","freeze":false)")}));
    EXPECT_THAT(record.At("22:40").Calls("SuspendManager"), Are({HasSubstr(R"("name":"night","freeze":true)")}));
    EXPECT_THAT(record.At("07:30").Calls("SuspendManager"), Are({HasSubstr(R"("name":"day","freeze":false)")}));
}

TEST(AutomaticHost, ChangesOfWhatItKeepsBecomeMessages) {
    const auto told = [](const std::string& before, const std::string& after) {
        return AutomaticNight().Set(before).AdvanceTo("21:01").Set(after).PlayUntil("21:02").At("21:01").Deliveries(
            {5, 8, 10, 101, 1000000});
    };
    EXPECT_THAT(
        told(R"({"allow_list": {"64": ["a", "b"], "1": ["c"]}})", R"({"allow_list": {"64": ["d", "b", "d"]}})"),
        Are({R"(5 {"added":false,"allowType":64,"name":"a"})", R"(5 {"added":true,"allowType":64,"name":"d"})"}));
    EXPECT_THAT(told(R"({"allow_list": {"64": ["a"]}})", R"({"allow_list": {"64": null}})"),
                Are({R"(5 {"added":false,"allowType":64,"name":"a"})"}));
    EXPECT_THAT(told(R"({"device_state": {"0": true}})", R"({"device_state": {"0": true, "1": true}})"),
                Are({R"(10 {"DEVICE_STATE":true,"DEVICE_STATE_TYPE":1})"}));
    EXPECT_THAT(told(R"({"device_state": {"0": true}})", R"({"device_state": {"0": null, "1": false}})"),
                Are({R"(10 {"DEVICE_STATE":false,"DEVICE_STATE_TYPE":0})"}));
    EXPECT_THAT(told(R"({"continuous_tasks": [{"type": 2, "uid": 5, "pid": 6}]})",
                     R"({"continuous_tasks": [{"type": 4, "uid": 5, "pid": 6}, {"type": 4, "uid": 5, "pid": 6}]})"),
                Are({R"(101 {"started":false,"typeId":2,"uid":5})", R"(101 {"started":true,"typeId":4,"uid":5})"}));
    EXPECT_THAT(told(R"({"continuous_tasks": [{"type": 2, "uid": 5, "pid": 6}, {"type": 2, "uid": 7, "pid": 8}]})",
                     R"({"continuous_tasks": [{"type": 2, "uid": 7, "pid": 8}]})"),
                Are({"1000000 null"}))
        << "another one still plays";
    const std::string processes = R"({"processes": [{"pid": 1, "uid": 5, "name": "a", "foreground": true}]})";
    for (
        const char* after :
        {R"({"pid": 1, "uid": 5, "name": "a"})", "",
         R"({"pid": 1, "uid": 5, "name": "a", "foreground": true}, {"pid": 2, "uid": 6, "name": "b", "foreground": true})"}) {
        EXPECT_THAT(told(processes, std::string(R"({"processes": [)") + after + "]}"), Are({"1000000 null"})) << after;
    }
    EXPECT_THAT(told(processes, R"({"processes": [{"pid": 1, "uid": 5, "name": "a", "foreground": true},
                                    {"pid": 3, "name": "n", "native": true, "foreground": true}]})"),
                IsEmpty());
    EXPECT_THAT(told("{}", R"({"restrict_set": {"2": ["a"]}})"), Are({"1000000 null"}));
    EXPECT_THAT(
        told("{}",
             R"({"settings": {"SETTINGSDATA": {"a": "1"}}, "light": 3, "accounts": [], "restrict_set": {"2": []}})"),
        IsEmpty());
    EXPECT_THAT(AutomaticNight()
                    .Device("allow_list", R"({"64": ["a"]})")
                    .Device("device_state", R"({"1": true})")
                    .PlayUntil("21:10")
                    .Deliveries({5, 10}),
                IsEmpty())
        << "what holds at the start is no change";
}

TEST(AutomaticHost, TheWallClockLengthensNothing) {
    const auto steps = [](const Night& night) { return Steps(night.PlayUntil("01:00")); };
    for (const char* clock : {"TimeServiceClient.GetWallTimeMs", "TimeServiceClient.GetBootTimeNs"}) {
        Night set = AutomaticNight().ScreenOff().AdvanceTo("21:50").Fail(clock, 5).AdvanceTo("22:36").Heal(clock);
        EXPECT_EQ(steps(set), steps(AutomaticNight().ScreenOff())) << clock;
    }
}

TEST(AutomaticHost, ASetClockHasTheConditionLookedAt) {
    const char* clock = "TimeServiceClient.GetWallTimeMs";
    Night night("UTC", "2026-03-01T12:00:00");
    night.Automatic().AdvanceTo("13:00").Fail(clock, 5).Broadcast("COMMON_EVENT_TIME_CHANGED");
    night.AdvanceTo("14:00").Heal(clock).Broadcast("COMMON_EVENT_TIMEZONE_CHANGED");
    night.AdvanceTo("15:00").Broadcast("COMMON_EVENT_TIME_CHANGED");
    EXPECT_THAT(night.PlayUntil("23:00").Timed().Deliveries({4}),
                Are({R"(13:00:00 4 {"RES_CTRL_CONDITION":2})", R"(14:00:00 4 {"RES_CTRL_CONDITION":1})",
                     R"(22:00:00 4 {"RES_CTRL_CONDITION":2})"}));
}

TEST(AutomaticHost, ASubscriptionThatWasRefusedIsTriedAgain) {
    const char* subscribe = "CommonEventManager.SubscribeCommonEvent";
    Night night = AutomaticNight().Device("fail", R"({"CommonEventManager.SubscribeCommonEvent": 1})");
    night.AdvanceTo("21:00:30").Heal(subscribe).AdvanceTo("21:02").ScreenOff();
    const Record record = night.PlayUntil("21:08");
    EXPECT_THAT(Steps(record), Are({"21:02:00 0-1", "21:07:00 1-2"}));
    EXPECT_THAT(record.At("21:00").LogsOf("host_listeners"),
                Contains("error the system's broadcasts could not be had, tried again later"));
    EXPECT_THAT(record.At("21:01").Calls(subscribe), SizeIs(2)) << "the plugin's own listener is its own matter";
}

TEST(AutomaticHost, WhatWasMissedMeanwhileIsMadeUpFor) {
    const char* subscribe = "CommonEventManager.SubscribeCommonEvent";
    Night deaf =
        AutomaticNight().ScreenOff().AdvanceTo("21:01").Fail(subscribe).Crash().AdvanceTo("21:01:10").Heal(subscribe);
    EXPECT_THAT(Steps(deaf.AdvanceTo("21:01:20").ScreenOn().PlayUntil("22:00")),
                Are({"21:00:00 0-1", "21:01:00 0-1", "21:02:00 1-0"}))
        << "a screen that went on";
    Night dark = AutomaticNight().Device("fail", R"({"CommonEventManager.SubscribeCommonEvent": 1})");
    EXPECT_THAT(Steps(dark.ScreenOff().AdvanceTo("21:00:30").Heal(subscribe).PlayUntil("21:05")),
                Are({"21:01:00 0-1"}));

    const char* tasks = "BackgroundTaskMgrHelper.GetContinuousTaskApps";
    Night players = AutomaticNight().Device("fail", std::string(R"({")") + tasks + R"(": 5})");
    players.Device("continuous_tasks", R"([{"type": 2, "uid": 5, "pid": 6}, {"type": 2, "uid": 7, "pid": 8}])");
    players.AdvanceTo("21:00:20").Set(R"({"continuous_tasks": [{"type": 2, "uid": 5, "pid": 6},
        {"type": 2, "uid": 7, "pid": 8}, {"type": 4, "uid": 9, "pid": 10}]})");
    players.AdvanceTo("21:00:30").Heal(tasks).AdvanceTo("21:10");
    players.Set(R"({"continuous_tasks": [{"type": 2, "uid": 5, "pid": 6}, {"type": 4, "uid": 9, "pid": 10}]})");
    EXPECT_THAT(players.PlayUntil("21:11").Timed().Deliveries({101}),
                Are({R"(21:00:20 101 {"started":true,"typeId":4,"uid":9})",
                     R"(21:01:00 101 {"started":true,"typeId":2,"uid":5})",
                     R"(21:01:00 101 {"started":true,"typeId":2,"uid":7})"}));

    Night unlit = AutomaticNight().Device("fail", R"({"PowerMgrClient.IsScreenOn": 1})");
    const Record unknown = unlit.AdvanceTo("21:00:30").Heal("PowerMgrClient.IsScreenOn").PlayUntil("22:00");
    EXPECT_THAT(Steps(unknown), IsEmpty()) << "a screen that nobody tells of counts as lit";
    EXPECT_THAT(unknown.LogsOf("state_manager_adapter"),
                Are({"warn the power manager does not tell whether the screen is on"}));

    const char* screen = "PowerMgrClient.IsScreenOn";
    Night crashed =
        AutomaticNight().ScreenOff().AdvanceTo("21:10").Fail(screen).Crash().AdvanceTo("21:10:30").Heal(screen);
    EXPECT_THAT(Steps(crashed.PlayUntil("21:12").At("21:1")), Are({"21:11:00 0-1"})) << "until somebody does";

    Night plug = AutomaticNight().Fail("BatterySrvClient.GetPluggedType", 7).ScreenOff().AdvanceTo("21:01");
    EXPECT_THAT(Steps(plug.Heal("BatterySrvClient.GetPluggedType").PlayUntil("21:11")),
                Are({"21:05:00 0-1", "21:10:00 1-2"}))
        << "the plug is looked at again";
}

TEST(AutomaticHost, ItsDumpAnswersToEveryQuestionOfTheNight) {
    Night night = AutomaticNight().Strategies(R"(["FREEZE", "NETWORK", "RUNNING_LOCK", "TIMER"])");
    night.Host("persist_allow", R"({"FREEZE": {"1": ["day"], "2": ["daemon"]}})");
    night.Host("res_ctrl", R"({"TIMER_ADJUST": [{"allow": true, "names": ["com.clock"]}]})");
    night.Device("processes", R"([{"pid": 1, "uid": 11, "name": "daemon", "native": true},
        {"pid": 2, "uid": 12, "name": "idle"}, {"pid": 3, "uid": 13, "name": "clock", "system": true, "bundles": ["com.clock"]},
        {"pid": 4, "uid": 14, "name": "os", "system": true}])");
    night.Device("continuous_tasks", R"([{"type": 2, "uid": 13, "pid": 3}])");
    night.Device("allow_list", R"({"1": ["os"], "64": ["audio"]})").Device("restrict_set", R"({"2": ["os"]})");
    night.Broadcast("COMMON_EVENT_TIMER_SA_ABILITY").ScreenOff();
    const char* words = R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])";
    night.AdvanceTo("22:10").Dump(words).Dump(R"(["DUMP_DETAIL_INFO"])");
    const Record record = night.PlayUntil("22:11");
    ASSERT_THAT(record.Dumps(), SizeIs(2));
    for (const char* line :
         {"time: 2026-03-01 22:10:00, condition 2 night\n", "state: SLEEP since 2026-03-01 21:35:00, before: NAP\n",
          "phase: DEEP since 2026-03-01 22:05:00\n",
          "screen: off since 2026-03-01 21:00:00, for half an hour reported\n",
          "from NAP to SLEEP: still, yes\nfrom NAP to SLEEP: unplugged, yes\n", "frozen: 1\n  pid 1 daemon\n",
          "exempt from freezing: audio\n", "timers: stretched to 300 s, exempted: com.clock\n",
          "firewall: on since 2026-03-01 22:05:00\nrule: deep standby\n",
          "trust list: 2\n  uid 13 com.clock: runs a continuous task, belongs to the system\n"
          "  uid 14 os: on the allow list, belongs to the system\n",
          "shut out: 1\n  uid 12 idle: nothing exempts it\n",
          "running locks: proxied since 2026-03-01 21:55:00\nheld back: 2\n"
          "  pid 2 uid 12 idle: nothing exempts it\n",
          "not held back: 1\n  pid 3 uid 13 com.clock: runs a continuous task"}) {
        EXPECT_THAT(record.Dumps().front(), HasSubstr(line));
    }
    EXPECT_THAT(record.Dumps().back(), Not(HasSubstr("state:"))) << "other words ask for something else";
    const Record off = AutomaticNight().Strategies(R"(["NETWORK", "RUNNING_LOCK"])").Dump(words).PlayUntil("21:01");
    EXPECT_THAT(off.Dumps().front(), HasSubstr("screen: on\n"));
    EXPECT_THAT(off.Dumps().front(), HasSubstr("firewall: off"));
    EXPECT_THAT(off.Dumps().front(), HasSubstr("running locks: left alone\n"));
    const Record scripted = Night().Strategies(R"(["NETWORK"])").Dump(words).PlayUntil("21:01");
    EXPECT_THAT(scripted.Dumps().front(), Not(HasSubstr("firewall:"))) << "a scripted host has nothing to tell";
}

TEST(AutomaticHost, HandsOnTheBroadcastsThatStrategiesMatchAndNoOther) {
    Night night = AutomaticNight().AdvanceTo("22:00");
    const std::vector<std::string> actions = {"COMMON_EVENT_CHARGING",
                                              "COMMON_EVENT_DISCHARGING",
                                              "COMMON_EVENT_SCREEN_OFF",
                                              "COMMON_EVENT_SCREEN_ON",
                                              "COMMON_EVENT_POWER_SAVE_MODE_CHANGED",
                                              "COMMON_EVENT_TIMER_SA_ABILITY"};
    std::vector<std::string> expected;
    for (const std::string& action : actions) {
        night.Broadcast(action, R"({"a": 1})");
        expected.push_back("1 " + action + R"( {"a":1})");
    }
    night.Broadcast("COMMON_EVENT_BATTERY_LOW").Broadcast("COMMON_EVENT_SCREEN_UNLOCKED", R"({"a": 1})");
    expected.emplace_back("1 COMMON_EVENT_SCREEN_UNLOCKED null");
    EXPECT_THAT(night.PlayUntil("22:00").At("22:00").Deliveries({1}), ::testing::ElementsAreArray(expected));
}

TEST(AutomaticHost, ARestartInTheNightGoesToSleepAgain) {
    for (const bool isCrash : {false, true}) {
        Night night = AutomaticNight().ScreenOff().AdvanceTo("21:50");
        const Record record = (isCrash ? night.Crash() : night.Restart()).PlayUntil("22:26");
        EXPECT_THAT(Steps(record.At("21:5")), Are({"21:50:00 0-1", "21:55:00 1-2"})) << isCrash;
        EXPECT_THAT(Steps(record.At("22:")), Are({"22:25:00 2-4", "22:25:00 phase 0"})) << "and no task of before";
    }
    Night night = AutomaticNight().ScreenOff().AdvanceTo("21:50").ScreenOn().AdvanceTo("21:51");
    EXPECT_THAT(Steps(night.Crash().PlayUntil("23:00").At("22:")), IsEmpty()) << "the screen is on";
}

}  // namespace
}  // namespace TARN::Tests
