#ifndef REPLAY_MOMENT_H
#define REPLAY_MOMENT_H

#include <cstdint>
#include <optional>
#include <string>

namespace TARN::Replay {

/// A stretch of time as people write it, in milliseconds: "2h", "1h30m", "45s", "3d". Nothing for any other text.
[[nodiscard]] std::optional<int64_t> ReadStretch(const std::string& text);

/// A moment as people name it, in milliseconds of the wall clock: a time of day, "02:13" or "02:13:05", the first one
/// from `from` on; a local time, "2026-03-02T02:13", with or without seconds; "+2h10m" after `from`; milliseconds.
/// Nothing for any other text. The time zone must be in use. Throws InputError for a local time that does not exist.
[[nodiscard]] std::optional<int64_t> ReadMoment(const std::string& text, int64_t from);

/// The same looking back: a time of day is the last one up to `until`, "-20m" is that much before it.
[[nodiscard]] std::optional<int64_t> ReadPastMoment(const std::string& text, int64_t until);

}  // namespace TARN::Replay

#endif  // REPLAY_MOMENT_H
