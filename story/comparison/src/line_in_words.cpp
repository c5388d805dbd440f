#include "line_in_words.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include <nlohmann/json.hpp>

#include "standby_message.h"

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

struct NamedMessage {
    int32_t id;
    std::string_view name;
};
namespace Type = DevStandbyMgr::StandbyMessageType;
constexpr std::array kMessages = {
    NamedMessage{Type::COMMON_EVENT, "COMMON_EVENT"},
    NamedMessage{Type::STATE_TRANSIT, "STATE_TRANSIT"},
    NamedMessage{Type::PHASE_TRANSIT, "PHASE_TRANSIT"},
    NamedMessage{Type::RES_CTRL_CONDITION_CHANGED, "RES_CTRL_CONDITION_CHANGED"},
    NamedMessage{Type::ALLOW_LIST_CHANGED, "ALLOW_LIST_CHANGED"},
    NamedMessage{Type::SCREEN_OFF_HALF_HOUR, "SCREEN_OFF_HALF_HOUR"},
    NamedMessage{Type::DEVICE_STATE_CHANGED, "DEVICE_STATE_CHANGED"},
    NamedMessage{Type::USER_SLEEP_STATE_CHANGED, "USER_SLEEP_STATE_CHANGED"},
    NamedMessage{Type::NET_IDLE_POLICY_TRANSIT, "NET_IDLE_POLICY_TRANSIT"},
    NamedMessage{Type::RESOURCE_APPLY, "RESOURCE_APPLY"},
    NamedMessage{Type::NAT_INTERVAL_CHANGED, "NAT_INTERVAL_CHANGED"},
    NamedMessage{Type::SLEEP_COLLECT_FINISHED, "SLEEP_COLLECT_FINISHED"},
    NamedMessage{Type::BG_TASK_STATUS_CHANGED, "BG_TASK_STATUS_CHANGED"},
    NamedMessage{Type::HOST_REFRESH, "HOST_REFRESH"},
};

std::string MessageName(const Json& message) {
    const std::string id = Member(message, "eventId");
    const auto* found = std::find_if(kMessages.begin(), kMessages.end(),
                                     [&](const NamedMessage& one) { return std::to_string(one.id) == id; });
    return found == kMessages.end() ? id : std::string(found->name);
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
        return "message " + MessageName(what) + (action.empty() ? "" : " " + action) +
               (want == "null" ? "" : " " + want);
    }
    if (line.kind == "summary") {
        return "the run ends: " + Compact(what);
    }
    return line.kind + " " + Text(what);
}

}  // namespace TARN::Story
