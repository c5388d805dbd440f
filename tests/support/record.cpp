#include "record.h"

#include <algorithm>
#include <cstdio>

#include "log_names.h"
#include "time_zone.h"
#include "want_json.h"

namespace TARN::Tests {

namespace {

constexpr std::string_view kCall = "call";
constexpr std::string_view kDeliver = "deliver";
constexpr std::string_view kDump = "dump";

std::string TimeText(int64_t t) {
    constexpr int64_t kMsPerSecond = 1000;
    std::string text = Replay::TimeZone::Format(t, "%H:%M:%S");
    if (const int64_t ms = t % kMsPerSecond; ms != 0) {
        char fraction[8];
        std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(ms));
        text += fraction;
    }
    return text;
}

}  // namespace

template <class Accept, class Render>
Record::Texts Record::Collect(const Accept& accept, const Render& render) const {
    Texts texts;
    for (const Line& line : lines_) {
        if (accept(line)) {
            texts.push_back(line.stamp + render(line));
        }
    }
    return texts;
}

Record::Texts Record::Of(std::initializer_list<std::string_view> sources) const {
    return Collect(
        [&sources](const Line& line) {
            const bool isMessage = line.kind == kDeliver || line.kind == kDump;
            const std::string key = isMessage ? line.kind + " " + line.source + " " : line.source;
            return std::any_of(sources.begin(), sources.end(), [&key](auto source) { return key.starts_with(source); });
        },
        [](const Line& line) {
            const bool isLog = line.kind != kDeliver && line.kind != kDump && line.kind != kCall;
            return line.kind + " " + (isLog ? line.source + ": " : std::string()) + line.text;
        });
}

Record::Texts Record::LogsOf(std::string_view file) const {
    return Collect([file](const Line& line) { return line.source == file; },
                   [](const Line& line) { return line.kind + " " + line.text; });
}

Record::Texts Record::Calls(std::string_view operation) const {
    return Collect([operation](const Line& line) { return line.kind == kCall && line.source.starts_with(operation); },
                   [](const Line& line) { return line.text; });
}

Record::Texts Record::Deliveries(std::initializer_list<int32_t> eventIds) const {
    return Collect(
        [&eventIds](const Line& line) {
            return line.kind == kDeliver &&
                   (eventIds.size() == 0 ||
                    std::find(eventIds.begin(), eventIds.end(), std::stoi(line.source)) != eventIds.end());
        },
        [](const Line& line) { return line.text; });
}

Record::Texts Record::Dumps() const {
    return Collect([](const Line& line) { return line.kind == kDump; }, [](const Line& line) { return line.text; });
}

Record Record::At(std::string_view time) const {
    Record part = *this;
    std::erase_if(part.lines_, [time](const Line& line) { return !line.time.starts_with(time); });
    return part;
}

Record Record::Timed() const {
    Record timed = *this;
    for (Line& line : timed.lines_) {
        line.stamp = line.time + " ";
    }
    return timed;
}

void RecordingSink::Add(int64_t t, std::string kind, std::string source, std::string text) {
    record_.lines_.push_back({TimeText(t), std::move(kind), std::move(source), std::move(text), {}});
}

void RecordingSink::OnLog(int64_t t, const LogLine& line) {
    Add(t, std::string(Replay::LevelName(line.level)), std::string(Replay::SourceName(line.file)),
        std::string(line.text));
}

void RecordingSink::OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                           const nlohmann::ordered_json& result) {
    const std::string name(operation);
    Add(t, std::string(kCall), name, name + " " + arguments.dump() + " -> " + result.dump());
}

void RecordingSink::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    const std::string id = std::to_string(message.eventId);
    Add(t, std::string(kDeliver), id,
        id + " " + (message.action.empty() ? "" : message.action + " ") +
            (message.want ? Simulated::ToJson(*message.want).dump() : "null"));
}

void RecordingSink::OnDump(int64_t t, const std::string& text) {
    Add(t, std::string(kDump), {}, '"' + text + '"');
}

void RecordingSink::OnEnd(int64_t /*t*/, const Replay::Summary& summary) {
    record_.summary = summary;
}

}  // namespace TARN::Tests
