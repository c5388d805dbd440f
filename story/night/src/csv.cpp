#include "csv.h"

namespace TARN::Story {

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char one : text) {
        quoted.append(one == '"' ? 2 : 1, one);
    }
    return quoted + '"';
}

}  // namespace TARN::Story
