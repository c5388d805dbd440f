#ifndef SHELL_PHONE_AT_HAND_H
#define SHELL_PHONE_AT_HAND_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "session.h"
#include "trace.h"

namespace TARN::Shell {

/// A step as a trace writes it, without its time: the kind, "set", and the JSON behind it.
struct HandStep {
    std::string kind;
    std::string json;
};

/// A phone that is moved by hand while the steps of its trace wait for their time. It remembers what was done to it.
class PhoneAtHand {
public:
    /// The sink outlives the phone. Throws RunError when the plugin does not load.
    PhoneAtHand(const Replay::Trace& trace, const Replay::TraceLines& lines, const std::string& pluginPath,
                Replay::RecordSink& sink);

    /// Does steps one millisecond from now, and what follows from them at once. Throws InputError when one of them
    /// cannot be read; then none is done.
    void Do(const std::vector<HandStep>& steps);

    /// Lets time go by until `t`, with the steps of the trace on the way. Stops early, and answers false, when
    /// `isInterrupted` says so.
    bool WaitUntil(int64_t t, const std::function<bool()>& isInterrupted);

    /// Stops the service. The last call.
    void Finish();

    [[nodiscard]] int64_t NowMs() const { return session_.NowMs(); }
    /// When the next step by hand takes place.
    [[nodiscard]] int64_t NextMs() const { return session_.NowMs() + 1; }
    [[nodiscard]] const Replay::Trace& Trace() const noexcept { return trace_; }
    [[nodiscard]] bool IsTraceOver() const { return next_ == trace_.steps.size() && NowMs() >= trace_.end; }
    [[nodiscard]] Simulated::SimulatedPhone& Phone() { return session_.Phone(); }
    [[nodiscard]] DevStandbyMgr::StandbyServiceImpl& Service() { return session_.Service(); }

    /// A trace of all that was done to the phone up to now.
    [[nodiscard]] std::string Done() const;

    /// How many steps that were.
    [[nodiscard]] size_t Steps() const noexcept { return done_.size(); }

private:
    void DoTraceUntil(int64_t t);

    Replay::Trace trace_;
    Replay::TraceLines lines_;
    size_t next_ = 0;  ///< of the trace's steps
    std::vector<std::string> done_;
    Replay::Session session_;
};

}  // namespace TARN::Shell

#endif  // SHELL_PHONE_AT_HAND_H
