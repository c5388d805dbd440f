#include "jsonl_writer.h"

#include "log_names.h"
#include "want_json.h"

namespace TARN::Replay {

using Json = nlohmann::ordered_json;

void JsonlWriter::Write(int64_t t, const char* key, Json value) {
    Json line;
    line["t"] = t;
    line[key] = std::move(value);
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
