#include "night_script.h"

#include <algorithm>
#include <sstream>

#include "player.h"
#include "trace.h"

namespace TARN::Tests {

namespace {

using Replay::TimeZone;

int64_t ParseLocal(const std::string& zone, const std::string& local) {
    TimeZone(zone).Use();
    return TimeZone::ParseLocal(local);
}

std::string Quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

/// JSON that a test writes over several lines, on the one line that a trace wants.
std::string OneLine(std::string_view json) {
    std::string line(json);
    std::replace(line.begin(), line.end(), '\n', ' ');
    return line;
}

std::string Object(const std::map<std::string, std::string>& members) {
    std::string text;
    for (const auto& [key, json] : members) {
        text += (text.empty() ? "" : ", ") + Quoted(key) + ": " + json;
    }
    return "{" + text + "}";
}

}  // namespace

Night::Night(std::string zone, const std::string& start)
    : zone_(std::move(zone)), startMs_(ParseLocal(zone_, start)), nowMs_(startMs_) {
    Host("mode", R"("scripted")").Strategies(R"(["NONE"])");
}

Night& Night::Host(const std::string& key, std::string_view json) {
    host_[key] = OneLine(json);
    return *this;
}

Night& Night::Device(const std::string& key, std::string_view json) {
    device_[key] = OneLine(json);
    return *this;
}

int64_t Night::Next(const std::string& time) const {
    constexpr int64_t kNoonToNoonMs = 24L * 3600 * 1000;
    constexpr size_t kMinutes = 5;
    TimeZone(zone_).Use();
    const std::string local = "T" + time + (time.size() == kMinutes ? ":00" : "");
    const int64_t today = TimeZone::ParseLocal(TimeZone::Format(nowMs_, "%Y-%m-%d") + local);
    if (today >= nowMs_) {
        return today;
    }
    // from today's noon, so that a day of 23 or 25 hours still leads to tomorrow
    const int64_t noon = TimeZone::ParseLocal(TimeZone::Format(nowMs_, "%Y-%m-%dT12:00:00"));
    return TimeZone::ParseLocal(TimeZone::Format(noon + kNoonToNoonMs, "%Y-%m-%d") + local);
}

Night& Night::AdvanceTo(const std::string& time) {
    nowMs_ = Next(time);
    return *this;
}

Night& Night::AdvanceMs(int64_t ms) {
    nowMs_ += ms;
    return *this;
}

Night& Night::Step(std::string_view kind, std::string_view json) {
    steps_.push_back("{\"t\": " + std::to_string(nowMs_) + ", " + Quoted(kind) + ": " + OneLine(json) + "}");
    return *this;
}

Night& Night::Fail(const std::string& operation, int32_t code) {
    return Set(R"({"fail": {")" + operation + R"(": )" + std::to_string(code) + "}}");
}

Night& Night::Heal(const std::string& operation) {
    return Set(R"({"fail": {")" + operation + R"(": null}})");
}

Night& Night::Message(int32_t eventId, std::string_view want, const std::string& action) {
    return Step("message", R"({"eventId": )" + std::to_string(eventId) + R"(, "action": ")" + action +
                               R"(", "want": )" + std::string(want) + "}");
}

Night& Night::MessageWithoutWant(int32_t eventId, const std::string& action) {
    return Step("message", R"({"eventId": )" + std::to_string(eventId) + R"(, "action": ")" + action + R"("})");
}

Night& Night::Broadcast(const std::string& action, std::string_view want) {
    return Step("broadcast", R"({"action": ")" + action + R"(", "want": )" + std::string(want) + "}");
}

Night& Night::File(const std::string& name, std::string_view jsonText) {
    return Step("file", R"({"name": ")" + name + R"(", "text": )" + std::string(jsonText) + "}");
}

Night& Night::System(const std::string& action, std::string_view want) {
    return host_["mode"] == Quoted("automatic") ? Broadcast(action, want) : Message(1, want, action);
}

Night& Night::GoFromTo(int32_t previousState, int32_t state) {
    return Message(2, R"({"PREVIOUS_STATE": )" + std::to_string(previousState) + R"(, "CURRENT_STATE": )" +
                          std::to_string(state) + "}");
}

Night& Night::EnterPhase(int32_t state, int32_t phase) {
    return Message(
        3, R"({"CURRENT_STATE": )" + std::to_string(state) + R"(, "CURRENT_PHASE": )" + std::to_string(phase) + "}");
}

Night& Night::ChangeCondition(int32_t condition) {
    const std::string value = std::to_string(condition);
    return Set(R"({"condition": )" + value + "}").Message(4, R"({"RES_CTRL_CONDITION": )" + value + "}");
}

std::string Night::Text(const std::string& endTime) const {
    std::string text = R"({"trace": 1, "timezone": ")" + zone_ + R"(", "start": )" + std::to_string(startMs_);
    if (!endTime.empty()) {
        text += R"(, "end": )" + std::to_string(Next(endTime));
    }
    text += R"(, "host": )" + Object(host_) + R"(, "device": )" + Object(device_) + "}\n";
    for (const std::string& step : steps_) {
        text += step + "\n";
    }
    return text;
}

Record Night::PlayUntil(const std::string& endTime) const {
    return PlayText(Text(endTime), policy_);
}

Record PlayText(const std::string& trace, const DevStandbyMgr::StandbyPolicy& policy) {
    std::istringstream input(trace);
    Replay::Trace night = Replay::ReadTrace(input, "test");
    night.host.policy = policy;
    Record record;
    RecordingSink sink(record);
    Replay::Play(night, {PluginPath(), {}}, sink);
    return record;
}

const char* PluginPath() {
    return PLUGIN_PATH;
}

}  // namespace TARN::Tests
