#include "night_summary.h"

#include <algorithm>
#include <map>

#include "figures.h"
#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr int64_t kMinuteMs = 60'000;
constexpr int64_t kHourMs = 60 * kMinuteMs;
constexpr int64_t kDayMs = 24 * kHourMs;
/// A trace longer than this holds more than one night.
constexpr int64_t kOneNightMs = 36 * kHourMs;
/// A trace longer than this holds more nights than anybody reads.
constexpr int64_t kMostNightsMs = 62 * kDayMs;
/// More stretches than these are told as a number.
constexpr size_t kMostSpans = 3;
constexpr char kNothing[] = "–";

using Intervals = std::vector<Interval>;

/// For the eye only: joins what a clock of minutes does not part.
Intervals Joined(const Intervals& intervals) {
    Intervals joined;
    for (const Interval& interval : intervals) {
        if (!joined.empty() && interval.from - joined.back().to < kMinuteMs) {
            joined.back().to = interval.to;
        } else {
            joined.push_back(interval);
        }
    }
    return joined;
}

std::string FromTo(const Interval& interval) {
    const std::string from = Clock(interval.from);
    const std::string to = Clock(interval.to);
    return from == to ? from : from + " – " + to;
}

std::string FromTo(const Intervals& intervals) {
    std::string text;
    for (const Interval& interval : intervals) {
        text += (text.empty() ? "" : ", ") + FromTo(interval);
    }
    return text;
}

std::string Spans(const Intervals& intervals) {
    const Intervals joined = Joined(intervals);
    const bool isShort = joined.size() <= kMostSpans && joined.back().to - joined.front().from < kDayMs;
    return isShort && joined.size() == intervals.size() ? FromTo(joined)
                                                        : Times(static_cast<int64_t>(intervals.size()));
}

std::string Tell(const Night& night, LaneId lane) {
    const Intervals intervals = Counted(night, lane);
    if (intervals.empty()) {
        return kNothing;
    }
    const bool isStill = intervals.back().to == night.end;
    return Duration(TotalMs(intervals)) + ", " + Spans(intervals) + (isStill ? ", still so at the end" : "");
}

/// One night of a long trace, from noon to noon.
struct Row {
    std::string evening;
    std::string morning;
    bool hasEvening = false;
    bool hasMorning = false;
    Intervals asleep;
};

constexpr char kDay[] = "%a %-d %b";

/// Names the night that an instant belongs to: by the day on whose evening it begins.
std::string EveningOf(int64_t t) {
    return Replay::TimeZone::Format(t - kDayMs / 2, kDay);
}

std::vector<Row> NightsBetween(int64_t start, int64_t end) {
    std::vector<Row> nights;
    for (int64_t t = start; t < end; t += kHourMs) {
        std::string evening = EveningOf(t);
        std::string day = Replay::TimeZone::Format(t, kDay);
        if (nights.empty() || nights.back().evening != evening) {
            nights.push_back({std::move(evening), Replay::TimeZone::Format(t + kDayMs / 2, kDay), false, false, {}});
        }
        Row& night = nights.back();
        (day == night.evening ? night.hasEvening : night.hasMorning) = true;
        if (day != night.evening) {
            night.morning = std::move(day);
        }
    }
    return nights;
}

std::vector<SummaryLine> Asleep(const Night& whole) {
    const Intervals asleep = Counted(whole, LaneId::SLEEP);
    const int64_t length = whole.end - whole.start;
    if (length <= kOneNightMs || length > kMostNightsMs) {
        return {{"asleep", asleep.empty() ? "not asleep" : Tell(whole, LaneId::SLEEP)}};
    }
    std::vector<Row> nights = NightsBetween(whole.start, whole.end);
    for (const Interval& interval : asleep) {
        const auto night =
            std::find_if(nights.begin(), nights.end(),
                         [evening = EveningOf(interval.from)](const Row& one) { return one.evening == evening; });
        if (night != nights.end()) {
            night->asleep.push_back(interval);
        }
    }
    std::vector<SummaryLine> lines;
    for (const Row& night : nights) {
        if (night.asleep.empty() && !(night.hasEvening && night.hasMorning)) {
            continue;
        }
        const std::string when = night.evening + " to " + night.morning + "  ";
        lines.push_back({lines.empty() ? "asleep" : "",
                         when + (night.asleep.empty() ? "not asleep"
                                                      : Duration(TotalMs(night.asleep)) + ", " + Spans(night.asleep))});
    }
    return lines;
}

std::string Frozen(const Night& night) {
    const int64_t most = Measure(night).mostFrozen;
    return most == 0 ? kNothing : "at most " + Count(most, "native process") + "; " + Tell(night, LaneId::FROZEN);
}

std::string Timers(const Night& night) {
    const int64_t longMs = Measure(night).stretchedLongMs;
    return Tell(night, LaneId::TIMERS) + (longMs > 0 ? "; to 600 s for " + Duration(longMs) : "");
}

std::string Killed(const Night& night) {
    const std::vector<std::string> killed = Measure(night).killed;
    return killed.empty() ? kNothing : Count(static_cast<int64_t>(killed.size()), "app") + ": " + Names(killed);
}

/// Warnings and errors that have no words of their own and came again: told once in the timeline, counted here.
std::vector<SummaryLine> Again(const Night& night) {
    std::map<std::string, int64_t> times;
    for (const Event& event : night.events) {
        if (event.isRepeat && (event.subject == Subject::WARNING || event.subject == Subject::ERROR)) {
            ++times[event.text];
        }
    }
    std::vector<SummaryLine> lines;
    for (const auto& [text, count] : times) {
        lines.push_back({lines.empty() ? "again" : "", text + ", " + Times(count) + " more"});
    }
    return lines;
}

}  // namespace

std::vector<SummaryLine> Summarise(const Night& night) {
    std::vector<SummaryLine> lines = Asleep(night);
    lines.push_back({"bluetooth off", Tell(night, LaneId::BLUETOOTH)});
    lines.push_back({"wifi off", Tell(night, LaneId::WIFI)});
    lines.push_back({"modem off", Tell(night, LaneId::MODEM)});
    lines.push_back({"firewall on", Tell(night, LaneId::FIREWALL)});
    lines.push_back({"frozen", Frozen(night)});
    lines.push_back({"killed", Killed(night)});
    lines.push_back({"timers stretched", Timers(night)});
    for (SummaryLine& line : Again(night)) {
        lines.push_back(std::move(line));
    }
    const Replay::Summary& record = night.record;
    lines.push_back({"record", Count(static_cast<int64_t>(record.messages), "message") + ", " +
                                   Count(static_cast<int64_t>(record.calls), "call") + ", " +
                                   Count(static_cast<int64_t>(record.logs), "log line")});
    return lines;
}

}  // namespace TARN::Story
