#ifndef REPLAY_TIME_READER_H
#define REPLAY_TIME_READER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "json_value.h"

namespace TARN::Replay {

// Times as a trace writes them: integers are milliseconds of the wall clock, strings what people write. The time zone
// must be in use. Each throws InputError for what is no time, does not exist, or is too far away.

/// Milliseconds or a local time.
[[nodiscard]] int64_t ReadTime(const DevStandbyMgr::JsonValue& value, std::string_view where);

/// Also a time of day, the first from `from` on, and "+2h10m", so much after `start`.
[[nodiscard]] int64_t ReadTimeOn(const DevStandbyMgr::JsonValue& value, std::string_view where, int64_t start,
                                 int64_t from);

/// Also a time of day, the first after `now`, and "+8h" from `now`.
[[nodiscard]] int64_t ReadTimeAfter(const DevStandbyMgr::JsonValue& value, std::string_view where, int64_t now);

/// Also a time of day, the last up to `now`, and "-20m", so much before `now`. Any milliseconds will do.
[[nodiscard]] int64_t ReadTimeBefore(const DevStandbyMgr::JsonValue& value, std::string_view where, int64_t now);

/// Whether a text is a local time or a time of day, and would be a small number to who takes it for milliseconds.
[[nodiscard]] bool IsWrittenTime(const std::string& text);

/// Whether it names no day: the first one that fits is meant.
[[nodiscard]] bool IsTimeOfDay(const DevStandbyMgr::JsonValue& time);

/// Whether it means the same wherever it stands.
[[nodiscard]] bool IsAbsolute(const DevStandbyMgr::JsonValue& time);

}  // namespace TARN::Replay

#endif  // REPLAY_TIME_READER_H
