#ifndef STORY_REPORT_NIGHT_DATA_H
#define STORY_REPORT_NIGHT_DATA_H

#include <string>
#include <vector>

#include "report.h"

namespace TARN::Story {

/// The nights as JSON that may stand within a script element: "strings", every text once, and "sides", all in numbers,
/// where a text is its place in the strings, -1 for an empty one. Things in order of time are rows, each beginning with
/// the milliseconds since the row before, the first since the start. model.js reads it.
[[nodiscard]] std::string DataOf(const std::vector<ReportSide>& sides);

}  // namespace TARN::Story

#endif  // STORY_REPORT_NIGHT_DATA_H
