#ifndef STORY_CSV_H
#define STORY_CSV_H

#include <string>

namespace TARN::Story {

/// A field of a line of CSV as RFC 4180 has it, in quotes where it has to be. Control characters become "?", so that a
/// row is a line and steers no terminal.
[[nodiscard]] std::string CsvField(const std::string& field);

}  // namespace TARN::Story

#endif  // STORY_CSV_H
