#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include <nlohmann/json.hpp>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

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
    night.AdvanceTo("13:14").Set(R"({"restrict_set": {"1": ["both", "system"]}})");
    const Record record = night.AdvanceTo("13:20").ScreenOn().PlayUntil("13:30");
    EXPECT_EQ(Reach(record, "13:10"), "11 13 14 15 17 19");
    EXPECT_EQ(Reach(record, "13:12"), "11 14 15 17 18 19");
    EXPECT_EQ(Reach(record, "13:14"), "11 14 16 17 18 19") << "held is restricted no more, the system is";
    EXPECT_EQ(Reach(record, "13:20"), kAllOpen);
    EXPECT_THAT(record.At("13:1").Calls(kTrustList),
                Are({HasSubstr(R"({"uids":[11],"added":true})"), HasSubstr(R"({"uids":[12],"added":false})"),
                     HasSubstr(R"({"uids":[18],"added":true})"), HasSubstr(R"({"uids":[13],"added":false})"),
                     HasSubstr(R"({"uids":[16],"added":true})"), HasSubstr(R"({"uids":[15],"added":false})")}))
        << "differences only, and who comes before who goes";
}

TEST(Network, WhoComesIsKnownAsEverybodyElse) {
    const auto at1310 = [](const char* processes) {
        Night night = Phone("12:00");
        night.Device("allow_list", R"({"1": ["com.listed"]})").Device("restrict_set", R"({"1": ["com.held"]})");
        night.AdvanceTo("13:10").Set(std::string(R"({"processes": [)") + processes + "]}");
        return Reach(night.PlayUntil("13:15"), "13:10");
    };
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "listed:ui", "bundles": ["com.listed"]})"), "31")
        << "by its bundle, in the background";
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "com.held", "bundles": ["com.other"], "foreground": true})"),
              "31");
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "x", "bundles": ["com.held"], "foreground": true})"), "");
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "x", "system": true})"), "31");
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "x"})"), "");
    EXPECT_EQ(at1310(R"({"pid": 9, "uid": 31, "name": "x"}, {"pid": 10, "uid": 31, "name": "com.listed"})"), "31")
        << "any process of the uid";
    Night leaves = Phone("12:00").AdvanceTo("13:10");
    leaves.Set(R"({"processes": [{"pid": 2, "uid": 12, "name": "listed", "foreground": true}]})").AdvanceTo("13:12");
    leaves.Set(R"({"processes": [{"pid": 2, "uid": 12, "name": "listed"}]})");
    EXPECT_EQ(Reach(leaves.PlayUntil("13:15"), "13:12"), "12") << "it needs no foreground";
}

TEST(Network, TheFirstEndDoesNotTakeWhatTheSecondStillNeeds) {
    Night tasks = Phone("12:00");
    tasks.Device("continuous_tasks", R"([{"type": 2, "uid": 13, "pid": 3}, {"type": 4, "uid": 13, "pid": 3}])");
    tasks.AdvanceTo("13:10").Set(R"({"continuous_tasks": [{"type": 4, "uid": 13, "pid": 3}]})");
    tasks.AdvanceTo("13:12").Set(R"({"continuous_tasks": []})");
    const Record navigation = tasks.PlayUntil("13:20");
    EXPECT_EQ(Reach(navigation, "13:10"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(navigation, "13:12"), "12 14 15 17 19");

    Night windows = Phone("12:00").AdvanceTo("13:10");
    windows.Set(R"({"processes": [{"pid": 1, "uid": 11, "name": "a", "foreground": true},
                                  {"pid": 2, "uid": 11, "name": "b", "foreground": true}]})");
    windows.AdvanceTo("13:12").Set(R"({"processes": [{"pid": 1, "uid": 11, "name": "a"},
                                  {"pid": 2, "uid": 11, "name": "b", "foreground": true}]})");
    windows.AdvanceTo("13:14").Set(R"({"processes": [{"pid": 1, "uid": 11, "name": "a"}]})");
    const Record user = windows.PlayUntil("13:20");
    EXPECT_EQ(Reach(user, "13:12"), "11") << "the user looks at the other one";
    EXPECT_EQ(Reach(user, "13:14"), "");
}

TEST(Network, TheTasksThatExemptAreOthersByNight) {
    const auto exempting = [](const char* start, const std::string& deep) {
        std::string types;
        for (const int type : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 31, 32, 40}) {
            Night night = Phone(start);
            night.Device("processes", R"([{"pid": 1, "uid": 11, "name": "a"}])");
            night.Device("continuous_tasks", R"([{"type": )" + std::to_string(type) + R"(, "uid": 11, "pid": 1}])");
            types += Reach(night.PlayUntil(deep + ":30"), deep + ":00") == "11" ? " " + std::to_string(type) : "";
        }
        return types;
    };
    EXPECT_EQ(exempting("12:00", "13:05"), " 1 2 4 8");
    EXPECT_EQ(exempting("22:10", "23:15"), " 2 4 6 8");
}

TEST(Network, TheNetworkIsGivenBackWheneverTheServiceEndsOrBegins) {
    for (const char* strategies : {R"(["NETWORK"])", R"(["NONE"])"}) {
        for (const bool isCrash : {false, true}) {
            Night night = Phone("12:00").Strategies(strategies).AdvanceTo("12:50");
            FallAsleep(night).AdvanceTo("12:55");
            const Record record = (isCrash ? night.Crash() : night.Restart()).PlayUntil("13:00");
            EXPECT_EQ(Reach(record, "12:54"), "12 15 17 19") << strategies;
            EXPECT_EQ(Reach(record, "12:55"), kAllOpen) << strategies << isCrash;
        }
        Night night = Phone("12:00").Strategies(strategies).AdvanceTo("12:50");
        EXPECT_EQ(Reach(FallAsleep(night).PlayUntil("12:55"), "12:55"), kAllOpen) << strategies << ": at the end";
    }
}

TEST(Network, AtNightChangesAreJudgedByTheNightsRule) {
    const auto change = [](const char* begins, const char* ends) {
        Night night = Phone("22:10").Device("continuous_tasks", "[]");
        night.AdvanceTo("23:20").Set(begins).AdvanceTo("23:22").Set(ends);
        const Record record = night.PlayUntil("23:30");
        return Reach(record, "23:20") + ", then " + Reach(record, "23:22");
    };
    EXPECT_EQ(change(R"({"continuous_tasks": [{"type": 2, "uid": 15, "pid": 5}]})", R"({"continuous_tasks": []})"),
              "12 14 15 17 19, then 12 14 17 19")
        << "a system application plays";
    EXPECT_EQ(change(R"({"allow_list": {"1": ["system", "both"]}})", R"({"allow_list": {"1": []}})"),
              "14 15 17 19, then 14 19");
    EXPECT_EQ(change(R"({"continuous_tasks": [{"type": 1, "uid": 13, "pid": 3}]})", R"({"continuous_tasks": []})"),
              "12 14 17 19, then 12 14 17 19")
        << "a task that only the other firewall's mask knows";

    const Record nightfall = Phone("20:50").PlayUntil("22:10");
    EXPECT_EQ(Reach(nightfall, "21:55"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(nightfall, "22:00"), "12 13 14 17 19") << "without waiting for anything else";

    Night woken = Phone("22:10").AdvanceTo("23:00");
    woken.Device("continuous_tasks", R"([{"type": 2, "uid": 13, "pid": 3}, {"type": 1, "uid": 18, "pid": 8}])");
    const Record record = WakeUser(FallAsleep(woken).AdvanceTo("23:20")).PlayUntil("23:30");
    EXPECT_EQ(Reach(record, "23:15"), "12 15 17 19") << "asleep";
    EXPECT_EQ(Reach(record, "23:20"), "12 13 14 17 19") << "what stays is the firewall of deep standby";
}

TEST(Network, FactsCountAndNotWhatIsSaidOfThem) {
    Night night = Phone("12:00").AdvanceTo("13:10");
    night.Message(8, R"({"isForeground": true})").Message(8, R"({"uid": 11, "isForeground": true, "name": "idle"})");
    night.Message(101, R"({"typeId": 2, "started": false, "uid": 13})");
    night.Message(5, R"({"allowType": 1, "name": "idle", "added": true})")
        .MessageWithoutWant(5)
        .MessageWithoutWant(101);
    const Record record = night.PlayUntil("13:20");
    EXPECT_EQ(Reach(record, "13:10"), "12 13 14 15 17 19");
}

TEST(Network, ARefusedCallIsTriedAgainAndTakesNothingMeanwhile) {
    Night off = Phone("12:00").Fail(kPolicy, 7).AdvanceTo("13:10").Heal(kPolicy).AdvanceTo("13:20");
    off.Fail(kPolicy, 7).ScreenOn().AdvanceTo("13:20:30").Heal(kPolicy);
    const Record record = off.PlayUntil("13:30");
    EXPECT_EQ(Reach(record, "13:05"), "all, listed 12 13 14 15 17 19") << "the list is ready";
    EXPECT_EQ(Reach(record, "13:10"), "12 13 14 15 17 19") << "a minute after the last try, not hours";
    EXPECT_EQ(Reach(record, "13:20:59"), "12 13 14 15 17 19") << "refused: who may pass passes on";
    EXPECT_EQ(Reach(record, "13:21"), kAllOpen);
    EXPECT_THAT(record.At("13:20").LogsOf("idle_firewall"),
                ::testing::Each("warn the device-idle policy was refused, err code is 7"));

    Night renewal = Phone("12:00").AdvanceTo("12:50");
    FallAsleep(renewal).AdvanceTo("13:35:01").Fail(kPolicy, 7).AdvanceTo("13:35:10").Heal(kPolicy);
    EXPECT_EQ(Reach(renewal.PlayUntil("13:36"), "13:35:05"), "12 15 17 19") << "the policy of before stays on";

    Night late = Phone("12:00").Fail(kProcesses).AdvanceTo("12:02");
    FallAsleep(late).AdvanceTo("12:05:30").Heal(kProcesses);
    const Record renewed = late.PlayUntil("12:10");
    EXPECT_EQ(Reach(renewed, "12:05:30"), kAllOpen) << "no policy without its list";
    EXPECT_EQ(Reach(renewed, "12:07"), "12 15 17 19");

    Night given = Phone("12:00").Fail(kPolicy).AdvanceTo("13:06").ScreenOn().AdvanceTo("13:06:10").Heal(kPolicy);
    EXPECT_EQ(Reach(given.PlayUntil("13:20"), "13:19"), kAllOpen) << "what could not go on is wanted no more";
}

TEST(Network, ARefreshThatCannotLookLeavesTheListAsItIs) {
    for (const char* operation :
         {kProcesses, "StandbyServiceImpl.GetAllowList", "StandbyServiceImpl.GetEligiableRestrictSet"}) {
        Night night = Phone("12:00").AdvanceTo("13:10").Fail(operation);
        WakeUser(FallAsleep(night).AdvanceTo("13:12")).AdvanceTo("13:13").Heal(operation);
        const Record record = night.PlayUntil("13:20");
        EXPECT_EQ(Reach(record, "13:12"), "12 13 14 15 17 19") << operation;
        EXPECT_THAT(record.At("13:1").Calls(kTrustList), Are({})) << operation;
        EXPECT_THAT(record.At("13:10"), ::testing::Truly([](const Record& at) {
                        return !at.Of({"running_applications", "standby_service_impl"}).empty();
                    }))
            << operation << " is told";
    }
    Night dumped = Phone("12:00").AdvanceTo("13:10").Fail("StandbyServiceImpl.GetAllowList");
    dumped.Set(R"({"processes": [{"pid": 2, "uid": 12, "name": "listed"}]})").AdvanceTo("13:11");
    dumped.Dump(R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])");
    EXPECT_THAT(dumped.PlayUntil("13:12").Dumps(), Contains(HasSubstr("uid 12 listed: on the allow list\n")))
        << "nor does it forget why";

    const char* tasks = "BackgroundTaskMgrHelper.GetContinuousTaskApps";
    Night night = Phone("12:00").AdvanceTo("13:10").Fail(tasks).Set(R"({"allow_list": {"1": ["idle"]}})");
    night.AdvanceTo("13:10:30").Set(R"({"continuous_tasks": []})").AdvanceTo("13:10:50").Heal(tasks);
    const Record record = night.PlayUntil("13:20");
    EXPECT_EQ(Reach(record, "13:10:30"), "11 13 14 15 19") << "what was known of tasks stays";
    EXPECT_EQ(Reach(record, "13:12"), "11 14 15 19");
}

TEST(Network, WhatTheDeviceDoesNotConfirmIsNotBelieved) {
    const char* look = "NetPolicyClient.GetDeviceIdleTrustlist";
    Night both =
        Phone("12:00").AdvanceTo("13:04").Fail(look).Fail(kTrustList).AdvanceTo("13:05:30").Heal(look).Heal(kTrustList);
    both.AdvanceTo("13:10").Fail(look).Fail(kTrustList).ScreenOn().AdvanceTo("13:10:30").Heal(look).Heal(kTrustList);
    const Record list = both.PlayUntil("13:20");
    EXPECT_EQ(Reach(list, "13:05:30"), "");
    EXPECT_EQ(Reach(list, "13:06"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(list, "13:10:30"), "all, listed 12 13 14 15 17 19");
    EXPECT_EQ(Reach(list, "13:11"), kAllOpen);

    Night mute = Phone("12:00").AdvanceTo("13:04").Fail(look).Fail(kTrustList).AdvanceTo("13:05:30").Heal(kTrustList);
    const Record unread = mute.AdvanceTo("13:10").ScreenOn().PlayUntil("13:20");
    EXPECT_EQ(Reach(unread, "13:06"), "12 13 14 15 17 19") << "told again while nobody can say";
    EXPECT_EQ(Reach(unread, "13:10"), kAllOpen) << "and whoever was told of is taken off";

    Night unknown =
        Phone("12:00").Device("fail", R"({"NetPolicyClient.SetDeviceIdlePolicy": 5})").AdvanceTo("12:00:01");
    EXPECT_EQ(Reach(FallAsleep(unknown).AdvanceTo("12:00:02").Heal(kPolicy).PlayUntil("12:04"), "12:01"), "12 15 17 19")
        << "a policy that was never confirmed is off or on";

    const char* classify = "BundleManagerHelper.CheckIsSystemAppByUid";
    Night strangers = Phone("12:00").AdvanceTo("13:04").Fail(classify).AdvanceTo("13:05:30").Heal(classify);
    const Record classified = strangers.PlayUntil("13:20");
    EXPECT_EQ(Reach(classified, "13:05"), "12 13 14 17 19");
    EXPECT_EQ(Reach(classified, "13:06"), "12 13 14 15 17 19");
    EXPECT_THAT(classified.LogsOf("running_applications"),
                Are({"warn 9 applications could not be classified, they count as not the system's"}));

    const char* tasks = "BackgroundTaskMgrHelper.GetContinuousTaskApps";
    Night never =
        Phone("12:00").Device("fail", std::string(R"({")") + tasks + R"(": 5})").AdvanceTo("13:05:30").Heal(tasks);
    const Record played = never.PlayUntil("13:20");
    EXPECT_EQ(Reach(played, "13:05"), kAllOpen) << "who plays is not known yet";
    EXPECT_EQ(Reach(played, "13:06"), "12 13 14 15 17 19");
}

TEST(Network, NobodyIsLeftOnTheListOfACrashedService) {
    Night night = Phone("12:00").AdvanceTo("13:10");
    night.Set(R"({"processes": [{"pid": 1, "uid": 11, "name": "idle"}]})");
    const char* look = "NetPolicyClient.GetDeviceIdleTrustlist";
    EXPECT_EQ(Reach(Night(night).Crash().PlayUntil("13:11"), "13:10"), kAllOpen) << "of those that ended as well";
    Night crashed = Phone("12:00").AdvanceTo("13:10").Crash();
    EXPECT_EQ(Reach(Night(crashed).PlayUntil("13:11"), "13:10"), kAllOpen);
    EXPECT_EQ(Reach(Phone("12:00").Fail(look, 3).AdvanceTo("13:10").Crash().PlayUntil("13:11"), "13:10"), kAllOpen)
        << "whoever runs is taken off where the list cannot be read";
    Night kept = Phone("12:00").AdvanceTo("13:10").Fail(kTrustList, 7).Crash().AdvanceTo("13:10:10").Heal(kTrustList);
    const Record unemptied = kept.PlayUntil("13:20");
    EXPECT_EQ(Reach(unemptied, "13:10:10"), "all, listed 12 13 14 15 17 19");
    EXPECT_EQ(Reach(unemptied, "13:11"), kAllOpen);
    const Record refused = Phone("12:00")
                               .AdvanceTo("13:10")
                               .Fail(kPolicy, 7)
                               .Crash()
                               .AdvanceTo("13:10:10")
                               .Heal(kPolicy)
                               .PlayUntil("13:20");
    EXPECT_EQ(Reach(refused, "13:10:10"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(refused, "13:11"), kAllOpen);
}

TEST(Network, WhoRunsIsAskedAnewWheneverTheFirewallGoesOn) {
    Night night = Phone("12:00").AdvanceTo("13:38").Fail(kProcesses).AdvanceTo("13:40:30").Heal(kProcesses);
    const Record record = night.PlayUntil("13:50");
    EXPECT_EQ(Reach(record, "13:40:30"), kAllOpen) << "after the maintenance";
    EXPECT_EQ(Reach(record, "13:41"), "12 13 14 15 17 19");
}

TEST(Network, NobodyStaysOnTheTrustListOfAFirewallThatWentOff) {
    const Record nightfall = Phone("20:40").AdvanceTo("22:10").ScreenOn().PlayUntil("22:20");
    EXPECT_EQ(Reach(nightfall, "21:45"), "12 13 14 15 17 19");
    EXPECT_EQ(Reach(nightfall, "22:10"), kAllOpen) << "night fell in between";

    Night refused = Phone("12:00").Fail(kPolicy).AdvanceTo("13:20").Heal(kPolicy).ScreenOn();
    EXPECT_EQ(Reach(refused.PlayUntil("13:30"), "13:20"), kAllOpen) << "the policy was refused";
}

TEST(Network, AFirewallThatCouldNotGoOnIsTriedAgainWithinAMinute) {
    constexpr char kNoExemptions[] = "error the exemptions for NETWORK could not be fetched, err code is 7";
    for (const auto& [operation, line] : {std::pair{kProcesses, "error the running applications could not be fetched"},
                                          {"StandbyServiceImpl.GetAllowList", kNoExemptions},
                                          {"StandbyServiceImpl.GetEligiableRestrictSet", kNoExemptions},
                                          {kPolicy, "warn the device-idle policy was refused, err code is 7"}}) {
        const Record record =
            Phone("12:00").Fail(operation, 7).AdvanceTo("13:20:10").Heal(operation).PlayUntil("13:30");
        EXPECT_THAT(Reach(record, "13:20"), ::testing::StartsWith(kAllOpen)) << operation;
        EXPECT_THAT(record.At("13:05").Of({"base_network", "idle_firewall", "running_app", "standby_service_impl"}),
                    Contains(HasSubstr(std::string(line).substr(std::string(line).find(' ') + 1))))
            << operation;
        EXPECT_EQ(Reach(record, "13:21"), "12 13 14 15 17 19") << operation;
    }
    const Record unlisted =
        Phone("12:00").Fail(kTrustList, 7).AdvanceTo("13:07:30").Heal(kTrustList).PlayUntil("13:10");
    EXPECT_EQ(Reach(unlisted, "13:05"), "") << "the policy goes on without waiting for its list";
    EXPECT_THAT(unlisted.At("13:05").LogsOf("network_strategy"),
                Are({"warn the trust list was refused, err code is 7"}));
    EXPECT_EQ(Reach(unlisted, "13:08"), "12 13 14 15 17 19");
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
    night.AdvanceTo("12:56").Set(R"({"processes": [{"pid": 1, "uid": 11, "name": "idle"},
        {"pid": 4, "uid": 14, "name": "reader"}, {"pid": 8, "uid": 18, "name": "pocket", "foreground": true}]})");
    const Record record = night.PlayUntil("13:00");
    EXPECT_EQ(Reach(record, "12:52"), "11 12 15 17 19");
    EXPECT_EQ(Reach(record, "12:54"), "11 12 15 17 19");
    EXPECT_EQ(Reach(record, "12:56"), "11");
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
        EXPECT_EQ(Reach(record, "13:03"), "12 15 17 19") << operation << ": tried again";
    }
    Night unlisted = Phone("12:00").AdvanceTo("12:50").Fail(kTrustList, 7);
    const Record record = FallAsleep(unlisted).PlayUntil("13:00");
    EXPECT_EQ(Reach(record, "12:50"), "");
    EXPECT_THAT(record.LogsOf("power_save_network_strategy"),
                Contains("warn failed to SetFirewallAllowedList, err code is 7"));
}

}  // namespace
}  // namespace TARN::Tests
