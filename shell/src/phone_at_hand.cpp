#include "phone_at_hand.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

#include "simulated_phone.h"
#include "trace_reader.h"

namespace TARN::Shell {

PhoneAtHand::PhoneAtHand(const Replay::Trace& trace, const Replay::TraceLines& lines, const std::string& pluginPath,
                         Replay::RecordSink& sink)
    : trace_(trace), lines_(lines), session_(trace, pluginPath, sink) {
    DoTraceUntil(trace_.start);
    session_.RunThrough(trace_.start);
}

void PhoneAtHand::DoTraceUntil(int64_t t) {
    for (; next_ < trace_.steps.size() && trace_.steps[next_].t <= t; ++next_) {
        session_.Do(trace_.steps[next_]);
        done_.push_back(std::move(lines_.steps[next_]));
    }
}

void PhoneAtHand::Do(const std::vector<HandStep>& steps) {
    const int64_t t = NextMs();
    std::vector<Replay::WrittenStep> read;
    for (const HandStep& step : steps) {
        const std::string line = "{\"t\": " + std::to_string(t) + ", \"" + step.kind + "\": " + step.json + "}";
        auto written = Replay::ReadStepLine(line, {trace_.host.mode, trace_.start, t, Phone().Facts()});
        std::move(written.begin(), written.end(), std::back_inserter(read));
    }
    DoTraceUntil(t);
    for (auto& [step, line] : read) {
        session_.Do(step);
        done_.push_back(std::move(line));
    }
    session_.RunThrough(t);
}

bool PhoneAtHand::WaitUntil(int64_t t, const std::function<bool()>& isInterrupted) {
    constexpr int64_t kStretchMs = 3600L * 1000;
    while (NowMs() < t) {
        if (isInterrupted && isInterrupted()) {
            return false;
        }
        const int64_t next = std::min(t, NowMs() + kStretchMs);
        DoTraceUntil(next);
        session_.AdvanceTo(next);
        session_.RunThrough(next);
    }
    return true;
}

void PhoneAtHand::Finish() {
    session_.Finish(NowMs());
}

std::string PhoneAtHand::Done() const {
    auto header = nlohmann::ordered_json::parse(lines_.header);
    header["end"] = NowMs();
    std::string text = header.dump() + "\n";
    for (const std::string& line : done_) {
        text += line + "\n";
    }
    return text;
}

}  // namespace TARN::Shell
