#ifndef REPLAY_PLAYER_H
#define REPLAY_PLAYER_H

#include <cstdint>
#include <functional>
#include <optional>
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
};

/// Plays a trace through host and plugin on a simulated phone in virtual time; the same trace tells the sink
/// the same every time. One run at a time in a process. Throws RunError when the plugin does not load, or the
/// phone's files cannot be written below their folder.
void Play(const Trace& trace, const PlayOptions& options, RecordSink& sink);

/// The run that Play is busy with.
struct Running {
    const char* trace;     ///< its name
    int64_t sinceStartMs;  ///< how much of the trace's time is over
};

/// What is being played just now; nothing between runs. For a handler of a crash, which may ask at any
/// instant.
[[nodiscard]] std::optional<Running> WhatRuns() noexcept;

}  // namespace TARN::Replay

#endif  // REPLAY_PLAYER_H
