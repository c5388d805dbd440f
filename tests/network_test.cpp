#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include <nlohmann/json.hpp>

#include "are.h"
#include "night.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;

constexpr char kPolicy[] = "NetPolicyClient.SetDeviceIdlePolicy";
constexpr char kTrustList[] = "NetPolicyClient.SetDeviceIdleTrustlist";
constexpr char kProcesses[] = "AppMgrHelper.GetAllRunningProcesses";
constexpr char kAllOpen[] = "all";

/// An automatic phone whose screen goes off at its start: SLEEP 35 minutes later, its phase DEEP after 65, a
/// MAINTENANCE from minute 95 to 100.
Night Phone(const std::string& start) {
    return Night("UTC", "2026-03-01T" + start + ":00")
        .Automatic()
        .Strategies(R"(["NETWORK"])")
        .Device("processes", R"([{"pid": 1, "uid": 11, "name": "idle"}, {"pid": 2, "uid": 12, "name": "listed"},
            {"pid": 3, "uid": 13, "name": "player"}, {"pid": 4, "uid": 14, "name": "reader", "foreground": true},
            {"pid": 5, "uid": 15, "name": "system", "system": true},
            {"pid": 6, "uid": 16, "name": "held", "foreground": true},
            {"pid": 7, "uid": 17, "name": "both"}, {"pid": 8, "uid": 18, "name": "pocket"},
            {"pid": 9, "uid": 19, "name": "clock", "system": true, "foreground": true},
            {"pid": 10, "uid": 20, "name": "daemon", "native": true}])")
        .Device("continuous_tasks", R"([{"type": 2, "uid": 13, "pid": 3}, {"type": 3, "uid": 18, "pid": 8}])")
        .Device("allow_list", R"({"1": ["listed", "both"], "64": ["idle"]})")
        .Device("restrict_set", R"({"1": ["held", "both"], "2": ["reader"]})")
        .ScreenOff();
}

Night& FallAsleep(Night& night) {
    return night.Broadcast("COMMON_EVENT_USER_SLEEP_STATE_CHANGED", R"({"isSleep": true})");
}

Night& WakeUser(Night& night) {
    return night.Broadcast("COMMON_EVENT_USER_SLEEP_STATE_CHANGED", R"({"isSleep": false})");
}

/// Who reaches the network after a time of the record's day: `all`, or the uids of the trust list as `12 13`. What is
/// on the list while it counts for nothing: `all, listed 12`.
std::string Reach(const Record& record, const std::string& time) {
    bool isLimited = false;
    std::set<uint32_t> trusted;
    for (const std::string& call : record.Timed().Calls("NetPolicyClient")) {
        if (call.substr(0, time.size()) > time || !call.ends_with("-> 0")) {
            continue;
        }
        const size_t from = call.find('{');
        const nlohmann::json arguments = nlohmann::json::parse(call.substr(from, call.rfind('}') + 1 - from));
        isLimited = arguments.value("enable", isLimited);
        for (const uint32_t uid : arguments.value("uids", std::vector<uint32_t>())) {
            if (arguments.at("added").get<bool>()) {
                trusted.insert(uid);
            } else {
                trusted.erase(uid);
            }
        }
    }
    std::string names;
    for (const uint32_t uid : trusted) {
        names += (names.empty() ? "" : " ") + std::to_string(uid);
    }
    return isLimited ? names : names.empty() ? kAllOpen : "all, listed " + names;
}

TEST(Network, DeepStandbyLeavesTheNetworkToExemptedApplicationsUntilSleepIsLeft) {
    const Record record = Phone("12:00").AdvanceTo("14:00").ScreenOn().PlayUntil("15:00");
    EXPECT_EQ(Reach(record, "13:04"), kAllOpen);
    EXPECT_EQ(Reach(record, "13:05"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(record, "13:35"), kAllOpen) << "maintenance";
    EXPECT_EQ(Reach(record, "13:40"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(record, "14:00"), kAllOpen);
}

TEST(Network, AtNightAnApplicationNeedsMoreThanToBelongToTheSystem) {
    EXPECT_EQ(Reach(Phone("21:00").PlayUntil("22:30"), "22:05"), "12 13 14 17 19");
    const Record tasks = Phone("22:10")
                             .Device("continuous_tasks", R"([{"type": 1, "uid": 13, "pid": 3},
                                 {"type": 4, "uid": 15, "pid": 5}, {"type": 6, "uid": 18, "pid": 8}])")
                             .PlayUntil("23:30");
    EXPECT_EQ(Reach(tasks, "23:15"), "12 14 15 17 18 19") << "other tasks exempt on a plugin that starts at night";
}

TEST(Network, AFirewallThatIsOnFollowsWhatChanges) {
    Night night = Phone("12:00");
    night.AdvanceTo("13:10").Set(R"({"allow_list": {"1": ["idle", "both"], "64": []}})");
    night.AdvanceTo("13:12").Set(R"({"continuous_tasks": [{"type": 8, "uid": 18, "pid": 8}]})");
    night.AdvanceTo("13:14").Set(R"({"processes": [{"pid": 21, "uid": 31, "name": "new", "foreground": true}]})");
    const Record record = night.AdvanceTo("13:20").ScreenOn().PlayUntil("13:30");
    EXPECT_EQ(Reach(record, "13:10"), "11 13 14 15 17 19");
    EXPECT_EQ(Reach(record, "13:12"), "11 14 15 17 18 19");
    EXPECT_EQ(Reach(record, "13:14"), "11 15 17 18 19 31") << "the system's clock needs no foreground";
    EXPECT_EQ(Reach(record, "13:20"), kAllOpen);
}

TEST(Network, NobodyStaysOnTheTrustListOfAFirewallThatWentOff) {
    const Record nightfall = Phone("20:40").AdvanceTo("22:10").ScreenOn().PlayUntil("22:20");
    EXPECT_EQ(Reach(nightfall, "21:45"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(nightfall, "22:10"), kAllOpen) << "night fell in between";

    Night refused = Phone("12:00").Fail(kPolicy).AdvanceTo("13:20").Heal(kPolicy).ScreenOn();
    EXPECT_EQ(Reach(refused.PlayUntil("13:30"), "13:20"), kAllOpen) << "the policy was refused";
}

TEST(Network, AFirewallThatCouldNotGoOnIsTriedAgainAfterMaintenance) {
    for (const auto& [operation, line] : {std::pair{kProcesses, "error the running applications could not be fetched"},
                                          {"StandbyServiceImpl.GetAllowList", ""},
                                          {"StandbyServiceImpl.GetEligiableRestrictSet", ""},
                                          {kPolicy, "warn the device-idle policy was refused, err code is 7"}}) {
        const Record record = Phone("12:00").Fail(operation, 7).AdvanceTo("13:20").Heal(operation).PlayUntil("13:50");
        EXPECT_THAT(Reach(record, "13:30"), ::testing::StartsWith(kAllOpen)) << operation;
        EXPECT_THAT(record.At("13:05").LogsOf("base_network_strategy"), *line != '\0' ? Are({line}) : Are({}));
        EXPECT_EQ(Reach(record, "13:40"), "12 13 14 15 17 19") << operation;
    }
    const Record unlisted = Phone("12:00").Fail(kTrustList, 7).PlayUntil("13:10");
    EXPECT_EQ(Reach(unlisted, "13:05"), "") << "the policy alone goes on";
    EXPECT_THAT(unlisted.LogsOf("network_strategy"), Are({"warn the trust list was refused, err code is 7"}));
}

TEST(Network, WhileTheUserSleepsOnlyConfiguredExemptionsCountAndMaintenanceOpensNothing) {
    Night night = Phone("12:00").AdvanceTo("12:50");
    FallAsleep(night).AdvanceTo("14:00");
    const Record record = WakeUser(night.ScreenOn()).PlayUntil("14:30");
    for (const char* time : {"12:50:00", "13:05:00", "13:35:00", "13:35:05", "13:40:00"}) {
        EXPECT_EQ(Reach(record, time), "12 15 17 19") << time;
    }
    EXPECT_EQ(Reach(record, "14:00"), kAllOpen);
    EXPECT_THAT(record.At("13:35").LogsOf("phone_network_strategy"),
                Contains("warn current is AI sleeping, do nothing"));
    EXPECT_THAT(record.At("12:50").LogsOf("power_save_network_strategy"),
                Are({"debug current_state is 4 ,current_phase is 1, conditionType is 1",
                     "info secceed SetFirewallAllowedList"}));
}

TEST(Network, WhatBeginsWhileTheUserSleepsCountsOnlyIfItIsConfigured) {
    Night night = Phone("12:00").AdvanceTo("12:50");
    FallAsleep(night).AdvanceTo("12:52").Set(R"({"allow_list": {"1": ["listed", "both", "idle"]}})");
    night.AdvanceTo("12:54").Set(R"({"continuous_tasks": [{"type": 2, "uid": 18, "pid": 8}]})");
    const Record record = night.PlayUntil("13:00");
    EXPECT_EQ(Reach(record, "12:52"), "11 12 15 17 19");
    EXPECT_EQ(Reach(record, "12:54"), "11 12 15 17 19");
}

TEST(Network, AStateChangeLiftsTheFirewallOfUserSleepForFiveSeconds) {
    Night night = Phone("12:00").AdvanceTo("12:04");
    const Record record = FallAsleep(night).AdvanceTo("12:20").ScreenOn().PlayUntil("12:30");
    EXPECT_EQ(Reach(record, "12:04"), "12 15 17 19");
    EXPECT_EQ(Reach(record, "12:05:04"), kAllOpen);
    EXPECT_EQ(Reach(record, "12:05:05"), "12 15 17 19");
    EXPECT_EQ(Reach(record, "12:20:05"), "12 15 17 19") << "the user still sleeps";
}

TEST(Network, AFirewallOfUserSleepThatWasPutUpAgainFollowsWhatChanges) {
    Night night = Phone("12:00").AdvanceTo("12:04");
    FallAsleep(night).AdvanceTo("12:10").Set(R"({"allow_list": {"1": ["listed", "both", "idle"]}})");
    const Record record = night.PlayUntil("12:20");
    EXPECT_EQ(Reach(record, "12:05:05"), "12 15 17 19");
    EXPECT_EQ(Reach(record, "12:10"), "11 12 15 17 19");
}

TEST(Network, AUserWhoWakesInTheDeepestPhaseGetsTheFirewallOfStandbyUntilSleepIsLeft) {
    Night night = Phone("12:00").AdvanceTo("12:50");
    WakeUser(FallAsleep(night).AdvanceTo("13:10"));
    const Record record = night.AdvanceTo("13:20").ScreenOn().PlayUntil("13:30");
    EXPECT_EQ(Reach(record, "12:50"), "12 15 17 19");
    EXPECT_EQ(Reach(record, "13:10"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(record, "13:20"), kAllOpen);
    EXPECT_THAT(record.At("13:10").LogsOf("power_save_network_strategy"), Contains("debug update firewall list end"));

    Night early = Phone("12:00").AdvanceTo("12:40");
    WakeUser(FallAsleep(early).AdvanceTo("12:50"));
    EXPECT_EQ(Reach(early.PlayUntil("13:00"), "12:50"), kAllOpen) << "not in an earlier phase";
    Night unslept = Phone("12:00").AdvanceTo("13:10");
    EXPECT_EQ(Reach(WakeUser(unslept).PlayUntil("13:20"), "13:10"), "12 13 14 15 17 19") << "waking twice";
}

TEST(Network, TheFirewallOfUserSleepThatCouldNotGoOn) {
    for (const char* operation :
         {kProcesses, kPolicy, "StandbyServiceImpl.GetAllowList", "StandbyServiceImpl.GetEligiableRestrictSet"}) {
        Night night = Phone("12:00").Fail(operation).AdvanceTo("12:50");
        const Record record = FallAsleep(night).AdvanceTo("13:02").Heal(operation).PlayUntil("13:20");
        EXPECT_THAT(Reach(record, "13:00"), ::testing::StartsWith(kAllOpen)) << operation;
        EXPECT_EQ(Reach(record, "13:05"), "12 15 17 19") << operation << ": deep standby brings it";
    }
    Night unlisted = Phone("12:00").AdvanceTo("12:50").Fail(kTrustList, 7);
    const Record record = FallAsleep(unlisted).PlayUntil("13:00");
    EXPECT_EQ(Reach(record, "12:50"), "");
    EXPECT_THAT(record.LogsOf("power_save_network_strategy"),
                Contains("warn failed to SetFirewallAllowedList, err code is 7"));
}

}  // namespace
}  // namespace TARN::Tests
