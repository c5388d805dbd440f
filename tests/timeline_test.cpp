#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "figures.h"
#include "night_reader.h"
#include "night_script.h"
#include "night_summary.h"
#include "phrases.h"
#include "player.h"
#include "time_zone.h"
#include "timeline.h"

namespace TARN::Tests {
namespace {

using namespace Story;
using Replay::TimeZone;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

/// "25:10" or "25:10:30": so many milliseconds after a midnight, whatever the clock shows then.
int64_t Ms(const std::string& time) {
    std::istringstream fields(time);
    int64_t ms = 0;
    int64_t unit = 3'600'000;
    for (std::string field; std::getline(fields, field, ':'); unit /= 60) {
        ms += std::stoi(field) * unit;
    }
    return ms;
}

/// A local midnight, in a zone that is in use from here on.
int64_t Midnight(const std::string& zone, const std::string& date) {
    TimeZone(zone).Use();
    return TimeZone::ParseLocal(date + "T00:00:00");
}

Lines LinesOf(const std::string& text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

/// How many characters a terminal shows.
size_t Width(const std::string& line) {
    return static_cast<size_t>(std::count_if(line.begin(), line.end(),
                                             [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// What a timeline makes of events such as "08:00 on 08:05 off", in which `news` is no part of any use.
Lines Told(int64_t midnight, const std::string& events, const TimelineOptions& options = {}) {
    const auto event = [](Subject subject, Use use, std::string text, Outcome outcome = Outcome::HAPPENED) {
        Event one;
        one.subject = subject;
        one.outcome = outcome;
        one.use = use;
        one.text = std::move(text);
        return one;
    };
    const std::map<std::string, Event> words = {
        {"on", event(Subject::SCREEN, Use::SCREEN_ON, "on")},
        {"off", event(Subject::SCREEN, Use::SCREEN_OFF, "off")},
        {"unlock", event(Subject::SCREEN, Use::UNLOCKED, "unlocked")},
        {"plug", event(Subject::CHARGER, Use::PLUGGED, "charging")},
        {"unplug", event(Subject::CHARGER, Use::UNPLUGGED, "no longer charging")},
        {"idle", event(Subject::STATE, Use::ROUTINE, "NAP")},
        {"news", event(Subject::SLEEP, Use::NONE, "asleep", Outcome::DONE)},
        {"log", event(Subject::INFO_LOG, Use::NONE, "hm", Outcome::NOTED)},
        {"fails", event(Subject::WIFI, Use::NONE, "off failed\033[2J", Outcome::FAILED)},
        {"long", event(Subject::LOCK, Use::NONE, "of häns, pëter and bøb: " + std::string(30, 'x') + " too")},
    };
    std::ostringstream output;
    Timeline timeline(output, options);
    const Story::Night night;
    std::istringstream stream(events);
    for (std::string time, word; stream >> time >> word;) {
        Event one = words.at(word);
        one.t = midnight + Ms(time);
        timeline.OnEvent(night, one);
    }
    timeline.Flush();
    return LinesOf(output.str());
}

TEST(Timeline, FoldsUseIntoOneLineThatCountsWhatChangedAndEndsWithItsDay) {
    struct Case {
        const char* what;
        const char* events;
        Lines lines;
    };
    const int64_t monday = Midnight("UTC", "2026-03-02");
    const std::string heading = "Mon 2 Mar 2026";
    for (const Case& one : {
             Case{"what goes with it is folded too, its last change stays",
                  "08:00 on 08:00 unlock 08:02 off 08:07 idle 09:00 on 09:03 off 10:00 on 10:00 idle 10:30 news",
                  {heading, "08:00:00  screen     on twice until 10:00, lit for 5 min in all, unlocked once",
                   "10:00:00  screen     on", "10:00:00  state      NAP", "10:30:00  sleep      asleep"}},
             Case{"too little to fold; what is no use in front of it",
                  "07:00 off 07:05 idle 08:00 on 08:10 off 08:20 plug",
                  {heading, "07:00:00  screen     off", "07:05:00  state      NAP", "08:00:00  screen     on",
                   "08:10:00  screen     off", "08:20:00  charger    charging"}},
             Case{"it begins when the use begins",
                  "06:00 news 07:05 idle 07:30 unplug 08:00 on 08:00:10 off 08:00:20 on 08:00:50 off",
                  {heading, "06:00:00  sleep      asleep", "07:05:00  state      NAP",
                   "07:30:00  charger    no longer charging",
                   "08:00:00  screen     on twice within a minute, lit for 40 s in all", "08:00:50  screen     off"}},
             Case{"it begins with the screen on",
                  "08:00 on 08:00 news 08:01 unlock 08:05 off 09:00 on 09:02 off 10:00 on 10:01 off 11:00 news",
                  {heading, "08:00:00  screen     on", "08:00:00  sleep      asleep",
                   "08:01:00  screen     off and on again twice until 10:01, lit for 7 min in all, unlocked once",
                   "10:01:00  screen     off", "11:00:00  sleep      asleep"}},
             Case{"nobody has told what the screen was",
                  "08:00 off 09:00 on 09:02 off 10:00 on 10:09 off",
                  {heading, "08:00:00  screen     off and on again twice until 10:09, lit for 11 min in all",
                   "10:09:00  screen     off"}},
             Case{"what is said twice changes nothing",
                  "08:00 on 08:01 on 08:02 off 08:03 off 08:04 on 08:06 off 08:07 plug 08:08 plug 08:09 off",
                  {heading, "08:00:00  screen     on twice until 08:09, lit for 4 min in all, charging once",
                   "08:09:00  screen     off"}},
             Case{"chargers alone",
                  "08:00 plug 08:10 unplug 09:00 plug 09:10 unplug",
                  {heading, "08:00:00  charger    charging twice until 09:10",
                   "09:10:00  charger    no longer charging"}},
             Case{"a charger that was there before",
                  "07:00 plug 07:00 news 08:00 on 08:30 unplug 08:40 off 09:00 plug 09:10 on 09:11 off",
                  {heading, "07:00:00  charger    charging", "07:00:00  sleep      asleep",
                   "08:00:00  screen     on twice until 09:11, lit for 41 min in all, "
                   "charging until 08:30 and once more",
                   "09:11:00  screen     off"}},
             Case{
                 "midnight, with the screen on",
                 "23:00 on 23:01 off 23:30 on 23:33 off 23:58 on 24:03 off 24:10 on 24:11 off 24:20 on 24:21 off",
                 {heading, "23:00:00  screen     on twice until 23:58, lit for 4 min in all", "23:58:00  screen     on",
                  "Tue 3 Mar 2026", "00:03:00  screen     off and on again twice until 00:21, lit for 2 min in all",
                  "00:21:00  screen     off"}},
         }) {
        EXPECT_THAT(Told(monday, one.events), ElementsAreArray(one.lines)) << one.what;
    }
    EXPECT_EQ(Told(monday, "08:00 on 08:01 off 08:02 on 08:03 off 08:04 on", {.isUnfolded = true}).size(), 6U);
}

TEST(Timeline, SaysWhereTheLocalClockIsChanged) {
    struct Case {
        const char* zone;
        const char* date;
        const char* events;
        Lines lines;
    };
    for (const Case& one : {
             Case{"Europe/Berlin",
                  "2026-10-25",
                  "02:59:59 news 03:00 news",
                  {"Sun 25 Oct 2026", "02:59:59  sleep      asleep",
                   "03:00:00  clock      goes back an hour: it is 02:00 again", "02:00:00  sleep      asleep"}},
             Case{"Europe/Berlin",
                  "2026-03-29",
                  "01:00 news 02:00 news 26:00 news",
                  {"Sun 29 Mar 2026", "01:00:00  sleep      asleep",
                   "02:00:00  clock      goes forward an hour: it is 03:00", "03:00:00  sleep      asleep",
                   "Mon 30 Mar 2026", "03:00:00  sleep      asleep"}},
             // A fold ends there too.
             Case{"Europe/Berlin",
                  "2026-10-25",
                  "01:00 on 01:01 off 01:02 on 02:50 off 03:10 on 03:20 off 03:30 on 03:50 off",
                  {"Sun 25 Oct 2026", "01:00:00  screen     on twice until 02:50, lit for 1 h 49 min in all",
                   "02:50:00  screen     off", "03:00:00  clock      goes back an hour: it is 02:00 again",
                   "02:10:00  screen     on twice until 02:50, lit for 30 min in all", "02:50:00  screen     off"}},
             // The day before comes again, or an hour of the day never comes.
             Case{"America/Santiago",
                  "2026-04-04",
                  "23:30 news 24:30 news 25:00 news",
                  {"Sat 4 Apr 2026", "23:30:00  sleep      asleep",
                   "00:00:00  clock      goes back an hour: it is Sat 23:00 again", "23:30:00  sleep      asleep",
                   "Sun 5 Apr 2026", "00:00:00  sleep      asleep"}},
             Case{"America/Santiago",
                  "2026-09-05",
                  "23:30 news 24:30 news",
                  {"Sat 5 Sep 2026", "23:30:00  sleep      asleep", "Sun 6 Sep 2026",
                   "00:00:00  clock      goes forward an hour: it is 01:00", "01:30:00  sleep      asleep"}},
             Case{"Australia/Lord_Howe",
                  "2026-04-05",
                  "01:45 news 02:00 news",
                  {"Sun 5 Apr 2026", "01:45:00  sleep      asleep",
                   "02:00:00  clock      goes back 30 min: it is 01:30 again", "01:30:00  sleep      asleep"}},
         }) {
        EXPECT_THAT(Told(Midnight(one.zone, one.date), one.events), ElementsAreArray(one.lines))
            << one.zone << ' ' << one.events;
    }
}

TEST(Timeline, TellsALineThatRepeatsOnceADayAndAllOfTheLog) {
    EXPECT_THAT(
        Told(Midnight("UTC", "2026-03-02"),
             "08:00 news 09:00 news 09:30:05 news 10:00 log 11:00 log 33:00 log 34:00 log"),
        ElementsAre("Mon 2 Mar 2026", "08:00:00  sleep      asleep (3 times until 09:30:05)", "10:00:00  info       hm",
                    "11:00:00  info       hm", "Tue 3 Mar 2026", "09:00:00  info       hm", "10:00:00  info       hm"));
    EXPECT_THAT(Told(Midnight("UTC", "2026-03-02"), "23:00 news 25:00 news").size(), 4U);
}

TEST(Timeline, GoesOnBelowWhereATerminalEndsAndIsOneLineAnEventElsewhere) {
    const int64_t monday = Midnight("UTC", "2026-03-02");
    const std::string whole = "08:00:00  lock       of häns, pëter and bøb: " + std::string(30, 'x') + " too";
    const std::string indent(21, ' ');
    EXPECT_THAT(Told(monday, "08:00 long"), ElementsAre("Mon 2 Mar 2026", whole));
    EXPECT_THAT(Told(monday, "08:00 long", {.columns = Width(whole)}), ElementsAre("Mon 2 Mar 2026", whole));
    EXPECT_THAT(Told(monday, "08:00 long", {.columns = 30}), ElementsAre("Mon 2 Mar 2026", whole));  // hopeless
    EXPECT_THAT(Told(monday, "08:00 long", {.columns = 54}),
                ElementsAre("Mon 2 Mar 2026", "08:00:00  lock       of häns, pëter and bøb:",
                            indent + std::string(30, 'x'), indent + "too"));
    EXPECT_THAT(Told(monday, "08:00 long", {.columns = 41}),
                ElementsAre("Mon 2 Mar 2026", "08:00:00  lock       of häns, pëter and",
                            indent + "bøb:", indent + std::string(30, 'x'), indent + "too"));
}

TEST(Timeline, PaintsOnlyWhereAskedAndLeavesNothingPainted) {
    const int64_t monday = Midnight("UTC", "2026-03-02");
    EXPECT_THAT(Told(monday, "08:00 fails"), ElementsAre("Mon 2 Mar 2026", "08:00:00  wifi       off failed?[2J"));
    const Lines lines = Told(monday, "08:00 fails 08:00 news 08:00 on 09:00 log", {.isColored = true});
    for (const std::string& line : lines) {
        const size_t last = line.rfind('\033');
        EXPECT_TRUE(last == std::string::npos || line.compare(last, 4, "\033[0m") == 0) << line;
    }
    const auto escapes = [](const std::string& line) { return std::count(line.begin(), line.end(), '\033'); };
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(escapes(lines[1]), 2);  // a failure, all of it
    EXPECT_EQ(escapes(lines[2]), 4);  // the time of the line before, its subject
    EXPECT_EQ(escapes(lines[3]), 2);  // the time alone
    EXPECT_EQ(escapes(lines[4]), 2);  // the log, all of it
}

/// A night of one lane's intervals, "23:40-26:23 27:00-": local hours after the midnight that begins the first day.
Story::Night WithLane(int64_t midnight, LaneId lane, const std::string& span, const std::string& intervals) {
    const bool isSleep = lane == LaneId::SLEEP;
    Story::Night night;
    night.start = midnight + Ms(span.substr(0, span.find('-')));
    night.end = midnight + Ms(span.substr(span.find('-') + 1));
    night.At(lane).Set(night.start, isSleep ? "awake" : "none");
    std::istringstream stream(intervals);
    for (std::string interval; stream >> interval;) {
        const size_t dash = interval.find('-');
        night.At(lane).Set(midnight + Ms(interval.substr(0, dash)), isSleep ? "asleep" : "some", 600);
        if (dash + 1 < interval.size()) {
            night.At(lane).Set(midnight + Ms(interval.substr(dash + 1)), isSleep ? "awake" : "none");
        }
    }
    for (Lane& one : night.lanes) {
        one.End(night.end);
    }
    return night;
}

TEST(Summary, AddsTrueIntervalsAndListsThemSoThatTheyCanBeTold) {
    struct Case {
        const char* what;
        LaneId lane;
        const char* zone;
        const char* date;
        const char* span;
        const char* intervals;
        Lines lines;
    };
    for (const Case& one : {
             Case{"a gap of a second parts",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "20:00-30:00",
                  "22:00-23:00 23:00:01-24:00",
                  {"2 h, 22:00 – 23:00, 23:00 – 00:00; at most 600 processes"}},
             Case{"less than a minute, and what the last instant begins",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "20:00-30:00",
                  "22:00:05-22:00:25 30:00-",
                  {"20 s, 22:00:05 – 22:00:25, still so at the end; at most 600 processes"}},
             Case{"ended by the last instant",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "20:00-30:00",
                  "22:00-30:00",
                  {"8 h, 22:00 – 06:00; at most 600 processes"}},
             Case{"nothing", LaneId::LOCKS, "UTC", "2026-03-01", "20:00-30:00", "30:00-30:00", {"–"}},
             Case{"too many to list",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "00:00-24:00",
                  "1:00-2:00 3:00-4:00 5:00-6:30 7:00-8:00 9:00-",
                  {"19 h 30 min, 5 times, the longest 15 h, still so at the end; at most 600 processes"}},
             Case{"several days: dates, once each, and a share",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "00:00-100:00",
                  "1:00-2:00 3:00-28:00 52:00-53:00",
                  {"27 h (27 %), Sun 1 Mar 01:00 – 02:00, 03:00 – Mon 2 Mar 04:00, Tue 3 Mar 04:00 – 05:00; "
                   "at most 600 processes"}},
             Case{"a share that is hardly one",
                  LaneId::LOCKS,
                  "UTC",
                  "2026-03-01",
                  "00:00-2000:00",
                  "1:00-2:00",
                  {"1 h (under 1 %), Sun 1 Mar 01:00 – 02:00; at most 600 processes"}},
             Case{"the clock is changed in between",
                  LaneId::SLEEP,
                  "Europe/Berlin",
                  "2026-10-24",
                  "22:00-33:00",
                  "23:40-27:23 27:30-31:50",
                  {"8 h 03 min, 23:40 CEST – 02:23 CET, 02:30 – 06:50"}},
             Case{"nights are named where there are several",
                  LaneId::SLEEP,
                  "UTC",
                  "2026-03-31",
                  "00:00-96:00",
                  "23:00-30:00 50:00-51:00 52:00-53:00 60:30-61:00",
                  {"9 h 30 min in all, 3 h 10 min a night", "Tue 31 Mar to Wed 1 Apr  7 h, 23:00 – 06:00",
                   "Wed 1 to Thu 2 Apr       2 h, 02:00 – 03:00, 04:00 – 05:00",
                   "Thu 2 to Fri 3 Apr       30 min, 12:30 – 13:00"}},
             Case{"sleepless nights in a row, a sleep that does not end",
                  LaneId::SLEEP,
                  "UTC",
                  "2026-03-01",
                  "18:00-246:00",
                  "23:00-31:00 216:30-",
                  {"37 h 30 min in all, 3 h 45 min a night", "Sun 1 to Mon 2 Mar    8 h, 23:00 – 07:00",
                   "Mon 2 to Mon 9 Mar    not asleep, 7 nights", "Mon 9 to Tue 10 Mar   11 h 30 min, 00:30 – 12:00",
                   "Tue 10 to Wed 11 Mar  18 h, 12:00 – 06:00, still so at the end"}},
             Case{"nobody slept", LaneId::SLEEP, "UTC", "2026-03-01", "18:00-246:00", "", {"not asleep"}},
         }) {
        const Story::Night night = WithLane(Midnight(one.zone, one.date), one.lane, one.span, one.intervals);
        const std::string row = one.lane == LaneId::SLEEP ? "asleep" : "locks proxied";
        Lines lines;
        std::string name;
        for (const SummaryLine& line : Summarise(night)) {
            name = line.name.empty() ? name : line.name;
            if (name == row) {
                lines.push_back(line.text);
            }
        }
        EXPECT_THAT(lines, ElementsAreArray(one.lines)) << one.what;
    }
}

/// Reads a night and adds up, from the calls alone, how long timers were stretched and the firewall was on.
class Witness : public NightReader {
public:
    using NightReader::NightReader;

    void OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) override {
        if (operation == "TimeServiceClient.AdjustTimer" && result == 0) {
            stretched.Set(t, arguments["adjust"]);
        } else if (operation == "NetPolicyClient.SetDeviceIdlePolicy" && result == 0) {
            firewall.Set(t, arguments["enable"]);
        }
        NightReader::OnCall(t, operation, arguments, result);
    }

    void OnEnd(int64_t t, const Replay::Summary& summary) override {
        stretched.Set(t, false);
        firewall.Set(t, false);
        NightReader::OnEnd(t, summary);
    }

    struct Stopwatch {
        void Set(int64_t t, bool isOn) {
            ms += wasOn ? t - since : 0;
            since = t;
            wasOn = isOn;
        }
        int64_t ms = 0;
        int64_t since = 0;
        bool wasOn = false;
    };
    Stopwatch stretched;
    Stopwatch firewall;
};

TEST(Timeline, OfEveryShippedNightIsInOrderFitsAPageAndAddsUpWhatWasRecorded) {
    size_t nights = 0;
    for (const auto& file : std::filesystem::directory_iterator(TRACES_FOLDER)) {
        if (file.path().extension() != ".jsonl") {
            continue;
        }
        SCOPED_TRACE(file.path().filename().string());
        ++nights;
        std::ifstream input(file.path());
        const Replay::Trace trace = Replay::ReadTrace(input, "night");
        std::ostringstream output;
        Timeline timeline(output, {});
        Witness witness({.leastLog = {}, .view = &timeline});
        Replay::Play(trace, {PluginPath(), {}}, witness);

        std::string last;
        for (const std::string& line : LinesOf(output.str())) {
            if (line.size() > 8 && line[2] == ':' && line[5] == ':') {
                EXPECT_LE(last, line.substr(0, 8)) << line;
                last = line.find("  clock  ") == std::string::npos ? line.substr(0, 8) : "";
            } else {
                EXPECT_LE(Width(line), 100U) << line;
                last.clear();  // perhaps a day's heading
            }
        }
        const std::string text = output.str();
        const auto says = [&text](const std::string& row, int64_t ms) {
            return text.find("\n" + row + (ms == 0 ? "–" : Duration(ms))) != std::string::npos;
        };
        EXPECT_TRUE(says("timers stretched  ", witness.stretched.ms)) << witness.stretched.ms;
        EXPECT_TRUE(says("firewall on       ", witness.firewall.ms)) << witness.firewall.ms;
    }
    EXPECT_GE(nights, 11U);
}

}  // namespace
}  // namespace TARN::Tests
