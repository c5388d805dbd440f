#ifndef STORY_COLUMNS_H
#define STORY_COLUMNS_H

#include <cstdint>
#include <string>

namespace TARN::Story {

/// Fills up with spaces to a width in characters.
[[nodiscard]] std::string Padded(std::string text, size_t width);

/// A figure in a table: a duration of so many milliseconds, or a number; a dash for none.
[[nodiscard]] std::string FigureText(int64_t value, bool isDuration);

}  // namespace TARN::Story

#endif  // STORY_COLUMNS_H
