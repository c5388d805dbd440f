#ifndef REPLAY_PLAYER_H
#define REPLAY_PLAYER_H

#include <functional>
#include <span>
#include <stdexcept>
#include <string>

#include "record_sink.h"
#include "trace.h"

namespace TARN::Replay {

/// A run that could not be done although its input is right.
class RunError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct PlayOptions {
    std::string pluginPath;
    /// Called now and then with how much of the trace's time is over, 0 to 1.
    std::function<void(double)> progress;
    /// The folder below which the phone's files are and stay; empty: in memory.
    std::string filesFolder = {};
    /// What tells the run from another of the same trace where it crashes, "A"; empty: there is none.
    std::string side = {};
};

/// Hands out the steps of a trace, some at a time, in order; none when there are no more. They are good until the next
/// call.
using NextSteps = std::function<std::span<const Step>()>;

/// Plays a trace through host and plugin on a simulated phone in virtual time; the same trace tells the sink
/// the same every time. One run at a time in a process. Throws RunError when the plugin does not load, or the
/// phone's files cannot be written below their folder.
void Play(const Trace& trace, const PlayOptions& options, RecordSink& sink);

/// The same of a trace whose steps come from elsewhere, those in `head` being none; so that it may be of any length.
void Play(const Trace& head, const NextSteps& next, const PlayOptions& options, RecordSink& sink);

}  // namespace TARN::Replay

#endif  // REPLAY_PLAYER_H
