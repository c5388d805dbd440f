#ifndef AUTHORING_CSV_READER_H
#define AUTHORING_CSV_READER_H

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

namespace TARN::Authoring {

/// Reads comma-separated values row by row: fields in quotes may hold separators, line breaks and doubled quotes; lines
/// end with or without a carriage return; a byte order mark and blank lines are skipped.
class CsvReader {
public:
    /// The input outlives the reader. `name` is its name in messages.
    CsvReader(std::istream& input, std::string name, char separator);

    /// The next row; false at the end. Throws InputError for a row that is none or very long.
    [[nodiscard]] bool Next(std::vector<std::string>& fields);

    /// "name:line" of the row read last.
    [[nodiscard]] std::string Where() const;

private:
    [[nodiscard]] bool ReadRow(std::vector<std::string>& fields);
    void ReadQuoted(std::string& field);
    [[nodiscard]] int Get();

    std::streambuf& input_;
    std::string name_;
    char separator_;
    size_t line_ = 1;   ///< that is being read
    size_t row_ = 1;    ///< at which the row began
    size_t bytes_ = 0;  ///< of the row
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_CSV_READER_H
