#include "trace.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <nlohmann/json.hpp>

#include "facts_reader.h"
#include "json_fields.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;
using Json = nlohmann::json;

constexpr int64_t kVersion = 1;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int64_t kDefaultBootNs = 60'000'000'000;
/// The last millisecond of the year 9999; times lie between its negative and it.
constexpr int64_t kLatestMs = 253'402'300'799'999;

int64_t ReadTime(const Json& value, const std::string& where) {
    if (!value.is_string()) {
        return ReadInteger(value, where, -kLatestMs, kLatestMs);
    }
    try {
        return TimeZone::ParseLocal(value.get<std::string>());
    } catch (const InputError& error) {
        throw InputError(where + ": " + error.what());
    }
}

AAFwk::Want ReadWant(const Json& object, const std::string& where) {
    ExpectObject(object, where);
    AAFwk::Want want;
    for (const auto& [key, value] : object.items()) {
        const std::string member = where + "." + key;
        switch (value.type()) {
            case Json::value_t::boolean:
                want.SetParam(key, value.get<bool>());
                break;
            case Json::value_t::number_integer:
            case Json::value_t::number_unsigned:
                want.SetParam(key, ReadInteger(value, member));
                break;
            case Json::value_t::number_float:
                want.SetParam(key, value.get<double>());
                break;
            case Json::value_t::string:
                want.SetParam(key, value.get<std::string>());
                break;
            default:
                Refuse(member, Quote(value), "a bool, a number or a string");
        }
    }
    return want;
}

MessageStep ReadMessage(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    StandbyMessage message(ReadInt32(fields.Require("eventId", "an event identifier"), fields.Where("eventId")));
    fields.Optional("action",
                    [&](const Json& value, const std::string& where) { message.action = ReadString(value, where); });
    fields.Optional("want", [&](const Json& value, const std::string& where) {
        if (!value.is_null()) {
            message.want = ReadWant(value, where);
        }
    });
    fields.Finish();
    return {std::move(message)};
}

BroadcastStep ReadBroadcast(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    AAFwk::Want want;
    fields.Optional("want", [&](const Json& value, const std::string& where) { want = ReadWant(value, where); });
    want.SetAction(ReadString(fields.Require("action", "the broadcast's name"), fields.Where("action")));
    fields.Finish();
    return {std::move(want)};
}

RestartStep ReadRestart(const Json& value, const std::string& where) {
    const std::string kind = ReadString(value, where);
    if (kind != "stop" && kind != "crash") {
        Refuse(where, Quote(value), "\"stop\" or \"crash\"");
    }
    return {kind == "crash"};
}

FileStep ReadFile(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    FileStep step;
    step.name = ReadString(fields.Require("name", "a file name"), fields.Where("name"));
    if (step.name != "power_off_record" && step.name != "sleep_shared_pref.xml") {
        Refuse(fields.Where("name"), Quote(step.name), "\"power_off_record\" or \"sleep_shared_pref.xml\"");
    }
    const Json& text = fields.Require("text", "the file's text, or null to remove it");
    if (!text.is_null()) {
        step.text = ReadString(text, fields.Where("text"));
    }
    fields.Finish();
    return step;
}

Step ReadStep(const Json& object, HostMode mode) {
    JsonFields fields(object, {});
    Step step{};
    step.t = ReadTime(fields.Require("t", "the step's time"), "t");
    int count = 0;
    const auto kind = [&](const std::string& key, const auto& read) {
        fields.Optional(key, [&](const Json& value, const std::string& where) {
            ++count;
            step.what = read(value, where);
        });
    };
    kind("set", [&](const Json& value, const std::string& where) {
        return ReadFacts(value, where, mode == HostMode::AUTOMATIC);
    });
    kind("message", ReadMessage);
    kind("broadcast", ReadBroadcast);
    kind("dump", [](const Json& value, const std::string& where) { return DumpStep{ReadStrings(value, where)}; });
    kind("restart", ReadRestart);
    kind("file", ReadFile);
    fields.Finish();
    if (count != 1) {
        Refuse("", std::to_string(count) + " kinds of step",
               "exactly one of set, message, broadcast, dump, restart, file");
    }
    return step;
}

/// Reads the header; tells whether it names the end.
bool ReadHeader(const Json& object, Trace& trace) {
    JsonFields fields(object, {});
    const Json& version = fields.Require("trace", "the format's version, 1, in a first line {\"trace\": 1, ...}");
    if (!version.is_number_integer() || version != kVersion) {
        Refuse("trace", Quote(version), "version 1");
    }
    fields.Optional("timezone", [&](const Json& value, const std::string& where) {
        trace.timezone = TimeZone(ReadString(value, where));
    });
    trace.timezone.Use();
    trace.start = ReadTime(fields.Require("start", "the wall clock at which the service starts"), "start");
    const Json* end = fields.Find("end");
    trace.end = end == nullptr ? trace.start : ReadTime(*end, "end");
    if (trace.end < trace.start) {
        Refuse("end", std::to_string(trace.end) + " is before the start", "a time from " + std::to_string(trace.start));
    }
    trace.bootNs = kDefaultBootNs;
    fields.Optional("boot_ns",
                    [&](const Json& value, const std::string& where) { trace.bootNs = ReadInteger(value, where); });
    fields.Optional("host", [&](const Json& value, const std::string& where) {
        trace.host.Merge(value, where, /*withPolicy=*/false);
    });
    fields.Optional("device", [&](const Json& value, const std::string& where) {
        trace.device = ReadFacts(value, where, trace.host.mode == HostMode::AUTOMATIC);
    });
    fields.Finish();
    return end != nullptr;
}

bool IsSkipped(std::string_view line) {
    const size_t first = line.find_first_not_of(" \t\r");
    return first == std::string_view::npos || line[first] == '#';
}

/// Refuses an integer that does not fit 64 bits and that passed for a float, as the parser hands it on.
void CheckIntegers(std::string_view json) {
    constexpr std::string_view kNumber = "-+.eE0123456789";
    for (size_t at = 0; at < json.size(); ++at) {
        if (json[at] == '"') {
            for (++at; at < json.size() && json[at] != '"'; ++at) {
                at += json[at] == '\\' ? 1 : 0;
            }
            continue;
        }
        const size_t length = std::min(json.find_first_not_of(kNumber, at), json.size()) - at;
        if (length == 0) {
            continue;
        }
        const std::string_view number = json.substr(at, length);
        int64_t value = 0;
        if (number.find_first_of(".eE") == std::string_view::npos &&
            std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc::result_out_of_range) {
            constexpr size_t kMostShown = 40;
            Refuse("", std::string(number.substr(0, kMostShown)), "integers of 64 bits");
        }
        at += length - 1;
    }
}

Json ParseLine(const std::string& line, bool isCutOff) {
    Json object = Json::parse(line, nullptr, /*allow_exceptions=*/false);
    if (object.is_discarded()) {
        Refuse("", isCutOff ? "the trace ends in the middle of a line" : "not JSON", "one JSON object a line");
    }
    return object;
}

void CheckOrder(const Trace& trace, const Step& step, bool hasEnd) {
    const int64_t before = trace.steps.empty() ? trace.start : trace.steps.back().t;
    if (step.t < before) {
        Refuse("t", std::to_string(step.t) + " goes back", "a time from " + std::to_string(before));
    }
    if (hasEnd && step.t > trace.end) {
        Refuse("t", std::to_string(step.t) + " is after the end", "a time up to " + std::to_string(trace.end));
    }
}

}  // namespace

Step ReadStepLine(const std::string& line, HostMode mode) {
    const Json object = ParseLine(line, /*isCutOff=*/false);
    CheckIntegers(line);
    return ReadStep(object, mode);
}

Trace ReadTrace(std::istream& input, const std::string& name, TraceLines* lines) {
    Trace trace;
    trace.name = name;
    bool hasHeader = false;
    bool hasEnd = false;
    std::string line;
    size_t number = 0;
    try {
        while (std::getline(input, line)) {
            ++number;
            if (number == 1 && line.starts_with(kByteOrderMark)) {
                line.erase(0, kByteOrderMark.size());
            }
            if (IsSkipped(line)) {
                continue;
            }
            const Json object = ParseLine(line, input.eof());
            if (!hasHeader) {
                hasEnd = ReadHeader(object, trace);
                hasHeader = true;
                CheckIntegers(line);
                if (lines != nullptr) {
                    lines->header = line;
                }
                continue;
            }
            Step step = ReadStep(object, trace.host.mode);
            CheckOrder(trace, step, hasEnd);
            CheckIntegers(line);
            trace.steps.push_back(std::move(step));
            if (lines != nullptr) {
                lines->steps.push_back(line);
            }
        }
        if (input.bad()) {
            Refuse("", "cannot be read", "a trace");
        }
        if (!hasHeader) {
            Refuse("", "no header", "a first line {\"trace\": 1, ...}");
        }
    } catch (const InputError& error) {
        // An empty trace lacks its first line.
        throw InputError(name + ":" + std::to_string(std::max<size_t>(number, 1)) + ": " + error.what());
    }
    if (!hasEnd && !trace.steps.empty()) {
        trace.end = trace.steps.back().t;
    }
    return trace;
}

}  // namespace TARN::Replay
