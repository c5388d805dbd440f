#ifndef STORY_NIGHT_ROW_H
#define STORY_NIGHT_ROW_H

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "night.h"

namespace TARN::Story {

/// One thing that a night amounted to, for programs. The name ends in its unit: _s for seconds, _times for how often.
struct Cell {
    std::string_view name;
    std::variant<std::string, int64_t, double> value;  ///< seconds are a double, exact to the millisecond
};

/// What a night amounted to as a row of a table: every night has the same cells in the same order.
[[nodiscard]] std::vector<Cell> RowOf(const Night& night);

/// The row as one JSON object, and as a line of CSV as RFC 4180 has it; without the end of the line.
[[nodiscard]] std::string ToJsonLine(const std::vector<Cell>& row);
[[nodiscard]] std::string ToCsvLine(const std::vector<Cell>& row);

/// The names of the cells as a line of CSV.
[[nodiscard]] std::string CsvHead();

}  // namespace TARN::Story

#endif  // STORY_NIGHT_ROW_H
