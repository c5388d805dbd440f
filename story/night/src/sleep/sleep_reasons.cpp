#include "sleep_reasons.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <vector>

#include "phrases.h"
#include "sleep_words.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kSecondsPerHour = 3600;
constexpr int64_t kSecondsPerDay = 24 * kSecondsPerHour;
constexpr int64_t kHourMs = kSecondsPerHour * kMsPerSecond;

// The detector's own numbers, which decide which words fit.
constexpr int64_t kNearAlarmMs = 900'000;
constexpr float kMorning = 6.0F;
constexpr float kNoon = 12.0F;
constexpr float kEvening = 21.0F;
constexpr float kMidnight = 24.0F;
constexpr float kBright = 50.0F;
constexpr float kPitchDark = 0.01F;
constexpr float kJump = 2.0F;
constexpr int64_t kLongStayS = 10'800;
constexpr int64_t kLatestAlarmS = 9 * kSecondsPerHour;

enum class Part : uint8_t { SCREEN_OFF, STILL, DARK };

struct Need {
    Part part;
    int64_t seconds;
    bool isMore;  ///< longer than that; else as long will do

    bool operator==(const Need& other) const = default;
};
using Needs = std::vector<Need>;

constexpr Need AtLeast(Part part, int64_t seconds) {
    return {part, seconds, false};
}

constexpr Need MoreThan(Part part, int64_t seconds) {
    return {part, seconds, true};
}

/// What is enough for sleep.
struct Way {
    Needs needs;
    std::string where = {};  ///< " (pitch dark, covered)"
};

/// The rule of a time of day, for what one look found.
struct Rule {
    std::string name;
    std::string when;            ///< " at night"
    std::vector<Way> ways;       ///< any of them will do; the plainest first
    std::string because = {};    ///< why it is these: ", as the phone moves"
    std::vector<Way> more = {};  ///< ways that are closed now
};

bool IsWithin(int64_t distance, int64_t limit) {
    return distance > -limit && distance < limit;
}

int64_t Found(const SleepLook& look, Part part) {
    return part == Part::STILL  ? look.reading.stillS
           : part == Part::DARK ? look.reading.darkS
                                : look.reading.screenOffS;
}

bool IsMet(const SleepLook& look, const Need& need) {
    const int64_t found = Found(look, need.part);
    return need.isMore ? found > need.seconds : found >= need.seconds;
}

std::string_view NameOf(Part part) {
    return part == Part::STILL ? "still" : part == Part::DARK ? "dark" : "screen off";
}

Rule EveningRule(float hour) {
    const int64_t needed = static_cast<int32_t>((kMidnight - hour) * 600.0F + 1200.0F);
    return {"evening", " in the evening", {{{AtLeast(Part::STILL, needed), AtLeast(Part::DARK, needed)}}}};
}

/// The pitch dark of a covered phone, as far as it was read.
std::string HowPitch(const SleepLook& look) {
    return std::string(look.isLightRead ? " (pitch dark" : " (no light read, counted as pitch dark") +
           (look.isProximityRead           ? ", covered)"
            : IsDistrusted(look.proximity) ? ", proximity not trusted and counted as covered)"
                                           : ", no proximity read, counted as covered)");
}

Rule NightRule(const SleepLook& look) {
    Rule rule{"night", " at night", {}};
    if (look.reading.light > kBright) {
        rule.ways = {{{MoreThan(Part::STILL, 7200)}}};
        rule.because = ", as it is light (" + Number(look.reading.light) + " lx)";
    } else if (look.reading.stillS <= 0) {
        rule.ways = {{{AtLeast(Part::DARK, 1800), AtLeast(Part::SCREEN_OFF, 1800)}}};
        rule.because = ", as " + WhyNotStill(look);
    } else {
        const Way hour{{MoreThan(Part::STILL, 3600)}};
        const Way both{{MoreThan(Part::STILL, 1200), MoreThan(Part::DARK, 1200)}};
        const bool isPitch = look.reading.light <= kPitchDark && IsCovered(look.proximity);
        const Way pitch{{AtLeast(Part::STILL, 1800)}, isPitch ? HowPitch(look) : " (pitch dark, covered)"};
        rule.ways = isPitch ? std::vector{hour, pitch, both} : std::vector{hour, both};
        rule.more = isPitch ? std::vector<Way>{} : std::vector{pitch};
    }
    return rule;
}

Rule MorningRule() {
    const Need off = MoreThan(Part::SCREEN_OFF, 3600);
    return {"morning",
            " in the morning",
            {{{off, MoreThan(Part::STILL, 14'400)}}, {{off, MoreThan(Part::STILL, 1800), MoreThan(Part::DARK, 1800)}}}};
}

Rule RuleOf(const SleepLook& look) {
    const float hour = DayHour(look.judgedAt);
    return hour >= kEvening ? EveningRule(hour) : hour < kMorning ? NightRule(look) : MorningRule();
}

/// What is there of a part: "still for 12 min", "not dark at 120 lx".
std::string Have(const SleepLook& look, const SleepMemory& memory, const Need& need) {
    const int64_t found = Found(look, need.part);
    std::string why = need.part == Part::STILL  ? WhyNotStill(look)
                      : need.part == Part::DARK ? WhyNotDark(look, memory)
                      : found < 0               ? "how long the screen is off is not known"
                      : found == 0              ? "the screen is not off"
                                                : "";
    if (!why.empty()) {
        return why;
    }
    const bool isUnread = need.part == Part::DARK && !look.isLightRead;
    return (isUnread ? "counted as dark" : std::string(NameOf(need.part))) + " for " +
           (IsEndless(found) ? "longer than the phone tells" : Length(found, need.seconds)) +
           (isUnread ? " as no light is read" : "");
}

using NeedsOfOne = std::span<const Need>;  ///< of one length

/// The needs at the front that are of one length.
NeedsOfOne First(NeedsOfOne needs) {
    const auto end = std::find_if(needs.begin(), needs.end(), [&needs](const Need& need) {
        return need.seconds != needs.front().seconds || need.isMore != needs.front().isMore;
    });
    return {needs.begin(), end};
}

/// "20 min".
std::string Amount(const SleepLook& look, NeedsOfOne needs) {
    std::string text;
    for (const Need& need : needs) {  // the most exact of them
        std::string own = Length(need.seconds, Found(look, need.part));
        text = own.size() > text.size() ? own : text;
    }
    return text;
}

/// "still and dark for over 20 min".
std::string Wanted(const SleepLook& look, NeedsOfOne needs) {
    std::string text;
    while (!needs.empty()) {
        const NeedsOfOne group = First(needs);
        needs = needs.subspan(group.size());
        for (const Need& need : group) {
            text += (text.empty() ? "" : " and ") + std::string(NameOf(need.part));
        }
        text += (group.front().isMore ? " for over " : " for ") + Amount(look, group);
    }
    return text;
}

std::string AllWanted(const SleepLook& look, const Rule& rule) {
    std::string text;
    for (const std::vector<Way>& ways : {rule.ways, rule.more}) {
        for (const Way& way : ways) {
            text += (text.empty() ? "" : ", or ") + Wanted(look, way.needs) + way.where;
        }
    }
    return text + rule.because;
}

/// "still for 24 min and dark for 21 min, more than 20 min at night".
std::string Enough(const SleepLook& look, const SleepMemory& memory, const Rule& rule, const Way& way) {
    std::string text;
    for (NeedsOfOne needs = way.needs; !needs.empty();) {
        const NeedsOfOne group = First(needs);
        needs = needs.subspan(group.size());
        for (const Need& need : group) {
            const bool isFirst = &need == group.data();
            text += (text.empty() ? "" : isFirst ? ", and " : " and ") + Have(look, memory, need) + way.where;
        }
        text += (group.front().isMore ? ", more than " : ", at least ") + Amount(look, group);
    }
    return text + rule.when + rule.because;
}

/// What each way still wants, the nearest way first; where all want the same, that alone.
std::vector<Way> Missing(const SleepLook& look, const Rule& rule) {
    std::vector<Way> missing;
    for (auto way = rule.ways.rbegin(); way != rule.ways.rend(); ++way) {
        Way& one = missing.emplace_back();
        one.where = way->where;
        std::copy_if(way->needs.begin(), way->needs.end(), std::back_inserter(one.needs),
                     [&](const Need& need) { return !IsMet(look, need); });
    }
    Needs common;
    std::copy_if(missing[0].needs.begin(), missing[0].needs.end(), std::back_inserter(common), [&](const Need& need) {
        return std::all_of(missing.begin(), missing.end(), [&](const Way& way) {
            return std::find(way.needs.begin(), way.needs.end(), need) != way.needs.end();
        });
    });
    return common.empty() ? missing : std::vector<Way>{{common, missing[0].where}};
}

/// What is missing of a part; null for nothing.
const Need* Find(const std::vector<Way>& missing, Part part) {
    for (const Way& way : missing) {
        for (const Need& need : way.needs) {
            if (need.part == part) {
                return &need;
            }
        }
    }
    return nullptr;
}

/// What keeps the user awake, as far as it stays the same from look to look.
std::string_view KindOf(const SleepLook& look, const std::vector<Way>& missing) {
    const bool isDarkMissing = Find(missing, Part::DARK) != nullptr;
    return look.reading.stillS == 0                       ? "moves"
           : isDarkMissing && !look.isLightRead           ? "no light read"
           : look.reading.stillS < 0                      ? "stillness unknown"
           : isDarkMissing && !IsDark(look.reading.light) ? "light"
                                                          : "too short";
}

SleepReason NotEnough(const SleepLook& look, const SleepMemory& memory, const Rule& rule) {
    const std::vector<Way> missing = Missing(look, rule);
    std::string text;
    for (const Part part : {Part::SCREEN_OFF, Part::STILL, Part::DARK}) {
        if (const Need* need = Find(missing, part)) {
            text += (text.empty() ? "" : ", ") + Have(look, memory, *need);
        }
    }
    for (size_t i = 0; i < missing.size(); ++i) {
        text +=
            (i == 0 ? "; " : ", or ") + Wanted(look, missing[i].needs) + missing[i].where + (i == 0 ? " needed" : "");
    }
    return {rule.name + ": " + std::string(KindOf(look, missing)), text + rule.because, rule.name,
            AllWanted(look, rule)};
}

/// What ended a sleep that was there a look ago: nothing at all; empty: what is said anyway.
std::optional<std::string> WhatWoke(const SleepLook& look, const SleepLook& last) {
    const SleepReading& now = look.reading;
    const float before = last.reading.light;
    std::vector<std::string> what;
    const bool isShortStay = now.screenOffS < kLongStayS && now.stillS < kLongStayS;
    const bool isJump = now.light - before >= kBright && (now.light + kPitchDark) / (before + kPitchDark) >= kJump;
    if ((isShortStay || isJump) && now.darkS <= last.reading.darkS) {
        what.emplace_back(!look.isLightRead ? "no light read to go on by"
                          : isJump          ? "it became light"
                                            : "it did not stay dark");
    }
    if (look.unlockedAt != last.unlockedAt) {
        what.emplace_back("the phone was unlocked");
    }
    if (const int64_t times = look.screenOns - last.screenOns; times >= 2) {
        what.push_back("the screen came on " + Times(times));
    }
    return what.empty() && now.stillS > 0 ? std::nullopt : std::optional(Names(what));
}

SleepReason GoesOn(const SleepMemory& memory) {
    return {"asleep",
            "asleep at " + Clock(memory.last->reading.t) +
                " already, and since then still, not unlocked and the screen on no more than once",
            "night, sleep continued",
            "after sleep: still, not unlocked, the screen on no more than once, and either longer dark or still or the "
            "screen off for 3 h without a jump of light"};
}

/// Nobody is taken for asleep for a while, whatever was collected.
struct Block {
    std::string_view name;
    bool (*holds)(const SleepLook&, const SleepMemory&);
    std::string (*text)(const SleepLook&, const SleepMemory&);
    std::string_view needed;
};

/// In the order in which the detector asks.
constexpr std::array kBlocks = {
    Block{"alarm near",
          [](const SleepLook& look, const SleepMemory&) {
              return IsWithin(Between(look.reading.alarm, look.judgedAt), kNearAlarmMs);
          },
          [](const SleepLook& look, const SleepMemory&) {
              return "the alarm of " + Clock(look.reading.alarm) +
                     (look.judgedAt < look.reading.alarm ? " is near" : " was just now");
          },
          "15 min from the alarm"},
    Block{"after the alarm",
          [](const SleepLook& look, const SleepMemory& memory) {
              const int64_t since = Between(memory.alarm, look.judgedAt);
              return memory.alarm > 0 && since >= 1 && since < kHourMs;
          },
          [](const SleepLook&, const SleepMemory& memory) {
              return "the alarm of " + Clock(memory.alarm) + " rang within the hour";
          },
          "an hour from the alarm that was set when the user last slept"},
    Block{"day",
          [](const SleepLook& look, const SleepMemory&) {
              const float hour = DayHour(look.judgedAt);
              return hour >= kNoon && hour < kEvening;
          },
          [](const SleepLook&, const SleepMemory&) {
              return std::string("nobody is taken for asleep between noon and 21:00");
          },
          "evening, night or morning"},
};

}  // namespace

SleepReason ReasonOf(const SleepLook& look, const SleepMemory& memory, bool isRuledAsleep) {
    for (const Block& block : kBlocks) {
        if (block.holds(look, memory)) {
            return isRuledAsleep ? SleepReason{}
                                 : SleepReason{std::string(block.name), block.text(look, memory),
                                               std::string(block.name), std::string(block.needed)};
        }
    }
    const Rule rule = RuleOf(look);
    const auto way = std::find_if(rule.ways.begin(), rule.ways.end(), [&](const Way& one) {
        return std::all_of(one.needs.begin(), one.needs.end(), [&](const Need& need) { return IsMet(look, need); });
    });
    if (way != rule.ways.end()) {
        return !isRuledAsleep
                   ? SleepReason{}
                   : SleepReason{"asleep", Enough(look, memory, rule, *way), rule.name, AllWanted(look, rule)};
    }
    const bool mayGoOn = rule.name == "night" && memory.last && memory.last->isRuledAsleep;
    const std::optional<std::string> woke = mayGoOn ? WhatWoke(look, *memory.last) : std::string();
    if (isRuledAsleep) {
        return woke ? SleepReason{} : GoesOn(memory);
    }
    if (!woke) {
        return {};
    }
    SleepReason reason = NotEnough(look, memory, rule);
    if (!woke->empty()) {
        reason.text = *woke + "; " + reason.text;
    }
    return reason;
}

Wakeup WakeupOf(const SleepReading& reading, int64_t t) {
    const int64_t second = DaySecond(reading.t);
    const int64_t wholeHours =
        (DayHour(reading.t) > kNoon ? kSecondsPerDay : 0) - second / kSecondsPerHour * kSecondsPerHour;
    const int64_t base = Between(reading.t, t) / kMsPerSecond - wholeHours;
    Wakeup wakeup{t, {}, Clock(t)};
    if (base < 0 || base >= kSecondsPerDay) {
        return wakeup;
    }
    const int64_t ahead = Between(reading.t, reading.alarm);
    const bool isByAlarm = reading.alarm > 0 && ahead >= 0 && ahead < 9 * kHourMs && base < kLatestAlarmS &&
                           base == DaySecond(reading.alarm);
    wakeup.by = (isByAlarm ? "the alarm of " : "the built-in ") + TimeOfDay(base);
    const int64_t past = second % kSecondsPerHour;
    const auto offset = [](int64_t at) { return Replay::TimeZone::Format(at, "%z"); };
    wakeup.detail += " (" + wakeup.by +
                     (past == 0 ? "" : " plus the " + Duration(past * kMsPerSecond) + " of " + Clock(reading.t)) +
                     (offset(reading.t) == offset(t) ? ")" : ", the clocks change in between)");
    return wakeup;
}

}  // namespace TARN::Story
