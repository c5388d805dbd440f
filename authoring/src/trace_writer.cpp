#include "trace_writer.h"

#include <algorithm>

#include "moment.h"

namespace TARN::Authoring {

namespace {

// Who does it, of the ordinary phone's applications: the one in the foreground, the player, the maps.
constexpr std::string_view kCallTask = R"({"type": 8, "uid": 20010004, "pid": 2152})";
constexpr std::string_view kAudioTask = R"({"type": 2, "uid": 20010007, "pid": 2191})";
constexpr std::string_view kLocationTask = R"({"type": 4, "uid": 20010008, "pid": 2204})";

/// A time of day, if the trace's reader finds `t` by it, looking from `from` on.
std::optional<std::string> TimeOfDay(int64_t t, int64_t from) {
    if (t % kSecondMs != 0) {
        return std::nullopt;
    }
    const std::string text = Replay::TimeZone::Format(t, t % kMinuteMs == 0 ? "%H:%M" : "%H:%M:%S");
    return Replay::ReadMoment(text, from) == t ? std::optional('"' + text + '"') : std::nullopt;
}

/// Whether the lines of a text are to be cut into more: a line break in what somebody else wrote ends no comment.
bool IsControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

}  // namespace

TraceWriter::TraceWriter(std::ostream& output, LocalClock& clock, TimeStyle style)
    : output_(output), clock_(clock), style_(style) {}

std::string TraceWriter::Time(int64_t t) {
    const auto timeOfDay = style_ == TimeStyle::SHORT ? TimeOfDay(t, last_) : std::nullopt;
    return timeOfDay ? *timeOfDay : clock_.Write(t);
}

std::string TraceWriter::LaterTime(int64_t t, int64_t now) {
    const auto timeOfDay = style_ == TimeStyle::SHORT ? TimeOfDay(t, now + 1) : std::nullopt;
    return timeOfDay ? *timeOfDay : clock_.Write(t);
}

void TraceWriter::Comment(std::string_view text) {
    WriteFacts();
    std::string line(text);
    std::replace_if(line.begin(), line.end(), IsControl, ' ');
    output_ << (line.empty() ? "#" : "# ") << line << '\n';
}

void TraceWriter::Header(int64_t start, std::optional<int64_t> end, const Json& host, const Json& device) {
    last_ = start;
    Json header = {{"trace", 1}, {"timezone", clock_.Zone().Name()}, {"start", Json::parse(clock_.Write(start))}};
    if (end) {
        header["end"] = Json::parse(Time(*end));
    }
    header["host"] = host;
    header["device"] = device;
    output_ << header.dump() << '\n';
}

void TraceWriter::Call(int64_t t, bool starts) {
    isCalling_ = starts;
    Step(t, "call", starts ? R"("start")" : R"("end")");
}

void TraceWriter::Task(int64_t t, Background what, bool runs) {
    (what == Background::AUDIO ? plays_ : locates_) = runs;
    std::string tasks;
    const auto add = [&tasks](bool isOne, std::string_view task) {
        if (isOne) {
            tasks.append(tasks.empty() ? "" : ", ").append(task);
        }
    };
    add(isCalling_, kCallTask);
    add(plays_, kAudioTask);
    add(locates_, kLocationTask);
    Fact(t, "continuous_tasks", "[" + tasks + "]");
}

void TraceWriter::Broadcast(int64_t t, std::string_view action, std::string_view want) {
    std::string content = R"({"action": ")" + std::string(action) + '"';
    if (!want.empty()) {
        content.append(R"(, "want": )").append(want);
    }
    Step(t, "broadcast", content + '}');
}

void TraceWriter::Movement(int64_t t, bool isMoving) {
    std::string since = clock_.Write(t);
    if (const auto timeOfDay = style_ == TimeStyle::SHORT ? TimeOfDay(t, t) : std::nullopt) {
        since = *timeOfDay;
    }
    Fact(t, "movement", std::string(R"({"value": )") + (isMoving ? "2" : "1") + R"(, "at": )" + since + '}');
}

void TraceWriter::Alarm(int64_t t, std::optional<int64_t> rings) {
    Fact(t, "alarm", rings ? LaterTime(*rings, t) : "null");
}

void TraceWriter::Fact(int64_t t, std::string_view name, std::string value) {
    if (t != factsAt_) {
        WriteFacts();
    }
    factsAt_ = t;
    const auto said = std::find_if(facts_.begin(), facts_.end(), [&](const auto& fact) { return fact.first == name; });
    if (said != facts_.end()) {
        said->second = std::move(value);
    } else {
        facts_.emplace_back(name, std::move(value));
    }
}

void TraceWriter::WriteFacts() {
    if (facts_.empty()) {
        return;
    }
    std::string content;
    for (const auto& [name, value] : facts_) {
        content.append(content.empty() ? "{\"" : ", \"").append(name).append("\": ").append(value);
    }
    facts_.clear();
    WriteStep(factsAt_, "set", content + '}');
}

void TraceWriter::Step(int64_t t, std::string_view kind, std::string_view content) {
    WriteFacts();
    WriteStep(t, kind, content);
}

void TraceWriter::WriteStep(int64_t t, std::string_view kind, std::string_view content) {
    output_ << R"({"t": )" << Time(t) << ", \"" << kind << "\": " << content << "}\n";
    last_ = t;
}

void TraceWriter::Finish() {
    WriteFacts();
}

}  // namespace TARN::Authoring
