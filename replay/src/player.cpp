#include "player.h"

#include <utility>

#include "session.h"

namespace TARN::Replay {

namespace {

/// Runs what is due before `t`, a day at a time for the sake of the progress.
void AdvanceTo(Session& session, int64_t t, const Trace& trace, const PlayOptions& options) {
    constexpr int64_t kDayMs = 24L * 3600 * 1000;
    const auto report = [&](int64_t now) {
        if (options.progress && trace.end > trace.start) {
            options.progress(static_cast<double>(now - trace.start) / static_cast<double>(trace.end - trace.start));
        }
    };
    for (int64_t next = session.NowMs() + kDayMs; next < t; next += kDayMs) {
        session.AdvanceTo(next);
        report(next);
    }
    session.AdvanceTo(t);
    report(t);
}

}  // namespace

void Play(const Trace& head, const NextSteps& next, const PlayOptions& options, RecordSink& sink) {
    Session session(head, options.pluginPath, sink, options.filesFolder, options.side);
    for (auto steps = next(); !steps.empty(); steps = next()) {
        for (const Step& step : steps) {
            AdvanceTo(session, step.t, head, options);
            session.Do(step);
        }
    }
    AdvanceTo(session, head.end, head, options);
    session.Finish(head.end);
}

void Play(const Trace& trace, const PlayOptions& options, RecordSink& sink) {
    std::span<const Step> left = trace.steps;
    Play(
        trace, [&left] { return std::exchange(left, {}); }, options, sink);
}

}  // namespace TARN::Replay
