#ifndef STORY_STATE_STORY_H
#define STORY_STATE_STORY_H

#include <optional>
#include <string>
#include <vector>

#include "host_reason.h"
#include "scribe.h"
#include "standby_config.h"
#include "trace.h"
#include "want.h"

namespace TARN::Story {

/// Tells the host's states and phases: what changed them, and why they do not go deeper.
class StateStory {
public:
    explicit StateStory(Scribe& scribe) : scribe_(scribe) {}

    void OnConfig(const DevStandbyMgr::StandbyConfig& config);

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
    /// The steps of one instant: one event.
    struct Way {
        uint64_t instant = UINT64_MAX;
        Scribe::Id event = kNoEvent;
        std::vector<int32_t> states;       ///< from the first to the last; one where only the phase changed
        int32_t phase = -1;                ///< the last one entered; -1 for none
        std::vector<std::string> reasons;  ///< each told once
    };

    void TellStay(const DevStandbyMgr::StateReason& reason);
    void GoOn(int32_t from);
    void Retell();
    void TellNextPhase(Event& event) const;

    Scribe& scribe_;
    std::vector<DevStandbyMgr::StateReason> reasons_;  ///< of the changes whose messages are to come, in order
    Way way_;
    std::optional<int64_t> phaseEveryMs_;  ///< nothing: nobody enters phases by itself
    int64_t maintenanceAt_ = -1;           ///< while in SLEEP: when it is interrupted; -1 not known, or held
    bool isPlugFailing_ = false;
};

}  // namespace TARN::Story

#endif  // STORY_STATE_STORY_H
