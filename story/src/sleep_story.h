#ifndef STORY_SLEEP_STORY_H
#define STORY_SLEEP_STORY_H

#include <cstdint>
#include <string>
#include <string_view>

#include "night_summary.h"
#include "teller.h"
#include "want.h"

namespace TARN::Story {

/// One collected record of the phone's surroundings. Durations in seconds, times in milliseconds, -1 unknown.
struct SleepRecord {
    int64_t t = -1;
    int64_t stillS = -1;
    int64_t darkS = -1;
    int64_t screenOffS = -1;
    int64_t alarm = -1;
    float light = -1.0F;
};

/// Tells when the user falls asleep and wakes, and why not yet.
class SleepStory {
public:
    SleepStory(Teller& teller, NightSummary& night) : teller_(teller), night_(night) {}

    /// A record was collected and is about to be judged.
    void OnRecord(const AAFwk::Want& want);

    /// The plugin logged a line about its judgement.
    void OnLog(std::string_view text);

    /// The plugin published a change of the user's sleep; `isHeard` tells whether that worked.
    void OnPublished(bool isSleep, int64_t wakeup, bool isHeard);

    /// A change of the user's sleep that reached the strategies; told if nobody published it.
    void OnReported(const AAFwk::Want& want);

    /// The work on the latest record is over: tells why the user counts as awake, if that reason is new.
    void Settle();

    /// The service starts again and knows nothing of sleep.
    void OnRestart();

private:
    void TellAsleep(int64_t wakeup);
    void TellAwake();
    [[nodiscard]] std::string WhyAwake() const;
    [[nodiscard]] bool IsScreenLit() const { return record_.screenOffS == 0; }

    Teller& teller_;
    NightSummary& night_;
    SleepRecord record_;
    bool isJudging_ = false;
    int baseline_ = 0;
    bool isWakeupNear_ = false;
    std::string_view activeUse_;
    int64_t wakeup_ = -1;
    int64_t rememberedAlarm_ = -1;
    bool isAsleep_ = false;
    std::string toldKind_;  ///< the kind of reason for being awake that was told last
};

}  // namespace TARN::Story

#endif  // STORY_SLEEP_STORY_H
