#include "trace_reader.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "facts_reader.h"
#include "json_fields.h"
#include "plain_text.h"
#include "step_reader.h"
#include "time_reader.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;

constexpr int64_t kVersion = 1;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr int64_t kDefaultBootNs = 60'000'000'000;
constexpr char kOneObject[] = "one JSON object a line";

/// Reads the header; tells whether it names the end.
bool ReadHeader(const JsonValue& object, Trace& trace) {
    JsonFields fields(object, {});
    const JsonValue& version = fields.Require("trace", "the format's version, 1, in a first line {\"trace\": 1, ...}");
    if (!version.IsInteger() || version.Integer() != kVersion) {
        Refuse("trace", Quote(version), "version 1");
    }
    fields.Optional("timezone", [&](const JsonValue& value, const std::string& where) {
        trace.timezone = TimeZone(ReadString(value, where));
    });
    trace.timezone.Use();
    trace.start = ReadTime(fields.Require("start", "the wall clock at which the service starts"), "start");
    const JsonValue* end = fields.Find("end");
    trace.end = end == nullptr ? trace.start : ReadTimeOn(*end, "end", trace.start, trace.start);
    if (trace.end < trace.start) {
        Refuse("end", std::to_string(trace.end) + " is before the start", "a time from " + std::to_string(trace.start));
    }
    trace.bootNs = kDefaultBootNs;
    fields.Optional(
        "boot_ns", [&](const JsonValue& value, const std::string& where) { trace.bootNs = ReadInteger(value, where); });
    fields.Optional("host", [&](const JsonValue& value, const std::string& where) {
        trace.host.Merge(value, where, /*withPolicy=*/false);
    });
    fields.Optional("device", [&](const JsonValue& value, const std::string& where) {
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

/// What `read` does; its InputError in the line's name.
template <class Read>
auto InLine(const std::string& name, const size_t& number, const Read& read) {
    try {
        return read();
    } catch (const InputError& error) {
        // An empty trace lacks its first line.
        throw InputError(name + ":" + std::to_string(std::max<size_t>(number, 1)) + ": " + error.what());
    }
}

}  // namespace

TraceReader::TraceReader(std::istream& input, std::string name) : input_(input) {
    head_.name = std::move(name);
    InLine(head_.name, number_, [&] {
        if (!NextLine()) {
            Refuse("", "no header", "a first line {\"trace\": 1, ...}");
        }
        hasEnd_ = ReadHeader(Parse(), head_);
        head_.headerLine = number_;
        last_ = head_.start;
        Note(head_.device.phone, facts_);
    });
}

std::span<Step> TraceReader::Next() {
    return InLine(head_.name, number_, [&]() -> std::span<Step> {
        steps_.clear();
        if (!NextLine()) {
            return {};
        }
        ReadSteps(Parse(), {head_.host.mode, head_.start, last_, facts_}, steps_);
        for (Step& step : steps_) {
            CheckOrder(step.t);
            step.line = number_;
            Note(step, facts_);
        }
        last_ = steps_.back().t;
        if (!hasEnd_) {
            head_.end = last_;
        }
        return steps_;
    });
}

std::vector<std::string> TraceReader::Lines() const {
    return steps_.empty() ? std::vector{line_} : LinesInFull(line_, document_.Root(), steps_);
}

bool TraceReader::NextLine() {
    size_t skippedBytes = 0;
    for (++number_; ReadLine(input_, line_, "a trace, one JSON object a line"); ++number_) {
        if (number_ == 1 && line_.starts_with(kByteOrderMark)) {
            line_.erase(0, kByteOrderMark.size());
        }
        if (!IsSkipped(line_)) {
            return true;
        }
        skippedBytes += line_.size() + 1;
        if (skippedBytes > kLongestLine) {
            Refuse("", "blank lines and comments for 16 megabytes", "a trace, one JSON object a line");
        }
    }
    --number_;  // there is no such line
    if (input_.bad()) {
        Refuse("", "cannot be read", "a trace");
    }
    return false;
}

const JsonValue& TraceReader::Parse() {
    try {
        return document_.Read(line_, kOneObject);
    } catch (const InputError&) {
        if (input_.eof() && IsCutOffJson(line_)) {
            Refuse("", "the trace ends in the middle of a line", kOneObject);
        }
        throw;
    }
}

void TraceReader::CheckOrder(int64_t t) const {
    if (t < last_) {
        Refuse("t", std::to_string(t) + " goes back", "a time from " + std::to_string(last_));
    }
    if (hasEnd_ && t > head_.end) {
        Refuse("t", std::to_string(t) + " is after the end", "a time up to " + std::to_string(head_.end));
    }
}

std::vector<WrittenStep> ReadStepLine(const std::string& line, const StepContext& context) {
    JsonDocument document;
    std::vector<Step> steps;
    ReadSteps(document.Read(line, kOneObject), context, steps);
    std::vector<std::string> lines = LinesInFull(line, document.Root(), steps);
    std::vector<WrittenStep> written;
    for (size_t i = 0; i < steps.size(); ++i) {
        written.push_back({std::move(steps[i]), std::move(lines[i])});
    }
    return written;
}

Trace ReadTrace(std::istream& input, const std::string& name, TraceLines* lines) {
    TraceReader reader(input, name);
    std::vector<Step> steps;
    if (lines != nullptr) {
        lines->header = reader.Lines().front();
    }
    for (auto next = reader.Next(); !next.empty(); next = reader.Next()) {
        if (lines != nullptr) {
            std::ranges::move(reader.Lines(), std::back_inserter(lines->steps));
        }
        std::ranges::move(next, std::back_inserter(steps));
    }
    Trace trace = reader.Head();
    trace.steps = std::move(steps);
    return trace;
}

}  // namespace TARN::Replay
