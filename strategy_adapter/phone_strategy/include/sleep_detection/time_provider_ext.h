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

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_TIME_PROVIDER_EXT_H
