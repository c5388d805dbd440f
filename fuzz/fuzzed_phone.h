#ifndef FUZZ_FUZZED_PHONE_H
#define FUZZ_FUZZED_PHONE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "trace.h"

namespace TARN::Fuzz {

inline constexpr int64_t kMinuteMs = 60'000;
inline constexpr int64_t kHourMs = 60 * kMinuteMs;

/// A trace of `lengthMs` on an evening in UTC, without steps, of a phone with a few processes.
[[nodiscard]] Replay::Trace Evening(int64_t lengthMs);

/// Appends a step `afterMs` behind the start.
template <class What>
void AddStep(Replay::Trace& trace, int64_t afterMs, What what) {
    trace.steps.push_back({.t = trace.start + afterMs, .what = std::move(what)});
}

/// A broadcast of the system without parameters.
[[nodiscard]] Replay::BroadcastStep Broadcast(std::string_view action);

/// Plays a trace through host and plugin. All that a record could tell is put together, and forgotten.
void Play(const Replay::Trace& trace);

/// Plays half an hour in the dark, and the screen going on, with one of the service's files found as `text` at the
/// start.
void PlayWithFile(const std::string& name, std::string text);

}  // namespace TARN::Fuzz

#endif  // FUZZ_FUZZED_PHONE_H
