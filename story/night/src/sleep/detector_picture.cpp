#include "detector_picture.h"

#include <algorithm>
#include <array>

#include "common_event_support.h"
#include "phrases.h"
#include "sleep_words.h"

namespace TARN::Story {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;

namespace {

constexpr int32_t kWatch = 3;
constexpr int32_t kCallTask = 8;
constexpr int64_t kSnapshotMs = 1000;
constexpr int64_t kMinuteMs = 60'000;
constexpr int64_t kStricterLifeMs = 259'200'000;  // three days
constexpr int64_t kStricterLeastS = 1800;

constexpr float kStricterEnd = 6.0F;
constexpr float kMorning = 6.0F;
constexpr float kNightEnd = 8.0F;
constexpr float kNoon = 12.0F;
constexpr float kNightBegin = 21.0F;

bool IsTrue(const std::string& parameter) {
    static constexpr std::array<std::string_view, 5> kTrue = {"1", "y", "yes", "on", "true"};
    return std::find(kTrue.begin(), kTrue.end(), parameter) != kTrue.end();
}

bool AgreesStrictly(const SleepLook& look) {
    return std::max(look.reading.stillS, look.reading.screenOffS) >= kStricterLeastS &&
           DayHour(look.reading.t) < kStricterEnd;
}

}  // namespace

void DetectorPicture::OnFacts(const Replay::SetStep& step) {
    const auto found = step.phone.parameters.find("persist.sys.standby_ext_debug_on");
    if (found != step.phone.parameters.end()) {
        isDebugWanted_ = IsTrue(found->second.value_or(""));
    }
}

void DetectorPicture::OnStart() {
    const DetectorPicture before = *this;
    *this = {};
    standbyMode_ = before.standbyMode_;
    isDebugWanted_ = before.isDebugWanted_;
    isDebug_ = isDebugWanted_;
}

void DetectorPicture::OnMessage(const StandbyMessage& message, int64_t now) {
    if (message.eventId == StandbyMessageType::BG_TASK_STATUS_CHANGED) {
        if (message.Params().GetIntParam("typeId", -1) == kCallTask) {
            isCalling_ = message.Params().GetBoolParam("started", false);
        }
        return;
    }
    if (message.eventId != StandbyMessageType::COMMON_EVENT) {
        return;
    }
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
        isLooking_ = false;
        screenOnAt_ = now;
        isAsleep_ = false;
        if (isCalling_ && standbyMode_ != kWatch) {
            Distrust(now);
        }
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        isLooking_ = true;
        screenOffAt_ = now;
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED) {
        Distrust(now);
    }
}

/// The user is up after a verdict of sleep that the stricter rule did not share. By day the detector has forgotten it.
void DetectorPicture::Distrust(int64_t now) {
    const float hour = DayHour(now);
    const bool isForgotten =
        !isDebug_ && hour >= kNightEnd && hour < kNightBegin && (hour >= kNoon || !isVerdictAsleep_);
    if (isDoubtful_ && !isForgotten) {
        stricterSince_ = now;
    }
}

void DetectorPicture::OnLooked(int64_t now) {
    const int64_t began = now - kSnapshotMs;
    const bool isOfRhythm = screenOffAt_ >= 0 && began >= screenOffAt_ && (isLooking_ || began <= screenOnAt_) &&
                            (began - screenOffAt_) % StepMs() == 0 && began >= lookedAt_ + PauseMs();
    lookedAt_ = isOfRhythm ? began : lookedAt_;
}

bool DetectorPicture::Overrules(const SleepLook& look) const {
    return stricterSince_ >= 0 && Between(stricterSince_, look.reading.t) <= kStricterLifeMs && !AgreesStrictly(look);
}

void DetectorPicture::OnJudged(const SleepLook& look, bool isRuledAsleep, bool isAsleep, bool isInUse) {
    if (Between(stricterSince_, look.reading.t) > kStricterLifeMs || (isAsleep && !AgreesStrictly(look))) {
        stricterSince_ = -1;
    }
    isDoubtful_ = isRuledAsleep && !AgreesStrictly(look);
    isVerdictAsleep_ = isAsleep;
    isAsleep_ = isAsleep && !isInUse;
}

void DetectorPicture::TellNextLook(Event& event, int64_t now) const {
    int64_t at = std::max(lookedAt_ + PauseMs(), isLooking_ ? now + 1 : now);
    if (isLooking_) {
        at = screenOffAt_ + (at - screenOffAt_ + StepMs() - 1) / StepMs() * StepMs();
    }
    const float hour = DayHour(at);
    const std::string_view gap =
        isVerdictAsleep_ ? "not looked at between noon and 21:00" : "not looked at between 08:00 and 21:00 while awake";
    const bool isGap = !isDebug_ && hour >= (isVerdictAsleep_ ? kNoon : kNightEnd) && hour < kNightBegin;
    if (isGap) {
        event.next = gap;
        return;
    }
    if (isLooking_) {
        event.next = "looked at again at " + Clock(at) + " if the screen stays off";
        event.nextBy = at;
        return;
    }
    event.next = "looked at again when the screen goes off";
    if (at - now >= kMinuteMs) {
        event.next += ", at " + Clock(at) + " at the earliest";
        event.nextBy = at;
    }
    if (!isDebug_ && hour >= kMorning && hour < kNoon) {
        event.next.append("; ").append(gap);
    }
}

}  // namespace TARN::Story
