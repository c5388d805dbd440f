#include "slips.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "are.h"
#include "jsonl_writer.h"
#include "night_script.h"
#include "player.h"
#include "standby_constants.h"
#include "vocabulary.h"

namespace TARN::Tests {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;

/// `line: text`, with ` x3` behind what is found three times.
Lines Slips(const std::string& text) {
    std::istringstream input(text);
    Lines lines;
    for (const Checks::Slip& slip : Checks::FindSlips(Replay::ReadTrace(input, "night.jsonl"))) {
        lines.push_back(std::to_string(slip.line) + ": " + slip.text +
                        (slip.times == 1 ? "" : " x" + std::to_string(slip.times)));
    }
    return lines;
}

Lines SlipsOf(const std::string& step, const std::string& mode = "automatic") {
    return Slips(R"({"trace": 1, "start": 0, "host": {"mode": ")" + mode + "\"}}\n{\"t\": 1, " + step + "}\n");
}

TEST(Slips, WhatNobodyKnowsByThatNameIsToldWithTheNearestOne) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"("broadcast": {"action": "COMMON_EVENT_SCREN_OFF"})",
         R"(broadcast "COMMON_EVENT_SCREN_OFF": nobody listens to it; perhaps COMMON_EVENT_SCREEN_OFF)"},
        {R"("broadcast": {"action": "SCREEN_UNLOCKED"})",
         R"(broadcast "SCREEN_UNLOCKED": nobody listens to it; perhaps COMMON_EVENT_SCREEN_UNLOCKED)"},
        {R"("broadcast": {"action": "x"})", R"(broadcast "x": nobody listens to it)"},
        {R"("broadcast": {"action": "COMMON_EVENT_POWER_SAVE_MODE_CHANGED", "want": {"power_mode": true}})",
         R"(broadcast "COMMON_EVENT_POWER_SAVE_MODE_CHANGED": nobody asks for the member "power_mode"; perhaps )"
         "current_power_mode"},
        {R"("message": {"eventId": 3, "want": {"CURRENT_STAT": 4}})",
         R"(message 3: nobody asks for the member "CURRENT_STAT"; perhaps CURRENT_STATE)"},
        {R"("message": {"eventId": 7})", "message 7: nobody handles it"},
        {R"("dump": ["DUMP_DETAIL_INFO", "DUMP_STRATEGY_DETAIL"])",
         R"(dump: nobody knows the word "DUMP_STRATEGY_DETAIL"; perhaps DUMP_STRATGY_DETAIL)"},
        {R"("set": {"parameters": {"const.global.local": "zh-Hans-CN"}})",
         R"(set.parameters: nobody reads "const.global.local"; perhaps const.global.locale)"},
        {R"("message": {"eventId": 10, "want": {"DEVICE_STATE_TYPE": 9}})",
         "message 10.DEVICE_STATE_TYPE: 9 means nothing; 0 to 1 does"},
        {R"("message": {"eventId": 1, "action": "COMMON_EVENT_CHARGED"})",
         R"(message 1: no strategy matches the action "COMMON_EVENT_CHARGED"; perhaps COMMON_EVENT_CHARGING)"},
        {R"("message": {"eventId": 1, "action": "COMMON_EVENT_TIME_CHANGED"})",
         R"(message 1: no strategy matches the action "COMMON_EVENT_TIME_CHANGED")"},
        {R"("broadcast": {"action": "common_event_screen_on"})",
         R"(broadcast "common_event_screen_on": nobody listens to it; perhaps COMMON_EVENT_SCREEN_ON)"},
        {R"("broadcast": {"action": "COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK"})",
         R"(broadcast "COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK": nobody listens to it)"},
        {R"("set": {"settings": {"SETTINGSDATA": {"nextAlarmingTime": "5"}}})",
         R"(set.settings.SETTINGSDATA: nobody asks for "nextAlarmingTime"; perhaps nearestAlarmingTime)"},
        {R"("set": {"device_state": {"2": true}})", "set.device_state: nobody asks for the type 2; the types are 0, 1"},
    };
    for (const auto& [step, slip] : cases) {
        EXPECT_THAT(SlipsOf(step), ElementsAre("2: " + slip)) << step;
    }
    EXPECT_THAT(
        Slips(R"({"trace": 1, "start": 0, "host": {"strategies": ["freeze", "PUHS", "NONE"], )"
              R"("params": {"recover_netlimit": 5}, "half_hour_switches": {"powerof": true}, )"
              R"("persist_allow": {"FREEZ": {}, "FREEZE": {"3": ["a"]}}, "res_ctrl": {"TIMER": []}}})"),
        ElementsAre(R"(1: host.strategies: "freeze" is no strategy; perhaps FREEZE)",
                    R"(1: host.strategies: "PUHS" is no strategy; perhaps PUSH)",
                    R"(1: host.half_hour_switches: nobody asks for "powerof"; perhaps poweroff)",
                    R"(1: host.params: nobody asks for "recover_netlimit"; perhaps recover_netlimit_time)",
                    R"(1: host.persist_allow: nobody asks for "FREEZ"; perhaps FREEZE)",
                    R"(1: host.res_ctrl: nobody asks for "TIMER"; perhaps TIMER_ADJUST)",
                    R"(1: host.persist_allow.FREEZE: the condition "3" never holds; "1" is day, "2" is night)"));
}

TEST(Slips, ValuesThatMeanNothing) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"("message": {"eventId": 2, "want": {"CURRENT_STATE": 5}})",
         "message 2.CURRENT_STATE: 5 means nothing; 0 to 4 does"},
        {R"("message": {"eventId": 3, "want": {"CURRENT_PHASE": -1}})",
         "message 3.CURRENT_PHASE: -1 means nothing; 0 to 3 does"},
        {R"("message": {"eventId": 4, "want": {"RES_CTRL_CONDITION": 3}})",
         "message 4.RES_CTRL_CONDITION: 3 means nothing; 1 to 2 does"},
        {R"("message": {"eventId": 2, "want": {"CURRENT_STATE": 4.0}})",
         "message 2.CURRENT_STATE: not an integer, so it counts as not there"},
        {R"("message": {"eventId": 6, "want": {"SCR_OFF_HALF_HOUR_STATUS": 1}})",
         "message 6.SCR_OFF_HALF_HOUR_STATUS: not true or false, so it counts as not there"},
        {R"("set": {"modem": {"slots": 65}})", "set.modem.slots: 65 means nothing; 0 to 64 does"},
        {R"("set": {"modem": {"slots": -1}})", "set.modem.slots: -1 means nothing; 0 to 64 does"},
        {R"("set": {"bluetooth": {"state": 4}})", "set.bluetooth.state: 4 means nothing; 0 to 3 does"},
        {R"("set": {"bluetooth": {"connection": -1}})", "set.bluetooth.connection: -1 means nothing; 0 to 3 does"},
        {R"("set": {"movement": {"value": 3}})", "set.movement.value: 3 means nothing; 0 to 2 does"},
        {R"("set": {"processes": [{"pid": 4, "name": "a"}, {"pid": 5, "name": "b"}, {"pid": 4, "name": "c"}]})",
         "set.processes: two processes have the pid 4"},
        {R"("set": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "12h"}}})",
         R"(set.settings.SETTINGSDATA.nearestAlarmingTime: "12h" is no number of milliseconds; the fact "alarm" takes )"
         "a time"},
    };
    for (const auto& [step, slip] : cases) {
        EXPECT_THAT(SlipsOf(step), ElementsAre("2: " + slip)) << step;
    }
    EXPECT_THAT(SlipsOf(R"("set": {"condition": 3})", "scripted"),
                ElementsAre("2: set.condition: 3 means nothing; 1 to 2 does"));
    const std::string seconds = R"("device": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "1772429400"}}}})";
    EXPECT_THAT(
        Slips(R"({"trace": 1, "start": "2026-03-01T22:00:00", )" + seconds),
        ElementsAre("1: device.settings.SETTINGSDATA.nearestAlarmingTime: \"1772429400\" is in 1970; it is read as "
                    "milliseconds, not as seconds"));
    EXPECT_THAT(Slips(R"({"trace": 1, "start": 5, )" + seconds), IsEmpty());
}

TEST(Slips, ATimeOfDayThatGoesBackIsTheNextDay) {
    const std::string header = R"({"trace": 1, "start": "2026-03-01T22:00:00"})"
                               "\n";
    const auto step = [](const std::string& t) { return R"({"t": ")" + t + "\", \"screen\": \"off\"}\n"; };
    EXPECT_THAT(Slips(header + step("22:30") + step("22:29") + step("22:28")),
                ElementsAre(HasSubstr("3: t: the time of day is that of Mon 2 Mar, more than half a day after"),
                            HasSubstr("4: t: the time of day is that of Tue 3 Mar")));
    EXPECT_THAT(Slips(header + step("22:30") + step("10:30") + step("2026-03-03T09:00:00") + step("+40h")), IsEmpty());
    const std::string morning = R"({"trace": 1, "start": "2026-03-01T08:00:00"})"
                                "\n";
    EXPECT_THAT(Slips(morning + step("22:30")), IsEmpty()) << "the same day";
    EXPECT_THAT(SlipsOf(R"("dump": ["test", "DUMP_POWEROFF_STRATEGY", "sleep", "stat", "."])"), IsEmpty());
}

TEST(Slips, InScriptedModeOnlyThePluginsOwnListenerHears) {
    EXPECT_THAT(SlipsOf(R"("screen": "off")", "scripted"),
                ElementsAre(R"(2: broadcast "COMMON_EVENT_SCREEN_OFF": nobody hears it, for the host is scripted; a )"
                            "message 1 with this action reaches the strategies"));
    EXPECT_THAT(SlipsOf(R"("broadcast": {"action": "COMMON_EVENT_TIME_CHANGED"})", "scripted"),
                ElementsAre(R"(2: broadcast "COMMON_EVENT_TIME_CHANGED": nobody hears it, for the host is scripted)"));
    EXPECT_THAT(SlipsOf(R"("unlock": true)", "scripted"), IsEmpty());
    EXPECT_THAT(SlipsOf(R"("charger": "plugged")", "scripted"), testing::SizeIs(1));
}

TEST(Slips, TheChargerAndFullPowerSaveAreToldOf) {
    const std::string header = "{\"trace\": 1, \"start\": 0, \"end\": 999999}\n";
    EXPECT_THAT(Slips(header + R"({"t": 1, "set": {"plugged": 1}})"
                               "\n"
                               R"({"t": 200000, "broadcast": {"action": "COMMON_EVENT_CHARGING"}})"
                               "\n"
                               R"({"t": 400000, "broadcast": {"action": "COMMON_EVENT_DISCHARGING"}})"
                               "\n"
                               R"({"t": 600000, "set": {"device_mode": 603}})"
                               "\n"
                               R"({"t": 800000, "set": {"plugged": 0}})"
                               "\n"),
                ElementsAre(R"(2: set.plugged: nobody is told, for no COMMON_EVENT_CHARGING goes with it; the step )"
                            R"("charger" does both)",
                            R"(4: broadcast "COMMON_EVENT_DISCHARGING": the fact "plugged" says otherwise; the step )"
                            R"("charger" does both)",
                            "5: set.device_mode: nobody is told, for no COMMON_EVENT_POWER_SAVE_MODE_CHANGED goes with "
                            "it",
                            R"(6: set.plugged: nobody is told, for no COMMON_EVENT_DISCHARGING goes with it; the step )"
                            R"("charger" does both)"));
    const char* modes = R"({"t": 30, "set": {"device_mode": 603}})"
                        "\n"
                        R"({"t": 60000, "broadcast": {"action": "COMMON_EVENT_POWER_SAVE_MODE_CHANGED"}})"
                        "\n"
                        R"({"t": 60000, "set": {"device_mode": 602, "plugged": 0}})"
                        "\n";
    EXPECT_THAT(
        Slips(header + "{\"t\": 1, \"charger\": \"plugged\"}\n{\"t\": 2, \"charger\": \"unplugged\"}\n" + modes),
        IsEmpty());
    EXPECT_THAT(Slips(header + R"({"t": 5, "broadcast": {"action": "COMMON_EVENT_CHARGING"}})"
                               "\n"
                               R"({"t": 60005, "set": {"plugged": 2}})"
                               "\n"),
                IsEmpty())
        << "within a minute it is one event";
}

TEST(Slips, EachKindIsToldOnceAndNotTooMany) {
    std::string night = R"({"trace": 1, "start": 0})"
                        "\n";
    for (int i = 1; i <= 3; ++i) {
        night += "{\"t\": " + std::to_string(i) +
                 R"(, "broadcast": {"action": "A"}})"
                 "\n";
    }
    EXPECT_THAT(Slips(night), ElementsAre(R"(2: broadcast "A": nobody listens to it x3)"));
    for (int i = 100; i < 130; ++i) {
        night += "{\"t\": " + std::to_string(i) + R"(, "message": {"eventId": )" + std::to_string(-i) + "}}\n";
    }
    const Lines many = Slips(night);
    ASSERT_EQ(many.size(), 21U);
    EXPECT_EQ(many.back(), "24: and 11 more of the kind from here on");
}

TEST(Slips, NightsThatShipHaveNone) {
    for (const auto& entry : fs::directory_iterator(TRACES_FOLDER)) {
        if (entry.path().extension() == ".jsonl") {
            std::ifstream file(entry.path());
            std::ostringstream text;
            text << file.rdbuf();
            EXPECT_THAT(Slips(text.str()), IsEmpty()) << entry.path();
        }
    }
}

/// What is subscribed to while a night is played, by everybody.
std::set<std::string> Subscribed(const std::string& mode) {
    std::istringstream trace(R"({"trace": 1, "start": 0, "end": 1, "host": {"mode": ")" + mode + "\"}}");
    std::stringstream record;
    Replay::JsonlWriter writer(record);
    Replay::Play(Replay::ReadTrace(trace, "test"), {PluginPath(), {}}, writer);
    std::set<std::string> actions;
    for (std::string line; std::getline(record, line);) {
        const auto call = nlohmann::json::parse(line).value("call", nlohmann::json::object());
        if (call.value("operation", "") == "CommonEventManager.SubscribeCommonEvent") {
            for (const auto& action : call["arguments"]["actions"]) {
                actions.insert(action);
            }
        }
    }
    return actions;
}

template <class Names>
std::set<std::string> SetOf(const Names& names) {
    return {std::begin(names), std::end(names)};
}

TEST(Vocabulary, BroadcastsAreThoseThatArePubliclySubscribedTo) {
    EXPECT_EQ(Subscribed("scripted"), SetOf(Checks::ListenerBroadcasts()));
    EXPECT_EQ(Subscribed("automatic"), SetOf(Checks::HeardBroadcasts()));
}

/// Everything in the sources of host and plugin that the expression catches.
std::set<std::string> InSources(const std::string& expression) {
    const std::regex wanted(expression);
    std::set<std::string> found;
    for (const char* const room : {"standby_service", "strategy_adapter", "message_listener"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(HOST_FOLDER).parent_path() / room)) {
            if (entry.path().extension() == ".cpp") {
                std::ostringstream source;
                source << std::ifstream(entry.path()).rdbuf();
                const std::string code = source.str();
                for (std::sregex_iterator at(code.begin(), code.end(), wanted), end; at != end; ++at) {
                    found.insert((*at)[1]);
                }
            }
        }
    }
    return found;
}

TEST(Vocabulary, NamesAreThoseThatTheSourcesAskFor) {
    std::set<std::string> members = InSources(R"re(Get(?:Int|Bool|Long|Float|String)Param\("?(\w+))re");
    members.erase("key");
    ASSERT_EQ(members.erase("kPowerModeKey"), 1U);
    members.merge(InSources(R"re(kPowerModeKey\[\] = "(\w+)")re"));
    std::set<std::string> known;
    for (const Checks::KnownMessage& message : Checks::KnownMessages()) {
        for (const Checks::Member& member : message.members) {
            known.emplace(member.name);
        }
    }
    known.emplace(Checks::BroadcastMembers("COMMON_EVENT_POWER_SAVE_MODE_CHANGED").front().name);
    // said by the host and asked for by nobody yet
    for (const char* said : {"wakeupTime", "uid", "DEVICE_STATE", "DEVICE_STATE_TYPE"}) {
        EXPECT_EQ(members.count(said), 0U) << said;
        members.insert(said);
    }
    EXPECT_EQ(known, members);

    std::set<std::string> configurations = SetOf(Checks::kResCtrl);
    configurations.merge(SetOf(Checks::kPersistAllow));
    std::set<std::string> named = InSources(R"re(kConfigName\[\] = "(\w+)")re");
    named.erase("RUNNING_LOCK");  // the name of an exemption, and no configuration
    EXPECT_EQ(configurations, named);
    EXPECT_EQ(SetOf(Checks::kParams), InSources(R"re(kRecoverTimeParam\[\] = "(\w+)")re"));
    EXPECT_EQ(SetOf(Checks::kHalfHourSwitches), InSources(R"re(kPowerOffSwitch\[\] = "(\w+)")re"));
    EXPECT_EQ(SetOf(Checks::kParameters), InSources(R"re(Get(?:String|Bool)Parameter\("([\w.]+)")re"));
    std::set<std::string> words = InSources(R"re(Words\{"([\w-]+)")re");
    words.merge(InSources(R"re(Words\{"[\w-]+", "([\w-]+)"\})re"));
    words.merge(InSources(R"re("(-ST|--\w+)")re"));
    words.merge(InSources(R"re(isTest\("--\w+", "([a-z]+)"\))re"));
    for (const std::string_view word : {DevStandbyMgr::DUMP_DETAIL_INFO, DevStandbyMgr::DUMP_STRATGY_DETAIL,
                                        DevStandbyMgr::DUMP_SIMULATE_SENSOR, DevStandbyMgr::DUMP_POWEROFF_STRATEGY}) {
        words.emplace(word);
    }
    EXPECT_EQ(SetOf(Checks::kDumpWords), words);
    for (const std::string_view keyword :
         {Checks::kPhoneSettings[0], Checks::kPhoneSettings[1], Checks::kAccountSettings[0]}) {
        EXPECT_THAT(InSources("\"(" + std::string(keyword) + ")\""), ElementsAre(std::string(keyword)));
    }
}

}  // namespace
}  // namespace TARN::Tests
