#ifndef STORY_SLEEP_STORY_H
#define STORY_SLEEP_STORY_H

#include <cstdint>
#include <string>
#include <string_view>

#include "detector_picture.h"
#include "plugin_texts.h"
#include "scribe.h"
#include "sleep_reasons.h"
#include "want.h"

namespace TARN::Story {

/// Tells when the user falls asleep and wakes, and of each look at the user in between: its verdict, by which rule, and
/// the values that decided.
class SleepStory {
public:
    explicit SleepStory(Scribe& scribe) : scribe_(scribe) {}

    void OnConfig(int32_t standbyMode) { detector_.OnConfig(standbyMode); }
    void OnFacts(const Replay::SetStep& step) { detector_.OnFacts(step); }

    /// The service starts and knows nothing of sleep; `event` tells of it, kNoEvent at the night's start.
    void OnStart(Scribe::Id event);

    /// A message reaches the strategies: the work on what came before it is over.
    void OnMessage(const DevStandbyMgr::StandbyMessage& message);

    /// A record was collected and is about to be judged.
    void OnRecord(const AAFwk::Want& want);

    /// The plugin logged a line about its judgement.
    void OnJudgement(Meaning meaning, std::string_view text);

    /// The plugin published a change of the user's sleep; `isHeard` tells whether that worked.
    void OnPublished(bool isSleep, int64_t wakeup, bool isHeard);

    /// A change of the user's sleep that reached the strategies; told if nobody published it. Answers the event that
    /// tells of it.
    Scribe::Id OnReported(bool isSleep);

    /// The work on the latest record is over: tells its verdict, if no change told it.
    void Settle();

private:
    /// What became of the latest record, once it is judged.
    struct Verdict {
        bool isRuledAsleep = false;
        bool isOverruled = false;  ///< by the stricter rule
        bool isAsleep = false;     ///< the models' last word; who uses the phone is awake all the same
        SleepReason reason;        ///< of the rules
    };

    [[nodiscard]] bool IsAsleep() const { return scribe_.Value(LaneId::SLEEP) == "asleep"; }
    [[nodiscard]] Verdict Judge() const;
    [[nodiscard]] std::string WhyAwake(const Verdict& verdict) const;
    [[nodiscard]] std::string_view KindAwake(const Verdict& verdict) const;
    [[nodiscard]] std::vector<Value> ValuesOf(const Verdict& verdict) const;
    void Conclude(const Verdict& verdict, Scribe::Id event);
    void SetAsleep(bool isAsleep, Scribe::Id event);

    Scribe& scribe_;
    DetectorPicture detector_;
    SleepMemory memory_;
    SleepLook look_;
    bool isJudging_ = false;
    int baseline_ = 0;
    bool isWakeupNear_ = false;
    std::string_view activeUse_;
    int64_t wakeup_ = -1;
    int64_t announced_ = -1;       ///< the wake-up that was told when the user fell asleep
    Scribe::Id event_ = kNoEvent;  ///< the latest change, of the instant `instant_`
    uint64_t instant_ = 0;
    std::string toldKind_;  ///< the kind of reason that was told last
};

}  // namespace TARN::Story

#endif  // STORY_SLEEP_STORY_H
