#include "state_story.h"

#include <algorithm>

#include "standby_constants.h"
#include "standby_names.h"

namespace TARN::Story {

using namespace DevStandbyMgr;

namespace {

bool IsDeep(int32_t state) {
    return state == StandbyState::SLEEP || state == StandbyState::MAINTENANCE;
}

Cause CauseOf(int32_t previous, int32_t current) {
    if (previous == StandbyState::SLEEP) {
        return current == StandbyState::MAINTENANCE ? Cause::MAINTENANCE : Cause::LEFT_SLEEP;
    }
    if (current == StandbyState::SLEEP) {
        return previous == StandbyState::MAINTENANCE ? Cause::MAINTENANCE_OVER : Cause::ENTERED_SLEEP;
    }
    return Cause::NONE;
}

/// Why the state changed, for a person.
std::string_view Words(StateCause cause) {
    switch (cause) {
        case StateCause::START:
            return "the service starts, its screen off";
        case StateCause::SCREEN_ON:
            return "screen on";
        case StateCause::SCREEN_OFF:
            return "screen off";
        case StateCause::CHARGING:
            return "charging";
        case StateCause::DISCHARGING:
            return "no longer charging";
        case StateCause::MOVED:
            return "the phone moves";
        case StateCause::TIME:
            return "its time is over";
        case StateCause::MAINTENANCE_DUE:
            return "maintenance is due";
        case StateCause::MAINTENANCE_OVER:
            return "maintenance is over";
        case StateCause::UNBLOCKED:
            return "it is free again";
        case StateCause::ASKED:
            break;
    }
    return "asked for";
}

/// The words, with what was found where a step went by it.
std::string WhyChanged(const StateReason& reason) {
    if (reason.cause != StateCause::TIME) {
        return std::string(Words(reason.cause));
    }
    std::string met;
    for (const ConditionFound& condition : reason.conditions) {
        met += (met.empty() ? "" : ", ") + condition.name;
    }
    if (reason.from == StandbyState::WORKING) {
        return met.empty() ? std::string(Words(reason.cause)) : "found " + met;
    }
    return std::string(Words(reason.cause)) + (met.empty() ? "" : "; " + met);
}

/// What comes of a state at a time if nothing happens.
std::string Next(uint32_t state, int64_t at) {
    switch (state) {
        case StandbyState::DARK:
            return "NAP at " + Clock(at) + ", if the phone is still and unplugged then";
        case StandbyState::NAP:
            return "SLEEP at " + Clock(at) + ", if the phone is still and unplugged then";
        case StandbyState::SLEEP:
            return "MAINTENANCE at " + Clock(at);
        case StandbyState::MAINTENANCE:
            return "SLEEP again at " + Clock(at);
        default:
            return "DARK at " + Clock(at) + ", if the phone is unplugged then";
    }
}

void TellNext(Event& event, const StateReason& reason) {
    if (reason.nextTryMs >= 0) {
        event.next = Next(reason.to, reason.nextTryMs);
        event.nextBy = reason.nextTryMs;
    }
}

std::vector<Value> ValuesOf(const StateReason& reason) {
    std::vector<Value> values;
    for (const ConditionFound& condition : reason.conditions) {
        values.push_back(
            {condition.name, condition.found.empty() ? (condition.isMet ? "yes" : "no") : condition.found});
    }
    return values;
}

}  // namespace

void StateStory::OnReason(const StateReason& reason) {
    if (reason.from == reason.to) {
        TellStay(reason);
    } else {
        reason_ = reason;
    }
}

void StateStory::OnFacts(const Replay::SetStep& step) {
    const auto fault = step.phone.faults.find("BatterySrvClient.GetPluggedType");
    if (fault != step.phone.faults.end()) {
        isPlugFailing_ = fault->second.has_value();
    }
}

void StateStory::TellStay(const StateReason& reason) {
    const auto unmet = std::find_if(reason.conditions.begin(), reason.conditions.end(),
                                    [](const ConditionFound& one) { return !one.isMet; });
    if (unmet == reason.conditions.end() && reason.target == reason.to) {
        return;
    }
    std::string text = "stays " + StateName(reason.to);
    if (reason.target != reason.to) {
        text += ", not " + StateName(reason.target);
    }
    if (unmet != reason.conditions.end()) {
        const bool isAnswer = unmet->name != "unplugged" || !isPlugFailing_;
        text += ": " + (isAnswer ? unmet->found : "the battery service fails, which counts as " + unmet->found);
    }
    const Scribe::Id id = scribe_.WriteNew(Subject::STATE, Outcome::KEPT, std::move(text));
    Event& event = scribe_.At(id);
    event.use = IsDeep(static_cast<int32_t>(reason.to)) ? Use::NONE : Use::ROUTINE;
    event.values = ValuesOf(reason);
    TellNext(event, reason);
}

void StateStory::OnState(const AAFwk::Want& want) {
    const int32_t previous = want.GetIntParam(PREVIOUS_STATE, 0);
    const int32_t current = want.GetIntParam(CURRENT_STATE, 0);
    const bool isExplained =
        reason_ && static_cast<int32_t>(reason_->from) == previous && static_cast<int32_t>(reason_->to) == current;
    stateInstant_ = scribe_.Instant();
    stateEvent_ = scribe_.Write(Subject::STATE, Outcome::DONE, StateName(previous) + " → " + StateName(current),
                                isExplained ? WhyChanged(*reason_) : std::string());
    Event& event = scribe_.At(stateEvent_);
    event.use = IsDeep(previous) || IsDeep(current) ? Use::NONE : Use::ROUTINE;
    if (isExplained) {
        event.values = ValuesOf(*reason_);
        TellNext(event, *reason_);
        reason_.reset();
    }
    scribe_.SetCause(CauseOf(previous, current), stateEvent_);
    scribe_.Set(LaneId::STATE, StateName(current), current, stateEvent_);
    if (current != StandbyState::SLEEP) {
        scribe_.Set(LaneId::PHASE, "", -1, stateEvent_);
    }
}

void StateStory::OnPhase(const AAFwk::Want& want) {
    const int32_t state = want.GetIntParam(CURRENT_STATE, 0);
    const int32_t phase = want.GetIntParam(CURRENT_PHASE, 0);
    const std::string text = ", phase " + std::to_string(phase) + " (" + PhaseName(phase) + ")";
    Scribe::Id id = stateEvent_;
    if (stateEvent_ != kNoEvent && stateInstant_ == scribe_.Instant()) {
        scribe_.At(id).text += text;
        stateEvent_ = kNoEvent;
    } else {
        id = scribe_.Write(Subject::STATE, Outcome::DONE, StateName(state) + text);
    }
    scribe_.SetCause(Cause::PHASE, id);
    scribe_.Set(LaneId::PHASE, PhaseName(phase), phase, id);
}

void StateStory::OnStart(bool isAutomatic, Scribe::Id event) {
    reason_.reset();
    if (isAutomatic) {
        scribe_.Set(LaneId::STATE, StateName(StandbyState::WORKING), StandbyState::WORKING, event);
    } else {
        scribe_.Set(LaneId::STATE, kNotKnown, -1, event);
    }
    scribe_.Set(LaneId::PHASE, "", -1, event);
}

}  // namespace TARN::Story
