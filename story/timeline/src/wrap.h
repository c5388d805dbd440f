#ifndef STORY_WRAP_H
#define STORY_WRAP_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace TARN::Story {

/// A text as lines of at most `width` characters, broken behind a comma, semicolon or colon if one is near the end,
/// else between words; all but the first are `hang` shorter. A word that is longer than a line stays whole. Width 0:
/// one line.
[[nodiscard]] std::vector<std::string_view> Wrap(std::string_view text, size_t width, size_t hang = 0);

}  // namespace TARN::Story

#endif  // STORY_WRAP_H
