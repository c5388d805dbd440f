#include "line_in_words.h"

#include <cstdint>
#include <string_view>

#include <nlohmann/json.hpp>

#include "standby_names.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;

std::string Compact(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Text as it stands between a JSON string's quotes: whole on one line, with nothing that a terminal obeys.
std::string Text(const Json& value) {
    const std::string quoted = Compact(value);
    return value.is_string() ? quoted.substr(1, quoted.size() - 2) : quoted;
}

std::string Member(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? std::string() : Text(*found);
}

std::string NameOfMessage(const Json& message) {
    const auto id = message.find("eventId");
    const bool isNumber = id != message.end() && id->is_number_integer();
    const std::string_view name = isNumber ? DevStandbyMgr::MessageName(id->get<int64_t>()) : std::string_view();
    return name.empty() ? Member(message, "eventId") : std::string(name);
}

}  // namespace

std::string InWords(const Replay::RecordLine& line) {
    const Json whole = Json::parse(line.text);
    const Json& what = whole.at(line.kind);
    if (line.kind == "log" && what.is_object()) {
        return Member(what, "level") + " " + Member(what, "file") + ": " + Member(what, "text");
    }
    if (line.kind == "call" && what.is_object()) {
        return "call " + Member(what, "operation") + " " + Member(what, "arguments") + " → " + Member(what, "result");
    }
    if (line.kind == "deliver" && what.is_object()) {
        const std::string action = Member(what, "action");
        const std::string want = Member(what, "want");
        return "message " + NameOfMessage(what) + (action.empty() ? "" : " " + action) +
               (want == "null" ? "" : " " + want);
    }
    if (line.kind == "summary") {
        return "the run ends: " + Compact(what);
    }
    return line.kind + " " + Text(what);
}

}  // namespace TARN::Story
