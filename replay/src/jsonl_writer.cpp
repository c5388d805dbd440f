#include "jsonl_writer.h"

#include <utility>
#include <variant>

#include "exemption_flag.h"
#include "log_names.h"
#include "standby_names.h"
#include "want_json.h"

namespace TARN::Replay {

using DevStandbyMgr::FirewallReason;
using DevStandbyMgr::RunningLockReason;
using DevStandbyMgr::StateName;
using DevStandbyMgr::StateReason;
using Json = nlohmann::ordered_json;

namespace {

Json ToJson(const std::vector<DevStandbyMgr::AppVerdict>& apps) {
    Json list = Json::array();
    for (const DevStandbyMgr::AppVerdict& app : apps) {
        Json entry = {{"uid", app.uid}};
        if (app.pid != -1) {
            entry["pid"] = app.pid;
        }
        entry["name"] = app.name;
        entry["flags"] = DevStandbyMgr::ExemptionKeys(app.exemptionFlags);
        entry["exempt"] = app.isExempt;
        list.push_back(std::move(entry));
    }
    return list;
}

Json OrNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json ToJson(const StateReason& reason) {
    Json conditions = Json::array();
    for (const DevStandbyMgr::ConditionFound& condition : reason.conditions) {
        conditions.push_back({{"name", condition.name}, {"met", condition.isMet}, {"found", condition.found}});
    }
    return {{"about", "state"},
            {"cause", DevStandbyMgr::CauseName(reason.cause)},
            {"from", StateName(reason.from)},
            {"to", StateName(reason.to)},
            {"target", StateName(reason.target)},
            {"conditions", std::move(conditions)},
            {"next_try", reason.nextTryMs < 0 ? Json() : Json(reason.nextTryMs)}};
}

Json ToJson(const FirewallReason& reason) {
    return {{"about", "firewall"},
            {"rule", reason.isDeepStandby ? "deep_standby" : "user_sleep"},
            {"failed_question", OrNull(reason.failedQuestion)},
            {"apps", ToJson(reason.apps)}};
}

Json ToJson(const RunningLockReason& reason) {
    return {{"about", "running_locks"},
            {"proxying", reason.isProxying},
            {"failed_question", OrNull(reason.failedQuestion)},
            {"apps", ToJson(reason.apps)}};
}

}  // namespace

void JsonlWriter::Write(int64_t t, const char* key, Json value) {
    Json line;
    line["t"] = t;
    line[key] = std::move(value);
    if (!trace_.empty()) {
        line["trace"] = trace_;
    }
    output_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void JsonlWriter::OnLog(int64_t t, const LogLine& line) {
    Write(t, "log",
          {{"level", LevelName(line.level)},
           {"file", SourceName(line.file)},
           {"function", line.function},
           {"text", line.text}});
}

void JsonlWriter::OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) {
    Write(t, "call", {{"operation", operation}, {"arguments", arguments}, {"result", result}});
}

void JsonlWriter::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    Write(t, "deliver",
          {{"eventId", message.eventId},
           {"action", message.action},
           {"want", message.want ? Simulated::ToJson(*message.want) : Json()}});
}

void JsonlWriter::OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) {
    Write(t, "reason", std::visit([](const auto& one) { return ToJson(one); }, reason));
}

void JsonlWriter::OnDump(int64_t t, const std::string& text) {
    Write(t, "dump", text);
}

void JsonlWriter::OnEnd(int64_t t, const Summary& summary) {
    Write(t, "summary",
          {{"messages", summary.messages},
           {"calls", summary.calls},
           {"logs", summary.logs},
           {"virtual_ms", summary.virtualMs}});
}

}  // namespace TARN::Replay
