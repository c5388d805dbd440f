#ifndef AUTHORING_CSV_MAPPING_H
#define AUTHORING_CSV_MAPPING_H

#include <map>
#include <optional>
#include <string>
#include <variant>

#include "log_time.h"
#include "translation.h"

namespace TARN::Authoring {

/// A step as a trace has it, in place of a word.
struct RawStep {
    std::string kind;
    std::string content;  ///< JSON
};

/// What a cell stands for.
using Meaning = std::variant<Saying, RawStep>;

/// What the columns of a file of comma-separated values mean.
struct CsvMapping {
    std::string timeColumn = "time";
    LogTime time{"iso", "time.format"};
    std::string valueColumn;  ///< holds the values of words that need one; empty: there is none
    char separator = ',';
    /// Column to what its cells mean: either all the same, the cell being the value, or each text another. A column
    /// without either holds the words themselves.
    struct Column {
        std::optional<Saying> word;
        std::map<std::string, Meaning> texts;
    };
    std::map<std::string, Column> columns = {{"event", {}}};
};

/// Reads a mapping, JSON with comments. Throws InputError, in its name, for what is none.
[[nodiscard]] CsvMapping ReadCsvMapping(const std::string& text, const std::string& name);

}  // namespace TARN::Authoring

#endif  // AUTHORING_CSV_MAPPING_H
