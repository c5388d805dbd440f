#include "trace.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <nlohmann/json.hpp>

#include "facts_reader.h"
#include "json_fields.h"
#include "json_text.h"
#include "plain_text.h"
#include "step_reader.h"
#include "time_reader.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;
using Json = nlohmann::json;

constexpr int64_t kVersion = 1;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int64_t kDefaultBootNs = 60'000'000'000;

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
    trace.end = end == nullptr ? trace.start : ReadTimeOn(*end, "end", trace.start, trace.start);
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
        trace.device = ReadFacts(
            value, where, {trace.host.mode == HostMode::AUTOMATIC, trace.start, Simulated::PhoneFacts().accounts});
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
    constexpr char kExpected[] = "one JSON object a line";
    try {
        return ParseJson(line, kExpected);
    } catch (const InputError&) {
        if (isCutOff && IsCutOffJson(line)) {
            Refuse("", "the trace ends in the middle of a line", kExpected);
        }
        throw;
    }
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

/// Takes note of what later steps lean on.
void Note(const Simulated::FactsChange& change, Simulated::PhoneFacts& facts) {
    const auto take = [](auto& fact, const auto& news) {
        if (news) {
            fact = *news;
        }
    };
    take(facts.accounts, change.accounts);
    take(facts.processes, change.processes);
    take(facts.continuousTasks, change.continuousTasks);
}

void Note(const Step& step, Simulated::PhoneFacts& facts) {
    if (const auto* set = std::get_if<SetStep>(&step.what)) {
        Note(set->phone, facts);
    }
}

}  // namespace

std::vector<WrittenStep> ReadStepLine(const std::string& line, const StepContext& context) {
    const Json object = ParseLine(line, /*isCutOff=*/false);
    CheckIntegers(line);
    return ReadSteps(object, &line, context);
}

Trace ReadTrace(std::istream& input, const std::string& name, TraceLines* lines) {
    Trace trace;
    trace.name = name;
    bool hasHeader = false;
    bool hasEnd = false;
    Simulated::PhoneFacts facts;
    std::string line;
    size_t number = 0;
    size_t skippedBytes = 0;  ///< since the last line that says something
    try {
        for (number = 1; ReadLine(input, line, "a trace, one JSON object a line"); ++number) {
            if (number == 1 && line.starts_with(kByteOrderMark)) {
                line.erase(0, kByteOrderMark.size());
            }
            if (IsSkipped(line)) {
                skippedBytes += line.size() + 1;
                if (skippedBytes > kLongestLine) {
                    Refuse("", "blank lines and comments for 16 megabytes", "a trace, one JSON object a line");
                }
                continue;
            }
            skippedBytes = 0;
            const Json object = ParseLine(line, input.eof());
            if (!hasHeader) {
                hasEnd = ReadHeader(object, trace);
                hasHeader = true;
                trace.headerLine = number;
                Note(trace.device.phone, facts);
                CheckIntegers(line);
                if (lines != nullptr) {
                    lines->header = line;
                }
                continue;
            }
            auto steps = ReadSteps(
                object, lines != nullptr ? &line : nullptr,
                {trace.host.mode, trace.start, trace.steps.empty() ? trace.start : trace.steps.back().t, facts});
            CheckIntegers(line);
            for (WrittenStep& written : steps) {
                CheckOrder(trace, written.step, hasEnd);
                written.step.line = number;
                Note(written.step, facts);
                trace.steps.push_back(std::move(written.step));
                if (lines != nullptr) {
                    lines->steps.push_back(std::move(written.line));
                }
            }
        }
        --number;  // there is no such line
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
