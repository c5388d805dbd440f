#ifndef STORY_SLEEP_STORY_H
#define STORY_SLEEP_STORY_H

#include <cstdint>
#include <string>
#include <string_view>

#include "plugin_texts.h"
#include "scribe.h"
#include "want.h"

namespace TARN::Story {

/// Tells when the user falls asleep and wakes, and why not yet.
class SleepStory {
public:
    explicit SleepStory(Scribe& scribe) : scribe_(scribe) {}

    /// A record was collected and is about to be judged.
    void OnRecord(const AAFwk::Want& want);

    /// The plugin logged a line about its judgement.
    void OnJudgement(Meaning meaning, std::string_view text);

    /// The plugin published a change of the user's sleep; `isHeard` tells whether that worked.
    void OnPublished(bool isSleep, int64_t wakeup, bool isHeard);

    /// A change of the user's sleep that reached the strategies; told if nobody published it. Answers the event that
    /// tells of it.
    Scribe::Id OnReported(bool isSleep);

    /// The work on the latest record is over: tells why the user counts as awake, if that reason is new.
    void Settle();

    /// The service starts again and knows nothing of sleep.
    void OnRestart(Scribe::Id event);

private:
    void TellAsleep(int64_t wakeup);
    void TellAwake();
    [[nodiscard]] std::string WhyAwake() const;
    [[nodiscard]] bool IsScreenLit() const { return record_.screenOffS == 0; }

    void SetAsleep(bool isAsleep, Scribe::Id event);

    Scribe& scribe_;
    SleepReading record_;
    bool isJudging_ = false;
    int baseline_ = 0;
    bool isWakeupNear_ = false;
    std::string_view activeUse_;
    int64_t wakeup_ = -1;
    int64_t rememberedAlarm_ = -1;
    bool isAsleep_ = false;
    Scribe::Id event_ = kNoEvent;  ///< the latest change
    std::string toldKind_;         ///< the kind of reason for being awake that was told last
};

}  // namespace TARN::Story

#endif  // STORY_SLEEP_STORY_H
