#ifndef STORY_PHRASES_H
#define STORY_PHRASES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "plain_text.h"

namespace TARN::Story {

/// "1 app", "12 apps".
[[nodiscard]] std::string Count(int64_t number, std::string_view noun);

/// "once", "twice", "12 times".
[[nodiscard]] std::string Times(int64_t number);

/// "a, b and c", or "a, b and 9 more" where the names would fill the line.
[[nodiscard]] std::string Names(const std::vector<std::string>& names);

/// "4 s", "12 min", "7 h 05 min", "11 h".
[[nodiscard]] std::string Duration(int64_t ms);

/// A length that a configuration sets: "half an hour", "10 min".
[[nodiscard]] std::string LengthOf(int64_t seconds);

/// Local time of day, "06:45".
[[nodiscard]] std::string Clock(int64_t t);

/// Local time with its offset: "2026-03-01T21:00:00+01:00".
[[nodiscard]] std::string LocalTime(int64_t t);

/// Text that a terminal shows and does not obey.
using DevStandbyMgr::Tame;

/// "sentence: reason", or the sentence alone where no reason is known.
[[nodiscard]] std::string Because(std::string sentence, std::string_view reason);

}  // namespace TARN::Story

#endif  // STORY_PHRASES_H
