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
            return "it is no longer held";
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

/// What stood in the way.
std::string WhatStood(const ConditionFound& unmet, bool isPlugFailing) {
    if (unmet.name == "not blocked") {
        return "it is held until it is let go by hand";
    }
    if (unmet.name == "screen off" && unmet.found != "on") {
        return "whether the screen is on cannot be read, so it counts as on";
    }
    return unmet.name == "unplugged" && isPlugFailing ? "the battery service fails, which counts as " + unmet.found
                                                      : unmet.found;
}

std::string PhaseText(int32_t phase) {
    const std::string name = PhaseName(phase);
    const std::string number = std::to_string(phase);
    return "phase " + number + (name == number ? "" : " (" + name + ")");
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
        reasons_.push_back(reason);
    }
}

void StateStory::OnConfig(const StandbyConfig& config) {
    if (config.mode == HostMode::AUTOMATIC) {
        phaseEveryMs_ = config.policy.phaseEverySeconds * 1000;
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
        text += ": " + WhatStood(*unmet, isPlugFailing_);
    }
    const Scribe::Id id = scribe_.WriteNew(Subject::STATE, Outcome::KEPT, std::move(text));
    Event& event = scribe_.At(id);
    event.use = IsDeep(static_cast<int32_t>(reason.to)) ? Use::NONE : Use::ROUTINE;
    event.values = ValuesOf(reason);
    TellNext(event, reason);
}

/// What happens to the state now is one event with what happened to it in this instant before.
void StateStory::GoOn(int32_t from) {
    if (way_.instant != scribe_.Instant()) {
        way_ = {scribe_.Instant(), scribe_.Write(Subject::STATE, Outcome::DONE, {}), {from}, -1, {}};
    }
}

void StateStory::OnState(const AAFwk::Want& want) {
    const int32_t previous = want.GetIntParam(PREVIOUS_STATE, 0);
    const int32_t current = want.GetIntParam(CURRENT_STATE, 0);
    const std::string before(scribe_.Value(LaneId::STATE));
    GoOn(previous);
    way_.states.push_back(current);
    way_.phase = -1;
    Event& event = scribe_.At(way_.event);
    const bool isDeep = IsDeep(previous) || IsDeep(current);
    event.use = isDeep || (way_.states.size() > 2 && event.use == Use::NONE) ? Use::NONE : Use::ROUTINE;
    const auto reason = std::find_if(reasons_.begin(), reasons_.end(), [&](const StateReason& one) {
        return static_cast<int32_t>(one.from) == previous && static_cast<int32_t>(one.to) == current;
    });
    maintenanceAt_ = -1;
    event.next.clear();
    event.nextBy = kNoTime;
    if (reason != reasons_.end()) {
        const std::string why = WhyChanged(*reason);
        if (std::find(way_.reasons.begin(), way_.reasons.end(), why) == way_.reasons.end()) {
            way_.reasons.push_back(why);
        }
        event.values = ValuesOf(*reason);
        TellNext(event, *reason);
        maintenanceAt_ = current == StandbyState::SLEEP ? reason->nextTryMs : -1;
        reasons_.erase(reasons_.begin(), reason + 1);
    }
    Retell();
    const bool isAsSaid = previous != current && (before == kNotKnown || before == StateName(previous));
    const Cause cause = CauseOf(previous, current);
    const bool isLeft = cause == Cause::LEFT_SLEEP || cause == Cause::MAINTENANCE;
    scribe_.SetCause(cause,
                     isAsSaid || cause == Cause::NONE ? std::string(Reason(cause))
                     : isLeft                         ? "a message says that SLEEP was left"
                                                      : "a message says that SLEEP was entered",
                     way_.event);
    scribe_.Set(LaneId::STATE, StateName(current), current, way_.event);
    if (current != StandbyState::SLEEP) {
        scribe_.Set(LaneId::PHASE, "", -1, way_.event);
    }
}

void StateStory::OnPhase(const AAFwk::Want& want) {
    const int32_t state = want.GetIntParam(CURRENT_STATE, 0);
    GoOn(state);
    way_.phase = want.GetIntParam(CURRENT_PHASE, 0);
    Retell();
    scribe_.SetCause(Cause::PHASE, way_.event);
    scribe_.Set(LaneId::PHASE, PhaseName(way_.phase), way_.phase, way_.event);
}

/// What became of the state in this instant, said anew with each step.
void StateStory::Retell() {
    Event& event = scribe_.At(way_.event);
    const std::vector<int32_t>& states = way_.states;
    const bool isThereAndBack = states.size() > 2 && states.front() == states.back();
    std::vector<std::string> between;
    for (size_t i = 1; i + 1 < states.size(); ++i) {
        between.push_back(StateName(states[i]));
    }
    event.text = StateName(states.front());
    if (isThereAndBack) {
        event.text += " → " + Names(between);
    }
    if (states.size() > 1) {
        event.text += " → " + StateName(states.back());
    }
    if (way_.phase >= 0) {
        event.text += ", " + PhaseText(way_.phase);
    }
    event.reason.clear();
    for (const std::string& reason : way_.reasons) {
        event.reason += (event.reason.empty() ? "" : ", then ") + reason;
    }
    if (!between.empty() && !isThereAndBack) {
        event.reason += (event.reason.empty() ? "by way of " : ", by way of ") + Names(between);
    }
    if (states.back() == StandbyState::SLEEP && maintenanceAt_ >= 0) {
        TellNextPhase(event);
    }
}

/// The next phase of SLEEP, and the maintenance that interrupts it.
void StateStory::TellNextPhase(Event& event) const {
    event.next = "MAINTENANCE at " + Clock(maintenanceAt_);
    event.nextBy = maintenanceAt_;
    if (!phaseEveryMs_ || way_.phase < 0 || way_.phase >= StandbyPhase::DEEP) {
        return;
    }
    const int64_t at = scribe_.Now() + *phaseEveryMs_;
    if (at < maintenanceAt_) {
        event.next = PhaseText(way_.phase + 1) + " at " + Clock(at) + ", " + event.next;
        event.nextBy = at;
    }
}

void StateStory::OnStart(bool isAutomatic, Scribe::Id event) {
    reasons_.clear();
    maintenanceAt_ = -1;
    if (isAutomatic) {
        scribe_.Set(LaneId::STATE, StateName(StandbyState::WORKING), StandbyState::WORKING, event);
    } else {
        scribe_.Set(LaneId::STATE, kNotKnown, -1, event);
    }
    scribe_.Set(LaneId::PHASE, "", -1, event);
}

}  // namespace TARN::Story
