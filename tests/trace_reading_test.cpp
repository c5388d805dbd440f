#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "json_fields.h"
#include "jsonl_writer.h"
#include "moment.h"
#include "night_reader.h"
#include "night_script.h"
#include "player.h"
#include "timeline.h"
#include "trace.h"

namespace TARN::Tests {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kHeader[] = R"({"trace": 1, "start": 1000, "host": {"mode": "scripted"}})"
                           "\n";

Replay::Trace Read(const std::string& text) {
    std::istringstream input(text);
    return Replay::ReadTrace(input, "night.jsonl");
}

/// The message with which a trace is refused.
std::string Refusal(const std::string& text) {
    try {
        (void)Read(text);
        return "accepted";
    } catch (const DevStandbyMgr::InputError& error) {
        return error.what();
    }
}

void ExpectRefused(const std::string& text, int line, const std::string& fragment) {
    const std::string refusal = Refusal(text);
    const std::string shown = text.substr(0, 300);
    EXPECT_THAT(refusal, StartsWith("night.jsonl:" + std::to_string(line) + ": ")) << shown;
    EXPECT_THAT(refusal, HasSubstr(fragment)) << shown;
    EXPECT_THAT(refusal, HasSubstr("; expected ")) << shown;
    EXPECT_THAT(refusal, Not(HasSubstr("\n"))) << shown;
    EXPECT_LT(refusal.size(), 600U) << shown;
}

TEST(BadTrace, AHeaderThatIsNone) {
    ExpectRefused("# nothing\n\n", 2, "no header");
    ExpectRefused("\n  # a comment\n{\"t\": 1, \"set\": {}}\n", 3, "no \"trace\"");
    ExpectRefused("[1]\n", 1, "an object");
    ExpectRefused("\xff\xfe\n", 1, "not JSON");
    for (const auto& [members, fragment] :
         {std::pair{R"("trace": 2, "start": 0)", "trace: 2"},
          {R"("trace": "1", "start": 0)", "trace: \"1\""},
          {R"("trace": 1.0, "start": 0)", "trace: 1.0"},
          {R"("trace": 1)", "no \"start\""},
          {R"("trace": 1, "start": 0, "Host": {})", "unknown key \"Host\""},
          {R"("trace": 1, "start": 1.5)", "start: 1.5"},
          {R"("trace": 1, "start": true)", "start: true"},
          {R"("trace": 1, "start": 9223372036854775808)", "9223372036854775808; expected integers of 64 bits"},
          {R"("trace": 1, "start": -9223372036854775808)", "start: -9223372036854775808"},
          {R"("trace": 1, "start": 5, "end": 4)", "end: 4 is before the start"},
          {R"("trace": 1, "start": 0, "boot_ns": 99999999999999999999)", ""},
          {R"("trace": 1, "start": 0, "timezone": "Mars/Olympus")", "timezone: \"Mars/Olympus\""},
          {R"("trace": 1, "start": 0, "timezone": "Europe")", "timezone: \"Europe\""},
          {R"("trace": 1, "start": 0, "timezone": "../../../etc/hostname")", "timezone: "},
          {R"("trace": 1, "start": 0, "timezone": ":/etc/localtime")", "timezone: "},
          {R"("trace": 1, "start": 0, "timezone": "UTC\u0000")", "timezone: "},
          {R"("trace": 1, "start": 0, "timezone": "")", "timezone: \"\""},
          {R"("trace": 1, "start": 0, "timezone": 1)", "timezone: 1"},
          {R"("trace": 1, "start": 0, "host": [])", "host: an array"},
          {R"("trace": 1, "start": 0, "host": {"policy": {}})", "host: unknown key \"policy\""},
          {R"("trace": 1, "start": 0, "host": {"mode": "idle"})", "host.mode: \"idle\""},
          {R"("trace": 1, "start": 0, "host": {"standby_mode": "2"})", "host.standby_mode: \"2\""},
          {R"("trace": 1, "start": 0, "host": {"strategies": ["FREEZE", 1]})", "host.strategies[1]: 1"},
          {R"("trace": 1, "start": 0, "host": {"persist_allow": {"FREEZE": {"1": "a"}}})",
           "host.persist_allow.FREEZE.1"},
          {R"("trace": 1, "start": 0, "device": {"condition": 2})", "device.condition: set in automatic mode"},
          {R"("trace": 1, "start": 0, "device": {"wifi": {"on": true}})", "device.wifi: unknown key \"on\""}}) {
        ExpectRefused(std::string("\n{") + members + "}\n", 2, fragment);
    }
}

TEST(BadTrace, AStepThatIsNone) {
    for (const auto& [step, fragment] :
         {std::pair{R"({"t": 1000})", "0 kinds of step"},
          {R"({"t": 1000, "dump": [], "restart": "stop"})", "2 kinds of step"},
          {R"({"dump": []})", "no \"t\""},
          {R"({"t": 1000, "dump": [], "at": 5})", "unknown key \"at\""},
          {R"({"t": 999, "dump": []})", "t: 999 goes back"},
          {R"({"t": null, "dump": []})", "t: null"},
          {R"({"t": 1e3, "dump": []})", "t: 1000.0"},
          {R"({"t": 18446744073709551616, "dump": []})", ""},
          {R"({"t": "22.30", "dump": []})", "t: \"22.30\""},
          {R"({"t": "-5m", "dump": []})", "t: \"-5m\""},
          {R"({"t": "1500", "dump": []})", "t: \"1500\""},
          {R"({"t": "+999999d", "dump": []})", "t: \"+999999d\""},
          {R"({"t": 1000, "charger": "on"})", "charger: \"on\"; expected \"plugged\" or \"unplugged\""},
          {R"({"t": 1000, "screen": true})", "screen: true"},
          {R"({"t": 1000, "unlock": false})", "unlock: false"},
          {R"({"t": 1000, "call": "start", "screen": "on"})", "2 kinds of step"},
          {R"({"t": 1000, "set": {"alarm": "half past six"}})", "set.alarm: \"half past six\""},
          {R"({"t": 1000, "set": {"alarm": "1772434800000"}})", "set.alarm: \"1772434800000\""},
          {R"({"t": 1000, "set": {"alarm": "06:30", "settings": {"SETTINGSDATA": {"nearestAlarmingTime": "0"}}}})",
           "set.alarm: settings.SETTINGSDATA.nearestAlarmingTime is named too"},
          {R"({"t": 1000, "set": {"airplane": true, "settings": {"SETTINGSDATA": null}}})",
           "set.airplane: settings.SETTINGSDATA is named too"},
          {R"({"t": 1000, "set": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "2026-03-02T06:30:00"}}}})",
           "set.settings.SETTINGSDATA.nearestAlarmingTime: \"2026-03-02T06:30:00\"; expected milliseconds, or the "
           "fact"},
          {R"({"t": 1000, "set": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "06:30"}}}})", "\"06:30\""},
          {R"({"t": 1000, "set": {"airplane": 1}})", "set.airplane: 1"},
          {R"({"t": 1000, "set": {"user_setup_complete": null}})", "set.user_setup_complete: null"},
          {R"({"t": 1000, "set": {"movement": {"value": 1, "at": "+5m"}}})", "set.movement.at: \"+5m\""},
          {R"({"t": 1000, "dump": "all"})", "dump: \"all\""},
          {R"({"t": 1000, "restart": "now"})", "restart: \"now\""},
          {R"({"t": 1000, "message": {}})", "message: no \"eventId\""},
          {R"({"t": 1000, "message": {"eventId": 2147483648}})", "message.eventId: 2147483648"},
          {R"({"t": 1000, "message": {"eventId": 1, "wnat": {}}})", "message: unknown key \"wnat\""},
          {R"({"t": 1000, "message": {"eventId": 1, "want": []}})", "message.want: an array"},
          {R"({"t": 1000, "message": {"eventId": 1, "want": {"a": null}}})", "message.want.a: null"},
          {R"({"t": 1000, "message": {"eventId": 1, "want": {"a": 9223372036854775808}}})",
           "9223372036854775808; expected integers of 64 bits"},
          {R"({"t": 1000, "broadcast": {"want": {}}})", "broadcast: no \"action\""},
          {R"({"t": 1000, "file": {"name": "../secret", "text": ""}})", "file.name: \"../secret\""},
          {R"({"t": 1000, "file": {"name": "power_off_record"}})", "file: no \"text\""},
          {R"({"t": 1000, "set": {"lights": 3}})", "set: unknown key \"lights\""},
          {R"({"t": 1000, "set": {"light": "dark"}})", "set.light: \"dark\""},
          {R"({"t": 1000, "set": {"accounts": [1, "2"]}})", "set.accounts[1]: \"2\""},
          {R"({"t": 1000, "set": {"settings": {"OTHER": {}}}})", "set.settings: unknown table \"OTHER\""},
          {R"({"t": 1000, "set": {"settings": {"SETTINGSDATA": {"a": 1}}}})", "set.settings.SETTINGSDATA.a: 1"},
          {R"({"t": 1000, "set": {"fail": {"BluetoothHost.Disable": 1}}})", "set.fail: unknown operation"},
          {R"({"t": 1000, "set": {"fail": {"BluetoothHost.DisableBt": 0}}})", "set.fail.BluetoothHost.DisableBt: 0"},
          {R"({"t": 1000, "set": {"processes": [{"pid": 1}]}})", "set.processes[0]: no \"name\""},
          {R"({"t": 1000, "set": {"processes": [{"pid": 1, "name": "a", "uids": 1}]}})",
           "set.processes[0]: unknown key \"uids\""},
          {R"({"t": 1000, "set": {"continuous_tasks": [{"type": -1, "uid": 1, "pid": 1}]}})",
           "set.continuous_tasks[0].type: -1"},
          {R"({"t": 1000, "set": {"device_state": {"one": true}}})", "set.device_state: key \"one\""},
          {R"({"t": 1000, "set": {"allow_list": {"64": "a"}}})", "set.allow_list.64: \"a\""},
          {R"({"t": 1000, "set": {"modem": {"slots": 1000000}}})", "set.modem.slots: 1000000"},
          {R"({"t": 1000, "set": {"movement": {"at": 0}}})", "set.movement: no \"value\""}}) {
        ExpectRefused(std::string(kHeader) + "{\"t\": 1000, \"dump\": []}\n\n# comment\n" + step + "\n", 5, fragment);
    }
    ExpectRefused(std::string(R"({"trace": 1, "start": 0, "end": 5})") + "\n{\"t\": 6, \"dump\": []}\n", 2,
                  "is after the end");
}

TEST(BadTrace, ALineThatNobodyWrote) {
    const std::string header = kHeader;
    ExpectRefused(header + "{\"t\": 1000, \"dump\": []} {}\n", 2, "not JSON");
    ExpectRefused(header + "{\"t\": 1000, \"du", 2, "ends in the middle of a line");
    ExpectRefused(header + std::string("{\"t\": 1000,\0 \"dump\": []}\n", 25), 2, "not JSON");
    ExpectRefused(header + std::string("\0\n", 2), 2, "not JSON");
    ExpectRefused(header + "{\"t\": 1000, \"dump\": [\"\xc3\x28\"]}\n", 2, "not JSON");
    ExpectRefused(header + "{\"t\": 1000, \"" + std::string(1'000'000, 'x') + "\": 1}\n", 2, "unknown key \"xxx");
}

TEST(BadTrace, TextThatIsNoJsonSaysWhereAndWhy) {
    const std::string header = kHeader;
    for (const auto& [line, complaint] :
         {std::pair{R"({"t": 1000, "dump": [}})",
                    "not JSON, column 22: unexpected '}'; expected '[', '{', or a literal"},
          {R"({"t": 1000 "dump": []})", "not JSON, column 17: unexpected string literal; expected '}'"},
          {R"({"t": 1000, 'dump': []})", "not JSON, column 13: invalid literal; expected string literal"},
          {R"({"t": 1000, "dump": [)", "the trace ends in the middle of a line; expected one JSON object a line"}}) {
        EXPECT_EQ(Refusal(header + line), std::string("night.jsonl:2: ") + complaint);
    }
}

TEST(BadTrace, AKeyThatStandsTwiceWouldLoseOneOfTheTwo) {
    const auto twice = [](const std::string& key) { return "the key \"" + key + "\" stands twice in one object"; };
    const std::string header = kHeader;
    ExpectRefused(header + R"({"t": 1000, "t": 1001, "dump": []})"
                           "\n",
                  2, twice("t"));
    ExpectRefused(header + R"({"t": 1000, "set": {"light": 1, "wifi": {}, "light": 2}})"
                           "\n",
                  2, twice("light"));
    ExpectRefused(header + R"({"t": 1000, "set": {"light": 1}, "set": {"light": 1}})"
                           "\n",
                  2, twice("set"));
    ExpectRefused(R"({"trace": 1, "start": 0, "host": {"params": {"a\"": 1, "b": 2, "a\"": 3}}})", 1, twice("a\\\""));
    EXPECT_EQ(Refusal(header + R"({"t": 1000, "broadcast": {"action": ": \": {", "want": {":": "::"}}})"
                               "\n"),
              "accepted")
        << "colons within strings are no members";
}

TEST(BadTrace, ADeeplyNestedValueIsRefusedLikeAnyOther) {
    constexpr size_t kDepth = 200'000;
    const std::string nested = std::string(kDepth, '[') + std::string(kDepth, ']');
    ExpectRefused(std::string(kHeader) + "{\"t\": " + nested + ", \"dump\": []}\n", 2, "");
    ExpectRefused(std::string(kHeader) + nested + "\n", 2, "");
}

TEST(BadTrace, AnIntegerTooLargeForAMessageIsNotTakenForAFloat) {
    ExpectRefused(std::string(kHeader) +
                      R"({"t": 1000, "message": {"eventId": 1, "want": {"a": 99999999999999999999}}})"
                      "\n",
                  2, "99999999999999999999; expected integers of 64 bits");
}

TEST(GoodTrace, CommentsAndBlankLinesMayStandAnywhere) {
    const auto trace = Read(std::string("\n# made by hand\n\t # indented\r\n") + kHeader +
                            "\r\n  \n#\n{\"t\": 1500, \"dump\": [\"a\"]}");
    EXPECT_EQ(trace.start, 1000);
    EXPECT_EQ(trace.end, 1500) << "without an end, the last step's time";
    EXPECT_EQ(trace.bootNs, 60'000'000'000);
    EXPECT_EQ(trace.steps.size(), 1U);
    EXPECT_EQ(Read(kHeader).end, 1000);
}

TEST(GoodTrace, AVeryLongLineIsALine) {
    const auto trace =
        Read(std::string(kHeader) + R"({"t": 1000, "dump": [")" + std::string(5'000'000, 'x') + "\"]}\n");
    EXPECT_EQ(std::get<Replay::DumpStep>(trace.steps.at(0).what).words.at(0).size(), 5'000'000U);
}

/// When a header's local start is; the refusal where there is none.
std::string StartAt(const std::string& zone, const std::string& local) {
    const std::string text = R"({"trace": 1, "timezone": ")" + zone + R"(", "start": ")" + local + "\"}\n";
    const std::string refusal = Refusal(text);
    return refusal == "accepted" ? std::to_string(Read(text).start) : refusal;
}

TEST(GoodTrace, LocalTimesFollowTheZone) {
    for (const auto& [zone, local, expected] :
         {std::tuple{"UTC", "2026-03-01T22:30:00", "1772404200000"},
          {"UTC", "2026-03-01T22:30:00.250", "1772404200250"},
          {"UTC", "1969-12-31T23:59:59.500", "-500"},
          {"UTC", "2024-02-29T00:00:00", "1709164800000"},
          {"Europe/Berlin", "2026-03-01T22:30:00", "1772400600000"},
          {"Europe/Berlin", "2026-07-01T00:00:00", "1782856800000"},
          {"Asia/Kathmandu", "2026-03-01T22:30:00", "1772383500000"},
          {"<+1245>-12:45", "2026-03-01T22:30:00", "1772358300000"},
          {"CET-1CEST,M3.5.0,M10.5.0/3", "2026-07-01T00:00:00", "1782856800000"},
          {"Europe/Berlin", "2026-03-29T03:00:00", "1774746000000"},
          {"Europe/Berlin", "2026-10-25T02:30:00", "1792888200000"},  // happens twice: the first
          {"Europe/Dublin", "2026-10-25T01:30:00", "1792888200000"},
          {"America/New_York", "2026-11-01T01:30:00", "1793511000000"},
          {"Europe/Moscow", "2014-10-26T01:30:00", "1414272600000"},  // twice, without any summer time
          {"Antarctica/Casey", "2018-03-11T02:30:00", "1520695800000"}}) {
        EXPECT_EQ(StartAt(zone, local), expected) << zone << " " << local;
    }
}

TEST(BadTrace, ALocalTimeThatDoesNotExist) {
    for (const auto& [zone, local] : {std::pair{"Europe/Berlin", "2026-03-29T02:30:00"},
                                      {"America/New_York", "2026-03-08T02:00:00"},
                                      {"Pacific/Apia", "2011-12-30T12:00:00"},
                                      {"UTC", "2026-02-30T00:00:00"},
                                      {"UTC", "2026-13-01T00:00:00"},
                                      {"UTC", "2026-01-01T24:00:00"},
                                      {"UTC", "2026-01-01T00:60:00"}}) {
        EXPECT_THAT(StartAt(zone, local), HasSubstr("night.jsonl:1: start: ")) << zone << " " << local;
        EXPECT_THAT(StartAt(zone, local), HasSubstr("does not exist in this time zone")) << zone << " " << local;
    }
    for (const char* local :
         {"22:30", "+1h", "2026", "2026-03-01T22", "2026-03-01T22:30:00Z", "2026-03-01T22:30:00.5", "now", "",
          "2026-3-01T22:30:00", "2026-03-01X22:30:00", "2026-03-01T22:30:0x", "2026-03-01T22:30:00.1234"}) {
        EXPECT_THAT(StartAt("UTC", local), HasSubstr("expected a local time such as")) << local;
    }
}

TEST(Moments, AreWhatTheyLookLikeOrNothing) {
    constexpr int64_t kHour = 3'600'000;
    constexpr int64_t kMidnight = 1'772'323'200'000;  // 2026-03-01, UTC
    const Replay::TimeZone utc("UTC");
    utc.Use();
    for (const auto& [text, expected] : {std::pair{"7:05", kMidnight + 7 * kHour + 5 * kHour / 60},
                                         {"00:00", kMidnight},
                                         {"23:59:59", kMidnight + 24 * kHour - 1000},
                                         {"+1d2h", kMidnight + 26 * kHour},
                                         {"+99999d", kMidnight + 99'999 * 24 * kHour},
                                         {"+90m30s", kMidnight + 90 * 60'000 + 30'000},
                                         {"2026-03-02 01:00", kMidnight + 25 * kHour},
                                         {"-5", int64_t{-5}}}) {
        EXPECT_EQ(Replay::ReadMoment(text, kMidnight), expected) << text;
    }
    for (const char* text : {"7:5",        "007:05",
                             "24:00",      "22:60",
                             "22:30:60",   "22:30:5",
                             "22:30:",     "22-30",
                             "+",          "+5",
                             "+1h1d",      "+1h1h",
                             "+100000d",   "+1.5h",
                             "+1h ",       "+-1h",
                             "2026-03-02", "2026-03-02_01:00",
                             "12e3",       "9223372036854775808"}) {
        EXPECT_EQ(Replay::ReadMoment(text, kMidnight), std::nullopt) << text;
    }
}

constexpr char kRunning[] =
    R"("processes": [{"pid": 7, "uid": 70, "name": "audio", "native": true, "system": true}, )"
    R"({"pid": 8, "uid": 80, "name": "com.mail"}, {"pid": 9, "uid": 90, "name": "com.talk", "foreground": true}])";

/// What is recorded and told of a night, its own steps apart.
std::string Told(const std::string& text) {
    const Replay::Trace trace = Read(text);
    std::ostringstream told;
    Replay::JsonlWriter writer(told, /*withReasons=*/true);
    Replay::Play(trace, {PluginPath(), {}}, writer);
    Story::Timeline timeline(told, {});
    Story::NightReader reader({.leastLog = {}, .view = &timeline});
    Replay::Play(trace, {PluginPath(), {}}, reader);
    return told.str();
}

TEST(ShortTrace, TellsTheSameAsInFull) {
    const std::string shortly = std::string(R"({"trace": 1, "timezone": "Europe/Berlin", "start": "2026-03-01T21:55", )"
                                            R"("end": "+11h", "device": {"alarm": "06:30", "airplane": false, )"
                                            R"("user_setup_complete": true, "accounts": [100, 101], "light": 0, )"
                                            R"("movement": {"value": 1, "at": "21:40"}, )") +
                                kRunning + R"(}}
{"t": "22:00", "screen": "off"}
{"t": "+30m", "call": "start"}
{"t": "22:40:30", "call": "end"}
{"t": "+1h", "charger": "plugged"}
{"t": "+1h10m", "charger": "unplugged"}
{"t": "23:50", "set": {"movement": {"value": 1, "at": "-2h"}, "airplane": true}}
{"t": "02:00", "screen": "on"}
{"t": "02:00", "unlock": true}
{"t": "02:10", "set": {"alarm": "+5h", "user_setup_complete": false}}
{"t": "02:15", "screen": "off"}
{"t": "06:00", "set": {"alarm": null}}
)";
    const std::string inFull =
        std::string(R"({"trace": 1, "timezone": "Europe/Berlin", "start": 1772398500000, "end": 1772438100000, )"
                    R"("device": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "1772429400000", )"
                    R"("settings.telephony.airplanemode": "0"}, "USER_SETTINGSDATA_SECURE_100": )"
                    R"({"user_setup_complete": "1"}, "USER_SETTINGSDATA_SECURE_101": {"user_setup_complete": "1"}}, )"
                    R"("accounts": [100, 101], "light": 0, "movement": {"value": 1, "at": 1772397600000}, )") +
        kRunning + R"(}}
{"t": "2026-03-01T22:00:00", "broadcast": {"action": "COMMON_EVENT_SCREEN_OFF"}}
{"t": "2026-03-01T22:25:00", "set": {"device_state": {"1": true}, "continuous_tasks": [{"type": 8, "uid": 90, "pid": 9}]}}
{"t": "2026-03-01T22:40:30", "set": {"device_state": {"1": false}, "continuous_tasks": []}}
{"t": "2026-03-01T22:55:00", "set": {"plugged": 1}}
{"t": "2026-03-01T22:55:00", "broadcast": {"action": "COMMON_EVENT_CHARGING"}}
{"t": "2026-03-01T23:05:00", "set": {"plugged": 0}}
{"t": "2026-03-01T23:05:00", "broadcast": {"action": "COMMON_EVENT_DISCHARGING"}}
{"t": "2026-03-01T23:50:00", "set": {"movement": {"value": 1, "at": 1772398200000}, "settings": {"SETTINGSDATA": {"settings.telephony.airplanemode": "1"}}}}
{"t": "2026-03-02T02:00:00", "broadcast": {"action": "COMMON_EVENT_SCREEN_ON"}}
{"t": "2026-03-02T02:00:00", "broadcast": {"action": "COMMON_EVENT_SCREEN_UNLOCKED"}}
{"t": "2026-03-02T02:10:00", "set": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": "1772431800000"}, "USER_SETTINGSDATA_SECURE_100": {"user_setup_complete": "0"}, "USER_SETTINGSDATA_SECURE_101": {"user_setup_complete": "0"}}}}
{"t": "2026-03-02T02:15:00", "broadcast": {"action": "COMMON_EVENT_SCREEN_OFF"}}
{"t": "2026-03-02T06:00:00", "set": {"settings": {"SETTINGSDATA": {"nearestAlarmingTime": null}}}}
)";
    const std::string told = Told(shortly);
    EXPECT_EQ(told, Told(inFull));
    for (const char* event : {"a call", "alarm", "airplane", "charger", "asleep"}) {
        EXPECT_THAT(told, HasSubstr(event)) << "without it the night shows nothing of the kind";
    }
}

TEST(ShortTrace, ATimeOfDayFollowsTheClockWhereItIsChanged) {
    const auto trace = Read(R"({"trace": 1, "timezone": "Europe/Berlin", "start": "2026-03-28 21:00", "end": "09:00"}
{"t": "23:00", "dump": []}
{"t": "03:30", "set": {"movement": {"value": 1, "at": "01:59"}}}
{"t": "03:30", "set": {"movement": {"value": 1, "at": "03:30"}}}
{"t": "03:30", "set": {"movement": {"value": 1, "at": "02:30"}}}
)");
    const auto at = [&trace](size_t step) {
        return std::get<Replay::SetStep>(trace.steps[step].what).phone.movement->atMs;
    };
    constexpr int64_t kMinute = 60'000;
    EXPECT_EQ(trace.steps[1].t - trace.steps[0].t, 210 * kMinute) << "an hour is left out";
    EXPECT_EQ(trace.end - trace.start, 660 * kMinute);
    EXPECT_EQ(trace.steps[1].t - at(1), 31 * kMinute);
    EXPECT_EQ(at(2), trace.steps[2].t) << "the very moment counts";
    EXPECT_EQ(trace.steps[3].t - at(3), 24 * 60 * kMinute) << "today's was left out, so yesterday's";
}

TEST(ShortTrace, ACallBelongsToWhomTheUserLooksAtAndLeavesOtherTasks) {
    const auto tasks = [](const std::string& facts) {
        const auto trace = Read(R"({"trace": 1, "start": 0, "device": {)" + std::string(kRunning) + "}}\n" +
                                R"({"t": 1, "set": )" + facts + "}\n" + R"({"t": 2, "call": "start"})" + "\n");
        std::string text;
        for (const auto& task : *std::get<Replay::SetStep>(trace.steps.at(1).what).phone.continuousTasks) {
            text += std::to_string(task.type) + ":" + std::to_string(task.pid) + " ";
        }
        return text;
    };
    EXPECT_EQ(tasks("{}"), "8:9 ");
    EXPECT_EQ(tasks(R"({"continuous_tasks": [{"type": 2, "uid": 80, "pid": 8}, {"type": 8, "uid": 80, "pid": 8}]})"),
              "2:8 8:9 ");
    EXPECT_EQ(tasks(R"({"processes": [{"pid": 7, "name": "n", "native": true}, {"pid": 6, "name": "a"}]})"), "8:6 ");
    EXPECT_EQ(tasks(R"({"processes": []})"), "");
}

}  // namespace
}  // namespace TARN::Tests
