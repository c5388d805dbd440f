#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <sstream>

#include "are.h"
#include "night.h"
#include "night_reader.h"
#include "night_script.h"
#include "phrases.h"
#include "player.h"
#include "time_zone.h"

namespace TARN::Tests {
namespace {

using Replay::TimeZone;
using Story::Event;
using Story::Outcome;
using Story::Subject;
using ::testing::StartsWith;

Story::Night Read(std::istream& trace, const std::string& name) {
    Story::NightReader reader;
    Replay::Play(Replay::ReadTrace(trace, name), {PluginPath(), {}}, reader);
    return reader.Result();
}

Story::Night Read(const Night& night, const std::string& end = {}) {
    std::istringstream trace(night.Text(end));
    return Read(trace, "test");
}

/// "03:00:00 done awake: screen on"; in brackets what a timeline leaves out.
std::string Line(const Event& event) {
    const std::string text = std::string(Story::NameOf(event.outcome)) + " " + Story::Because(event.text, event.reason);
    return TimeZone::Format(event.t, "%H:%M:%S ") + (event.isRepeat ? "(" + text + ")" : text);
}

std::vector<std::string> Told(const Story::Night& night) {
    std::vector<std::string> lines;
    for (const Event& event : night.events) {
        if (event.subject == Subject::SLEEP) {
            lines.push_back(Line(event));
        }
    }
    return lines;
}

/// What a reading's event says: text and reason, without the verdict's own words in front.
std::string Reason(const Story::Night& night, size_t reading) {
    const Event& event = night.events.at(night.readings.at(reading).event);
    return event.reason.empty() ? event.text.substr(std::min(event.text.find(": "), event.text.size() - 2) + 2)
                                : event.reason;
}

std::string ValueOf(const Event& event, std::string_view name) {
    const auto found = std::find_if(event.values.begin(), event.values.end(),
                                    [name](const Story::Value& value) { return value.name == name; });
    return found == event.values.end() ? "" : found->text;
}

int64_t Ms(const std::string& time) {
    TimeZone("UTC").Use();
    return TimeZone::ParseLocal((time < "12" ? "2026-03-02T" : "2026-03-01T") + time);
}

/// A record of the collector arrives: "still=3601 dark=0 off=0 light=0 prox=5 unlock=7 ons=1 alarm=07:30:00".
Night& Collected(Night& night, const std::string& time, const std::string& record) {
    static const std::map<std::string, std::string> kKeys = {{"still", "mUserStationaryDuration"},
                                                             {"dark", "mLightDarkDuration"},
                                                             {"off", "mScrOffDuration"},
                                                             {"light", "mLight"},
                                                             {"prox", "mProximity"},
                                                             {"unlock", "mUnlockTimestamp"},
                                                             {"ons", "mScrOnCount"},
                                                             {"alarm", "mNextAlarmClockTriggerTime"}};
    std::string want = R"({"mTimestamp": )" + std::to_string(Ms(time));
    std::istringstream words(record);
    for (std::string word; words >> word;) {
        const size_t at = word.find('=');
        const std::string value = word.substr(at + 1);
        want += ", \"" + kKeys.at(word.substr(0, at)) + "\": " +
                (value.find(':') != value.npos      ? std::to_string(Ms(value))
                 : word[0] == 'l' || word[0] == 'p' ? std::to_string(std::stof(value))
                                                    : value);
    }
    return night.AdvanceTo(time).Message(100, want + "}");
}

/// A night of such records.
Night Records(std::initializer_list<std::pair<const char*, const char*>> records) {
    Night night;
    for (const auto& [time, record] : records) {
        Collected(night, time, record);
    }
    return night;
}

TEST(SleepStory, EachRuleSaysWhatItFoundAndWhatItNeeds) {
    struct Case {
        const char* time;
        const char* record;
        bool isAsleep;
        const char* reason;
        const char* rule;
    };
    for (const Case& c : {
             Case{"21:00:00", "still=720 dark=300 light=1", false,
                  "still for 12 min, dark for 5 min; still and dark for 50 min needed", "evening"},
             {"23:00:00", "still=720 dark=7200 light=1", false, "still for 12 min; still for 30 min needed", "evening"},
             {"23:00:00", "still=-1 dark=7200 light=1", false, "stillness is not known; still for 30 min needed",
              "evening"},
             {"23:00:00", "still=0 dark=0 light=80", false,
              "the phone moves, not dark at 80 lx; still and dark for 30 min needed", "evening"},
             {"22:47:30", "still=1921 dark=1925 light=1", false, "still for 32 min 01 s; still for 32 min 05 s needed",
              "evening"},
             {"22:47:30", "still=1925 dark=2400 light=1", true,
              "still for 32 min and dark for 40 min, at least 32 min in the evening", "evening"},
             {"03:00:00", "still=3900 dark=0 light=20", true, "still for 1 h 05 min, more than 1 h at night", "night"},
             {"03:00:00", "still=3601 dark=0 light=20", true, "still for 1 h 00 min 01 s, more than 1 h at night",
              "night"},
             {"03:00:00", "still=2400 dark=0 light=20", false,
              "still for 40 min, not dark at 20 lx; dark for over 20 min needed, or still for over 1 h", "night"},
             {"03:00:00", "still=540 dark=0 light=2 prox=5", false,
              "still for 9 min, dark only now; still and dark for over 20 min needed, or still for over 1 h", "night"},
             {"03:00:00", "still=540 dark=0 light=2 prox=0 unlock=9", false,
              "still for 9 min, unlocked; still and dark for over 20 min needed, or still for over 1 h", "night"},
             {"03:00:00", "still=1500 dark=1260 light=2", true,
              "still for 25 min and dark for 21 min, more than 20 min at night", "night"},
             {"03:00:00", "still=1200 dark=1200 light=2", false,
              "still for 20 min, dark for 20 min; still and dark for over 20 min needed, or still for over 1 h",
              "night"},
             {"03:00:00", "still=7200 dark=9000 light=80", false,
              "still for 2 h; still for over 2 h needed, as it is light (80 lx)", "night"},
             {"03:00:00", "still=9000 dark=0 light=80", true,
              "still for 2 h 30 min, more than 2 h at night, as it is light (80 lx)", "night"},
             {"03:00:00", "still=-1 dark=7200 off=720 light=1", false,
              "screen off for 12 min; screen off for 30 min needed, as stillness is not known", "night"},
             {"03:00:00", "still=0 dark=60 off=0 light=1", false,
              "the screen is not off, dark for 1 min; dark and screen off for 30 min needed, as the phone moves",
              "night"},
             {"03:00:00", "still=0 dark=7200 off=2700 light=1", true,
              "dark for 2 h and screen off for 45 min, at least 30 min at night, as the phone moves", "night"},
             {"07:00:00", "still=20000 dark=9000 off=3600 light=1 alarm=08:55:00", false,
              "screen off for 1 h; screen off for over 1 h needed", "morning"},
             {"07:00:00", "still=2700 dark=0 off=7200 light=20 alarm=08:55:00", false,
              "still for 45 min, not dark at 20 lx; dark for over 30 min needed, or still for over 4 h", "morning"},
             {"07:00:00", "still=18000 dark=0 off=7200 light=20 alarm=08:55:00", true,
              "screen off for 2 h, more than 1 h, and still for 5 h, more than 4 h in the morning", "morning"},
             {"07:00:00", "still=2700 dark=2700 off=7200 light=1 alarm=08:55:00", true,
              "screen off for 2 h, more than 1 h, and still for 45 min and dark for 45 min, more than 30 min in the "
              "morning",
              "morning"},
             {"03:00:00", "still=9000 alarm=03:14:00", false, "the alarm of 03:14 is near", "alarm near"},
             {"03:00:00", "still=9000 alarm=02:46:00", false, "the alarm of 02:46 was just now", "alarm near"},
             {"13:00:00", "still=9000 dark=9000 off=9000", false, "nobody is taken for asleep between noon and 21:00",
              "day"},
         }) {
        Night night("UTC", "2026-03-01T12:30:00");
        const Story::Night told = Read(Collected(night, c.time, c.record));
        ASSERT_EQ(told.readings.size(), 1U) << c.time << " " << c.record;
        const Event& event = told.events.at(told.readings[0].event);
        EXPECT_EQ(Reason(told, 0), c.reason) << c.time << " " << c.record;
        EXPECT_EQ(event.text.starts_with("asleep, expected up at "), c.isAsleep) << event.text;
        EXPECT_EQ(told.readings[0].isAsleep, c.isAsleep) << c.record;
        EXPECT_EQ(event.outcome, c.isAsleep ? Outcome::DONE : Outcome::KEPT);
        EXPECT_EQ(ValueOf(event, "rule"), std::string(c.rule) + (c.isAsleep ? " (asleep)" : " (awake)"));
    }
}

TEST(SleepStory, NightSleepGoesOnUntilSomethingWakesAndThatIsNamed) {
    for (
        const auto& [record, text] : {
            std::pair{"still=600 dark=5600 light=1 unlock=7 ons=2",
                      "(kept sleeps on: asleep at 03:00 already, and since then still, not unlocked and the screen on "
                      "no more than once)"},
            {"still=600 dark=5000 light=1 unlock=7 ons=1",
             "done awake: it did not stay dark; still for 10 min; still for over 20 min needed, or still for over 1 h"},
            {"still=600 dark=5600 light=60 unlock=7 ons=1",
             "(kept sleeps on: asleep at 03:00 already, and since then still, not unlocked and the screen on no more "
             "than once)"},
            {"still=600 dark=0 light=60 unlock=7 ons=1",
             "done awake: it became light; still for 10 min; still for over 2 h needed, as it is light (60 lx)"},
            {"still=600 dark=0 light=50 unlock=7 ons=1",
             "done awake: no light read to go on by; still for 10 min, no light read (counts as 50 lx); still and dark "
             "for over 20 min needed, or still for over 1 h"},
            {"still=600 dark=5600 light=1 unlock=8 ons=1",
             "done awake: the phone was unlocked; still for 10 min; still for over 20 min needed, or still for over "
             "1 h"},
            {"still=600 dark=5600 light=1 unlock=7 ons=3",
             "done awake: the screen came on twice; still for 10 min; still for over 20 min needed, or still for over "
             "1 h"},
            {"still=0 dark=5600 off=600 light=1 unlock=7 ons=1",
             "done awake: screen off for 10 min; screen off for 30 min needed, as the phone moves"},
        }) {
        EXPECT_EQ(
            Told(Read(Records({{"03:00:00", "still=5000 dark=5000 light=2 unlock=7 ons=1"}, {"03:10:00", record}})))
                .back(),
            std::string("03:10:00 ") + text);
    }
}

TEST(SleepStory, TheAlarmAndTheWakeUpAreToldWithTheirTimes) {
    EXPECT_THAT(
        Told(Read(Records({{"02:00:30", "still=5000 alarm=03:30:00"},
                           {"03:50:00", "still=5000"},
                           {"04:30:00", "still=5000"},
                           {"05:59:00", "still=9000 alarm=07:30:00"},
                           {"06:05:00", "still=20000 off=9000"},
                           {"06:40:00", "still=20000 off=9000 alarm=07:30:00"},
                           {"09:00:00", "still=20000 off=9000"}}))),
        Are({"02:00:30 done asleep, expected up at 03:30 by the alarm of 03:30: still for 1 h 23 min, more than 1 "
             "h at night",
             "03:50:00 done awake: the alarm of 03:30 rang within the hour",
             "04:30:00 done asleep, expected up at 06:45 by the built-in 06:15: still for 1 h 23 min, more than "
             "1 h at night",
             "05:59:00 (kept sleeps on: still for 2 h 30 min, more than 1 h at night)",
             "06:05:00 done awake: the wake-up expected at 06:20 by the built-in 06:15 is near",
             "06:40:00 done asleep, expected up at 08:10 by the alarm of 07:30: screen off for 2 h 30 min, more "
             "than 1 h, and still for 5 h 33 min, more than 4 h in the morning",
             "09:00:00 done awake: the wake-up expected at 06:15 by the built-in 06:15 has passed"}));
    Night tablet;
    EXPECT_THAT(Told(Read(Collected(tablet.Host("standby_mode", "1"), "07:05:00", "still=20000 off=9000"))).back(),
                StartsWith("07:05:00 done asleep, expected up at 08:20 by the built-in 08:15: "));
}

TEST(SleepStory, WhatOverrulesTheRulesIsToldInItsOwnWords) {
    const char* kHour = ": still for 1 h 23 min, more than 1 h at night";
    for (const auto& [type, use] : {std::pair{2, "audio is playing"}, {8, "a call"}, {4, "sport is being tracked"}}) {
        Night night;
        night.Message(101, R"({"typeId": )" + std::to_string(type) + R"(, "started": true})");
        const Story::Night told = Read(Collected(night, "03:00:00", "still=5000 light=9 alarm=03:30:00"));
        EXPECT_EQ(Told(told).back(), std::string("03:00:00 kept not asleep: ") + use);
        EXPECT_EQ(ValueOf(told.events.at(told.readings.at(0).event), "rule"), "night (asleep)");
        EXPECT_EQ(
            ValueOf(told.events.at(told.readings.at(0).event), "needed"),
            "still for over 1 h, or still and dark for over 20 min, or still for 30 min (pitch dark, covered); no "
            "audio, call or sport");
        EXPECT_TRUE(told.readings.at(0).isAsleep) << "the models said so, which is why the alarm is remembered";
    }
    const char* kTest = R"(["DUMP_SIMULATE_SENSOR", "DUMP_STRATGY_DETAIL", "-ST", "--SetMode", "1"])";
    Night lit;
    Collected(lit.Dump(kTest).AdvanceTo("02:59").ScreenOn(), "03:00:00", "still=5000");
    Collected(lit.AdvanceTo("03:05").ScreenOff(), "03:10:00", "still=5000");
    const Story::Night litNight = Read(lit.AdvanceTo("03:20").ScreenOn());
    EXPECT_THAT(Told(litNight),
                Are({std::string("03:00:00 kept asleep, but kept and not announced, as the screen is lit") + kHour,
                     std::string("03:10:00 kept asleep, but not announced, as it was judged so before") + kHour,
                     "03:20:00 kept awake as before, and said again: screen on"}));
    EXPECT_EQ(litNight.At(Story::LaneId::SLEEP).Intervals().size(), 1U) << "nobody heard of it";
    EXPECT_TRUE(litNight.readings.at(0).isAsleep && litNight.readings.at(1).isAsleep);

    Night strict;
    Collected(strict, "00:05:00", "still=1500 dark=1500 light=1");
    Collected(strict.AdvanceTo("00:10").System("COMMON_EVENT_SCREEN_UNLOCKED"), "00:20:00",
              "still=1500 dark=1500 light=2");
    Collected(strict, "00:30:00", "still=1800 dark=1800 light=3");
    const Story::Night strictNight = Read(strict);
    EXPECT_THAT(Told(strictNight),
                Are({StartsWith("00:05:00 done asleep"),
                     "00:20:00 done awake: the stricter rule, in force since the user was up at 00:10, "
                     "does not agree",
                     StartsWith("00:30:00 done asleep")}));
    EXPECT_EQ(ValueOf(strictNight.events.at(strictNight.readings.at(1).event), "stricter rule"),
              "in force since 00:10");
    EXPECT_FALSE(strictNight.readings.at(1).isAsleep);

    Night unheard;
    Collected(unheard.Fail("CommonEventManager.PublishCommonEvent"), "03:00:00", "still=5000");
    EXPECT_THAT(
        Told(Read(Collected(unheard, "03:10:00", "still=5000"))),
        Are({std::string("03:00:00 failed asleep, expected up at 06:15 by the built-in 06:15, but nobody hears of "
                         "it, as the broadcast failed") +
                 kHour,
             std::string("03:10:00 kept asleep, but not announced, as it was judged so before") + kHour}));
    Night elsewhere;
    EXPECT_THAT(
        Told(Read(Collected(elsewhere.Message(11, R"({"isSleep": true})"), "21:10:00", "still=720 dark=3000 light=1"))),
        Are({"21:00:00 happened asleep: a message from elsewhere says so",
             "21:10:00 kept not asleep, which nobody is told again: still for 12 min; still for 48 min needed"}));
}

/// One look each ten minutes of a phone as it is, its screen off from the start on.
Night Looks(const std::string& start, std::initializer_list<std::pair<const char*, const char*>> facts) {
    Night night("UTC", start);
    for (const auto& [name, json] : facts) {
        night.Device(name, json);
    }
    return night.ScreenOff();
}

TEST(SleepStory, WhatIsNotReadIsNamedAndWhatStandsInForIt) {
    struct Case {
        Night night;
        const char* time;
        const char* reason;
        std::array<const char*, 4> values;  ///< still for, dark for, light, proximity
    };
    Night unlocked("UTC", "2026-03-01T21:00:00");
    unlocked.System("COMMON_EVENT_SCREEN_UNLOCKED").AdvanceMs(1000).ScreenOff();
    Night uncovered = unlocked;
    uncovered.Device("proximity", "5");
    const char* kStill = R"({"value": 1, "at": 1772398800000})";  // since 21:00
    Night lost = Looks("2026-03-02T00:00:00", {{"light", "90"}, {"proximity", "5"}, {"movement", R"({"value": 2})"}});
    lost.AdvanceTo("00:05").Set(R"({"light": 3})").AdvanceTo("00:15").Set(R"({"light": null})");
    Night brightened = Looks("2026-03-01T21:00:00", {{"light", "90"}, {"proximity", "5"}, {"movement", kStill}});
    brightened.AdvanceTo("21:10:00.500").Set(R"({"light": 3})");
    for (const Case& c : {
             Case{unlocked,
                  "21:00:02",
                  "stillness is not known, no light read, unlocked; still and dark for 50 min needed",
                  {"an unknown time", "no time: no light read, unlocked", "not read", "not read (counts as covered)"}},
             {unlocked,
              "21:10:02",
              "stillness is not known, neither light nor proximity read (not counted as dark); still and dark for 48 "
              "min needed",
              {"an unknown time", "no time: neither light nor proximity read (not counted as dark)", "not read",
               "not read (counts as covered)"}},
             {unlocked,
              "21:20:02",
              "stillness is not known, no light read (counts as 50 lx); still and dark for 47 min needed",
              {"an unknown time", "no time: no light read (counts as 50 lx)", "not read (counts as 50 lx)",
               "not read (counts as covered)"}},
             {uncovered,
              "21:10:02",
              "stillness is not known, no light read (counts as dark only now); still and dark for 48 min needed",
              {"an unknown time", "no time: no light read (counts as dark only now)", "not read", "5 (nothing near)"}},
             {Looks("2026-03-02T00:00:00", {{"light", "3"}, {"proximity", "5"}}),
              "00:30:01",
              "dark for longer than the phone tells and screen off for 30 min 01 s, at least 30 min at night, as "
              "stillness "
              "is not known",
              {"an unknown time", "longer than the phone tells", "3 lx", "5 (nothing near)"}},
             {Looks("2026-03-02T00:00:00", {{"proximity", "5"}, {"movement", R"({"value": 1})"}}),
              "00:00:01",
              "still for longer than the phone tells, more than 1 h at night",
              {"longer than the phone tells", "longer than the phone tells (no light is read)", "not read",
               "5 (nothing near)"}},
             {lost,
              "00:20:01",
              "screen off for 20 min, counted as dark for 10 min as no light is read; dark and screen off for 30 min "
              "needed, as the phone moves",
              {"no time: the phone moves", "10 min (no light is read)", "not read (counts as 3 lx)",
               "5 (nothing near)"}},
             {lost,
              "00:40:01",
              "counted as dark for 30 min as no light is read and screen off for 40 min, at least 30 min at night, as "
              "the phone moves",
              {"no time: the phone moves", "30 min (no light is read)", "not read", "5 (nothing near)"}},
             {brightened,
              "21:10:01",
              "still for 10 min, dark only now; still and dark for 48 min needed",
              {"10 min", "no time: dark only now", "3 lx", "5 (nothing near)"}},
             {Looks("2026-03-01T21:00:00", {{"light", "0"}, {"proximity", "0"}, {"movement", R"({"value": 2})"}}),
              "21:10:01",
              "the phone moves, covered (not counted as dark); still and dark for 48 min needed",
              {"no time: the phone moves", "no time: covered (not counted as dark)", "0 lx", "0 (covered)"}},
             {Looks("2026-03-01T21:00:00", {{"light", "0"}, {"movement", R"({"value": 2})"}}),
              "21:10:01",
              "the phone moves, no proximity read (not counted as dark); still and dark for 48 min needed",
              {"no time: the phone moves", "no time: no proximity read (not counted as dark)", "0 lx",
               "not read (counts as covered)"}},
             {Records({{"03:00:00", "still=540 dark=0 light=0 prox=0.0001"}}),
              "03:00:00",
              "still for 9 min, proximity not trusted (not counted as dark); still and dark for over 20 min needed, or "
              "still for 30 min (pitch dark, proximity not trusted and counted as covered), or still for over 1 h",
              {"9 min", "no time: proximity not trusted (not counted as dark)", "0 lx",
               "not trusted (counts as covered)"}},
             {Records({{"03:00:00", "still=2400 dark=0 light=-1 prox=0"}}),
              "03:00:00",
              "still for 40 min (no light read, counted as pitch dark, covered), at least 30 min at night",
              {"40 min", "no time: no light read, covered (not counted as dark)", "not read", "0 (covered)"}},
         }) {
        const Story::Night told = Read(c.night, c.time);
        const Event& event = told.events.at(told.readings.back().event);
        EXPECT_EQ(TimeZone::Format(event.t, "%H:%M:%S"), c.time);
        EXPECT_EQ(Reason(told, told.readings.size() - 1), c.reason);
        for (const auto& [i, name] : {std::pair{0, "still for"}, {1, "dark for"}, {2, "light"}, {3, "proximity"}}) {
            EXPECT_EQ(ValueOf(event, name), c.values[i]) << c.reason;
        }
    }
}

TEST(SleepStory, EachVerdictHoldsAllThatDecidedAndIsARepeatWhereTheKindOfReasonIs) {
    Night night = Looks("2026-03-01T23:30:00", {{"light", "80"}, {"proximity", "5"}, {"movement", R"({"value": 2})"}});
    const Story::Night told = Read(night.AdvanceTo("23:45").Set(R"({"light": 0})"), "00:05");
    EXPECT_THAT(Told(told),
                Are({"23:30:01 kept not asleep: the phone moves, not dark at 80 lx; still and dark for 25 min needed",
                     "23:40:01 (kept not asleep: the phone moves, not dark at 80 lx; still and dark for 23 min needed)",
                     "23:50:01 (kept not asleep: the phone moves, dark only now; still and dark for 22 min needed)",
                     "00:00:01 kept not asleep: dark for 10 min; dark for 30 min needed, as the phone moves"}));
    ASSERT_EQ(told.readings.size(), 4U);
    std::string values;
    for (const Story::Value& value : told.events.at(told.readings[3].event).values) {
        values += value.name + ": " + value.text + "\n";
    }
    EXPECT_EQ(values,
              "rule: night (awake)\nstill for: no time: the phone moves\ndark for: 10 min\nscreen off for: 30 min\n"
              "light: 0 lx\nproximity: 5 (nothing near)\nnext alarm: not known\n"
              "wake-up expected: 06:15 (the built-in 06:15 plus the 1 s of 00:00)\n"
              "needed: dark and screen off for 30 min, as the phone moves\n");
}

TEST(SleepStory, AVerdictSaysWhenItIsLookedAtAgain) {
    const auto next = [](const Night& night, const std::string& end) {
        const Story::Night told = Read(night, end);
        const Event* last = told.LastBefore(told.end, Subject::SLEEP, [](const Event&) { return true; });
        return TimeZone::Format(last->t, "%H:%M:%S ") + last->next;
    };
    Night plain = Looks("2026-03-01T22:00:05", {});
    EXPECT_EQ(next(plain, "22:05"), "22:00:06 looked at again at 22:10 if the screen stays off");
    EXPECT_EQ(next(Collected(plain, "22:03:00", "still=1"), "22:05"),
              "22:03:00 looked at again at 22:10 if the screen stays off")
        << "a record from elsewhere does not move the rhythm";
    EXPECT_EQ(next(plain, "08:30"), "07:50:06 not looked at between 08:00 and 21:00 while awake");
    Night lit = Looks("2026-03-01T22:00:05", {{"light", "0"}, {"proximity", "5"}, {"movement", R"({"value": 1})"}});
    EXPECT_EQ(next(lit.AdvanceTo("03:12").ScreenOn(), "03:30"),
              "03:12:00 looked at again when the screen goes off, at 03:20 at the earliest");
    Night early = Looks("2026-03-02T05:30:00", {{"light", "0"}, {"proximity", "5"}, {"movement", R"({"value": 1})"}});
    EXPECT_EQ(
        next(early.AdvanceTo("05:59").ScreenOn().AdvanceTo("06:01").ScreenOff().AdvanceTo("06:01:00.500").ScreenOn(),
             "15:00"),
        "06:01:01 looked at again when the screen goes off, at 06:11 at the earliest; not looked at between 08:00 and "
        "21:00 while awake");
    Night slept =
        Looks("2026-03-02T05:30:00", {{"light", "0"},
                                      {"proximity", "5"},
                                      {"movement", R"({"value": 1})"},
                                      {"settings", R"({"SETTINGSDATA": {"nearestAlarmingTime": "1772440200000"}})"}});
    EXPECT_EQ(next(slept.AdvanceTo("07:15").ScreenOn(), "15:00"),
              "07:15:00 looked at again when the screen goes off, at 07:20 at the earliest; not looked at between noon "
              "and 21:00");
    Night debug = Looks("2026-03-01T13:00:00", {{"parameters", R"({"persist.sys.standby_ext_debug_on": "1"})"}});
    EXPECT_EQ(next(debug, "13:00:05"), "13:00:01 looked at again at 13:00 if the screen stays off");
    EXPECT_EQ(next(debug, "13:01:00"), "13:00:49 looked at again at 13:01 if the screen stays off");
}

TEST(SleepStory, TheVerdictIsTheRecordsAlsoWhereTheKnownRulesSayElse) {
    std::istringstream trace(Night("UTC", "2026-03-02T02:00:00").Text());
    const Replay::Trace header = Replay::ReadTrace(trace, "test");
    for (const bool isAsleep : {true, false}) {
        Story::NightReader reader;
        reader.OnBegin(header);
        AAFwk::Want want;
        want.SetParam("mUserStationaryDuration", isAsleep ? 60 : 5000);
        reader.OnDeliver(header.start, DevStandbyMgr::StandbyMessage(100, {}, want));
        const std::string line =
            std::string("predict baseline result: ") + (isAsleep ? "1" : "0") + ", wakeup time: -1";
        reader.OnLog(header.start, {LogLevel::INFO, 0, "", "sleep_detection_strategy.cpp", "", 0, line});
        if (isAsleep) {
            reader.OnCall(header.start, "CommonEventManager.PublishCommonEvent",
                          {{"action", "COMMON_EVENT_USER_SLEEP_STATE_CHANGED"},
                           {"want", {{"isSleep", true}, {"wakeupTime", -1}}}},
                          true);
        }
        reader.OnEnd(header.start, {});
        const Story::Night& told = reader.Result();
        EXPECT_THAT(Told(told), Are({isAsleep ? "02:00:00 done asleep" : "02:00:00 kept not asleep"}));
        EXPECT_EQ(ValueOf(told.events.back(), "rule"), isAsleep ? "not known (asleep)" : "not known (awake)");
        EXPECT_EQ(ValueOf(told.events.back(), "needed"), "");
        EXPECT_EQ(told.readings.at(0).isAsleep, isAsleep);
    }
}

/// Whatever a record holds, the rules told are those that made its verdict: none is left without one.
TEST(SleepStory, NoVerdictOfTheDetectorIsLeftWithoutItsRule) {
    Night night("UTC", "2026-03-01T12:00:00");
    std::mt19937 random(1);
    const auto any = [&random](std::initializer_list<const char*> of) {
        return std::string(of.begin()[random() % of.size()]);
    };
    for (int i = 0; i < 1200; ++i) {
        const std::initializer_list<const char*> kLengths = {"-1",   "0",     "1",     "1200",  "1201", "1799",
                                                             "1800", "1801",  "2400",  "3600",  "3601", "7200",
                                                             "7201", "10799", "10800", "14400", "14401"};
        night.AdvanceMs(419'000).Message(
            100, R"({"mUserStationaryDuration": )" + any(kLengths) + R"(, "mLightDarkDuration": )" + any(kLengths) +
                     R"(, "mScrOffDuration": )" + any(kLengths) + R"(, "mLight": )" +
                     any({"-1.0", "0.0", "0.01", "0.02", "3.0", "50.0", "50.1", "99.0", "100.0"}) +
                     R"(, "mProximity": )" + any({"-1.0", "0.01", "0.02"}) + R"(, "mUnlockTimestamp": )" +
                     any({"7", "7", "7", "8"}) + R"(, "mScrOnCount": )" + any({"3", "4", "5"}) + "}");
    }
    const Story::Night told = Read(night);
    EXPECT_EQ(told.readings.size(), 1200U);
    std::map<std::string, int> rules;
    for (const Story::SleepReading& reading : told.readings) {
        ++rules[ValueOf(told.events.at(reading.event), "rule")];
    }
    rules.erase("day (awake)");
    EXPECT_EQ(rules.size(), 7U) << ::testing::PrintToString(rules);
    EXPECT_EQ(rules.count("not known (awake)") + rules.count("not known (asleep)"), 0U);
    EXPECT_GT(rules["night, sleep continued (asleep)"], 9);
}
}  // namespace
}  // namespace TARN::Tests
