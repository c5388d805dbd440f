#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include <nlohmann/json.hpp>

#include "are.h"
#include "jsonl_writer.h"
#include "night_script.h"
#include "player.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using Json = nlohmann::json;
using namespace nlohmann::literals;

/// The lines of the full record, with the host's reasons or without.
std::vector<Json> Lines(const Night& night, const std::string& endTime, bool hasReasons = true) {
    std::istringstream trace(night.Text(endTime));
    std::stringstream record;
    Replay::JsonlWriter writer(record, hasReasons);
    Replay::Play(Replay::ReadTrace(trace, "test"), {PluginPath(), {}}, writer);
    std::vector<Json> lines;
    for (std::string line; std::getline(record, line);) {
        lines.push_back(Json::parse(line));
    }
    return lines;
}

std::string Clock(const Json& t) {
    return t.is_null() ? "never" : Replay::TimeZone::Format(t.get<int64_t>(), "%H:%M:%S");
}

/// `time DARK-NAP (still: moving, unplugged: yes) 22:05:00`, with `for NAP` before the conditions where it was not
/// reached, a `!` before those that are not met, and when the state is looked at again behind them.
std::string StateText(const Json& reason) {
    const auto text = [&reason](const char* key) { return reason.at(key).get<std::string>(); };
    std::string conditions;
    for (const Json& condition : reason.at("conditions")) {
        conditions.append(conditions.empty() ? "" : ", ").append(condition.at("met").get<bool>() ? "" : "!");
        conditions += condition.at("name").get<std::string>() + ": " + condition.at("found").get<std::string>();
    }
    return text("cause") + " " + text("from") + "-" + text("to") +
           (text("target") == text("to") ? "" : " for " + text("target")) + " (" + conditions + ") " +
           Clock(reason.at("next_try"));
}

/// `deep_standby, music +continuous_task, idle -`: who is exempt and who is not, with the flags; a lock's with its pid.
/// What could not be found out comes before them, `failed: the allow list`.
std::string VerdictText(const Json& reason) {
    std::string text = reason.contains("rule")             ? reason.at("rule").get<std::string>()
                       : reason.at("proxying").get<bool>() ? "proxying"
                                                           : "off";
    if (const Json& failed = reason.at("failed_question"); !failed.is_null()) {
        text += ", failed: " + failed.get<std::string>();
    }
    for (const Json& app : reason.at("apps")) {
        text += ", " + (app.contains("pid") ? app.at("pid").dump() + " " : std::string()) +
                app.at("name").get<std::string>() + (app.at("exempt").get<bool>() ? " +" : " -");
        std::string flags;
        for (const Json& flag : app.at("flags")) {
            flags += (flags.empty() ? "" : "&") + flag.get<std::string>();
        }
        text += flags;
    }
    return text;
}

/// The reasons about a subject, each behind its time.
Record::Texts Reasons(const std::string& about, const Night& night, const std::string& endTime) {
    Record::Texts reasons;
    for (const Json& line : Lines(night, endTime)) {
        if (line.contains("reason") && line.at("reason").at("about") == about) {
            const Json& reason = line.at("reason");
            reasons.push_back(Clock(line.at("t")) + " " + (about == "state" ? StateText(reason) : VerdictText(reason)));
        }
    }
    return reasons;
}

Record::Texts States(const Night& night, const std::string& endTime) {
    return Reasons("state", night, endTime);
}

Night StillNight() {
    return Night().Automatic().Device("movement", R"({"value": 1})");
}

TEST(HostReasons, EveryChangeOfStateHasItsCauseAndWhenItIsLookedAtAgain) {
    Night night = StillNight().ScreenOff().AdvanceTo("22:50").Set(R"({"movement": {"value": 2}})");
    night.AdvanceTo("22:51").Broadcast("COMMON_EVENT_CHARGING").AdvanceTo("22:52");
    EXPECT_THAT(States(night.Broadcast("COMMON_EVENT_DISCHARGING").AdvanceTo("22:53").ScreenOn().ScreenOn(), "23:30"),
                Are({"21:00:00 screen_off WORKING-DARK (unplugged: unplugged) 21:05:00",
                     "21:05:00 time DARK-NAP (still: still, unplugged: unplugged) 21:35:00",
                     "21:35:00 time NAP-SLEEP (still: still, unplugged: unplugged) 22:35:00",
                     "22:35:00 maintenance_due SLEEP-MAINTENANCE () 22:40:00",
                     "22:40:00 maintenance_over MAINTENANCE-SLEEP () 00:40:00", "22:50:00 moved SLEEP-DARK () 22:55:00",
                     "22:51:00 charging DARK-WORKING () 22:56:00", "22:52:00 discharging WORKING-DARK () 22:57:00",
                     "22:53:00 screen_on DARK-WORKING () never"}));
    EXPECT_THAT(States(StillNight().ScreenOff().AdvanceTo("21:02").Crash(), "21:04"),
                Contains("21:02:00 start WORKING-DARK (unplugged: unplugged) 21:07:00"));
}

TEST(HostReasons, EveryLookThatLeavesThePhoneAsItIsTellsWhatWasFound) {
    EXPECT_THAT(
        States(StillNight().Device("plugged", "2").ScreenOff().AdvanceTo("21:07").Set(R"({"plugged": 0})"), "21:11"),
        Are({"21:00:00 screen_off WORKING-WORKING for DARK (!unplugged: plugged type 2) 21:05:00",
             "21:05:00 time WORKING-WORKING for DARK (!unplugged: plugged type 2) 21:10:00",
             "21:10:00 time WORKING-DARK (unplugged: unplugged) 21:15:00"}))
        << "on the charger";
    Night moved = StillNight().ScreenOff().AdvanceTo("21:02").Set(R"({"movement": {"value": 2}})").AdvanceTo("21:07");
    moved.Set(R"({"movement": {"value": 0}})").AdvanceTo("21:12").Set(R"({"plugged": 1})").AdvanceTo("21:42");
    moved.Set(R"({"plugged": 0})").Fail("MovementClient.GetMovementData").AdvanceTo("22:12");
    EXPECT_THAT(States(moved.Fail("BatterySrvClient.GetPluggedType", 7), "23:11"),
                Are({HasSubstr("screen_off"), "21:05:00 time DARK-DARK for NAP (!still: moving) 21:10:00",
                     "21:10:00 time DARK-NAP (still: nothing reported, counts as still, unplugged: unplugged) 21:40:00",
                     "21:40:00 time NAP-NAP for SLEEP (still: nothing reported, counts as still, "
                     "!unplugged: plugged type 1) 22:10:00",
                     "22:10:00 time NAP-SLEEP (still: no answer, counts as still, unplugged: unplugged) 23:10:00",
                     "23:10:00 maintenance_due SLEEP-MAINTENANCE () 23:15:00"}));
    EXPECT_THAT(States(StillNight().Fail("BatterySrvClient.GetPluggedType", 7).ScreenOff(), "21:05"),
                Are({"21:00:00 screen_off WORKING-WORKING for DARK (!unplugged: plugged type 7) 21:05:00",
                     "21:05:00 time WORKING-WORKING for DARK (!unplugged: plugged type 7) 21:10:00"}))
        << "a battery service that fails";
    Night unknown = StillNight().ScreenOff().AdvanceTo("21:02").Fail("PowerMgrClient.IsScreenOn").Crash();
    unknown.AdvanceTo("21:02:30").Set(R"({"processes": [{"pid": 1, "uid": 2, "name": "a", "foreground": true}]})");
    EXPECT_THAT(States(unknown.AdvanceTo("21:03:10").Heal("PowerMgrClient.IsScreenOn"), "21:04:10"),
                Are({HasSubstr("screen_off"),
                     "21:02:00 start WORKING-WORKING for DARK (!screen off: no answer, counts as on) 21:03:00",
                     "21:02:30 start WORKING-WORKING for DARK (!screen off: no answer, counts as on) 21:03:00",
                     "21:03:00 start WORKING-WORKING for DARK (!screen off: no answer, counts as on) 21:04:00",
                     "21:04:00 start WORKING-DARK (unplugged: unplugged) 21:09:00"}))
        << "asked again when something changes, and after a minute";
}

TEST(HostReasons, AStateThatIsMovedByHandAndHeldSaysSo) {
    Night night = StillNight().Dump(R"(["force-idle"])").AdvanceTo("21:01").ScreenOff().ScreenOn();
    night.AdvanceTo("21:02").ScreenOff().AdvanceTo("21:03").Dump(R"(["unforce"])").Dump(R"(["step"])");
    night.AdvanceTo("21:04").Dump(R"(["force-idle"])").Dump(R"(["unforce"])");
    EXPECT_THAT(States(night, "21:05"), Are({"21:00:00 asked WORKING-DARK () never", "21:00:00 asked DARK-NAP () never",
                                             "21:00:00 asked NAP-SLEEP () never",
                                             "21:01:00 screen_on SLEEP-SLEEP for WORKING (!not blocked: blocked) never",
                                             "21:03:00 unblocked SLEEP-DARK (unplugged: unplugged) 21:08:00",
                                             "21:03:00 asked DARK-NAP (still: still, unplugged: unplugged) 21:33:00",
                                             "21:04:00 asked NAP-SLEEP () never",
                                             "21:04:00 unblocked SLEEP-SLEEP (unplugged: unplugged) 22:04:00"}));
    EXPECT_THAT(States(StillNight().Dump(R"(["force-idle"])").Dump(R"(["unforce"])"), "21:00"),
                Contains("21:00:00 unblocked SLEEP-WORKING (!screen off: on) never"));
}

/// Its screen goes off at noon: the locks are proxied from 12:55 on, the firewall is on from 13:05 on, both until the
/// MAINTENANCE at 13:35 and again from 13:40 on.
Night BusyDay() {
    return Night("UTC", "2026-03-01T12:00:00")
        .Automatic()
        .Strategies(R"(["NETWORK", "RUNNING_LOCK"])")
        .Device("processes", R"([{"pid": 5, "uid": 12, "name": "idle"}, {"pid": 6, "uid": 12, "name": "idle:two"},
            {"pid": 4, "uid": 13, "name": "music"}, {"pid": 3, "uid": 14, "name": "system", "system": true},
            {"pid": 2, "uid": 15, "name": "held", "foreground": true}, {"pid": 1, "uid": 16, "name": "listed"},
            {"pid": 8, "uid": 1, "name": "daemon", "native": true}])")
        .Device("continuous_tasks", R"([{"type": 2, "uid": 13, "pid": 4}])")
        .Device("allow_list", R"({"1": ["listed"], "2": ["idle:two", "daemon"]})")
        .Device("restrict_set", R"({"1": ["held"], "2": ["listed", "daemon"]})")
        .ScreenOff();
}

constexpr char kReachable[] =
    "idle -, music +continuous_task, system +system, held -restrict_set&foreground, listed +allow_list";

TEST(HostReasons, TheFirewallTellsWhomItLetsThroughWheneverThatChanges) {
    Night night = BusyDay().AdvanceTo("13:10").Set(R"({"continuous_tasks": []})").AdvanceTo("13:20");
    night.Broadcast("COMMON_EVENT_USER_SLEEP_STATE_CHANGED", R"({"isSleep": true})");
    const std::string asleep = ", idle -, music -, system +system, held -restrict_set, listed +allow_list";
    EXPECT_THAT(Reasons("firewall", night.AdvanceTo("13:35"), "13:50"),
                Are({"13:05:00 deep_standby, " + std::string(kReachable),
                     "13:10:00 deep_standby, idle -, music -, system +system, held -restrict_set&foreground, "
                     "listed +allow_list",
                     "13:20:00 user_sleep" + asleep}))
        << "and nothing twice, whenever it is derived";
    Night late("UTC", "2026-03-01T21:30:00");
    late.Automatic().Strategies(R"(["NETWORK"])").ScreenOff();
    late.Device("processes", R"([{"pid": 3, "uid": 14, "name": "system", "system": true}])");
    EXPECT_THAT(Reasons("firewall", late, "23:00"), Are({"22:35:00 deep_standby, system -system"}))
        << "not enough at night";
}

TEST(HostReasons, RunningLocksTellWhoseCountWhileOthersAreProxied) {
    const std::string first = " proxying, 1 listed -restrict_set, 2 held +foreground, 3 system +system, ";
    const std::string last = "5 idle -, 6 idle:two +allow_list, daemon +allow_list&restrict_set";
    Night night = BusyDay().AdvanceTo("13:00").Set(R"({"continuous_tasks": []})").AdvanceTo("13:01");
    night.Set(R"({"allow_list": {"2": ["idle:two"]}})").AdvanceTo("13:36").ScreenOn();
    EXPECT_THAT(
        Reasons("running_locks", night, "13:50"),
        Are({"12:55:00" + first + "4 music +continuous_task, " + last, "13:00:00" + first + "4 music -, " + last,
             "13:01:00" + first + "4 music -, 5 idle -, 6 idle:two +allow_list", "13:35:00 off"}));
}

TEST(HostReasons, AQuestionThatFailsIsNamedOnceAndSoIsTheAnswerThatComesLater) {
    const auto told = [](const std::string& about, const std::string& operation, const char* from, const char* to) {
        return Reasons(about, BusyDay().AdvanceTo(from).Fail(operation).AdvanceTo(to).Heal(operation), "13:15");
    };
    const std::string known = std::string(" deep_standby, ") + kReachable;
    for (const auto& [operation, words] : {std::pair{"AppMgrHelper.GetAllRunningProcesses", "the running applications"},
                                           {"StandbyServiceImpl.GetAllowList", "the allow list"},
                                           {"StandbyServiceImpl.GetEligiableRestrictSet", "the restrict set"}}) {
        EXPECT_THAT(told("firewall", operation, "13:00", "13:07:10"),
                    Are({std::string("13:05:00 deep_standby, failed: ") + words, "13:08:00" + known}));
        EXPECT_THAT(told("running_locks", operation, "12:50", "12:57:10"),
                    Are({std::string("12:55:00 off, failed: ") + words, HasSubstr("12:58:00 proxying, 1 listed"),
                         "13:15:00 off"}));
    }
    Night kept =
        BusyDay().AdvanceTo("12:57").Fail("StandbyServiceImpl.GetAllowList").Set(R"({"continuous_tasks": []})");
    EXPECT_THAT(Reasons("running_locks", kept.AdvanceTo("12:57:10").Heal("StandbyServiceImpl.GetAllowList"), "12:59"),
                Are({HasSubstr("4 music +"), "12:57:00 proxying, failed: the allow list", HasSubstr("4 music -"),
                     "12:59:00 off"}));
    Night woken = BusyDay().Fail("StandbyServiceImpl.GetAllowList").AdvanceTo("12:57").ScreenOn();
    EXPECT_THAT(Reasons("running_locks", woken, "12:59"), Are({"12:55:00 off, failed: the allow list", "12:57:00 off"}))
        << "nobody asks any more";
    EXPECT_THAT(
        told("running_locks", "AppMgrHelper.GetForegroundApplications", "12:00", "12:55:10"),
        Are({HasSubstr("12:55:00 proxying, failed: the foreground applications, 1 listed -restrict_set, 2 held -,"),
             HasSubstr("12:56:00 proxying, 1 listed -restrict_set, 2 held +foreground"), "13:15:00 off"}));
    constexpr char kNatives[] = "AbilityManagerHelper.GetRunningSystemProcess";
    EXPECT_THAT(Reasons("running_locks", BusyDay().Set(R"({"allow_list": {"2": null}})").Fail(kNatives), "12:56"),
                Are({HasSubstr("12:55:00 proxying, failed: the native processes, 1 listed"), "12:56:00 off"}));
    Night later = BusyDay().AdvanceTo("12:57").Fail(kNatives).Set(R"({"continuous_tasks": []})");
    EXPECT_THAT(Reasons("running_locks", later, "12:58"),
                Are({HasSubstr("4 music +"), HasSubstr("12:57:00 proxying, 1 listed"),
                     HasSubstr("12:57:00 proxying, failed: the native processes, 1 listed"), "12:58:00 off"}));
    EXPECT_THAT(told("firewall", "BackgroundTaskMgrHelper.GetContinuousTaskApps", "12:00", "13:05:10"),
                Are({"13:05:00 deep_standby, failed: the continuous tasks", HasSubstr(known)}));
    EXPECT_THAT(told("firewall", "AppMgrHelper.GetForegroundApplications", "13:00", "13:07:10"),
                Are({"13:05:00 deep_standby, failed: the foreground applications, " + std::string(kReachable),
                     HasSubstr(known)}))
        << "by what was known before";
    EXPECT_THAT(told("running_locks", kNatives, "12:00", "12:57:10"),
                Are({HasSubstr("12:55:00 proxying, failed: the native processes, 1 listed"),
                     HasSubstr("6 idle:two +allow_list, daemon +allow_list"), "13:15:00 off"}));
    EXPECT_THAT(
        told("firewall", "BundleManagerHelper.CheckIsSystemAppByUid", "12:00", "13:05:10"),
        Are({HasSubstr("failed: which applications belong to the system, idle -, music +continuous_task, system -"),
             "13:06:00" + known}));
}

TEST(HostReasons, StandBeforeWhatTheyLeadToAndChangeNothingElse) {
    std::vector<Json> others;
    std::string turns;
    const auto take = [&turns](const std::string& turn) { turns += turns.ends_with(turn) ? "" : " " + turn; };
    const Night busy = BusyDay().AdvanceTo("13:00").Set(R"({"continuous_tasks": [], "allow_list": {"2": null}})");
    for (const Json& line : Lines(busy, "14:00")) {
        if (line.contains("reason")) {
            take("why_" + line.at("reason").at("about").get<std::string>());
            continue;
        }
        others.push_back(line);
        const std::string call = line.value("/call/operation"_json_pointer, "");
        if (line.value("/deliver/eventId"_json_pointer, 0) == 2) {
            take("STATE");
        } else if (call.starts_with("NetPolicyClient.")) {
            take("FIREWALL");
        } else if (call == "PowerMgrClient.ProxyRunningLocks") {
            take("LOCKS");
        }
    }
    EXPECT_EQ(turns,
              " FIREWALL why_state STATE why_state STATE why_state STATE why_running_locks LOCKS"
              " why_running_locks LOCKS why_running_locks LOCKS why_firewall FIREWALL"
              " why_state STATE FIREWALL why_running_locks LOCKS why_state STATE FIREWALL why_running_locks LOCKS"
              " FIREWALL why_running_locks LOCKS")
        << "also where first an application and then a native lost its exemption";
    EXPECT_EQ(others, Lines(busy, "14:00", false));
    Night scripted = BusyDay().Host("mode", R"("scripted")");
    scripted.GoToDeepSleep().EnterPhase(4, 3).Message(11, R"({"isSleep": true})").AdvanceTo("13:00").WakeUp();
    EXPECT_EQ(Lines(scripted, "14:00"), Lines(scripted, "14:00", false)) << "a scripted host decides nothing";
}

}  // namespace
}  // namespace TARN::Tests
