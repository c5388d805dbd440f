#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "json_fields.h"
#include "jsonl_writer.h"
#include "night_script.h"
#include "ordinary_phone.h"
#include "player.h"
#include "shell.h"

namespace TARN::Tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

using Lines = std::vector<std::string>;

constexpr char kPhone[] =
    R"({"trace": 1, "start": "2026-03-01T21:00:00", "device": {"light": 40.0, "movement": {"value": 2}, )"
    R"("settings": {"SETTINGSDATA": {"settings.telephony.airplanemode": "0"}}, "allow_list": {"1": ["com.clock"]}, )"
    R"("processes": [{"pid": 1, "uid": 10, "name": "audio", "native": true, "system": true}, )"
    R"({"pid": 2, "uid": 11, "name": "com.mail", "bundles": ["com.mail"]}, )"
    R"({"pid": 3, "uid": 12, "name": "com.music", "bundles": ["com.music"], "foreground": true}]}})";

class Prompt {
public:
    explicit Prompt(const std::string& trace = kPhone, bool isInterrupted = false) {
        std::istringstream input(trace);
        Replay::TraceLines lines;
        const Replay::Trace read = Replay::ReadTrace(input, "trace", &lines);
        shell_ = std::make_unique<Shell::Shell>(read, lines,
                                                Shell::ShellOptions{.pluginPath = PluginPath(),
                                                                    .isColored = false,
                                                                    .isInterrupted = [=] { return isInterrupted; },
                                                                    .witness = &witness_},
                                                output_);
    }

    /// Does the lines; answers what the last one told.
    std::string Do(const Lines& lines) {
        for (const std::string& line : lines) {
            output_.str({});
            shell_->Do(line);
        }
        return output_.str();
    }

    /// The complaint about a line.
    std::string Complaint(const std::string& line) {
        try {
            shell_->Do(line);
        } catch (const DevStandbyMgr::InputError& error) {
            return error.what();
        }
        return "none";
    }

    /// The whole record of the phone.
    std::string Finish() {
        shell_->Finish();
        return record_.str();
    }

    Shell::Shell& operator*() { return *shell_; }

private:
    std::ostringstream output_;
    std::ostringstream record_;
    Replay::JsonlWriter witness_{record_};
    std::unique_ptr<Shell::Shell> shell_;
};

TEST(Shell, EveryWordDoesWhatItSays) {
    struct Case {
        Lines lines;
        std::string told;  ///< by the last line
    };
    const std::vector<Case> cases = {
        {{"screen off", "get screen"}, "off\n"},
        {{"screen off", "screen on", "get screen"}, "on\n"},
        {{"screen off", "get state"}, "DARK\n"},
        {{"charger on", "get charging"}, "yes\n"},
        {{"charger on", "screen off", "get state"}, "WORKING\n"},
        {{"charger on", "screen off", "charger off", "get state"}, "DARK\n"},
        {{"get light"}, "40\n"},
        {{"light 3.5", "get light"}, "3.5\n"},
        {{"light none", "get light"}, "none\n"},
        {{"proximity 0", "get proximity"}, "0\n"},
        {{"get movement"}, "moving\n"},
        {{"still", "get movement"}, "still\n"},
        {{"still 20m", "move", "get movement"}, "moving\n"},
        {{"bluetooth connect", "get bluetooth"}, "connected\n"},
        {{"bluetooth connect", "bluetooth disconnect", "get bluetooth"}, "on\n"},
        {{"bluetooth connect", "bluetooth off", "get bluetooth"}, "off\n"},
        {{"bluetooth off", "bluetooth on", "get bluetooth"}, "on\n"},
        {{"wifi off", "get wifi"}, "off\n"},
        {{"mode 603", "get mode"}, "603\n"},
        {{"call start", "get call"}, "yes\n"},
        {{"call start", "call end", "get call"}, "no\n"},
        {{"set {\"light\": 7, \"wifi\": {\"present\": false}}", "get wifi"}, "absent\n"},
        {{"broadcast COMMON_EVENT_SCREEN_OFF", "get state"}, "DARK\n"},
        {{"fail PowerMgrClient.IsScreenOn 5", "get screen"}, "unknown\n"},
        {{"fail PowerMgrClient.IsScreenOn 5", "fail PowerMgrClient.IsScreenOn off", "get screen"}, "on\n"},
        {{"exempt com.mail network", "exempt"}, "network: com.clock com.mail\nlocks:\nfreeze:\n"},
        {{"exempt com.clock freeze", "unexempt com.clock network", "exempt"}, "network:\nlocks:\nfreeze: com.clock\n"},
        {{"exempt com.clock freeze", "unexempt com.clock", "exempt"}, "network:\nlocks:\nfreeze:\n"},
        {{"unexempt com.mail"}, "com.mail is not exempt\n"},
        {{"restart", "get state"}, "WORKING\n"},
        {{"screen off", "restart crash", "get state"}, "DARK\n"},

        {{"get time"}, "2026-03-01T21:00:00\n"},
        {{"wait 1h30m", "get time"}, "2026-03-01T22:30:00\n"},
        {{"until 22:30", "get condition"}, "night\n"},
        {{"until 02:13", "get time"}, "2026-03-02T02:13:00\n"},
        {{"until 02:13", "screen off", "until 02:13", "get time"}, "2026-03-03T02:13:00\n"},
        {{"until 2026-03-02T07:00", "time"}, "Mon  2 Mar 2026 07:00:00, UTC\n"},

        {{"step"}, "WORKING\n"},
        {{"screen off", "still", "step", "get state"}, "NAP\n"},
        {{"screen off", "step", "get state"}, "DARK\n"},
        {{"force-idle light", "get phase"}, "LIGHT\n"},
        {{"force-idle", "screen on", "wait 2h", "get phase"}, "DEEP\n"},
        {{"force-idle", "screen on", "unforce", "get state"}, "WORKING\n"},

        {{"dump other words"}, "userSleepState: 0\n"},
        {{"help step"}, "step\n  The state goes on as if its time were over\n  What holds the step back counts.\n"},
        {{""}, ""},
        {{" \t# screen off"}, ""},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(Prompt().Do(one.lines), one.told) << ::testing::PrintToString(one.lines);
    }
}

TEST(Shell, ACommandTellsWhatHappenedMeanwhileAndNothingElse) {
    Prompt prompt;
    EXPECT_THAT(prompt.Do({"screen off"}), AllOf(HasSubstr("21:00:00  screen     off\n"), HasSubstr("WORKING → DARK")));
    EXPECT_EQ(prompt.Do({"get state"}), "DARK\n");
    EXPECT_THAT(prompt.Do({"still 20m", "wait 10m"}),
                AllOf(HasSubstr("21:05:00  state      DARK → NAP"), Not(HasSubstr("WORKING"))));
    EXPECT_THAT(prompt.Do({"timeline"}), AllOf(HasSubstr("WORKING → DARK"), HasSubstr("DARK → NAP")));
    EXPECT_THAT(prompt.Do({"why state"}), HasSubstr("NAP since 21:05"));
    EXPECT_THAT(prompt.Do({"why --app com.mail"}), HasSubstr("com.mail"));
    prompt.Do({"move"});
    const std::string told = prompt.Do({"step"});
    EXPECT_THAT(told, AllOf(HasSubstr("stays DARK"), HasSubstr("moving")));
    EXPECT_EQ(prompt.Do({"step"}), told) << "who asks again is told again";
    EXPECT_EQ((*prompt).Prompt(), "21:10 DARK> ");
    EXPECT_THAT(prompt.Do({"dump"}), AllOf(HasSubstr("state: DARK since"), HasSubstr("userSleepState")));
    EXPECT_EQ(prompt.Complaint("quit"), "none");
    EXPECT_FALSE((*prompt).Do("quit"));
}

TEST(Shell, AWrongLineIsToldInOneAndDoesNothing) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"wiat 2h", R"("wiat"; expected a command; help tells all of them)"},
        {"screen", "screen: something is missing; expected screen on|off"},
        {"screen of", R"(screen: "of"; expected screen on|off)"},
        {"screen off now", R"(screen: "now" is too much; expected screen on|off)"},
        {"light dark", R"(light: "dark"; expected light LUX|none)"},
        {"light 1e999", R"(light: "1e999"; expected light LUX|none)"},
        {"still 2x", R"(still: "2x"; expected still [20m])"},
        {"alarm 25:00", R"(alarm: "25:00"; expected alarm 06:30|none)"},
        {"mode 1.5", R"(mode: "1.5"; expected mode MODE)"},
        {"mode 9999999999", R"(mode: set.device_mode: 9999999999; expected an integer from -2147483648 to 2147483647)"},
        {"wait 10000000h", R"(wait: "10000000h"; expected wait 30s, 5m, 2h or 1h30m, at most 366d at a time)"},
        {"wait 367d", R"(wait: "367d"; expected wait 30s, 5m, 2h or 1h30m, at most 366d at a time)"},
        {"until 2026-03-01T20:00", R"(until: "2026-03-01T20:00" is over; expected a time within 366 days from )"
                                   "2026-03-01T21:00:00"},
        {"until 9999-12-31T00:00", R"(until: "9999-12-31T00:00" is too far away; expected a time within 366 days from )"
                                   "2026-03-01T21:00:00"},
        {"play", "play: nothing is left of a trace; expected wait or until"},
        {R"(set {"light": "dark"})", R"(set.light: "dark"; expected a number)"},
        {R"(set {"light": 1}, "dump": [])", "set: not JSON; expected set {FACTS}"},
        {R"(set {"plugged": 99999999999999999999})", "set: 99999999999999999999; expected integers of 64 bits"},
        {R"(set {"condition": 2})",
         "set.condition: set in automatic mode, where the host computes it; expected no "
         "such key"},
        {"message x", R"(message: "x"; expected message ID [{WANT}])"},
        {"fail Nothing.AtAll 1", R"(fail: set.fail: unknown operation "Nothing.AtAll"; expected one such as )"
                                 R"("BluetoothHost.DisableBt")"},
        {"exempt com.mail", "exempt: something is missing; expected exempt [NAME network|locks|freeze]"},
        {"exempt com.mail radio", R"(exempt: "radio"; expected exempt [NAME network|locks|freeze])"},
        {"force-idle deeper", R"(force-idle: "deeper"; expected force-idle [light|deep])"},
        {"why rain",
         R"(why: "rain"; expected one of state, sleep, screen, bluetooth, wifi, modem, network, freeze, locks, )"
         "timers, clean, or --app NAME"},
        {"save", "save: something is missing; expected save FILE"},
        {"save /", "save: /: Is a directory; expected a file that can be written"},
        {"exempt \xFF network", R"("exempt \ufffd network"; expected text in UTF-8)"},
    };
    EXPECT_THAT(Prompt(R"({"trace": 1, "start": 0, "host": {"mode": "scripted"}})").Complaint("step"),
                HasSubstr("step: the host of this trace is scripted"));
    const std::string untouched = Prompt().Finish();
    Prompt prompt;
    for (const auto& [line, complaint] : cases) {
        EXPECT_EQ(prompt.Complaint(line), complaint);
    }
    EXPECT_EQ(prompt.Finish(), untouched);
}

TEST(Shell, TheTracesOwnStepsAreDoneWhenTheirTimeComes) {
    const std::string steps = R"(
{"t": "2026-03-01T21:10:00", "broadcast": {"action": "COMMON_EVENT_SCREEN_OFF"}}
{"t": "2026-03-01T21:10:00.001", "set": {"plugged": 1}}
{"t": "2026-03-01T21:30:00", "set": {"plugged": 0}}
)";
    const std::string interrupted = Prompt(kPhone + steps, /*isInterrupted=*/true).Do({"play"});
    EXPECT_EQ(interrupted, "stopped at 2026-03-01T21:00:00\n");
    Prompt prompt(kPhone + steps);
    EXPECT_EQ(prompt.Do({"until 21:09", "get screen"}), "on\n");
    EXPECT_EQ(prompt.Do({"wait 1m", "get screen"}), "off\n");
    EXPECT_EQ(prompt.Do({"get charging"}), "no\n");
    EXPECT_EQ(prompt.Do({"light 0", "get charging"}), "yes\n") << "the trace's come first";
    EXPECT_THAT(prompt.Do({"play"}), HasSubstr("21:30:00"));
    EXPECT_EQ(prompt.Do({"get charging"}), "no\n");
    EXPECT_EQ(prompt.Complaint("play"), "play: nothing is left of a trace; expected wait or until");
    EXPECT_EQ(prompt.Do({"wait 1h", "get time"}), "2026-03-01T22:30:00\n") << "the phone outlives the trace";
}

TEST(Shell, WhatIsSavedPlaysWithTheSameRecord) {
    const std::string file = ::testing::TempDir() + "standby_shell_test.jsonl";
    Prompt prompt(std::string(kPhone) + R"(
# half past nine
{"t": "2026-03-01T21:30:00", "set": {"light": 1.0}}
{"t": "2026-03-02T09:00:00", "dump": ["not reached"]}
)");
    const std::string told = prompt.Do({"screen off",
                                        "still 1h",
                                        "light 0",
                                        "alarm 06:30",
                                        "exempt com.mail network",
                                        "bluetooth connect",
                                        "wait 7m",
                                        "step",
                                        "bluetooth disconnect",
                                        "get",
                                        "force-idle",
                                        "fail BluetoothHost.DisableBt 7",
                                        "wait 2h",
                                        "unforce",
                                        "call start",
                                        "wait 5m",
                                        "call end",
                                        "message 14 {\"MESSAGE_ENABLE\": true, \"MESSAGE_INTERVAL\": 60}",
                                        "broadcast COMMON_EVENT_POWER_SAVE_MODE_CHANGED {\"current_power_mode\": true}",
                                        "dump",
                                        "until 02:13",
                                        "restart crash",
                                        "wait 1h",
                                        "charger on",
                                        "screen on",
                                        "unlock",
                                        "why",
                                        "mode 603",
                                        "save " + file});
    EXPECT_THAT(told, HasSubstr(" in " + file + "; standby replay " + file + " plays them\n"));
    const std::string record = prompt.Finish();

    std::ifstream saved(file);
    std::ostringstream played;
    Replay::JsonlWriter writer(played);
    Replay::Play(Replay::ReadTrace(saved, file), {.pluginPath = PluginPath(), .progress = nullptr}, writer);
    EXPECT_THAT(record, HasSubstr("BluetoothHost.DisableBt"));
    EXPECT_EQ(played.str(), record);
    std::filesystem::remove(file);
}

TEST(Shell, CompletesWordsByWhatMayStandThere) {
    Prompt prompt;
    const std::vector<std::pair<std::string, Lines>> cases = {
        {"scr", {"screen"}},
        {"un", {"unexempt", "unforce", "unlock", "until"}},
        {"screen ", {"off", "on"}},
        {"screen  of", {"off"}},
        {"screen on ", {}},
        {"force-idle ", {"deep", "light"}},
        {"light n", {"none"}},
        {"exempt com.m", {"com.mail", "com.music"}},
        {"exempt com.mail ", {"freeze", "locks", "network"}},
        {"fail BluetoothHost.D", {"BluetoothHost.DisableBt"}},
        {"broadcast COMMON_EVENT_SCREEN_O", {"COMMON_EVENT_SCREEN_OFF", "COMMON_EVENT_SCREEN_ON"}},
        {"get st", {"state"}},
        {"help wa", {"wait"}},
        {"why blu", {"bluetooth"}},
        {"why bluetooth --", {"--app"}},
        {"why --app au", {"audio"}},
        {"nothing ", {}},
    };
    for (const auto& [text, words] : cases) {
        EXPECT_EQ((*prompt).Complete(text), words) << text;
    }
}

TEST(Shell, WithoutATraceThePhoneIsAnOrdinaryOneOfThisEvening) {
    const Replay::TimeZone zone("Europe/Berlin");
    zone.Use();
    Prompt prompt(Authoring::OrdinaryPhone(zone, Replay::TimeZone::ParseLocal("2026-07-01T00:30:00")));
    EXPECT_EQ(prompt.Do({"time"}), "Wed  1 Jul 2026 21:00:00, Europe/Berlin\n");
    EXPECT_THAT(prompt.Do({"get"}),
                AllOf(HasSubstr("state WORKING\n"), HasSubstr("screen on\n"), HasSubstr("charging no\n"),
                      HasSubstr("light 40\n"), HasSubstr("movement moving\n"), HasSubstr("condition day\n")));
    EXPECT_THAT(prompt.Do({"screen off", "still", "light 0", "wait 5h", "get sleep"}), "asleep\n");
    EXPECT_EQ(prompt.Do({"get frozen"}), "3\n");
    EXPECT_EQ(prompt.Do({"get bluetooth"}), "off\n");
}

}  // namespace
}  // namespace TARN::Tests
