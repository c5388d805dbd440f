#include "event_writer.h"

#include <utility>

namespace TARN::Story {

namespace {

using Json = EventWriter::Json;

/// Numbers of threads are told apart without their process by some viewers, and 0 is no thread of its own.
constexpr int64_t kMostThreads = 1000;

int64_t ThreadNumber(Track track) {
    return track.process * kMostThreads + track.thread;
}

void Dump(std::ostream& output, const Json& json) {
    output << json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

EventWriter::EventWriter(std::ostream& output) : output_(output) {
    output_ << R"({"displayTimeUnit":"ms","traceEvents":[)";
}

void EventWriter::Write(const Json& event) {
    output_ << (std::exchange(isFirst_, false) ? "\n" : ",\n");
    Dump(output_, event);
}

Json EventWriter::Event(const char* phase, Track track, int64_t us, std::string_view name, std::string_view category) {
    return {{"ph", phase}, {"pid", track.process}, {"tid", ThreadNumber(track)},
            {"ts", us},    {"name", name},         {"cat", category}};
}

void EventWriter::Name(const char* what, Track track, std::string_view name, int64_t place) {
    Json event = {{"ph", "M"}, {"pid", track.process}, {"tid", ThreadNumber(track)}};
    event["name"] = std::string(what) + "_name";
    event["args"] = {{"name", name}};
    Write(event);
    event["name"] = std::string(what) + "_sort_index";
    event["args"] = {{"sort_index", place}};
    Write(event);
}

void EventWriter::NameProcess(int64_t process, std::string_view name) {
    Name("process", {process, 0}, name, process);
}

void EventWriter::NameThread(Track track, std::string_view name) {
    Name("thread", track, name, track.thread);
}

void EventWriter::Slice(Track track, int64_t us, int64_t lengthUs, std::string_view name, std::string_view category,
                        Json args) {
    Json event = Event("X", track, us, name, category);
    event["dur"] = lengthUs;
    event["args"] = std::move(args);
    Write(event);
}

void EventWriter::Instant(Track track, int64_t us, std::string_view name, std::string_view category, Json args) {
    Json event = Event("i", track, us, name, category);
    event["s"] = "t";
    event["args"] = std::move(args);
    Write(event);
}

void EventWriter::Counter(int64_t process, int64_t us, std::string_view name, double value) {
    Json event = Event("C", {process, 0}, us, name, "counter");
    event["args"] = {{"value", value}};
    Write(event);
}

void EventWriter::Begin(int64_t process, int64_t us, uint64_t id, std::string_view name, std::string_view category,
                        Json args) {
    Json event = Event("b", {process, 0}, us, name, category);
    event["id"] = id;
    event["args"] = std::move(args);
    Write(event);
}

void EventWriter::End(int64_t process, int64_t us, uint64_t id, std::string_view name, std::string_view category) {
    Json event = Event("e", {process, 0}, us, name, category);
    event["id"] = id;
    Write(event);
}

void EventWriter::Flow(uint64_t id, Track from, int64_t fromUs, Track to, int64_t toUs) {
    Json event = Event("s", from, fromUs, "because", "cause");
    event["id"] = id;
    Write(event);
    event = Event("f", to, toUs, "because", "cause");
    event["id"] = id;
    event["bp"] = "e";
    Write(event);
}

void EventWriter::Finish(const Json& facts) {
    output_ << "\n],\"otherData\":";
    Dump(output_, facts);
    output_ << "}\n";
}

}  // namespace TARN::Story
