#include "player.h"

#include "session.h"

namespace TARN::Replay {

namespace {

/// The run of this process, for whoever asks in the midst of it.
class Now {
public:
    explicit Now(const Trace& trace) noexcept {
        name_ = trace.name.c_str();
        start_ = trace.start;
        sinceStartMs_ = 0;
    }
    ~Now() {
        name_ = nullptr;
        session_ = nullptr;
    }
    Now(const Now&) = delete;
    Now& operator=(const Now&) = delete;

    void Runs(const Session& session) const noexcept { session_ = &session; }
    void HasRun() const noexcept {
        sinceStartMs_ = session_->NowMs() - start_;
        session_ = nullptr;
    }

    static std::optional<Running> Get() noexcept {
        if (name_ == nullptr) {
            return std::nullopt;
        }
        return Running{name_, session_ == nullptr ? sinceStartMs_ : session_->NowMs() - start_};
    }

private:
    static inline const char* name_ = nullptr;
    static inline const Session* session_ = nullptr;  ///< while it lives
    static inline int64_t start_ = 0;
    static inline int64_t sinceStartMs_ = 0;  ///< before and after that
};

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
    const Now now(trace);
    Session session(trace, options.pluginPath, sink, options.filesFolder);
    now.Runs(session);
    for (const Step& step : trace.steps) {
        AdvanceTo(session, step.t, trace, options);
        session.Do(step);
    }
    AdvanceTo(session, trace.end, trace, options);
    session.Finish(trace.end);
    now.HasRun();
}

std::optional<Running> WhatRuns() noexcept {
    return Now::Get();
}

}  // namespace TARN::Replay
