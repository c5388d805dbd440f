#include "jsonl_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
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

JsonlWriter::JsonlWriter(std::ostream& output, bool hasReasons, const std::string& trace)
    : output_(output), hasReasons_(hasReasons) {
    if (!trace.empty()) {
        Append(",\"trace\":");
        AppendText(trace);
        trace_ = std::exchange(line_, {});
    }
}

void JsonlWriter::Begin(int64_t t, std::string_view kind) {
    line_ = "{\"t\":";
    AppendNumber(t);
    Append(",\"");
    Append(kind);
    Append("\":");
}

void JsonlWriter::End() {
    Append(trace_);
    Append("}\n");
    output_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
}

void JsonlWriter::Append(std::string_view json) {
    line_.append(json);
}

void JsonlWriter::AppendNumber(int64_t number) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    line_.append(digits.data(), end);
}

void JsonlWriter::AppendText(std::string_view text) {
    const auto isPlain = [](char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; };
    if (!std::all_of(text.begin(), text.end(), isPlain)) {
        AppendJson(text);
        return;
    }
    line_.append(1, '"').append(text).append(1, '"');
}

void JsonlWriter::AppendJson(const Json& value) {
    Append(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void JsonlWriter::OnLog(int64_t t, const LogLine& line) {
    Begin(t, "log");
    Append("{\"level\":");
    AppendText(LevelName(line.level));
    Append(",\"file\":");
    AppendText(SourceName(line.file));
    Append(",\"function\":");
    AppendText(line.function);
    Append(",\"text\":");
    AppendText(line.text);
    Append("}");
    End();
}

void JsonlWriter::OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) {
    Begin(t, "call");
    Append("{\"operation\":");
    AppendText(operation);
    Append(",\"arguments\":");
    AppendJson(arguments);
    Append(",\"result\":");
    AppendJson(result);
    Append("}");
    End();
}

void JsonlWriter::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    Begin(t, "deliver");
    Append("{\"eventId\":");
    AppendNumber(message.eventId);
    Append(",\"action\":");
    AppendText(message.action);
    Append(",\"want\":");
    AppendJson(message.want ? Simulated::ToJson(*message.want) : Json());
    Append("}");
    End();
}

void JsonlWriter::OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) {
    Begin(t, "reason");
    AppendJson(std::visit([](const auto& one) { return ToJson(one); }, reason));
    End();
}

void JsonlWriter::OnDump(int64_t t, const std::string& text) {
    Begin(t, "dump");
    AppendText(text);
    End();
}

void JsonlWriter::OnEnd(int64_t t, const Summary& summary) {
    Begin(t, "summary");
    AppendJson({{"messages", summary.messages},
                {"calls", summary.calls},
                {"logs", summary.logs},
                {"virtual_ms", summary.virtualMs}});
    End();
}

}  // namespace TARN::Replay
