#include "sleep_story.h"

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <optional>

#include "sleep_words.h"

namespace TARN::Story {

namespace {

constexpr std::string_view kVerdict = "predict baseline result: ";

// What the detector itself puts in where nothing is read.
constexpr std::initializer_list<float> kLightStandIns = {50.0F};
constexpr std::initializer_list<float> kProximityStandIns = {0.0001F, 0.01F, 5.1F};

/// Whether a sensor gave `value` for the snapshot that ended at `t`: its curve passed through it, or nothing else can
/// have. `before` is the value of the look before, which may stand in, as `standIns` do.
bool IsRead(float value, const std::vector<Sample>& curve, int64_t t, std::optional<float> before,
            std::initializer_list<float> standIns) {
    constexpr int64_t kSnapshotMs = 1000;
    for (auto sample = curve.rbegin(); sample != curve.rend(); ++sample) {
        if (sample->value == value) {
            return true;
        }
        if (sample->t <= t - kSnapshotMs) {
            break;
        }
    }
    return value >= 0.0F && value != before && std::find(standIns.begin(), standIns.end(), value) == standIns.end();
}

}  // namespace

void SleepStory::OnMessage(const DevStandbyMgr::StandbyMessage& message) {
    Settle();
    detector_.OnMessage(message, scribe_.Now());
}

void SleepStory::OnRecord(const AAFwk::Want& want) {
    const int64_t now = scribe_.Now();
    look_ = {};
    look_.judgedAt = now;
    SleepReading& reading = look_.reading;
    reading.t = want.GetLongParam("mTimestamp", now);
    reading.stillS = want.GetIntParam("mUserStationaryDuration", -1);
    reading.darkS = want.GetIntParam("mLightDarkDuration", -1);
    reading.screenOffS = want.GetIntParam("mScrOffDuration", -1);
    reading.alarm = want.GetLongParam("mNextAlarmClockTriggerTime", -1);
    reading.light = want.GetFloatParam("mLight", -1.0F);
    look_.proximity = want.GetFloatParam("mProximity", -1.0F);
    look_.unlockedAt = want.GetLongParam("mUnlockTimestamp", -1);
    look_.screenOns = want.GetIntParam("mScrOnCount", -1);
    const Night& night = scribe_.Of();
    std::optional<float> light;
    std::optional<float> proximity;
    if (memory_.last) {
        light = memory_.last->reading.light;
        proximity = memory_.last->proximity;
    }
    look_.isLightRead = IsRead(reading.light, night.light, now, light, kLightStandIns);
    look_.isProximityRead = IsRead(look_.proximity, night.proximity, now, proximity, kProximityStandIns);
    isWakeupNear_ = false;
    activeUse_ = {};
    detector_.OnLooked(now);
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

SleepStory::Verdict SleepStory::Judge() const {
    Verdict verdict;
    verdict.isRuledAsleep = baseline_ == 1;
    const bool isSleepLikely = verdict.isRuledAsleep && !isWakeupNear_;
    verdict.isOverruled = isSleepLikely && detector_.Overrules(look_);
    verdict.isAsleep = isSleepLikely && !verdict.isOverruled;
    verdict.reason = ReasonOf(look_, memory_, verdict.isRuledAsleep);
    return verdict;
}

std::string SleepStory::WhyAwake(const Verdict& verdict) const {
    if (!activeUse_.empty()) {
        return std::string(activeUse_);
    }
    if (!verdict.isRuledAsleep) {
        return verdict.reason.text;
    }
    if (isWakeupNear_) {
        const std::string by = WakeupOf(look_.reading, wakeup_).by;
        return "the wake-up expected at " + Clock(wakeup_) + (by.empty() ? "" : " by " + by) +
               (look_.judgedAt < wakeup_ ? " is near" : " has passed");
    }
    if (verdict.isOverruled) {
        return "the stricter rule, in force since the user was up at " + Clock(detector_.StricterSince()) +
               ", does not agree";
    }
    return {};
}

std::string_view SleepStory::KindAwake(const Verdict& verdict) const {
    if (!activeUse_.empty()) {
        return activeUse_;
    }
    if (verdict.isRuledAsleep) {
        return isWakeupNear_ ? "wake-up near" : verdict.isOverruled ? "stricter rule" : "not known";
    }
    return verdict.reason.kind.empty() ? "not known" : std::string_view(verdict.reason.kind);
}

std::vector<Value> SleepStory::ValuesOf(const Verdict& verdict) const {
    const SleepReason& reason = verdict.reason;
    std::vector<Value> values = {{"rule", (reason.rule.empty() ? "not known" : reason.rule) +
                                              (verdict.isRuledAsleep ? " (asleep)" : " (awake)")}};
    for (Value& value : Story::ValuesOf(look_, memory_)) {
        values.push_back(std::move(value));
    }
    if (wakeup_ >= 0) {
        const bool isOther = IsAsleep() && announced_ >= 0 && Clock(announced_) != Clock(wakeup_);
        values.push_back({"wake-up expected",
                          WakeupOf(look_.reading, wakeup_).detail +
                              (isOther ? "; it counts, not the " + Clock(announced_) + " that was announced" : "")});
    }
    std::string needed = reason.needed;
    const auto need = [&needed](std::string_view more) { needed.append(needed.empty() ? "" : "; ").append(more); };
    if (!activeUse_.empty()) {
        values.push_back({"in use", std::string(activeUse_)});
        need("no audio, call or sport");
    }
    if (isWakeupNear_) {
        need("more than 15 min to the expected wake-up");
    }
    if (verdict.isOverruled) {
        values.push_back({"stricter rule", "in force since " + Clock(detector_.StricterSince())});
        need("by the stricter rule, still or the screen off for 30 min between midnight and 06:00");
    }
    if (!needed.empty()) {
        values.push_back({"needed", needed});
    }
    return values;
}

void SleepStory::SetAsleep(bool isAsleep, Scribe::Id event) {
    event_ = event;
    instant_ = scribe_.Instant();
    scribe_.Set(LaneId::SLEEP, isAsleep ? "asleep" : "awake", 0, event);
}

/// What is kept of the verdict for the next one, and in the night.
void SleepStory::Conclude(const Verdict& verdict, Scribe::Id event) {
    isJudging_ = false;
    detector_.OnJudged(look_, verdict.isRuledAsleep && !isWakeupNear_, verdict.isAsleep, !activeUse_.empty());
    Event& told = scribe_.At(event);
    if (scribe_.IsKept()) {
        told.values = ValuesOf(verdict);
    }
    detector_.TellNextLook(told, scribe_.Now());
    look_.isRuledAsleep = verdict.isRuledAsleep && !verdict.isOverruled;
    look_.reading.isAsleep = verdict.isAsleep;
    memory_.last = look_;
    if (verdict.isAsleep) {
        memory_.alarm = look_.reading.alarm;
    }
    scribe_.Add(look_.reading, event);
}

void SleepStory::OnPublished(bool isSleep, int64_t wakeup, bool isHeard) {
    const bool isVerdict = isJudging_ && scribe_.Why() == Cause::COLLECTED;
    Verdict verdict;
    std::string why = scribe_.WhyInWords();
    if (isVerdict) {
        verdict = Judge();
        verdict.isOverruled = verdict.isOverruled && !isSleep;  // the plugin has the last word
        verdict.isAsleep = isSleep || (verdict.isAsleep && !activeUse_.empty());
        why = isSleep ? verdict.reason.text : WhyAwake(verdict);
    }
    std::string text = isSleep ? "asleep" : "awake";
    const std::string by = WakeupOf(look_.reading, wakeup).by;
    if (isSleep && wakeup >= 0) {
        text += ", expected up at " + Clock(wakeup) + (by.empty() ? "" : " by " + by);
    }
    Scribe::Id event = kNoEvent;
    if (!isHeard) {
        event = scribe_.Write(Subject::SLEEP, Outcome::FAILED,
                              text + ", but nobody hears of it, as the broadcast failed", why);
    } else if (!isVerdict && isSleep == IsAsleep()) {
        event = scribe_.Write(Subject::SLEEP, Outcome::KEPT, text + " as before, and said again", why);
    } else {
        event = scribe_.Write(Subject::SLEEP, Outcome::DONE, text, why);
        SetAsleep(isSleep, event);
        announced_ = isSleep ? wakeup : -1;
    }
    toldKind_ = isSleep ? "asleep" : isVerdict ? KindAwake(verdict) : "";
    if (isVerdict) {
        Conclude(verdict, event);
    } else {
        detector_.TellNextLook(scribe_.At(event), scribe_.Now());
    }
}

void SleepStory::Settle() {
    if (!isJudging_) {
        return;
    }
    const Verdict verdict = Judge();
    std::string text;
    std::string reason = verdict.reason.text;
    std::string kind;
    if (!verdict.isAsleep || !activeUse_.empty()) {
        text = IsAsleep() ? "not asleep, which nobody is told again" : "not asleep";
        reason = WhyAwake(verdict);
        kind = KindAwake(verdict);
    } else if (IsAsleep()) {
        text = "sleeps on";
        kind = "asleep";
    } else {
        const bool isLit = detector_.IsScreenOn() && !detector_.IsAsleep();
        kind = isLit ? "asleep, screen lit" : detector_.IsAsleep() ? "asleep, told before" : "asleep, not told";
        text = isLit                  ? "asleep, but kept and not announced, as the screen is lit"
               : detector_.IsAsleep() ? "asleep, but not announced, as it was judged so before"
                                      : "asleep, but not announced";
    }
    const Scribe::Id event = scribe_.Write(Subject::SLEEP, Outcome::KEPT, std::move(text), std::move(reason));
    scribe_.At(event).isRepeat = kind == toldKind_;
    toldKind_ = std::move(kind);
    Conclude(verdict, event);
}

Scribe::Id SleepStory::OnReported(bool isSleep) {
    if (isSleep != IsAsleep()) {
        SetAsleep(isSleep, scribe_.Write(Subject::SLEEP, Outcome::HAPPENED, isSleep ? "asleep" : "awake",
                                         "a message from elsewhere says so"));
        announced_ = -1;
    }
    return instant_ == scribe_.Instant() ? event_ : scribe_.Of().At(LaneId::SLEEP).Now()->event;
}

void SleepStory::OnStart(Scribe::Id event) {
    detector_.OnStart();
    memory_ = {};
    isJudging_ = false;
    toldKind_.clear();
    announced_ = -1;
    if (IsAsleep() || event == kNoEvent) {
        SetAsleep(false, event);
    }
}

}  // namespace TARN::Story
