#include "night_summary.h"

#include <algorithm>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr int64_t kHourMs = 3'600'000;
constexpr int64_t kDayMs = 24 * kHourMs;
/// A trace longer than this holds more than one night.
constexpr int64_t kOneNightMs = 36 * kHourMs;
/// A trace longer than this holds more nights than anybody reads.
constexpr int64_t kMostNightsMs = 62 * kDayMs;
/// More stretches than these are told as a number.
constexpr size_t kMostSpans = 3;
constexpr char kNothing[] = "–";

int64_t Total(const std::vector<Spans::Span>& spans) {
    int64_t total = 0;
    for (const Spans::Span& span : spans) {
        total += span.to - span.from;
    }
    return total;
}

std::string FromTo(const std::vector<Spans::Span>& spans) {
    std::string text;
    for (const Spans::Span& span : spans) {
        text += (text.empty() ? "" : ", ") + Clock(span.from) + " – " + Clock(span.to);
    }
    return text;
}

/// Joins what is less than a minute apart, which a clock of minutes does not show.
std::vector<Spans::Span> Joined(const std::vector<Spans::Span>& spans) {
    constexpr int64_t kMinuteMs = 60'000;
    std::vector<Spans::Span> joined;
    for (const Spans::Span& span : spans) {
        if (!joined.empty() && span.from - joined.back().to < kMinuteMs) {
            joined.back().to = span.to;
        } else {
            joined.push_back(span);
        }
    }
    return joined;
}

std::string Tell(const Spans& what, int64_t end) {
    const std::vector<Spans::Span> spans = Joined(what.Until(end));
    if (spans.empty()) {
        return kNothing;
    }
    const bool isShort = spans.size() <= kMostSpans && spans.back().to - spans.front().from < kDayMs;
    return Duration(Total(spans)) + ", " + (isShort ? FromTo(spans) : Times(static_cast<int64_t>(spans.size()))) +
           (what.IsSo() ? ", still so at the end" : "");
}

/// One night of a long trace, named after the day on whose evening it begins.
struct Night {
    std::string day;
    bool hasEvening = false;
    bool hasMorning = false;
    std::vector<Spans::Span> asleep;
};

/// Names the night that an instant belongs to: a night lies between two noons.
std::string NightOf(int64_t t) {
    return Replay::TimeZone::Format(t - kDayMs / 2, "%a %e %b");
}

std::vector<Night> NightsBetween(int64_t start, int64_t end) {
    std::vector<Night> nights;
    for (int64_t t = start; t < end; t += kHourMs) {
        std::string day = NightOf(t);
        const bool isEvening = day == Replay::TimeZone::Format(t, "%a %e %b");
        if (nights.empty() || nights.back().day != day) {
            nights.push_back({std::move(day), false, false, {}});
        }
        (isEvening ? nights.back().hasEvening : nights.back().hasMorning) = true;
    }
    return nights;
}

}  // namespace

void NightSummary::Freeze(int64_t t, int32_t pid, bool isFrozen) {
    if (isFrozen) {
        frozenPids_.insert(pid);
    } else {
        frozenPids_.erase(pid);
    }
    mostFrozen_ = std::max(mostFrozen_, frozenPids_.size());
    frozen_.Set(t, !frozenPids_.empty());
}

std::vector<NightSummary::Line> NightSummary::Asleep(int64_t start, int64_t end) const {
    const std::vector<Spans::Span> spans = asleep.Until(end);
    if (end - start <= kOneNightMs || end - start > kMostNightsMs) {
        return {{"asleep", spans.empty() ? "not asleep" : Tell(asleep, end)}};
    }
    std::vector<Night> nights = NightsBetween(start, end);
    for (const Spans::Span& span : spans) {
        const auto night = std::find_if(nights.begin(), nights.end(),
                                        [day = NightOf(span.from)](const Night& one) { return one.day == day; });
        if (night != nights.end()) {
            night->asleep.push_back(span);
        }
    }
    std::vector<Line> lines;
    for (const Night& night : nights) {
        if (!night.asleep.empty() || (night.hasEvening && night.hasMorning)) {
            lines.push_back({lines.empty() ? "asleep" : "",
                             night.day + "  " +
                                 (night.asleep.empty() ? "not asleep"
                                                       : FromTo(night.asleep) + "  " + Duration(Total(night.asleep)))});
        }
    }
    return lines;
}

std::string NightSummary::Frozen(int64_t end) const {
    if (mostFrozen_ == 0) {
        return kNothing;
    }
    return "at most " + Count(static_cast<int64_t>(mostFrozen_), "native process") + "; " + Tell(frozen_, end);
}

std::string NightSummary::Timers(int64_t end) const {
    const int64_t longMs = Total(timersLong.Until(end));
    return Tell(timers, end) + (longMs > 0 ? "; to 600 s for " + Duration(longMs) : "");
}

std::vector<NightSummary::Line> NightSummary::Lines(int64_t start, int64_t end, const Replay::Summary& summary) const {
    std::vector<Line> lines = Asleep(start, end);
    lines.push_back({"bluetooth off", Tell(bluetoothOff, end)});
    lines.push_back({"wifi off", Tell(wifiOff, end)});
    lines.push_back({"modem off", Tell(modemOff, end)});
    lines.push_back({"firewall on", Tell(firewall, end)});
    lines.push_back({"frozen", Frozen(end)});
    lines.push_back({"killed", killed.empty()
                                   ? kNothing
                                   : Count(static_cast<int64_t>(killed.size()), "app") + ": " + Names(killed)});
    lines.push_back({"timers stretched", Timers(end)});
    for (const auto& [complaint, times] : repeats_) {
        lines.push_back({lines.back().name == "again" || lines.back().name.empty() ? "" : "again",
                         complaint + ", " + Times(static_cast<int64_t>(times)) + " more"});
    }
    lines.push_back({"record", Count(static_cast<int64_t>(summary.messages), "message") + ", " +
                                   Count(static_cast<int64_t>(summary.calls), "call") + ", " +
                                   Count(static_cast<int64_t>(summary.logs), "log line")});
    return lines;
}

}  // namespace TARN::Story
