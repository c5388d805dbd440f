#include "csv.h"

#include "plain_text.h"

namespace TARN::Story {

std::string CsvField(const std::string& field) {
    const std::string text = DevStandbyMgr::Tame(field);
    if (text.find_first_of(",\"") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char one : text) {
        quoted.append(one == '"' ? 2 : 1, one);
    }
    return quoted + '"';
}

}  // namespace TARN::Story
