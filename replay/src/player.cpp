#include "player.h"

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

void Play(const Trace& trace, const PlayOptions& options, RecordSink& sink) {
    Session session(trace, options.pluginPath, sink, options.filesFolder, options.side);
    for (const Step& step : trace.steps) {
        AdvanceTo(session, step.t, trace, options);
        session.Do(step);
    }
    AdvanceTo(session, trace.end, trace, options);
    session.Finish(trace.end);
}

}  // namespace TARN::Replay
