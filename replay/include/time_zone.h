#ifndef REPLAY_TIME_ZONE_H
#define REPLAY_TIME_ZONE_H

#include <cstdint>
#include <optional>
#include <string>

namespace TARN::Replay {

/// A local time zone: a tz database name or a POSIX TZ string.
class TimeZone {
public:
    /// Throws InputError when the zone is not known. "UTC" needs no tz database.
    explicit TimeZone(const std::string& name);

    /// Makes it the process's local time zone.
    void Use() const;

    [[nodiscard]] const std::string& Name() const noexcept { return name_; }

    /// The wall clock, in milliseconds, at a local time "2026-03-01T22:30:00" with optional ".mmm". Of a local
    /// time that happens twice, the first. Throws InputError for any other text and for a local time that
    /// does not exist. The zone must be in use.
    [[nodiscard]] static int64_t ParseLocal(const std::string& text);

    /// A wall clock as local time in strftime's terms. The zone must be in use.
    [[nodiscard]] static std::string Format(int64_t wallMs, const char* format);

    /// How far the local clock is ahead of UTC at a wall clock, milliseconds. The zone must be in use.
    [[nodiscard]] static int64_t OffsetMs(int64_t wallMs);

    /// Whether the local calendar shows one day at two wall clocks. The zone must be in use.
    [[nodiscard]] static bool IsSameDay(int64_t a, int64_t b);

    /// An instant after `from`, up to and including `to`, at which the local clock jumps; nothing where it is as far
    /// ahead at both. The zone must be in use.
    [[nodiscard]] static std::optional<int64_t> FindChange(int64_t from, int64_t to);

private:
    std::string name_;
    std::string variable_;
};

}  // namespace TARN::Replay

#endif  // REPLAY_TIME_ZONE_H
