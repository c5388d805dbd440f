#ifndef AUTHORING_LOCAL_CLOCK_H
#define AUTHORING_LOCAL_CLOCK_H

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "time_zone.h"

namespace TARN::Authoring {

/// A date and a time as a clock shows them, whether or not there is such a day.
struct ClockTime {
    int year = 0;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int ms = 0;
};

/// The local clock of one zone, quick about days on which it is not changed. One zone is in use in a process at a time:
/// that of the clock made last.
class LocalClock {
public:
    explicit LocalClock(const Replay::TimeZone& zone);

    [[nodiscard]] const Replay::TimeZone& Zone() const noexcept { return zone_; }

    /// A wall clock as a trace writes it: local time in quotes, or milliseconds where the local time would mean another
    /// moment or no year of four digits.
    [[nodiscard]] std::string Write(int64_t t);

    /// The wall clock, in milliseconds, when it shows that. Of a time that comes twice the first one from `from` on.
    /// Nothing for a time that never comes.
    [[nodiscard]] std::optional<int64_t> Read(const ClockTime& time,
                                              int64_t from = std::numeric_limits<int64_t>::min());

private:
    [[nodiscard]] std::optional<int64_t> SteadyOffset(int64_t t);

    Replay::TimeZone zone_;
    int64_t day_ = std::numeric_limits<int64_t>::min();  ///< since the epoch
    std::optional<int64_t> steady_;                      ///< the offset all around that day
};

/// Milliseconds since the epoch when a clock in UTC shows that; nothing where there is no such day or time.
[[nodiscard]] std::optional<int64_t> AsUtc(const ClockTime& time);

/// The last millisecond of the year 9999, the latest time of a trace.
inline constexpr int64_t kLatestMs = 253'402'300'799'999;

inline constexpr int64_t kSecondMs = 1000;
inline constexpr int64_t kMinuteMs = 60 * kSecondMs;
inline constexpr int64_t kHourMs = 60 * kMinuteMs;
inline constexpr int64_t kDayMs = 24 * kHourMs;

}  // namespace TARN::Authoring

#endif  // AUTHORING_LOCAL_CLOCK_H
