#ifndef SLEEP_DETECTION_TIME_PROVIDER_EXT_H
#define SLEEP_DETECTION_TIME_PROVIDER_EXT_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

/// The clocks, and local times of day in the process's time zone.
class TimeProviderExt {
public:
    /// Local hour of day in [0, 24), minutes and seconds as its fraction, of a wall clock in milliseconds; -1.0 when
    /// there is no local time. Callers compare it as it is: -1.0 counts as early in the night.
    [[nodiscard]] static float TimestampToDayHour(int64_t timestampMs);

    /// Local second of day, 0 to 86399, of a wall clock in milliseconds; -1 when there is no local time.
    [[nodiscard]] static int32_t TimestampToDaySecond(int64_t timestampMs);

    /// Wall clock, milliseconds.
    [[nodiscard]] static int64_t GetCurMsecTimestamp();

    /// Time since boot, nanoseconds.
    [[nodiscard]] static int64_t GetBootTimeNs();
};

/// TimeProviderExt::TimestampToDayHour for one who asks every few seconds, where what libc does for a local time is
/// most of the work: how a quarter of an hour begins is remembered, until it is over or the zone changes. Should the
/// new zone have the names and the standard time of the old one, its other summer time counts from the next quarter on.
class DayHourMemory {
public:
    [[nodiscard]] float At(int64_t timestampMs);

private:
    /// By what libc tells a zone from another.
    struct Zone {
        [[nodiscard]] static Zone Current();
        bool operator==(const Zone&) const = default;

        long westOfUtc = 0;
        const char* name = nullptr;  // libc keeps one text for each name
        const char* summerName = nullptr;
    };

    void Remember(int64_t timestampMs);

    int64_t beginMs_ = 0;
    int64_t endMs_ = 0;
    int32_t beginSecond_ = 0;  ///< of the day
    Zone zone_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_TIME_PROVIDER_EXT_H
