#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "are.h"
#include "generator.h"
#include "import.h"
#include "json_fields.h"
#include "new_night.h"
#include "night_script.h"
#include "trace.h"

namespace TARN::Tests {
namespace {

using Authoring::Generation;
using Authoring::Generator;
using Authoring::Imported;
using Authoring::NewNight;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Lt;
using ::testing::Not;
using ::testing::StartsWith;

using Lines = std::vector<std::string>;

std::string Complaint(const std::function<void()>& act) {
    try {
        act();
    } catch (const DevStandbyMgr::InputError& error) {
        return error.what();
    }
    return "none";
}

Replay::Trace Read(const std::string& text) {
    std::istringstream input(text);
    return Replay::ReadTrace(input, "trace");
}

// A night to start from

NewNight Berlin() {
    NewNight night;
    night.timezone = "Europe/Berlin";
    night.date = "2026-03-01";
    return night;
}

std::string TextOf(const NewNight& night) {
    std::ostringstream output;
    Authoring::WriteNewNight(night, 0, output);
    return output.str();
}

/// The trace's lines that hold any of these, without the rest of long ones.
Lines LinesWith(const std::string& text, const std::vector<std::string>& parts) {
    Lines found;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        if (std::any_of(parts.begin(), parts.end(),
                        [&](const std::string& part) { return line.find(part) != std::string::npos; })) {
            found.push_back(line.substr(0, 160));
        }
    }
    return found;
}

TEST(NewNight, HoldsWhatWasAskedForAndThePhoneLivesThroughIt) {
    NewNight night = Berlin();
    night.alarm = "06:30";
    night.calls = {"02:00+45m"};
    night.charger = {"22:00-23:00"};
    night.airplane = {"03:30-04:00"};
    night.music = {"02:10-02:20"};
    const std::string text = TextOf(night);
    EXPECT_THAT(text, StartsWith("# A night to start from: Sun 1 Mar 2026 21:00 to Mon 07:00, Europe/Berlin."));
    EXPECT_THAT(
        LinesWith(text, {"charger\"", "call\"", "airplane\": t", "airplane\": f", "alarm\": \"06:30\"}"}),
        ElementsAre(R"({"t": "22:00", "charger": "plugged"})", R"({"t": "23:00", "charger": "unplugged"})",
                    R"({"t": "02:00", "call": "start"})", R"({"t": "02:45", "call": "end"})",
                    R"({"t": "03:30", "set": {"airplane": true}})", R"({"t": "04:00", "set": {"airplane": false}})",
                    R"({"t": "06:30:20", "set": {"alarm": "06:30"}})"));
    EXPECT_THAT(LinesWith(text, {"continuous_tasks\": ["}),
                ElementsAre(AllOf(HasSubstr("02:10"), HasSubstr("\"type\": 8"), HasSubstr("\"type\": 2")),
                            AllOf(HasSubstr("02:20"), HasSubstr("\"type\": 8"), Not(HasSubstr("\"type\": 2")))))
        << "the call goes on while music plays";
    const Record record = PlayText(text).Timed();
    // off half an hour after bed time and in the sleep, on with the ring, and off only when the call is over
    EXPECT_THAT(record.At("02").Calls("BluetoothHost"),
                Are({"02:00:00 BluetoothHost.EnableBle {} -> 0", "02:45:00 BluetoothHost.DisableBt {} -> 0"}))
        << "what keeps the radio";
    EXPECT_THAT(record.At("23:30").Calls("BluetoothHost"), Not(IsEmpty()));
    EXPECT_THAT(record.At("06:30:00").Deliveries({1}), Are({HasSubstr("COMMON_EVENT_SCREEN_ON")}));
    const Record::Texts sleep = record.Deliveries({11});
    EXPECT_THAT(sleep.back(), AllOf(StartsWith("06:2"), HasSubstr("\"isSleep\":false"))) << "the alarm is near";
}

TEST(NewNight, UsesOfThePhoneAreTheOnesNamedAndStretchesThatMeetAreOne) {
    NewNight night = Berlin();
    night.screen = {"20:30-20:40", "22:00-22:10", "22:10-22:15", "03:00+2m"};
    night.alarm = "none";
    EXPECT_THAT(LinesWith(TextOf(night), {"screen\"", "\"start\""}),
                ElementsAre(HasSubstr(R"("start":"2026-03-01T20:20:00")"), R"({"t": "20:20", "screen": "off"})",
                            R"({"t": "20:30", "screen": "on"})", R"({"t": "20:40", "screen": "off"})",
                            R"({"t": "22:00", "screen": "on"})", R"({"t": "22:15", "screen": "off"})",
                            R"({"t": "03:00", "screen": "on"})", R"({"t": "03:02", "screen": "off"})"));
}

TEST(NewNight, TimesMeanTheSameOnTheNightsOnWhichTheClockIsChanged) {
    for (const char* date : {"2026-03-28", "2026-10-24"}) {
        NewNight night = Berlin();
        night.date = date;
        night.screen = {"21:30-21:40", "01:50+90m"};
        const Replay::Trace trace = Read(TextOf(night));
        std::vector<int64_t> lit;
        for (const Replay::Step& step : trace.steps) {
            const auto* broadcast = std::get_if<Replay::BroadcastStep>(&step.what);
            if (broadcast != nullptr && broadcast->want.GetAction() == "COMMON_EVENT_SCREEN_ON") {
                lit.push_back(step.t);
            } else if (broadcast != nullptr && broadcast->want.GetAction() == "COMMON_EVENT_SCREEN_OFF" &&
                       !lit.empty()) {
                lit.back() = step.t - lit.back();
            }
        }
        EXPECT_THAT(lit, ElementsAre(600'000, 5'400'000, 60'000)) << date;
    }
}

TEST(NewNight, WhatCannotBeIsOneLineThatNamesTheOption) {
    struct Case {
        std::function<void(NewNight&)> ask;
        const char* complaint;
    };
    const std::vector<Case> cases = {
        {[](NewNight& n) { n.timezone = "Europe/Berln"; }, "timezone: \"Europe/Berln\"; expected"},
        {[](NewNight& n) { n.date = "2026-02-30"; }, "--date: \"2026-02-30\"; expected"},
        {[](NewNight& n) { n.date = "2026-2-3"; }, "--date: \"2026-2-3\"; expected"},
        {[](NewNight& n) { n.alarm = "half past six"; }, "--alarm: \"half past six\"; expected"},
        {[](NewNight& n) { n.alarm = "24:00"; }, "--alarm: \"24:00\"; expected"},
        {[](NewNight& n) { n.charger = {"23:00"}; }, "--charger: \"23:00\"; expected a stretch"},
        {[](NewNight& n) { n.charger = {"23:00-"}; }, "--charger: \"\"; expected a time"},
        {[](NewNight& n) { n.charger = {"23:00+2"}; }, "--charger: \"23:00+2\"; expected a stretch"},
        {[](NewNight& n) { n.calls = {"02:00+2d"}; }, "--call: \"02:00+2d\"; expected a stretch"},
        {[](NewNight& n) {
             n.calls = {"02:00", "02:05"};
         },
         "--call: \"02:05\" overlaps \"02:00\"; expected"},
        {[](NewNight& n) { n.end = "05:00"; },
         "--alarm: 07:00 is not within the night; expected one from 2026-03-01T21"},
        {[](NewNight& n) { n.date = "2026-03-28", n.calls = {"2026-03-29T02:30"}; },
         "--call: \"2026-03-29T02:30:00\" does not exist"},
        {[](NewNight& n) { n.screen = {"2026-03-01T22:00-2026-03-01T21:30"}; }, "ends before it begins; expected"},
    };
    for (const Case& one : cases) {
        NewNight night = Berlin();
        one.ask(night);
        EXPECT_THAT(Complaint([&] { (void)TextOf(night); }), HasSubstr(one.complaint));
    }
}

// Logs of other programs

struct Translated {
    Lines steps;  ///< the trace without header and comments
    std::string text;
    Imported imported;
};

Translated Split(const std::string& text, Imported imported) {
    Translated translated{{}, text, std::move(imported)};
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        if (line.starts_with("{\"t\"")) {
            translated.steps.push_back(line);
        }
    }
    return translated;
}

Translated Csv(const std::string& log, const std::optional<std::string>& mapping = {},
               const std::string& zone = "UTC") {
    std::istringstream input(log);
    std::ostringstream output;
    Imported imported = Authoring::ImportCsv({input, "log.csv", zone, true}, mapping, "map.json", output);
    return Split(output.str(), std::move(imported));
}

Translated History(const std::string& log, const std::optional<std::string>& start = {}) {
    std::istringstream input(log);
    std::ostringstream output;
    Imported imported = Authoring::ImportBatteryHistory({input, "history", "Europe/Berlin", true}, start, output);
    return Split(output.str(), std::move(imported));
}

TEST(CsvImport, WordsOfItsOwnNeedNoMappingHoweverTheFileIsWritten) {
    const Translated told =
        Csv("\xEF\xBB\xBF"
            "event,\"time\",note\r\n"
            "screen off,2026-03-01T22:00:00.250,\"a, \"\"b\"\"\n\nc\"\r\n"
            "\r\n"
            "charger off,2026-03-01T22:00:01,\r\n"
            "light 40.5,2026-03-01 22:01,\r\n"
            "alarm 2026-03-02T06:30,2026-03-01T23:02:00+01:00,\r\n"
            "\"bluetooth connect\",\"2026-03-01T22:03:00Z\",\r\n"
            "audio start,2026-03-01T22:04:00,x\r\n"
            "audio start,2026-03-01T22:04:01,x\r\n"
            ",2026-03-01T22:05:00,\r\n"
            "light dark,2026-03-01T22:05:01,\r\n"
            "Screen on,2026-03-01T22:06:00,");
    EXPECT_EQ(
        told.steps,
        (Lines{
            R"({"t": "2026-03-01T22:00:00.250", "screen": "off"})",
            R"({"t": "2026-03-01T22:01:00", "set": {"light": 40.5}})",
            R"({"t": "2026-03-01T22:02:00", "set": {"alarm": "2026-03-02T06:30:00"}})",
            R"({"t": "2026-03-01T22:03:00", "set": {"bluetooth": {"state": 1, "connection": 1}}})",
            R"({"t": "2026-03-01T22:04:00", "set": {"continuous_tasks": [{"type": 2, "uid": 20010007, "pid": 2191}]}})",
            R"({"t": "2026-03-01T22:06:00", "set": {}})"}));
    EXPECT_EQ(told.imported.losses.Tell(9), R"(1 of "event=Screen on", 1 of "event=light dark")");
    EXPECT_THAT(told.text, HasSubstr("# 10 read, 5 steps written\n# not translated: 1 of "));
    EXPECT_EQ(Read(told.text).end, 1'772'402'760'000);
}

TEST(CsvImport, TheMappingSaysWhatColumnsAndTextsMean) {
    const Translated told =
        Csv("id;when;kind;value;plug\n"
            "1;1772398800.25;SCREEN_ON;;0\n"
            "2;1772398801;LUX;12.5;1\n"
            "3;1772398801;LUX;n/a;1\n"
            "4;1772398802;BEAT;;1\n"
            "5;1772398803;MODE;;2\n"
            "6;1772398804;\x1B[2J;;1\n",
            R"({"time": {"column": "when", "format": "s"}, "separator": ";", "value": "value", // text
                                    "columns": {"plug": {"1": "charger on", "0": "charger off"},
                                                "kind": {"SCREEN_ON": "screen on", "LUX": "light", "BEAT": "ignore",
                                                         "MODE": {"set": {"device_mode": 603}}}}})");
    EXPECT_EQ(told.steps, (Lines{R"({"t": "2026-03-01T21:00:00.250", "screen": "on"})",
                                 R"({"t": "2026-03-01T21:00:01", "set": {"light": 12.5}})",
                                 R"({"t": "2026-03-01T21:00:01", "charger": "plugged"})",
                                 R"({"t": "2026-03-01T21:00:03", "set": {"device_mode":603}})",
                                 R"({"t": "2026-03-01T21:00:04", "set": {}})"}));
    EXPECT_EQ(told.imported.losses.Tell(9), R"(1 of "kind=\u001b[2J", 1 of "kind=LUX value=n/a", 1 of plug=2)");
}

TEST(CsvImport, TimesAreReadInTheirFormat) {
    struct Case {
        const char* format;
        const char* text;
        const char* written;  ///< empty: it is none
    };
    const std::vector<Case> cases = {
        {"ms", "1772398800250", "2026-03-01T22:00:00.250"},
        {"ms", "1772398800250.9", "2026-03-01T22:00:00.250"},
        {"ms", "2026-03-01T22:00:00", ""},
        {"ms", "99999999999999999999", ""},
        {"s", "1772398800", "2026-03-01T22:00:00"},
        {"s", "1772398800.0019", "2026-03-01T22:00:00.001"},
        {"s", "1e9", ""},
        {"s", "", ""},
        {"iso", "2026-03-01T21:00:00Z", "2026-03-01T22:00:00"},
        {"iso", "2026-03-01T16:30:00-0430", "2026-03-01T22:00:00"},
        {"iso", "2026-03-01T23:00:00,5+02", "2026-03-01T22:00:00.500"},
        {"iso", "2026-03-29T02:30:00", ""},
        {"iso", "2026-13-01T22:00:00", ""},
        {"iso", "2026-03-01T22:00:00 CET", ""},
        {"iso", "2026-03-01T-1:00:00", ""},
        {"%d.%m.%Y %H:%M", "01.03.2026 22:00", "2026-03-01T22:00:00"},
        {"%d.%m.%Y %H:%M %z", "01.03.2026 22:00 +0000", "2026-03-01T23:00:00"},
        {"%d.%m.%Y %H:%M", "01.03.2026 22:00h", ""},
    };
    for (const Case& one : cases) {
        const std::string mapping = std::string(R"({"time": {"column": "t", "format": ")") + one.format +
                                    R"("}, "columns": {"e": {"a": "screen on"}}})";
        std::string written;
        const std::string complaint = Complaint([&] {
            written = Csv(std::string("t;e\n\"") + one.text + "\";a\n", R"({"separator": ";", )" + mapping.substr(1),
                          "Europe/Berlin")
                          .steps.at(0);
        });
        if (*one.written == '\0') {
            EXPECT_THAT(complaint, StartsWith("log.csv:2: t: \"" + std::string(one.text))) << one.format;
        } else {
            EXPECT_EQ(written, std::string(R"({"t": ")") + one.written + R"(", "screen": "on"})") << complaint;
        }
    }
}

TEST(CsvImport, AnHourThatComesTwiceIsToldApartByTheOrderOfTheRows) {
    const Translated told =
        Csv("time,event\n2026-10-25T02:10:00,screen on\n2026-10-25T02:50:00,screen off\n"
            "2026-10-25T02:20:00,unlock\n2026-10-25T02:30:00,screen off\n",
            {}, "Europe/Berlin");
    const Replay::Trace trace = Read(told.text);
    std::vector<int64_t> minutes;
    for (const Replay::Step& step : trace.steps) {
        minutes.push_back((step.t - trace.start) / 60'000);
    }
    EXPECT_THAT(minutes, ElementsAre(0, 40, 70, 80));
}

TEST(CsvImport, WhatCannotBeReadIsOneLineWithItsPlace) {
    struct Case {
        std::string log;
        std::optional<std::string> mapping;
        const char* complaint;
    };
    const std::string good = "time,event\n2026-03-01T22:00:00,screen on\n";
    const auto mapped = [](const std::string& members) { return std::optional("{" + members + "}"); };
    const std::vector<Case> cases = {
        {"", {}, "log.csv:1: nothing; expected a row with the names of the columns"},
        {"when,event\n", {}, "log.csv:1: no column \"time\"; expected it among \"when\", \"event\""},
        {"time,event\n", {}, "log.csv: nothing in it could be translated: it says nothing; expected"},
        {good + "2026-03-01T22:00:01\n", {}, "log.csv:3: 1 fields; expected 2 as in the first row"},
        {good + "\"a\nb\",c\n\n2026,\"x\n", {}, "log.csv:3: time: \"a\\nb\"; expected a time such as"},
        {good + "2026-03-01T22:00:01,\"x\n\n", {}, "log.csv:3: a quote that is not closed; expected"},
        {good + "\"2026-03-01T22:00:01\"x,unlock\n", {}, "log.csv:3: text behind a closing quote; expected"},
        {good + "2026-03-01T21:59:59,unlock\n", {}, "log.csv:3: time: \"2026-03-01T21:59:59\" goes back; expected"},
        {good + std::string(1'100'000, 'x') + "\n", {}, "log.csv:3: a row of more than a megabyte; expected"},
        {"time,event\n2026-03-01T22:00:00,a\n",
         {},
         "log.csv: nothing in it could be translated: 1 of event=a; expected"},
        {good, "{", "map.json: not JSON, column 2: "},
        {good,
         R"({"columns": {"event": {"a": {"set": )" + std::string(200'000, '[') + std::string(200'000, ']') + "}}}}",
         "map.json: structures in structures, more than 512; expected"},
        {good, mapped(""), "map.json: no \"columns\"; expected"},
        {good, mapped(R"("columns": {"event": "lihgt"})"),
         "map.json: columns.event: \"lihgt\"; expected one of screen on"},
        {good, mapped(R"("columns": {"event": "unlock"})"), "map.json: columns.event: \"unlock\"; expected light"},
        {good, mapped(R"("columns": {"event": {"a": "screen on now"}})"),
         "map.json: columns.event.a: \"screen on now\"; expected"},
        {good, mapped(R"("columns": {"event": {"a": {"set": {"lihgt": 1}}}})"),
         "map.json: columns.event.a: set: unknown key \"lihgt\""},
        {good, mapped(R"("columns": {"event": {"a": {}}})"),
         "map.json: columns.event.a: an object of 0 members; expected"},
        {good, mapped(R"("columns": {}, "time": {"column": "t", "format": "%s"})"),
         "map.json: time.format: \"%s\"; expected"},
        {good, mapped(R"("columns": {}, "separator": "")"), "map.json: separator: \"\"; expected"},
        {good, mapped(R"("columns": {"event": {"a": "unlock"}}, "colums": 1)"), "map.json: unknown key \"colums\""},
    };
    for (const Case& one : cases) {
        EXPECT_THAT(Complaint([&] { (void)Csv(one.log, one.mapping); }), HasSubstr(one.complaint));
    }
}

TEST(Import, OfVeryManyKindsOfLossTheCountStaysRight) {
    Authoring::Losses losses;
    for (int i = 0; i < 20'000; ++i) {
        losses.Add("x=" + std::to_string(i));
        losses.Add("x=7");
    }
    EXPECT_EQ(losses.Tell(1), "20001 of x=7 and 19999 more, of over 9999 other kinds");
}

constexpr char kHistory[] =
    "DUMP OF SERVICE batterystats:\n"
    "Battery History (2% used, 5784 used of 256KB):\n"
    "                    0 (14) RESET:TIME: 2026-03-01-22-00-00\n"
    "                    0 (1) 072 status=discharging plug=none volt=3900 +running +wake_lock=u0a6:\"mail sync\" "
    "+screen\n"
    "          +1s003ms (2) 072 c0b00020 -wake_lock volt=3901\n"
    "                    Details: cpu=1234u+12s\n"
    "      +10m02s345ms (2) 072 -screen\n"
    "         +1h00m00s (4) 071 plug=ac +plugged +phone_in_call\n"
    "      +1h10m00s0ms (4) 071 -phone_in_call +wifi\n"
    "         +2h00m00s (9) TIME: 2026-03-02-00-00-01\n"
    "         +3h00m00s (9) TIME: 2026-03-02-00-00-01\n"
    "       +1d02h00m00s (4) 071 plug=none -plugged\n"
    "\n"
    "Per-PID Stats:\n"
    "  +5s (2) PID 1 wake time\n";

TEST(BatteryHistoryImport, FlagsBecomeStepsAndEverythingElseIsNamed) {
    const Translated told = History(kHistory);
    EXPECT_EQ(told.steps, (Lines{R"({"t": "2026-03-01T22:00:00", "screen": "on"})",
                                 R"({"t": "2026-03-01T22:00:00", "set": {"wifi": {"enabled": false}}})",
                                 R"({"t": "2026-03-01T22:10:02.345", "screen": "off"})",
                                 R"({"t": "2026-03-01T23:00:00", "charger": "plugged"})",
                                 R"({"t": "2026-03-01T23:00:00", "call": "start"})",
                                 R"({"t": "2026-03-01T23:10:00", "call": "end"})",
                                 R"({"t": "2026-03-01T23:10:00", "set": {"wifi": {"enabled": true}}})",
                                 R"({"t": "2026-03-03T00:00:00", "charger": "unplugged"})"}));
    EXPECT_EQ(told.imported.losses.Tell(9),
              "2 of volt=..., 1 of +running, 1 of +wake_lock, 1 of -wake_lock, 1 of \"clocks set\", "
              "1 of \"lines of details\", 1 of status=...");
    EXPECT_EQ(told.imported.losses.Tell(2), "2 of volt=..., 1 of +running and 5 more, of 5 other kinds");
    EXPECT_THAT(PlayText(told.text).Deliveries({10}), Are({HasSubstr("true"), HasSubstr("false")})) << "the call";
}

TEST(BatteryHistoryImport, APhoneThatStartsAgainIsARestartAndNamesItsFlagsAnew) {
    const Translated told = History(
        "  0 (1) 072 +screen +wifi\n  +1m (2) SHUTDOWN\n  +2m (2) START\n"
        "  +2m (2) TIME: 2026-03-01-23-00-00-500\n  +2m1s (1) 071 +wifi\n",
        "2026-03-01T22:00:00");
    EXPECT_EQ(told.steps, (Lines{R"({"t": "2026-03-01T22:00:00", "screen": "on"})",
                                 R"({"t": "2026-03-01T22:02:00", "restart": "stop"})",
                                 R"({"t": "2026-03-01T22:02:01", "screen": "off"})"}));
}

TEST(BatteryHistoryImport, WhatCannotBeReadIsOneLineWithItsPlace) {
    const std::string good = "  0 (9) RESET:TIME: 2026-03-01-22-00-00\n  +1s (2) 072 +screen\n";
    const std::vector<std::pair<std::string, const char*>> cases = {
        {"", "history: no line of a history; expected"},
        {"a\nb\n", "history: no line of a history; expected"},
        {"  +1s (2) 072 +screen\n", "history:1: no TIME line before it; expected one, or --start"},
        {"  0 (9) RESET:TIME: yesterday\n", "history:1: \"yesterday\"; expected a time such as"},
        {good + "  +1m1h (2) 072 -screen\n", "history:3: \"+1m1h (2) 072 -screen\"; expected a line such as"},
        {good + "  +99999999999s (2) 072\n", "history:3: \"+99999999999s (2) 072\"; expected"},
        {good + "  +2000000000d (2) 072\n", "history:3: a time behind the year 9999; expected"},
        {good + "  +2s 072 -screen\n", "history:3: \"+2s 072 -screen\"; expected"},
        {good + "  +2s (2) -screen\n", "history:3: \"-screen\"; expected the battery's level"},
        {good + "  +500ms (2) 072 -screen\n", "history:3: \"+500ms\" goes back; expected"},
        {good + "  +2s (2) 072 " + std::string(1'100'000, 'x') + "\n", "history:3: a line of more than a megabyte"},
    };
    for (const auto& [log, complaint] : cases) {
        EXPECT_THAT(Complaint([&log = log] { (void)History(log); }), HasSubstr(complaint));
    }
    EXPECT_THAT(Complaint([&] { (void)History(good, "noon"); }), HasSubstr("--start: \"noon\"; expected"));
}

// Made-up nights

std::string Generated(Generator& generator, uint64_t number) {
    std::ostringstream output;
    generator.Write(number, output);
    return output.str();
}

TEST(Generate, ANightFollowsFromSeedAndNumberAlone) {
    Generator forwards(Generation{.seed = 7, .people = 20});
    Generator backwards(Generation{.seed = 7, .people = 20});
    constexpr uint64_t kNights = 120;
    std::vector<std::string> nights;
    for (uint64_t number = 1; number <= kNights; ++number) {
        nights.push_back(Generated(forwards, number));
    }
    for (uint64_t number = kNights; number >= 1; --number) {
        ASSERT_EQ(Generated(backwards, number), nights[number - 1]) << number;
    }
    Generator other(Generation{.seed = 8, .people = 20});
    EXPECT_NE(Generated(other, 1).substr(100), nights[0].substr(100));
    EXPECT_EQ(std::set<std::string>(nights.begin(), nights.end()).size(), kNights);
}

/// The same on every machine and from every compiler: what it is on this one. Changes with the model only.
TEST(Generate, TheBytesAreThoseOfEveryMachine) {
    Generator generator(Generation{.seed = 7, .people = 3, .timezone = "UTC"});
    uint64_t hash = 14'695'981'039'346'656'037ULL;
    for (uint64_t number = 1; number <= 90; ++number) {
        for (const char c : Generated(generator, number)) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 1'099'511'628'211ULL;
        }
    }
    EXPECT_EQ(hash, 5380353982537765895ULL);
}

TEST(Generate, NightsAreReadWithoutAComplaintAndHaveTheVarietyThatTheModelSays) {
    Generator generator(Generation{.seed = 3, .people = 60, .firstDate = "2026-03-16"});  // the clocks change in it
    constexpr int kNights = 900;
    std::map<std::string, int> nightsWith;
    for (uint64_t number = 1; number <= kNights; ++number) {
        const std::string text = Generated(generator, number);
        if (number % 9 == 0) {
            const Replay::Trace trace = Read(text);
            ASSERT_THAT(trace.end - trace.start, AllOf(Gt(6 * 3'600'000), Lt(18 * 3'600'000))) << text.substr(0, 100);
        }
        for (const char* part : {"a call in the night", "the alarm rings", "on a trip", "under way",
                                 "\"charger\": \"unpl", "\"airplane\": true", "device_mode", "\"proximity\": 0.0"}) {
            nightsWith[part] += text.find(part) != std::string::npos ? 1 : 0;
        }
    }
    const auto expectPercent = [&](const char* part, int least, int most) {
        EXPECT_THAT(nightsWith[part] * 100, AllOf(Gt(least * kNights), Lt(most * kNights))) << part;
    };
    expectPercent("the alarm rings", 50, 80);
    expectPercent("\"charger\": \"unpl", 45, 80);
    expectPercent("\"proximity\": 0.0", 50, 95);
    for (const char* seldom : {"a call in the night", "on a trip", "under way", "\"airplane\": true", "device_mode"}) {
        EXPECT_THAT(nightsWith[seldom] * 1000, AllOf(Gt(2 * kNights), Lt(150 * kNights))) << seldom;
    }
}

TEST(Generate, PeopleSleepInTheirNights) {
    Generator generator(Generation{.seed = 5, .people = 12});
    int asleep = 0;
    for (uint64_t number = 1; number <= 12; ++number) {
        const Record::Texts told = PlayText(Generated(generator, number)).Deliveries({11});
        asleep += std::any_of(told.begin(), told.end(), [](const std::string& text) {
            return text.find("\"isSleep\":true") != std::string::npos;
        });
    }
    EXPECT_GE(asleep, 10);
}

TEST(Generate, WhatCannotBeIsOneLine) {
    EXPECT_THAT(Complaint([] { Generator(Generation{.firstDate = "2026-02-30"}); }),
                HasSubstr("--from: \"2026-02-30\"; exp"));
    EXPECT_THAT(Complaint([] { Generator(Generation{.timezone = "Europa/Berlin"}); }),
                HasSubstr("\"Europa/Berlin\"; exp"));
    Generator generator(Generation{.people = 1});
    EXPECT_THAT(Complaint([&] { (void)Generated(generator, 1'000'000'000); }), HasSubstr("too far ahead; expected"));
}

}  // namespace
}  // namespace TARN::Tests
