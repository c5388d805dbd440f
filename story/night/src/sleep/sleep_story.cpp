#include "sleep_story.h"

#include <cstdio>

#include "sleep_reasons.h"

namespace TARN::Story {

namespace {

constexpr std::string_view kVerdict = "predict baseline result: ";

}  // namespace

void SleepStory::OnRecord(const AAFwk::Want& want) {
    record_.t = want.GetLongParam("mTimestamp", scribe_.Now());
    record_.stillS = want.GetIntParam("mUserStationaryDuration", -1);
    record_.darkS = want.GetIntParam("mLightDarkDuration", -1);
    record_.screenOffS = want.GetIntParam("mScrOffDuration", -1);
    record_.alarm = want.GetLongParam("mNextAlarmClockTriggerTime", -1);
    record_.light = want.GetFloatParam("mLight", -1.0F);
    isWakeupNear_ = false;
    activeUse_ = {};
}

void SleepStory::OnJudgement(Meaning meaning, std::string_view text) {
    switch (meaning) {
        case Meaning::JUDGES: {
            long wakeup = -1;
            const std::string copy(text.substr(kVerdict.size()));
            isJudging_ = std::sscanf(copy.c_str(), "%d, wakeup time: %ld", &baseline_, &wakeup) == 2;
            wakeup_ = wakeup;
            break;
        }
        case Meaning::WAKEUP_NEAR:
            isWakeupNear_ = true;
            break;
        case Meaning::HEARS_AUDIO:
            activeUse_ = "audio is playing";
            break;
        case Meaning::HEARS_CALL:
            activeUse_ = "a call";
            break;
        case Meaning::SEES_SPORT:
            activeUse_ = "sport is being tracked";
            break;
        default:
            break;
    }
}

std::string SleepStory::WhyAwake() const {
    if (!activeUse_.empty()) {
        return std::string(activeUse_);
    }
    if (baseline_ == 1 && isWakeupNear_) {
        return std::string(IsWakeupByAlarm(record_) ? "the wake-up by the alarm, " : "the built-in wake-up time, ") +
               Clock(wakeup_) + (record_.t < wakeup_ ? ", is near" : ", has passed");
    }
    if (baseline_ != 1) {
        return WhyNotAsleep(record_, rememberedAlarm_).text;
    }
    return IsScreenLit() ? "the screen is lit" : "the stricter rule that holds for now does not agree";
}

void SleepStory::SetAsleep(bool isAsleep, Scribe::Id event) {
    isAsleep_ = isAsleep;
    event_ = event;
    scribe_.Set(LaneId::SLEEP, isAsleep ? "asleep" : "awake", 0, event);
}

void SleepStory::TellAsleep(int64_t wakeup) {
    toldKind_.clear();
    if (wakeup < 0) {
        SetAsleep(true, scribe_.Write(Subject::SLEEP, Outcome::DONE, "asleep", scribe_.WhyInWords()));
        return;
    }
    SetAsleep(true, scribe_.Write(Subject::SLEEP, Outcome::DONE,
                                  "asleep; expected up at " + Clock(wakeup) +
                                      (IsWakeupByAlarm(record_) ? ", by the alarm of " + Clock(record_.alarm)
                                                                : ", the built-in time")));
}

void SleepStory::TellAwake() {
    SetAsleep(false, scribe_.Write(Subject::SLEEP, Outcome::DONE, "awake",
                                   scribe_.Why() == Cause::COLLECTED ? WhyAwake() : scribe_.WhyInWords()));
}

void SleepStory::OnPublished(bool isSleep, int64_t wakeup, bool isHeard) {
    if (!isHeard) {
        scribe_.Write(Subject::SLEEP, Outcome::FAILED,
                      isSleep ? "asleep, but nobody hears of it: the broadcast failed"
                              : "awake, but nobody hears of it: the broadcast failed");
    } else if (isSleep) {
        TellAsleep(wakeup);
    } else {
        TellAwake();
    }
}

Scribe::Id SleepStory::OnReported(bool isSleep) {
    if (isSleep != isAsleep_) {
        SetAsleep(isSleep, scribe_.Write(Subject::SLEEP, Outcome::HAPPENED,
                                         isSleep ? "asleep, says a message from elsewhere"
                                                 : "awake, says a message from elsewhere"));
    }
    return event_;
}

void SleepStory::Settle() {
    if (!isJudging_) {
        return;
    }
    isJudging_ = false;
    record_.isAsleep = isAsleep_;
    if (isAsleep_) {
        rememberedAlarm_ = record_.alarm;
        scribe_.Add(record_, event_);
        return;
    }
    const std::string_view kind = !activeUse_.empty() ? activeUse_
                                  : baseline_ != 1    ? WhyNotAsleep(record_, rememberedAlarm_).kind
                                  : isWakeupNear_     ? "wake-up near"
                                  : IsScreenLit()     ? "screen lit"
                                                      : "stricter rule";
    if (scribe_.HasWritten(Subject::SLEEP)) {  // waking up is told with its reason already
        toldKind_ = kind;
        scribe_.Add(record_, event_);
        return;
    }
    const Scribe::Id id = scribe_.Write(Subject::SLEEP, Outcome::KEPT, "not asleep: " + WhyAwake());
    scribe_.At(id).isRepeat = kind == toldKind_;
    scribe_.Add(record_, id);
    toldKind_ = kind;
}

void SleepStory::OnRestart(Scribe::Id event) {
    isJudging_ = false;
    toldKind_.clear();
    rememberedAlarm_ = -1;
    if (isAsleep_) {
        SetAsleep(false, event);
    }
}

}  // namespace TARN::Story
