#include "sleep_words.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

#include "local_time.h"
#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using DevStandbyMgr::kMsPerSecond;

constexpr int64_t kSecondsPerMinute = 60;
constexpr int64_t kSecondsPerHour = 3600;

constexpr float kDarkLux = 5.0F;
constexpr float kCovered = 0.01F;

std::string TwoDigits(int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// "12 min", "longer than the phone tells".
std::string Spell(int64_t seconds) {
    return IsEndless(seconds) ? "longer than the phone tells" : Duration(seconds * kMsPerSecond);
}

std::string StillFor(const SleepLook& look) {
    const int64_t seconds = look.reading.stillS;
    return seconds < 0 ? "an unknown time" : seconds == 0 ? "no time: " + WhyNotStill(look) : Spell(seconds);
}

std::string DarkFor(const SleepLook& look, const SleepMemory& memory) {
    if (look.reading.darkS < 0) {
        return "an unknown time";
    }
    const std::string why = WhyNotDark(look, memory);
    return !why.empty() ? "no time: " + why
                        : Spell(look.reading.darkS) + (look.isLightRead ? "" : " (no light is read)");
}

std::string Light(const SleepLook& look) {
    const float light = look.reading.light;
    return look.isLightRead ? Number(light) + " lx"
           : light < 0.0F   ? "not read"
                            : "not read (counts as " + Number(light) + " lx)";
}

std::string Proximity(const SleepLook& look) {
    const std::string meaning = IsCovered(look.proximity) ? "covered" : "nothing near";
    return look.isProximityRead           ? Number(look.proximity) + " (" + meaning + ")"
           : IsDistrusted(look.proximity) ? "not trusted (counts as covered)"
                                          : "not read (counts as " + meaning + ")";
}

std::string NextAlarm(const SleepLook& look) {
    return look.reading.alarm > 0 ? Replay::TimeZone::Format(look.reading.alarm, "%a %H:%M") : "not known";
}

}  // namespace

int64_t DaySecond(int64_t t) {
    const std::tm local = DevStandbyMgr::LocalTime(t);
    return local.tm_hour * kSecondsPerHour + local.tm_min * kSecondsPerMinute + local.tm_sec;
}

float DayHour(int64_t t) {
    const std::tm local = DevStandbyMgr::LocalTime(t);
    return static_cast<float>(local.tm_hour) + static_cast<float>(local.tm_min) / 60.0F +
           static_cast<float>(local.tm_sec) / 3600.0F;
}

std::string TimeOfDay(int64_t daySecond) {
    const int64_t hours = daySecond / kSecondsPerHour;
    const int64_t minutes = daySecond / kSecondsPerMinute % kSecondsPerMinute;
    const int64_t seconds = daySecond % kSecondsPerMinute;
    return TwoDigits(hours) + ":" + TwoDigits(minutes) + (seconds == 0 ? "" : ":" + TwoDigits(seconds));
}

std::string Length(int64_t seconds, int64_t other) {
    const int64_t apart = std::llabs(seconds - other);
    if (apart == 0 || apart >= kSecondsPerMinute || seconds % kSecondsPerMinute == 0 || seconds < kSecondsPerMinute) {
        return Duration(seconds * kMsPerSecond);
    }
    const int64_t minutes = seconds / kSecondsPerMinute;
    const int64_t rest = seconds % kSecondsPerMinute;
    const std::string inMinutes = minutes < kSecondsPerMinute ? std::to_string(minutes)
                                                              : std::to_string(minutes / kSecondsPerMinute) + " h " +
                                                                    TwoDigits(minutes % kSecondsPerMinute);
    return inMinutes + " min " + TwoDigits(rest) + " s";
}

std::string Number(float value) {
    constexpr size_t kRoom = 32;
    char text[kRoom];
    std::snprintf(text, sizeof text, value >= 1000.0F ? "%.0f" : "%.3g", static_cast<double>(value));
    return text;
}

bool IsDark(float light) {
    return light <= kDarkLux;
}

bool IsCovered(float proximity) {
    return proximity <= kCovered;
}

bool IsDistrusted(float proximity) {
    constexpr float kStandIn = 0.0001F;
    return proximity == kStandIn;
}

bool IsEndless(int64_t seconds) {
    constexpr int64_t kTwentyYears = 20L * 365 * 24 * kSecondsPerHour;
    return seconds > kTwentyYears;
}

int64_t Between(int64_t from, int64_t to) {
    int64_t difference = 0;
    if (__builtin_sub_overflow(to, from, &difference)) {
        return to < from ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
    }
    return difference;
}

std::string WhyNotStill(const SleepLook& look) {
    return look.reading.stillS < 0    ? "stillness is not known"
           : look.reading.stillS == 0 ? "the phone moves"
                                      : std::string();
}

std::string WhyNotDark(const SleepLook& look, const SleepMemory& memory) {
    const SleepReading& reading = look.reading;
    if (reading.darkS != 0) {
        return reading.darkS < 0 ? "darkness is not known" : std::string();
    }
    const std::string lux = Number(reading.light) + " lx";
    if (!IsDark(reading.light)) {
        return look.isLightRead ? "not dark at " + lux : "no light read (counts as " + lux + ")";
    }
    const std::string also = look.isLightRead ? "" : "no light read, ";
    if (look.unlockedAt > (memory.last ? memory.last->reading.t : 0)) {
        return also + (memory.last ? "unlocked since the last look" : "unlocked");
    }
    if (!IsCovered(look.proximity)) {
        return look.isLightRead ? "dark only now" : "no light read (counts as dark only now)";
    }
    const std::string how = look.isProximityRead           ? also + "covered"
                            : IsDistrusted(look.proximity) ? also + "proximity not trusted"
                            : look.isLightRead             ? "no proximity read"
                                                           : "neither light nor proximity read";
    return how + " (not counted as dark)";
}

std::vector<Value> ValuesOf(const SleepLook& look, const SleepMemory& memory) {
    const int64_t off = look.reading.screenOffS;
    return {{"still for", StillFor(look)},
            {"dark for", DarkFor(look, memory)},
            {"screen off for", off < 0    ? "an unknown time"
                               : off == 0 ? "no time"
                                          : Spell(off)},
            {"light", Light(look)},
            {"proximity", Proximity(look)},
            {"next alarm", NextAlarm(look)}};
}

}  // namespace TARN::Story
