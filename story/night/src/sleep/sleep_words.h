#ifndef STORY_SLEEP_WORDS_H
#define STORY_SLEEP_WORDS_H

#include <cstdint>
#include <string>
#include <vector>

#include "sleep_look.h"

namespace TARN::Story {

/// Local second of the day.
[[nodiscard]] int64_t DaySecond(int64_t t);

/// Local hour of the day, in the detector's own arithmetic.
[[nodiscard]] float DayHour(int64_t t);

/// "07:30", with seconds where there are any.
[[nodiscard]] std::string TimeOfDay(int64_t daySecond);

/// Milliseconds from one time to another, which may be any numbers at all; the nearest limit where they do not fit.
[[nodiscard]] int64_t Between(int64_t from, int64_t to);

/// A length of time as people say it; to the second where `other`, which it is held against, would read the same.
[[nodiscard]] std::string Length(int64_t seconds, int64_t other);

/// A reading of a sensor: "120", "0.25".
[[nodiscard]] std::string Number(float value);

/// What a sensor's reading counts as, for the detector.
[[nodiscard]] bool IsDark(float light);
[[nodiscard]] bool IsCovered(float proximity);
/// What stands in for good once the proximity sensor is not trusted.
[[nodiscard]] bool IsDistrusted(float proximity);

/// A length without a beginning: the detector never saw one, and counts from 1970 on.
[[nodiscard]] bool IsEndless(int64_t seconds);

/// Why the stillness counts for nothing: "the phone moves"; empty where it counts.
[[nodiscard]] std::string WhyNotStill(const SleepLook& look);

/// Why the darkness counts for nothing: "not dark at 120 lx", "no light read (counts as 50 lx)"; empty where it
/// counts.
[[nodiscard]] std::string WhyNotDark(const SleepLook& look, const SleepMemory& memory);

/// What was collected, as values that decided.
[[nodiscard]] std::vector<Value> ValuesOf(const SleepLook& look, const SleepMemory& memory);

}  // namespace TARN::Story

#endif  // STORY_SLEEP_WORDS_H
