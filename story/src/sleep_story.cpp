#include "sleep_story.h"

#include <array>
#include <cstdio>

#include "sleep_reasons.h"

namespace TARN::Story {

namespace {

struct ActiveUse {
    std::string_view logged;
    std::string_view told;
};

constexpr std::array kActiveUses = {
    ActiveUse{"playing or recording audio now", "audio is playing"},
    ActiveUse{"calling now", "a call"},
    ActiveUse{"sporting now", "sport is being tracked"},
};

constexpr std::string_view kVerdict = "predict baseline result: ";
constexpr std::string_view kWakeupNear = "standby stopped because the time is near or later than alarm";

}  // namespace

void SleepStory::OnRecord(const AAFwk::Want& want) {
    record_.t = want.GetLongParam("mTimestamp", teller_.Now());
    record_.stillS = want.GetIntParam("mUserStationaryDuration", -1);
    record_.darkS = want.GetIntParam("mLightDarkDuration", -1);
    record_.screenOffS = want.GetIntParam("mScrOffDuration", -1);
    record_.alarm = want.GetLongParam("mNextAlarmClockTriggerTime", -1);
    record_.light = want.GetFloatParam("mLight", -1.0F);
    isWakeupNear_ = false;
    activeUse_ = {};
}

void SleepStory::OnLog(std::string_view text) {
    if (text.starts_with(kVerdict)) {
        long wakeup = -1;
        const std::string copy(text.substr(kVerdict.size()));
        isJudging_ = std::sscanf(copy.c_str(), "%d, wakeup time: %ld", &baseline_, &wakeup) == 2;
        wakeup_ = wakeup;
    } else if (text.starts_with(kWakeupNear)) {
        isWakeupNear_ = true;
    } else {
        for (const ActiveUse& use : kActiveUses) {
            activeUse_ = text == use.logged ? use.told : activeUse_;
        }
    }
}

std::string SleepStory::WhyAwake() const {
    if (!activeUse_.empty()) {
        return std::string(activeUse_);
    }
    if (baseline_ == 1 && isWakeupNear_) {
        return std::string(IsWakeupByAlarm(record_) ? "the wake-up by the alarm, " : "the usual wake-up, ") +
               Clock(wakeup_) + (record_.t < wakeup_ ? ", is near" : ", has passed");
    }
    if (baseline_ != 1) {
        return WhyNotAsleep(record_, rememberedAlarm_).text;
    }
    return IsScreenLit() ? "the screen is lit" : "the stricter rule that holds for now does not agree";
}

void SleepStory::TellAsleep(int64_t wakeup) {
    isAsleep_ = true;
    toldKind_.clear();
    night_.asleep.Set(teller_.Now(), true);
    if (wakeup < 0) {
        teller_.Tell(Subject::SLEEP, Because("asleep", Reason(teller_.Why())));
        return;
    }
    teller_.Tell(Subject::SLEEP,
                 "asleep; expected up at " + Clock(wakeup) +
                     (IsWakeupByAlarm(record_) ? ", by the alarm of " + Clock(record_.alarm) : ", by habit"));
}

void SleepStory::TellAwake() {
    isAsleep_ = false;
    night_.asleep.Set(teller_.Now(), false);
    const std::string why = teller_.Why() == Cause::COLLECTED ? WhyAwake() : std::string(Reason(teller_.Why()));
    teller_.Tell(Subject::SLEEP, Because("awake", why));
}

void SleepStory::OnPublished(bool isSleep, int64_t wakeup, bool isHeard) {
    if (!isHeard) {
        teller_.Tell(Subject::SLEEP,
                     isSleep ? "asleep, but nobody hears of it: the broadcast failed"
                             : "awake, but nobody hears of it: the broadcast failed",
                     Tone::FAILURE);
    } else if (isSleep) {
        TellAsleep(wakeup);
    } else {
        TellAwake();
    }
}

void SleepStory::OnReported(const AAFwk::Want& want) {
    const bool isSleep = want.GetBoolParam("isSleep", false);
    if (isSleep == isAsleep_) {
        return;
    }
    isAsleep_ = isSleep;
    night_.asleep.Set(teller_.Now(), isSleep);
    teller_.Tell(Subject::SLEEP,
                 isSleep ? "asleep, says a message from elsewhere" : "awake, says a message from elsewhere");
}

void SleepStory::Settle() {
    if (!isJudging_) {
        return;
    }
    isJudging_ = false;
    if (isAsleep_) {
        rememberedAlarm_ = record_.alarm;
        return;
    }
    const std::string_view kind = !activeUse_.empty() ? activeUse_
                                  : baseline_ != 1    ? WhyNotAsleep(record_, rememberedAlarm_).kind
                                  : isWakeupNear_     ? "wake-up near"
                                  : IsScreenLit()     ? "screen lit"
                                                      : "stricter rule";
    if (kind != toldKind_) {
        toldKind_ = kind;
        // Waking up is told with its reason already.
        if (!night_.asleep.EndsAt(teller_.Now())) {
            teller_.Tell(Subject::SLEEP, "not asleep: " + WhyAwake());
        }
    }
}

void SleepStory::OnRestart() {
    isJudging_ = false;
    toldKind_.clear();
    rememberedAlarm_ = -1;
    if (isAsleep_) {
        isAsleep_ = false;
        night_.asleep.Set(teller_.Now(), false);
    }
}

}  // namespace TARN::Story
