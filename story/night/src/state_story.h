#ifndef STORY_STATE_STORY_H
#define STORY_STATE_STORY_H

#include <optional>
#include <string>

#include "host_reason.h"
#include "scribe.h"
#include "trace.h"
#include "want.h"

namespace TARN::Story {

/// Tells the host's states and phases: what changed them, and why they do not go deeper.
class StateStory {
public:
    explicit StateStory(Scribe& scribe) : scribe_(scribe) {}

    /// The trace has the battery's answer fail: a number all the same, of which only the trace knows that it is none.
    void OnFacts(const Replay::SetStep& step);

    /// The host says why the state changes, or stays. A change is told when its message comes.
    void OnReason(const DevStandbyMgr::StateReason& reason);

    /// The message of a change of state, or of a phase.
    void OnState(const AAFwk::Want& want);
    void OnPhase(const AAFwk::Want& want);

    /// The service starts, anew or for the first time: the state is WORKING by definition where it decides by itself.
    void OnStart(bool isAutomatic, Scribe::Id event);

private:
    void TellStay(const DevStandbyMgr::StateReason& reason);

    Scribe& scribe_;
    std::optional<DevStandbyMgr::StateReason> reason_;  ///< of the change whose message is to come
    Scribe::Id stateEvent_ = kNoEvent;                  ///< the latest change of state, which its first phase joins
    uint64_t stateInstant_ = UINT64_MAX;
    bool isPlugFailing_ = false;
};

}  // namespace TARN::Story

#endif  // STORY_STATE_STORY_H
