#include "new_night.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "json_fields.h"
#include "moment.h"
#include "night_plan.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;
using Replay::TimeZone;

constexpr int kNoon = 12;
constexpr int kEvening = 21;
constexpr int64_t kRoomLux = 40;   ///< a lamp
constexpr int64_t kScreenLux = 4;  ///< the phone's own light in a dark room
constexpr int64_t kDawnLux = 3;

struct Stretch {
    int64_t from;
    int64_t to;
};
using Stretches = std::vector<Stretch>;

int64_t ReadTime(const std::string& option, const std::string& text, int64_t from) {
    std::optional<int64_t> t;
    try {
        t = text.find(':') == std::string::npos ? std::nullopt : Replay::ReadMoment(text, from);
    } catch (const InputError& error) {
        throw InputError(option + ": " + error.what());
    }
    if (!t) {
        Refuse(option, Quote(text), "a time such as 06:30 or 2026-03-02T06:30");
    }
    return *t;
}

/// "23:00-05:00", "02:00+10m" or, where a length is usual, "02:00". A date has a "-" too, but only before its T.
Stretch ReadStretch(const std::string& option, const std::string& text, int64_t from, int64_t usualMs) {
    const size_t date = text.find('T');
    const size_t mark = text.find_first_of("-+", date == std::string::npos ? 0 : date);
    if (mark == std::string::npos && usualMs > 0) {
        const int64_t t = ReadTime(option, text, from);
        return {t, t + usualMs};
    }
    if (mark == std::string::npos) {
        Refuse(option, Quote(text), "a stretch such as 23:00-05:00 or 23:00+6h");
    }
    const int64_t begins = ReadTime(option, text.substr(0, mark), from);
    if (text[mark] == '-') {
        const int64_t ends = ReadTime(option, text.substr(mark + 1), begins + 1);
        if (ends <= begins) {
            Refuse(option, Quote(text) + " ends before it begins", "a stretch such as 23:00-05:00");
        }
        return {begins, ends};
    }
    const auto lasts = Replay::ReadStretch(text.substr(mark + 1));
    if (!lasts || *lasts == 0 || *lasts > kDayMs) {
        Refuse(option, Quote(text), "a stretch such as 23:00+6h, of a day at most");
    }
    return {begins, begins + *lasts};
}

/// In the order of time; those of one kind lie apart.
Stretches ReadStretches(const std::string& option, const std::vector<std::string>& texts, int64_t from,
                        int64_t usualMs = 0) {
    Stretches stretches;
    for (const std::string& text : texts) {
        stretches.push_back(ReadStretch(option, text, from, usualMs));
        for (size_t i = 0; i + 1 < stretches.size(); ++i) {
            if (stretches[i].from < stretches.back().to && stretches.back().from < stretches[i].to) {
                Refuse(option, Quote(text) + " overlaps " + Quote(texts[i]), "stretches that lie apart");
            }
        }
    }
    std::sort(stretches.begin(), stretches.end(), [](const Stretch& a, const Stretch& b) { return a.from < b.from; });
    return stretches;
}

std::string Clock(int64_t t) {
    return TimeZone::Format(t, t % kMinuteMs == 0 ? "%H:%M" : "%H:%M:%S");
}

/// "2026-03-01" at an hour.
int64_t ReadDate(const std::string& text, int hour, LocalClock& clock) {
    constexpr size_t kLength = 10;
    ClockTime time;
    time.hour = hour;
    const auto digits = [&text](size_t from, size_t count, int& target) {
        const char* end = text.data() + from + count;
        return std::from_chars(text.data() + from, end, target).ptr == end;
    };
    const bool isDate = text.size() == kLength && text[4] == '-' && text[7] == '-' && digits(0, 4, time.year) &&
                        digits(5, 2, time.month) && digits(8, 2, time.day);
    const auto t = isDate ? clock.Read(time) : std::nullopt;
    if (!t) {
        Refuse("--date", Quote(text), "a date such as 2026-03-01");
    }
    return *t;
}

/// All that was asked for, as moments.
struct Asked {
    int64_t start = 0;
    int64_t end = 0;
    int64_t bed = 0;
    std::optional<int64_t> alarm;
    Stretches screen, calls, charger, airplane, headset, music;

    [[nodiscard]] std::array<std::pair<const char*, const Stretches*>, 6> All() const {
        return {{{"--screen", &screen},
                 {"--call", &calls},
                 {"--charger", &charger},
                 {"--airplane", &airplane},
                 {"--headset", &headset},
                 {"--music", &music}}};
    }
};

/// Start, bed time, alarm and end, with what is usual where nothing is said.
void ReadFrame(const NewNight& night, int64_t anchor, int64_t evening, Asked& asked) {
    constexpr int64_t kBeforeMs = 10 * kMinuteMs;
    constexpr int64_t kAfterMs = 30 * kMinuteMs;
    int64_t first = evening;
    int64_t last = 0;
    for (const auto& [option, stretches] : asked.All()) {
        for (const Stretch& stretch : *stretches) {
            first = std::min(first, stretch.from - kBeforeMs);
            last = std::max(last, stretch.to);
        }
    }
    asked.start = night.start.empty() ? first : anchor;
    if (night.alarm != "none") {
        asked.alarm = ReadTime("--alarm", night.alarm, asked.start + 1);
    }
    asked.bed = ReadTime("--bed", night.bed, asked.start + 1);
    if (!night.isBedGiven && asked.alarm.value_or(asked.start + kDayMs / 2) <= asked.bed) {
        asked.bed = asked.start + kBeforeMs;
    }
    constexpr int64_t kWithoutAlarmMs = 8 * kHourMs;
    last = std::max({last, asked.alarm.value_or(0), asked.alarm ? asked.bed : asked.bed + kWithoutAlarmMs});
    asked.end = night.end.empty() ? last + kAfterMs : ReadTime("--end", night.end, asked.start + 1);
    const auto expectWithin = [&asked](const std::string& option, int64_t from, int64_t to) {
        if (from < asked.start || to > asked.end) {
            Refuse(
                option, Clock(from) + (to == from ? "" : "-" + Clock(to)) + " is not within the night",
                "one from " + TimeZone::Format(asked.start, "%FT%T") + " to " + TimeZone::Format(asked.end, "%FT%T"));
        }
    };
    for (const auto& [option, stretches] : asked.All()) {
        for (const Stretch& stretch : *stretches) {
            expectWithin(option, stretch.from, stretch.to);
        }
    }
    expectWithin("--bed", asked.bed, asked.bed);
    if (asked.alarm) {
        expectWithin("--alarm", *asked.alarm, *asked.alarm);
    }
}

Asked Read(const NewNight& night, int64_t nowMs, LocalClock& clock) {
    const std::string date = night.date.empty() ? TimeZone::Format(nowMs, "%F") : night.date;
    const int64_t noon = ReadDate(date, kNoon, clock);
    const int64_t anchor = night.start.empty() ? noon : ReadTime("--start", night.start, noon - kNoon * kHourMs);
    Asked asked;
    constexpr int64_t kUsualCallMs = 10 * kMinuteMs;
    asked.screen = ReadStretches("--screen", night.screen, anchor);
    asked.calls = ReadStretches("--call", night.calls, anchor, kUsualCallMs);
    asked.charger = ReadStretches("--charger", night.charger, anchor);
    asked.airplane = ReadStretches("--airplane", night.airplane, anchor);
    asked.headset = ReadStretches("--headset", night.headset, anchor);
    asked.music = ReadStretches("--music", night.music, anchor);
    ReadFrame(night, anchor, ReadDate(date, kEvening, clock), asked);
    return asked;
}

void PlanHeader(NightPlan& plan, const Asked& asked, const std::string& zone) {
    const int64_t t = asked.start;
    plan.Remark(t, "A night to start from: " + TimeZone::Format(t, "%a %-d %b %Y %H:%M") + " to " +
                       TimeZone::Format(asked.end, "%a %H:%M") + ", " + zone +
                       ". Change it, then play it with standby replay.");
    plan.Remark(
        t, "A line that begins with # is a comment. Of the others the first is the header, each further one a step:");
    plan.Remark(t, "a time, the next one at which the clock shows that, and one thing that happens then.");
    plan.Remark(t, "");
    plan.Remark(t, "The header: how the host is configured, and the phone as it is at the start, in a lit room" +
                       std::string(asked.alarm ? ", the alarm set to " + Clock(*asked.alarm) : ", no alarm set") + ".");
    plan.Light(t, kRoomLux);
    if (asked.alarm) {
        plan.Alarm(t, *asked.alarm);
    }
}

void PlanEvening(NightPlan& plan, const Asked& asked) {
    constexpr int64_t kUnlockedMs = 3 * kSecondMs;
    constexpr int64_t kLampMs = 5 * kMinuteMs;
    const int64_t dark = asked.bed + kLampMs;
    plan.Remark(asked.bed, asked.screen.empty()
                               ? "bed time: the screen goes off and the phone is laid down; from now on it lies still"
                               : "bed time");
    if (asked.screen.empty()) {
        plan.During(While::SCREEN, asked.start, asked.bed);
        plan.During(While::MOVING, asked.start, asked.bed);
    }
    for (const Stretch& use : asked.screen) {
        plan.Remark(use.from, "somebody looks at the phone until " + Clock(use.to));
        plan.During(While::SCREEN, use.from, use.to);
        plan.During(While::MOVING, use.from, use.to);
        if (use.to - use.from > kUnlockedMs) {
            plan.Unlock(use.from + kUnlockedMs);
        }
        if (use.from > dark && use.from < asked.alarm.value_or(asked.end)) {
            plan.Light(use.from, kScreenLux);
            plan.Light(use.to, 0);
        }
    }
    if (dark < asked.alarm.value_or(asked.end)) {
        plan.Remark(dark, "the lamp goes out");
        plan.Light(dark, 0);
    }
}

void PlanStretches(NightPlan& plan, const Stretches& stretches, While what, const std::string& begins,
                   const std::string& ends) {
    for (const Stretch& stretch : stretches) {
        plan.Remark(stretch.from, begins);
        plan.Remark(stretch.to, ends);
        plan.During(what, stretch.from, stretch.to);
    }
}

void PlanCalls(NightPlan& plan, const Stretches& calls) {
    constexpr int64_t kPickedUpMs = 8 * kSecondMs;
    constexpr int64_t kAtTheEarMs = 15 * kSecondMs;
    for (const Stretch& call : calls) {
        const int64_t atTheEar = std::min(call.from + kAtTheEarMs, call.to);
        plan.Remark(call.from,
                    "the phone rings: a call until " + Clock(call.to) + ", first in the hand, then at the ear");
        plan.Remark(call.to, "the call is over");
        plan.During(While::CALL, call.from, call.to);
        plan.During(While::SCREEN, call.from, atTheEar);
        plan.During(While::MOVING, std::min(call.from + kPickedUpMs, call.to), call.to);
        plan.During(While::COVERED, atTheEar, call.to);
    }
}

void PlanMorning(NightPlan& plan, const Asked& asked) {
    if (!asked.alarm) {
        return;
    }
    constexpr int64_t kDawnMs = 30 * kMinuteMs;
    constexpr int64_t kInHandMs = 8 * kSecondMs;
    constexpr int64_t kUnlockedMs = 20 * kSecondMs;
    constexpr int64_t kLookMs = kMinuteMs;
    const int64_t alarm = *asked.alarm;
    if (alarm - kDawnMs > asked.bed + kDawnMs) {
        plan.Remark(alarm - kDawnMs, "dawn");
        plan.Light(alarm - kDawnMs, kDawnLux);
    }
    plan.Remark(
        alarm, "the alarm rings; its owner takes the phone, switches the light on and sets the alarm for the next day");
    plan.During(While::SCREEN, alarm, alarm + kLookMs);
    plan.During(While::MOVING, alarm + kInHandMs, asked.end + 1);
    plan.Light(alarm + kInHandMs, kRoomLux);
    plan.Unlock(alarm + kUnlockedMs);
    if (const auto next = Replay::ReadMoment(Clock(alarm), alarm + kLookMs)) {
        plan.Alarm(alarm + kUnlockedMs, *next);
    }
}

}  // namespace

void WriteNewNight(const NewNight& night, int64_t nowMs, std::ostream& output) {
    LocalClock clock{TimeZone(night.timezone)};
    const Asked asked = Read(night, nowMs, clock);
    NightPlan plan(asked.start, asked.end);
    PlanHeader(plan, asked, night.timezone);
    PlanEvening(plan, asked);
    PlanStretches(plan, asked.charger, While::CHARGER, "the charger is plugged in", "the charger is taken out");
    PlanStretches(plan, asked.airplane, While::AIRPLANE, "airplane mode", "no airplane mode any more");
    PlanStretches(plan, asked.headset, While::HEADSET, "a headset connects over Bluetooth", "the headset is gone");
    PlanStretches(plan, asked.music, While::AUDIO, "music plays", "the music ends");
    PlanCalls(plan, asked.calls);
    PlanMorning(plan, asked);
    TraceWriter writer(output, clock, TimeStyle::SHORT);
    plan.Write(writer, OrdinaryHost(), OrdinaryDevice());
}

}  // namespace TARN::Authoring
