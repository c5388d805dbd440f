#ifndef STORY_DETECTOR_PICTURE_H
#define STORY_DETECTOR_PICTURE_H

#include <cstdint>

#include "event.h"
#include "sleep_look.h"
#include "standby_message.h"
#include "trace.h"

namespace TARN::Story {

/// What the sleep detector keeps in mind without a word in the record, followed by what it hears: when it looks again,
/// whether its stricter rule holds, and the verdict that only its changes are announced of.
class DetectorPicture {
public:
    void OnConfig(int32_t standbyMode) { standbyMode_ = standbyMode; }
    void OnFacts(const Replay::SetStep& step);
    void OnMessage(const DevStandbyMgr::StandbyMessage& message, int64_t now);

    /// The service starts, with nothing in mind.
    void OnStart();

    /// A look is over.
    void OnLooked(int64_t now);

    /// Whether the stricter rule holds and overrules a verdict of sleep.
    [[nodiscard]] bool Overrules(const SleepLook& look) const;

    /// A look was judged: by the rules alone but with the wake-up far, and by all there is.
    void OnJudged(const SleepLook& look, bool isRuledAsleep, bool isAsleep, bool isInUse);

    /// When the stricter rule came into force; -1 while it does not hold.
    [[nodiscard]] int64_t StricterSince() const noexcept { return stricterSince_; }
    [[nodiscard]] bool IsScreenOn() const noexcept { return isScreenOn_; }
    /// Whether it takes the user for asleep, announced or not.
    [[nodiscard]] bool IsAsleep() const noexcept { return isAsleep_; }

    /// Adds when it looks at the user again.
    void TellNextLook(Event& event, int64_t now) const;

private:
    void Distrust(int64_t now);
    [[nodiscard]] int64_t StepMs() const noexcept { return isDebug_ ? 4'000 : 10'000; }
    [[nodiscard]] int64_t PauseMs() const noexcept { return isDebug_ ? 15'000 : 600'000; }

    int32_t standbyMode_ = 0;
    bool isDebugWanted_ = false;  ///< the parameter; it counts from the next start on
    bool isDebug_ = false;
    bool isScreenOn_ = false;
    bool isLooking_ = false;    ///< in its rhythm, while the screen is off
    int64_t screenOffAt_ = -1;  ///< when the rhythm began
    int64_t screenOnAt_ = -1;   ///< when it ended
    int64_t lookedAt_ = 0;      ///< when the last look of the rhythm began
    bool isCalling_ = false;
    int64_t stricterSince_ = -1;
    bool isDoubtful_ = false;  ///< the latest verdict was sleep, but not by the stricter rule
    bool isVerdictAsleep_ = false;
    bool isAsleep_ = false;
};

}  // namespace TARN::Story

#endif  // STORY_DETECTOR_PICTURE_H
