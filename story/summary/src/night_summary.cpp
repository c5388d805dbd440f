#include "night_summary.h"

#include <algorithm>
#include <map>
#include <utility>

#include "figures.h"
#include "phrases.h"
#include "stretches.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr int64_t kHourMs = 3'600'000;
constexpr int64_t kDayMs = 24 * kHourMs;
/// From here on a share of the whole time says more than hours do.
constexpr int64_t kManyDaysMs = 3 * kDayMs;
/// A trace longer than this holds more nights than anybody reads.
constexpr int64_t kMostNightsMs = 62 * kDayMs;
/// Whoever sleeps no longer than this beyond noon sleeps late.
constexpr int64_t kLieInMs = 6 * kHourMs;
constexpr char kNothing[] = "–";

/// How long in all, and what part of the night that is where hours alone say little.
std::string Total(const Night& night, int64_t ms) {
    const int64_t whole = night.end - night.start;
    if (whole < kManyDaysMs) {
        return Duration(ms);
    }
    const int64_t percent = (200 * ms + whole) / (2 * whole);
    return Duration(ms) + (percent == 0 ? " (under 1 %)" : " (" + std::to_string(percent) + " %)");
}

std::string StillSo(const Night& night, LaneId lane) {
    const Interval* now = night.At(lane).Now();
    return now != nullptr && Counts(lane, *now) ? ", still so at the end" : "";
}

/// The intervals that count and have a length: not what the last instant of a trace began.
Intervals Lasting(const Night& night, LaneId lane) {
    Intervals intervals = Counted(night, lane);
    std::erase_if(intervals, [](const Interval& one) { return one.from == one.to; });
    return intervals;
}

/// The row of a lane; `more` is said of it besides.
std::string Tell(const Night& night, LaneId lane, const std::string& more = {}) {
    const LaneTally tally = night.At(lane).Tally(lane);
    if (tally.LastingTimes() == 0) {
        return kNothing;
    }
    const Dates dates = night.end - night.start > kDayMs ? Dates::SAID : Dates::UNSAID;
    return Total(night, tally.TotalMs()) + ", " + Stretches(tally, dates) + StillSo(night, lane) +
           (more.empty() ? "" : "; " + more);
}

/// A night lasts from noon to noon of the local clock, and is named by the local day of its evening, counted from
/// 1970-01-01.
int64_t EveningOf(int64_t t) {
    const int64_t sinceNoon = t + Replay::TimeZone::OffsetMs(t) - kDayMs / 2;
    return sinceNoon / kDayMs - (sinceNoon % kDayMs < 0 ? 1 : 0);
}

/// The local midnight that begins a day, or an instant within an hour or two of it.
int64_t MidnightOf(int64_t day, int64_t near) {
    return day * kDayMs - Replay::TimeZone::OffsetMs(near);
}

/// The noon that ends a night, as exact.
int64_t NoonAfter(int64_t evening, int64_t near) {
    return MidnightOf(evening + 1, near) + kDayMs / 2;
}

/// The nights from that of one evening to that of another: "Sun 1 to Mon 2 Mar".
std::string NameOfNights(int64_t firstEvening, int64_t lastEvening, int64_t near) {
    const auto format = [near](int64_t day, const char* how) {
        return Replay::TimeZone::Format(MidnightOf(day, near) + kDayMs / 2, how);
    };
    const int64_t morning = lastEvening + 1;
    const bool isOneMonth = format(firstEvening, "%b") == format(morning, "%b");
    return format(firstEvening, isOneMonth ? "%a %-d" : "%a %-d %b") + " to " + format(morning, "%a %-d %b");
}

/// Nights of a long trace that are told in one row: one, or several without sleep.
struct Row {
    int64_t firstEvening;
    int64_t lastEvening;
    Intervals asleep;

    [[nodiscard]] int64_t Nights() const noexcept { return lastEvening - firstEvening + 1; }
};

std::vector<Row> RowsOf(const Night& whole, const Intervals& asleep) {
    std::map<int64_t, Intervals> nights;
    // The first and the last night count if there is an evening and a morning of them, or sleep.
    const int64_t first = EveningOf(whole.start);
    const int64_t last = EveningOf(whole.end);
    for (int64_t evening = first; evening <= last; ++evening) {
        const int64_t midnight = MidnightOf(evening + 1, evening == first ? whole.start : whole.end);
        if (whole.start < midnight && midnight < whole.end) {
            nights[evening] = {};
        }
    }
    for (Interval rest : asleep) {
        int64_t evening = EveningOf(rest.from);
        // Who sleeps on far into the next evening sleeps in that night too.
        for (int64_t noon = NoonAfter(evening, rest.to); rest.to > noon + kLieInMs;
             noon = NoonAfter(++evening, rest.to)) {
            nights[evening].push_back(rest);
            nights[evening].back().to = rest.from = noon;
        }
        nights[evening].push_back(rest);
    }
    std::vector<Row> rows;
    for (auto& [evening, intervals] : nights) {
        if (intervals.empty() && !rows.empty() && rows.back().asleep.empty()) {
            rows.back().lastEvening = evening;
        } else {
            rows.push_back({evening, evening, std::move(intervals)});
        }
    }
    return rows;
}

std::vector<SummaryLine> Asleep(const Night& whole) {
    const Intervals asleep = Lasting(whole, LaneId::SLEEP);
    const bool isLong = whole.end - whole.start > kMostNightsMs;
    const std::vector<Row> rows = isLong ? std::vector<Row>() : RowsOf(whole, asleep);
    if (rows.size() < 2) {
        return {{"asleep", asleep.empty() ? "not asleep" : Tell(whole, LaneId::SLEEP)}};
    }
    std::vector<std::string> names;
    size_t width = 0;
    int64_t nights = 0;
    for (const Row& row : rows) {
        names.push_back(NameOfNights(row.firstEvening, row.lastEvening, whole.start));
        width = std::max(width, names.back().size() + 2);
        nights += row.Nights();
    }
    const int64_t total = TotalMs(asleep);
    std::vector<SummaryLine> lines{{"asleep", Duration(total) + " in all, " + Duration(total / nights) + " a night"}};
    for (size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        std::string text = names[i] + std::string(width - names[i].size(), ' ');
        if (row.asleep.empty()) {
            text += "not asleep" + (row.Nights() > 1 ? ", " + Count(row.Nights(), "night") : "");
        } else {
            const bool isLast = row.asleep.back().to == whole.end;
            text += Duration(TotalMs(row.asleep)) + ", " + Stretches(row.asleep, Dates::UNSAID) +
                    (isLast ? StillSo(whole, LaneId::SLEEP) : "");
        }
        lines.push_back({"", std::move(text), width});
    }
    return lines;
}

/// "at most 11 native processes".
std::string AtMost(int64_t most, std::string_view noun) {
    return "at most " + Count(most, noun);
}

std::string Timers(const Night& night, int64_t longMs) {
    return Tell(night, LaneId::TIMERS, longMs == 0 ? "" : Duration(longMs) + " of it to 600 s");
}

std::string Killed(const Figures& figures) {
    const auto apps = static_cast<int64_t>(figures.killed.size());
    return figures.kills == 0
               ? kNothing
               : Count(apps, "app") + (figures.kills == apps ? "" : ", " + Times(figures.kills) + " in all") + ": " +
                     Names(figures.killed);
}

std::vector<SummaryLine> Again(const Night& night) {
    std::vector<SummaryLine> lines;
    for (const auto& [text, count] : night.again) {
        lines.push_back({lines.empty() ? "again" : "", text + ", " + Times(count) + " more"});
    }
    return lines;
}

}  // namespace

std::vector<SummaryLine> Summarise(const Night& night) {
    const Figures figures = Measure(night);
    std::vector<SummaryLine> lines = Asleep(night);
    lines.push_back({"bluetooth off", Tell(night, LaneId::BLUETOOTH)});
    lines.push_back({"wifi off", Tell(night, LaneId::WIFI)});
    lines.push_back({"modem off", Tell(night, LaneId::MODEM)});
    lines.push_back({"firewall on", Tell(night, LaneId::FIREWALL)});
    lines.push_back({"frozen", Tell(night, LaneId::FROZEN, AtMost(figures.mostFrozen, "native process"))});
    lines.push_back({"locks proxied", Tell(night, LaneId::LOCKS, AtMost(figures.mostProxied, "process"))});
    lines.push_back({"timers stretched", Timers(night, figures.stretchedLongMs)});
    lines.push_back({"killed", Killed(figures)});
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
