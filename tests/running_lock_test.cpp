#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::IsEmpty;

/// "daemon" and "idle" are to be held back; "app" by nothing but having no bit. In phase 2 at 21:55, in MAINTENANCE
/// from 22:35 to 22:40.
Night LockNight() {
    Night night;
    night.Automatic().Strategies(R"(["RUNNING_LOCK"])");
    night.Device("processes", R"([{"pid": 11, "uid": 1, "name": "daemon", "native": true, "system": true},
        {"pid": 12, "uid": 2, "name": "free", "native": true, "system": true}, {"pid": 21, "uid": 3, "name": "app"},
        {"pid": 22, "uid": 4, "name": "system", "system": true}])");
    night.Device("restrict_set", R"({"2": ["daemon"], "1": ["free"], "64": ["free"]})");
    return night.ScreenOff();
}

/// What the power manager was told: `21:55:00 proxy [[21,3]]`; empty lists, which change nothing, are left out.
Record::Texts Locks(const Record& record) {
    Record::Texts locks;
    for (const std::string& call : record.Timed().Calls("PowerMgrClient.ProxyRunningLocks")) {
        const size_t list = call.find(R"("processes":)") + 12;
        const std::string processes = call.substr(list, call.rfind("} -> ") - list);
        if (processes != "[]") {
            locks.push_back(call.substr(0, call.find(' ')) +
                            (call.find(R"("proxied":true)") != std::string::npos ? " proxy " : " restore ") +
                            processes);
        }
    }
    return locks;
}

TEST(RunningLocks, IdleAppsAndRestrictedNativesAreHeldBackFromTheSecondPhaseUntilSleepIsLeft) {
    EXPECT_THAT(Locks(LockNight().AdvanceTo("23:00").ScreenOn().PlayUntil("23:30")),
                Are({"21:55:00 proxy [[21,3]]", "21:55:00 proxy [[11,1]]", "22:35:00 restore [[21,3]]",
                     "22:35:00 restore [[11,1]]", "22:40:00 proxy [[21,3]]", "22:40:00 proxy [[11,1]]",
                     "23:00:00 restore [[21,3]]", "23:00:00 restore [[11,1]]"}));
    EXPECT_THAT(Locks(LockNight().AdvanceTo("21:54:59").ScreenOn().PlayUntil("22:30")), IsEmpty());
    EXPECT_THAT(Locks(LockNight().PlayUntil("22:00").At("22:00")),
                Are({"22:00:00 restore [[21,3]]", "22:00:00 restore [[11,1]]"}))
        << "the service that stops restores them";
}

TEST(RunningLocks, TheAllowListContinuousTasksAndTheForegroundExempt) {
    const auto at2155 = [](const char* facts) { return Locks(LockNight().Set(facts).PlayUntil("21:56").At("21:55")); };
    EXPECT_THAT(at2155(R"({"allow_list": {"2": ["app"]}})"), Are({"21:55:00 proxy [[11,1]]"}));
    EXPECT_THAT(at2155(R"({"allow_list": {"1": ["app"]}})"),
                Are({"21:55:00 proxy [[21,3]]", "21:55:00 proxy [[11,1]]"}))
        << "that is the network's";
    EXPECT_THAT(at2155(R"({"continuous_tasks": [{"type": 2, "uid": 3, "pid": 21}]})"),
                Are({"21:55:00 proxy [[11,1]]"}));
    EXPECT_THAT(at2155(R"({"restrict_set": {"2": ["system", "free"]},
                           "processes": [{"pid": 12, "uid": 2, "name": "free", "native": true},
                                         {"pid": 21, "uid": 3, "name": "app", "foreground": true},
                                         {"pid": 22, "uid": 4, "name": "system", "system": true}]})"),
                Are({"21:55:00 proxy [[22,4]]", "21:55:00 proxy [[12,2]]"}));
}

TEST(RunningLocks, ChangesTakeEffectWhileTheyAreInForce) {
    Night night = LockNight().AdvanceTo("22:10").Set(R"({"allow_list": {"2": ["daemon", "app"]}})");
    night.AdvanceTo("22:11").Set(R"({"continuous_tasks": [{"type": 2, "uid": 3, "pid": 21}]})");
    night.AdvanceTo("22:12").Set(R"({"allow_list": {"2": []}})").AdvanceTo("22:13").Set(R"({"continuous_tasks": []})");
    night.AdvanceTo("22:14").Set(R"({"continuous_tasks": [{"type": 2, "uid": 1, "pid": 11}]})");
    EXPECT_THAT(Locks(night.PlayUntil("22:15").At("22:1")),
                Are({"22:10:00 restore [[21,3]]", "22:10:00 restore [[1,11]]", "22:12:00 proxy [[1,11]]",
                     "22:13:00 proxy [[21,3]]", "22:15:00 restore [[21,3]]", "22:15:00 restore [[11,1]]",
                     "22:15:00 restore [[1,11]]"}))
        << "a native process is named uid first, a task exempts applications only, and the stop leaves nothing held";

    Night restricted = LockNight().AdvanceTo("22:10").Set(R"({"restrict_set": {"2": ["free", "system"]}})");
    EXPECT_THAT(Locks(restricted.PlayUntil("22:11").At("22:10")),
                Are({"22:10:00 proxy [[22,4]]", "22:10:00 restore [[11,1]]", "22:10:00 proxy [[12,2]]"}));
}

TEST(RunningLocks, EveryProcessOfAnApplicationCountsAndTheFirstEndTakesNothing) {
    Night night = LockNight();
    night.Device("processes", R"([{"pid": 21, "uid": 3, "name": "app"}, {"pid": 22, "uid": 3, "name": "app"},
        {"pid": 23, "uid": 4, "name": "user", "foreground": true}, {"pid": 24, "uid": 4, "name": "user:2", "foreground": true}])");
    night.Device("continuous_tasks", R"([{"type": 2, "uid": 3, "pid": 21}, {"type": 2, "uid": 3, "pid": 22}])");
    night.AdvanceTo("22:10").Set(R"({"continuous_tasks": [{"type": 2, "uid": 3, "pid": 22}]})");
    night.Set(R"({"processes": [{"pid": 21, "uid": 3, "name": "app"}, {"pid": 22, "uid": 3, "name": "app"},
        {"pid": 23, "uid": 4, "name": "user"}, {"pid": 24, "uid": 4, "name": "user:2", "foreground": true}]})");
    night.AdvanceTo("22:11").Set(R"({"continuous_tasks": []})");
    night.AdvanceTo("22:12").Set(
        R"({"processes": [{"pid": 22, "uid": 3, "name": "app"}, {"pid": 24, "uid": 4, "name": "user:2"},
        {"pid": 25, "uid": 5, "name": "late"}]})");
    EXPECT_THAT(Locks(night.PlayUntil("22:13")),
                Are({"22:11:00 proxy [[21,3],[22,3]]", "22:12:00 proxy [[24,4],[25,5]]",
                     "22:13:00 restore [[22,3],[24,4],[25,5]]"}))
        << "who ended takes its locks along, who begins is known at once";
}

TEST(RunningLocks, ANativeOnTheAllowListIsLeftAloneFromTheStart) {
    Night night = LockNight();
    night.Device("allow_list", R"({"2": ["daemon"]})").AdvanceTo("22:10").Set(R"({"allow_list": {"2": []}})");
    EXPECT_THAT(Locks(night.PlayUntil("22:11")),
                Are({"21:55:00 proxy [[21,3]]", "22:10:00 proxy [[1,11]]", "22:11:00 restore [[21,3]]",
                     "22:11:00 restore [[11,1]]", "22:11:00 restore [[1,11]]"}))
        << "nothing is restored before anything was proxied";
}

TEST(RunningLocks, APhaseOutsideOfSleepBeginsNothing) {
    Night night;
    night.Automatic()
        .Strategies(R"(["RUNNING_LOCK"])")
        .Device("processes", R"([{"pid": 21, "uid": 3, "name": "app"}])");
    EXPECT_THAT(Locks(night.EnterPhase(1, 2).EnterPhase(3, 3).EnterPhase(4, 1).PlayUntil("21:30")), IsEmpty());
    EXPECT_THAT(Locks(night.EnterPhase(4, 3).PlayUntil("21:30").At("21:00")), Are({"21:00:00 proxy [[21,3]]"}));
}

TEST(RunningLocks, WhatCannotBeFetchedIsNotHeldBackAndAskedForAgain) {
    const char* natives = "AbilityManagerHelper.GetRunningSystemProcess";
    const Record record = LockNight().Fail(natives).AdvanceTo("21:55:30").Heal(natives).PlayUntil("21:57");
    EXPECT_THAT(Locks(record.At("21:55")), Are({"21:55:00 proxy [[21,3]]"}));
    EXPECT_THAT(Locks(record.At("21:56")), Are({"21:56:00 proxy [[11,1]]"}));
    EXPECT_THAT(record.At("21:55").LogsOf("running_lock_strategy_ext"),
                Are({"error connect to app ability service failed"}));
    for (const char* operation : {"AppMgrHelper.GetAllRunningProcesses", "StandbyServiceImpl.GetAllowList",
                                  "StandbyServiceImpl.GetEligiableRestrictSet"}) {
        Night night = LockNight().Fail(operation).AdvanceTo("21:57:30").Heal(operation);
        EXPECT_THAT(Locks(night.PlayUntil("21:59")), Are({"21:58:00 proxy [[21,3]]", "21:58:00 proxy [[11,1]]",
                                                          "21:59:00 restore [[21,3]]", "21:59:00 restore [[11,1]]"}))
            << operation;
        EXPECT_THAT(
            Locks(LockNight().Fail(operation).AdvanceTo("21:55:30").ScreenOn().Heal(operation).PlayUntil("22:30")),
            IsEmpty())
            << operation << ": wanted no more";
    }
}

TEST(RunningLocks, WhatThePowerManagerRefusesIsTriedAgain) {
    const char* proxy = "PowerMgrClient.ProxyRunningLocks";
    Night night = LockNight().Fail(proxy, 5).AdvanceTo("21:55:30").Heal(proxy).AdvanceTo("22:10").Fail(proxy, 6);
    night.ScreenOn().AdvanceTo("22:10:30").Heal(proxy);
    const Record record = night.PlayUntil("22:30");
    const auto done = [&record](const char* time) {
        Record::Texts calls;
        for (const std::string& call : record.At(time).Calls("PowerMgrClient.ProxyRunningLocks")) {
            if (call.ends_with("-> 0")) {
                calls.push_back(call.substr(call.find('{')));
            }
        }
        return calls;
    };
    EXPECT_THAT(done("21:55"), IsEmpty());
    EXPECT_THAT(done("21:56"), Are({R"({"proxied":true,"processes":[[21,3]]} -> 0)",
                                    R"({"proxied":true,"processes":[[11,1]]} -> 0)"}));
    EXPECT_THAT(done("22:10"), IsEmpty());
    EXPECT_THAT(done("22:11"), Are({R"({"proxied":false,"processes":[[11,1],[21,3]]} -> 0)"}));
    EXPECT_THAT(record.At("21:55").LogsOf("running_lock_strategy"),
                ::testing::Contains("warn running locks were not proxied, err code is 5"));
    EXPECT_THAT(record.At("22:10").LogsOf("running_lock_strategy"),
                ::testing::Contains("warn running locks were not restored, err code is 6"));
    EXPECT_THAT(done("22:12"), IsEmpty()) << "it is over";
}

TEST(RunningLocks, WhatAServiceOfBeforeHeldBackIsRestored) {
    EXPECT_THAT(Locks(LockNight().AdvanceTo("22:00").Crash().PlayUntil("22:01").At("22:00")),
                Are({"22:00:00 restore [[11,1],[21,3]]"}));
    const char* look = "PowerMgrClient.GetProxiedRunningLocks";
    Night untold = LockNight().AdvanceTo("22:00").Fail(look, 3).Crash().AdvanceTo("22:00:30").Heal(look);
    const Record record = untold.PlayUntil("22:02");
    EXPECT_THAT(Locks(record.At("22:0")), Are({"22:01:00 restore [[11,1],[21,3]]"}));
    EXPECT_THAT(record.At("22:00").LogsOf("running_lock_strategy"),
                ::testing::Each("warn the proxied running locks could not be read, err code is 3"));
}

TEST(RunningLocks, ANativeIsRestoredForAllItsNames) {
    const char* proxy = "PowerMgrClient.ProxyRunningLocks";
    Night refused = LockNight().AdvanceTo("22:10").Fail(proxy).Set(R"({"restrict_set": {"2": []}})");
    EXPECT_THAT(Locks(refused.AdvanceTo("22:10:30").Heal(proxy).PlayUntil("22:12").At("22:11")),
                Are({"22:11:00 restore [[11,1]]"}));
    Night twice = LockNight().AdvanceTo("22:10").Set(R"({"allow_list": {"2": ["daemon"]}})").AdvanceTo("22:11");
    twice.Set(R"({"allow_list": {"2": []}})").AdvanceTo("22:12").Set(R"({"restrict_set": {"2": []}})");
    EXPECT_THAT(Locks(twice.PlayUntil("22:13").At("22:12")),
                Are({"22:12:00 restore [[11,1]]", "22:12:00 restore [[1,11]]"}));
}

TEST(RunningLocks, AScriptedHostDrivesNothing) {
    Night night;
    night.Strategies(R"(["RUNNING_LOCK"])").GoToDeepSleep().EnterPhase(4, 2).EnterPhase(4, 3).WakeUp();
    EXPECT_THAT(night.Play().Calls("PowerMgrClient"), IsEmpty());
}

}  // namespace
}  // namespace TARN::Tests
