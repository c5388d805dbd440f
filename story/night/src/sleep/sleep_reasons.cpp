#include "sleep_reasons.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kHourS = 3600;
constexpr int64_t kHourMs = kHourS * kMsPerSecond;

// The plugin's own thresholds, which decide which words fit; the verdict itself is never taken from here.
constexpr int64_t kNearAlarmMs = 15 * 60 * kMsPerSecond;
constexpr double kMorning = 6.0;
constexpr double kNoon = 12.0;
constexpr double kEvening = 21.0;
constexpr double kMidnight = 24.0;
constexpr double kEveningSlope = 600.0;
constexpr double kEveningLeastS = 1200.0;
constexpr int64_t kNightLeastS = 1800;
constexpr int64_t kMorningScreenOffS = kHourS;
constexpr float kBright = 50.0F;
constexpr int64_t kLatestAlarmS = 9 * kHourS;
constexpr int64_t kFurthestAlarmMs = 9 * kHourMs - 1;

int64_t DaySecond(int64_t t) {
    const std::string time = Replay::TimeZone::Format(t, "%H%M%S");
    const int64_t digits = std::strtoll(time.c_str(), nullptr, 10);
    return digits / 10000 * kHourS + digits / 100 % 100 * 60 + digits % 100;
}

double DayHour(int64_t t) {
    return static_cast<double>(DaySecond(t)) / static_cast<double>(kHourS);
}

std::string Stretch(std::string_view what, int64_t seconds) {
    return std::string(what) + (seconds < 0 ? "ness unknown" : " for " + Duration(seconds * kMsPerSecond));
}

std::string StillAndDark(const SleepReading& record) {
    return Stretch("still", record.stillS) + ", " + Stretch("dark", record.darkS);
}

struct Look {
    const SleepReading& record;
    int64_t rememberedAlarm;
    double hour;
};

struct Rule {
    std::string_view kind;
    bool (*holds)(const Look&);
    std::string (*text)(const Look&);
};

bool IsAlarmNear(const Look& look) {
    return std::abs(look.record.t - look.record.alarm) < kNearAlarmMs;
}

bool IsAfterAlarm(const Look& look) {
    const int64_t since = look.record.t - look.rememberedAlarm;
    return look.rememberedAlarm > 0 && since >= 1 && since < kHourMs;
}

bool IsEvening(const Look& look) {
    return look.hour >= kEvening;
}

bool IsMorning(const Look& look) {
    return look.hour >= kMorning && look.hour < kNoon;
}

std::string EveningText(const Look& look) {
    const auto needed = static_cast<int64_t>((kMidnight - look.hour) * kEveningSlope + kEveningLeastS);
    return StillAndDark(look.record) + "; " + Duration(needed * kMsPerSecond) + " needed";
}

/// In the order in which the plugin asks. The first that holds is the reason.
constexpr std::array kRules = {
    Rule{"alarm near", IsAlarmNear,
         [](const Look& look) { return "the alarm at " + Clock(look.record.alarm) + " is near"; }},
    Rule{"after alarm", IsAfterAlarm, [](const Look&) { return std::string("the alarm rang within the hour"); }},
    Rule{"day", [](const Look& look) { return look.hour >= kNoon && look.hour < kEvening; },
         [](const Look&) { return std::string("it is daytime"); }},
    Rule{"moved", [](const Look& look) { return look.record.stillS == 0; },
         [](const Look&) { return std::string("the phone does not lie still"); }},
    Rule{"screen", [](const Look& look) { return IsMorning(look) && look.record.screenOffS <= kMorningScreenOffS; },
         [](const Look&) { return std::string("the screen was on within the hour"); }},
    Rule{"bright", [](const Look& look) { return look.record.light > kBright; },
         [](const Look& look) { return "it is light, " + std::to_string(std::lround(look.record.light)) + " lx"; }},
    Rule{"too short", IsEvening, EveningText},
    Rule{"too short", [](const Look&) { return true; },
         [](const Look& look) { return StillAndDark(look.record) + "; not long enough"; }},
};

}  // namespace

SleepReason WhyNotAsleep(const SleepReading& record, int64_t rememberedAlarm) {
    const Look look{record, rememberedAlarm, DayHour(record.t)};
    const auto* rule = std::find_if(kRules.begin(), kRules.end(), [&](const Rule& one) { return one.holds(look); });
    return {rule->kind, rule->text(look)};
}

bool IsWakeupByAlarm(const SleepReading& record) {
    const int64_t ahead = record.alarm - record.t;
    return record.alarm != 0 && ahead >= 0 && ahead <= kFurthestAlarmMs && DaySecond(record.alarm) < kLatestAlarmS;
}

}  // namespace TARN::Story
