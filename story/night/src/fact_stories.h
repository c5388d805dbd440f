#ifndef STORY_FACT_STORIES_H
#define STORY_FACT_STORIES_H

#include "scribe.h"
#include "trace.h"

namespace TARN::Story {

/// Tells which facts of the phone a trace changes, as far as they explain what follows.
void TellFacts(Scribe& scribe, const Replay::SetStep& step);

/// Tells whom a trace restricts; nobody else does.
void TellRestricted(Scribe& scribe, const Replay::SetStep& step);

/// What an exemption is from, "network limits".
[[nodiscard]] std::string NameOfLimit(int32_t allowType);

/// The curves that facts draw: light, proximity, stillness. At the start also those that the trace leaves as usual.
void DrawCurves(Night& night, int64_t t, const Replay::SetStep& step, bool isStart);
/// Forgets what of the curves nobody looks back at from `t` on.
void ForgetCurves(Night& night, int64_t t);

/// Whether there is a strategy that switches Bluetooth off after long screen-offs and in deep standby.
[[nodiscard]] bool IsPowerOffAlive(const DevStandbyMgr::StandbyConfig& config);

/// The head of a night: how the host works, what its configuration changed, the phone at the start.
[[nodiscard]] std::vector<HeadFact> TellHead(const Replay::Trace& trace);

}  // namespace TARN::Story

#endif  // STORY_FACT_STORIES_H
