#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "are.h"
#include "night_script.h"
#include "player.h"
#include "trace.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kUnlocked[] = "COMMON_EVENT_SCREEN_UNLOCKED";

/// Frozen in deep sleep; what the suspend manager is asked then tells which facts held.
Night FreezingNight() {
    Night night;
    night.Strategies(R"(["FREEZE"])").Host("persist_allow", R"({"FREEZE": {"1": ["storage"]}})");
    return night;
}

constexpr char kStorage[] = R"({"processes": [{"pid": 11, "name": "storage", "native": true}]})";
constexpr char kFreeze[] = R"(call SuspendManagerClient.OperateNativeProcesses )"
                           R"({"processes":[{"pid":11,"name":"storage","freeze":true}]} -> [0])";

TEST(PlayOrder, MessagesOfOneTimeAreDeliveredInFileOrderAfterTheStepsOfThatTime) {
    const Record record =
        FreezingNight().AdvanceTo("22:00").GoToDeepSleep().Dump(R"(["x"])").Set(kStorage).PlayUntil("22:00");
    EXPECT_THAT(record.At("22:00").Of({"dump", "deliver 2 ", "deliver 3 ", "SuspendManagerClient"}),
                Are({HasSubstr("dump"), HasSubstr("deliver 2 "), HasSubstr("deliver 3 "), kFreeze}))
        << "the fact that a later step of that time sets holds by then, and a dump acts within its step";
}

TEST(PlayOrder, ABroadcastIsDeliveredInItsPlaceAndItsMessageJoinsBehindTheQueue) {
    const Record record =
        Night().AdvanceTo("22:00").Broadcast(kUnlocked).Message(7).Broadcast(kUnlocked).Message(8).PlayUntil("22:00");
    EXPECT_THAT(record.Of({"common_event_listener_ext", "deliver 1 ", "deliver 7 ", "deliver 8 "}),
                Are({HasSubstr("receive common event"), HasSubstr("deliver 7 "), HasSubstr("receive common event"),
                     HasSubstr("deliver 8 "), HasSubstr("deliver 1 "), HasSubstr("deliver 1 ")}));
}

TEST(PlayOrder, WorkThatAlreadyWaitedForATimeRunsBeforeItsMessages) {
    // the host's half-hour task is due at the very time of the steps
    const Record record = Night()
                              .Automatic()
                              .ScreenOff()
                              .AdvanceTo("21:30")
                              .Set(R"({"plugged": 1})")
                              .Broadcast(kUnlocked)
                              .Message(7)
                              .PlayUntil("21:30");
    EXPECT_THAT(record.At("21:30").Of({"common_event_listener_ext", "deliver 6 ", "deliver 7 "}),
                Are({HasSubstr("receive"), HasSubstr("deliver 7 "), HasSubstr("deliver 6 ")}))
        << "the task ran first and queued its report behind what the steps had queued";
}

TEST(PlayOrder, ASetTakesEffectBeforeWorkThatWaitedForThatTime) {
    // five minutes on the host asks whether the phone is unplugged
    const auto sleepers = [](int64_t plugAtMs) {
        return Night()
            .Automatic()
            .ScreenOff()
            .AdvanceMs(plugAtMs)
            .Set(R"({"plugged": 1})")
            .PlayUntil("21:05")
            .Deliveries({2});
    };
    EXPECT_EQ(sleepers(300'000).size(), 1U) << "plugged in time: only WORKING to DARK";
    EXPECT_EQ(sleepers(299'999).size(), 1U);
}

TEST(PlayOrder, WhatIsDueUpToAndIncludingTheEndStillRuns) {
    EXPECT_THAT(Night().Automatic().ScreenOff().PlayUntil("21:05").At("21:05:00").Deliveries({2}),
                Are({HasSubstr(R"("CURRENT_STATE":2)")}));
    EXPECT_THAT(Night().Automatic().ScreenOff().PlayUntil("21:04:59.999").At("21:0").Deliveries({2}),
                Are({HasSubstr(R"("CURRENT_STATE":1)")}));
    EXPECT_THAT(Night().AdvanceTo("22:00").Message(7).Play().Deliveries({7}), Are({"7 {}"}))
        << "without an end, the last step's time is it";
}

TEST(PlayOrder, ARestartDropsWhatEarlierStepsOfItsTimeQueued) {
    for (const bool isCrash : {false, true}) {
        Night night;
        night.AdvanceTo("22:00").Message(7).Broadcast(kUnlocked);
        (isCrash ? night.Crash() : night.Restart()).Message(8);
        const Record record = night.PlayUntil("23:00");
        EXPECT_THAT(record.Deliveries({1, 7, 8}), Are({"8 {}"})) << isCrash;
        EXPECT_THAT(record.LogsOf("open_phone_plugin"),
                    Are({"info plugin register succeed", "info plugin register succeed"}));
    }
}

TEST(PlayOrder, AStopUnsubscribesAndACrashDoesNot) {
    const auto subscriptions = [](const Night& night) {
        const Record record = night.PlayUntil("23:00");
        return record.At("22:00").Calls("CommonEventManager");
    };
    EXPECT_THAT(subscriptions(Night().AdvanceTo("22:00").Restart()),
                Are({HasSubstr(".UnSubscribeCommonEvent {} -> true"), HasSubstr(".SubscribeCommonEvent")}));
    EXPECT_THAT(subscriptions(Night().AdvanceTo("22:00").Crash()), Are({HasSubstr(".SubscribeCommonEvent")}));
    const Record record = Night().AdvanceTo("22:00").Crash().AdvanceTo("22:30").Broadcast(kUnlocked).PlayUntil("23:00");
    EXPECT_THAT(record.Deliveries({1}), Are({"1 COMMON_EVENT_SCREEN_UNLOCKED null"})) << "nobody is left from before";
}

TEST(PlayOrder, FactsFilesAndHostListsSurviveARestart) {
    const Record record = FreezingNight()
                              .Set(kStorage)
                              .Set(R"({"allow_list": {"64": ["other"]}})")
                              .File("power_off_record", R"("{}")")
                              .AdvanceTo("22:00")
                              .Crash()
                              .Restart()
                              .GoToDeepSleep()
                              .PlayUntil("22:00");
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains("debug allowInfoList size is 1"));
    EXPECT_THAT(record.Of({"SuspendManagerClient"}), Are({kFreeze}));
}

TEST(PlayOrder, ConditionsStatesAndListsAreSilentFactsToAScriptedHost) {
    const Record record = Night()
                              .AdvanceTo("21:59")
                              .Set(R"({"condition": 2, "device_state": {"1": true},
        "allow_list": {"64": ["a"]}, "restrict_set": {"2": ["b"]}, "plugged": 1, "movement": {"value": 2, "at": 0},
        "continuous_tasks": [{"type": 2, "uid": 1, "pid": 1}], "processes": [{"pid": 1, "name": "a", "foreground": true}]})")
                              .Broadcast("COMMON_EVENT_SCREEN_OFF")
                              .AdvanceTo("06:00")
                              .Broadcast("COMMON_EVENT_SCREEN_ON")
                              .PlayUntil("12:00");
    EXPECT_THAT(record.Deliveries({1, 2, 3, 4, 5, 6, 8, 10, 12, 13, 14, 101}), IsEmpty());
}

TEST(Play, TheSameTraceGivesTheSameRecord) {
    Night night = FreezingNight().Automatic();
    night.Set(kStorage).ScreenOff().AdvanceTo("23:00").Restart().ScreenOff().AdvanceTo("06:00").ScreenOn();
    const Record first = night.PlayUntil("12:00");
    const Record second = night.PlayUntil("12:00");
    EXPECT_THAT(first.Timed().Of({""}), ::testing::ContainerEq(second.Timed().Of({""})));
    EXPECT_EQ(first.summary.virtualMs, 15 * 3600 * 1000);
    EXPECT_EQ(first.summary.messages, first.Deliveries().size());
    EXPECT_EQ(first.summary.calls, first.Calls().size());
    EXPECT_EQ(first.summary.messages + first.summary.calls + first.summary.logs, first.Of({""}).size());
}

TEST(Play, APluginThatDoesNotLoadIsAFailedRunAndTheNextRunWorks) {
    std::istringstream input(Night().Text());
    const Replay::Trace trace = Replay::ReadTrace(input, "test");
    for (const char* path : {"/nowhere/libphone_standby.so", "/dev/null", "libc.so.6"}) {
        Record record;
        RecordingSink sink(record);
        EXPECT_THROW(Replay::Play(trace, {path, {}}, sink), Replay::RunError) << path;
    }
    EXPECT_THAT(Night().Play().LogsOf("open_phone_plugin"), Are({"info plugin register succeed"}));
}

}  // namespace
}  // namespace TARN::Tests
