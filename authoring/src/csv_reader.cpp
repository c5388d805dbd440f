#include "csv_reader.h"

#include <string_view>
#include <utility>

#include "json_fields.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::Refuse;

constexpr size_t kMostBytes = size_t{1024} * 1024;
constexpr int kEnd = std::char_traits<char>::eof();
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

CsvReader::CsvReader(std::istream& input, std::string name, char separator)
    : input_(*input.rdbuf()), name_(std::move(name)), separator_(separator) {}

std::string CsvReader::Where() const {
    return name_ + ":" + std::to_string(row_);
}

int CsvReader::Get() {
    const int c = input_.sbumpc();
    if (++bytes_ > kMostBytes) {
        Refuse(Where(), "a row of more than a megabyte", "rows of comma-separated values");
    }
    line_ += c == '\n' ? 1 : 0;
    return c;
}

bool CsvReader::Next(std::vector<std::string>& fields) {
    while (ReadRow(fields)) {
        if (fields.size() > 1 || !fields.front().empty()) {
            return true;
        }
    }
    return false;
}

bool CsvReader::ReadRow(std::vector<std::string>& fields) {
    row_ = line_;
    bytes_ = 0;
    fields.clear();
    if (input_.sgetc() == kEnd) {
        return false;
    }
    std::string field;
    for (bool goesOn = true; goesOn;) {
        const int c = Get();
        if (c == '"' && field.empty()) {
            ReadQuoted(field);
            const int next = input_.sgetc();
            if (next != separator_ && next != '\r' && next != '\n' && next != kEnd) {
                Refuse(Where(), "text behind a closing quote", "a separator or the line's end there, \"\" for a quote");
            }
        } else if (c == separator_ || c == '\n' || c == kEnd) {
            goesOn = c == separator_;
            fields.push_back(std::move(field));
            field.clear();
        } else if (c != '\r' || (input_.sgetc() != '\n' && input_.sgetc() != kEnd)) {
            field += static_cast<char>(c);
            if (row_ == 1 && fields.empty() && field == kByteOrderMark) {
                field.clear();
            }
        }
    }
    return true;
}

void CsvReader::ReadQuoted(std::string& field) {
    for (;;) {
        const int c = Get();
        if (c == kEnd) {
            Refuse(Where(), "a quote that is not closed", "a \" at the end of the field");
        }
        if (c == '"') {
            if (input_.sgetc() != '"') {
                return;
            }
            (void)Get();
        }
        field += static_cast<char>(c);
    }
}

}  // namespace TARN::Authoring
