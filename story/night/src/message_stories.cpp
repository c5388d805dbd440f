#include "message_stories.h"

#include <algorithm>
#include <array>

#include "common_event_support.h"
#include "device_state_cache.h"
#include "fact_stories.h"
#include "standby_constants.h"
#include "standby_names.h"

namespace TARN::Story {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;

namespace {

constexpr std::string_view kUserSleep = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";

struct NamedNumber {
    int32_t number;
    std::string_view name;
};

constexpr std::array kTasks = {NamedNumber{2, "audio playback"}, NamedNumber{4, "location"},
                               NamedNumber{8, "voice call"}};

template <size_t N>
std::string NameOf(const std::array<NamedNumber, N>& names, int32_t number, std::string_view otherwise) {
    const auto found =
        std::find_if(names.begin(), names.end(), [number](const NamedNumber& one) { return one.number == number; });
    return found == names.end() ? std::string(otherwise) + " " + std::to_string(number) : std::string(found->name);
}

}  // namespace

/// A broadcast that says all by its name.
struct MessageStories::BroadcastWords {
    std::string_view action;
    Subject subject;
    std::string_view told;
    Cause cause;
    Use use = Use::NONE;
};

const MessageStories::BroadcastWords* MessageStories::FindBroadcast(std::string_view action) {
    static constexpr std::array kBroadcasts = {
        BroadcastWords{CommonEventSupport::COMMON_EVENT_SCREEN_ON, Subject::SCREEN, "on", Cause::SCREEN_ON,
                       Use::SCREEN_ON},
        BroadcastWords{CommonEventSupport::COMMON_EVENT_SCREEN_OFF, Subject::SCREEN, "off", Cause::SCREEN_OFF,
                       Use::SCREEN_OFF},
        BroadcastWords{CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED, Subject::SCREEN, "unlocked", Cause::NONE,
                       Use::UNLOCKED},
        BroadcastWords{CommonEventSupport::COMMON_EVENT_CHARGING, Subject::CHARGER, "charging", Cause::CHARGING,
                       Use::PLUGGED},
        BroadcastWords{CommonEventSupport::COMMON_EVENT_DISCHARGING, Subject::CHARGER, "no longer charging",
                       Cause::DISCHARGING, Use::UNPLUGGED},
        BroadcastWords{"COMMON_EVENT_TIMER_SA_ABILITY", Subject::TIMER, "the time service has come up",
                       Cause::TIME_SERVICE},
    };
    const auto* found = std::find_if(kBroadcasts.begin(), kBroadcasts.end(),
                                     [&](const BroadcastWords& one) { return one.action == action; });
    return found == kBroadcasts.end() ? nullptr : found;
}

struct MessageStories::Story {
    int32_t eventId;
    void (*tell)(MessageStories& stories, const StandbyMessage& message);
};

const MessageStories::Story* MessageStories::Find(int32_t eventId) {
    using My = MessageStories;
    static constexpr auto kSilent = [](My&, const StandbyMessage&) {};
    static constexpr std::array kStories = {
        Story{StandbyMessageType::COMMON_EVENT, [](My& my, const StandbyMessage& message) { my.Broadcast(message); }},
        Story{StandbyMessageType::STATE_TRANSIT,
              [](My& my, const StandbyMessage& m) {
                  my.states_.OnState(m.Params());
                  if (my.scribe_.Why() == Cause::ENTERED_SLEEP) {
                      my.calls_.Radios().OnChance(/*isDeep=*/true);
                  }
              }},
        Story{StandbyMessageType::PHASE_TRANSIT,
              [](My& my, const StandbyMessage& m) { my.states_.OnPhase(m.Params()); }},
        Story{StandbyMessageType::RES_CTRL_CONDITION_CHANGED,
              [](My& my, const StandbyMessage& m) { my.Condition(m.Params()); }},
        Story{StandbyMessageType::ALLOW_LIST_CHANGED,
              [](My& my, const StandbyMessage& m) { my.Exemption(m.Params()); }},
        Story{StandbyMessageType::SCREEN_OFF_HALF_HOUR,
              [](My& my, const StandbyMessage& m) { my.HalfHour(m.Params()); }},
        // An application that comes, goes or changes place is told by what the firewall makes of it.
        Story{StandbyMessageType::HOST_REFRESH,
              [](My& my, const StandbyMessage&) { my.scribe_.SetCause(Cause::REFRESH, std::string(), kNoEvent); }},
        Story{StandbyMessageType::DEVICE_STATE_CHANGED,
              [](My& my, const StandbyMessage& m) { my.DeviceState(m.Params()); }},
        Story{StandbyMessageType::USER_SLEEP_STATE_CHANGED,
              [](My& my, const StandbyMessage& m) { my.UserSleep(m.Params()); }},
        Story{StandbyMessageType::NET_IDLE_POLICY_TRANSIT, kSilent},
        Story{StandbyMessageType::RESOURCE_APPLY, kSilent},
        Story{StandbyMessageType::NAT_INTERVAL_CHANGED,
              [](My& my, const StandbyMessage& m) { my.KeepAlive(m.Params()); }},
        Story{StandbyMessageType::SLEEP_COLLECT_FINISHED,
              [](My& my, const StandbyMessage& m) {
                  my.scribe_.SetCause(Cause::COLLECTED);
                  my.sleep_.OnRecord(m.Params());
              }},
        Story{StandbyMessageType::BG_TASK_STATUS_CHANGED,
              [](My& my, const StandbyMessage& m) { my.BackgroundTask(m.Params()); }},
    };
    const auto* found =
        std::find_if(kStories.begin(), kStories.end(), [eventId](const Story& one) { return one.eventId == eventId; });
    return found == kStories.end() ? nullptr : found;
}

void MessageStories::OnDeliver(const StandbyMessage& message) {
    scribe_.SetCause(Cause::NONE);
    if (const Story* story = Find(message.eventId)) {
        story->tell(*this, message);
    } else {
        scribe_.Write(Subject::MESSAGE, Outcome::HAPPENED,
                      "message " + std::to_string(message.eventId) + ", which no strategy knows");
    }
}

void MessageStories::OnUnheard(std::string_view action) {
    const BroadcastWords* words = FindBroadcast(action);
    if (words == nullptr || words->action == CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED) {
        return;  // the plugin listens to unlocks by itself
    }
    const Scribe::Id id =
        scribe_.Write(words->subject, Outcome::HAPPENED, std::string(words->told) + ", and no strategy is told");
    SetLane(*words, id);
}

/// What a broadcast says of the phone.
void MessageStories::SetLane(const BroadcastWords& words, Scribe::Id id) {
    switch (words.cause) {
        case Cause::SCREEN_ON:
        case Cause::SCREEN_OFF:
            scribe_.Set(LaneId::SCREEN, words.told, 0, id);
            break;
        case Cause::CHARGING:
        case Cause::DISCHARGING:
            scribe_.Set(LaneId::CHARGER, words.cause == Cause::CHARGING ? "plugged" : "unplugged", 0, id);
            break;
        default:
            break;
    }
}

void MessageStories::Broadcast(const StandbyMessage& message) {
    if (message.action == kUserSleep) {
        UserSleep(message.Params());
        return;
    }
    if (message.action == CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED) {
        const bool isOn = message.Params().GetBoolParam("current_power_mode", false);
        const Scribe::Id id =
            scribe_.Write(Subject::POWER, Outcome::HAPPENED, isOn ? "power-save mode on" : "power-save mode off");
        scribe_.SetCause(Cause::POWER_SAVE_MODE, id);
        return;
    }
    const BroadcastWords* words = FindBroadcast(message.action);
    if (words == nullptr) {
        scribe_.Write(Subject::MESSAGE, Outcome::HAPPENED, "broadcast " + message.action + ", which no strategy knows");
        return;
    }
    if (words->subject == Subject::CHARGER) {
        scribe_.Drop(Subject::CHARGER);  // the fact that goes with it
    }
    const Scribe::Id id = scribe_.Write(words->subject, Outcome::HAPPENED, std::string(words->told));
    scribe_.At(id).use = words->use;
    scribe_.SetCause(words->cause, id);
    SetLane(*words, id);
}

void MessageStories::Condition(const Want& want) {
    const int32_t condition = want.GetIntParam(RES_CTRL_CONDITION, 0);
    const bool isDay = condition == ConditionType::DAY_STANDBY;
    const bool isNight = condition == ConditionType::NIGHT_STANDBY;
    const std::string number = "condition " + std::to_string(condition);
    const Scribe::Id id = scribe_.Write(Subject::NIGHT, Outcome::DONE,
                                        isDay     ? "ends (condition 1)"
                                        : isNight ? "begins (condition 2)"
                                                  : number);
    scribe_.SetCause(isDay ? Cause::DAY : isNight ? Cause::NIGHT : Cause::NONE, id);
    scribe_.Set(LaneId::CONDITION, isDay ? "day" : isNight ? "night" : number, condition, id);
    calls_.Processes().OnCondition(static_cast<uint32_t>(condition));
}

void MessageStories::Exemption(const Want& want) {
    const int32_t type = want.GetIntParam("allowType", 0);
    const std::string from = NameOfLimit(type);
    const std::string name = want.GetStringParam("name");
    const bool isAdded = want.GetBoolParam("added", false);
    const Scribe::Id id =
        scribe_.Write(Subject::EXEMPTION, Outcome::HAPPENED,
                      name + (isAdded ? " is now exempt from " : " is no longer exempt from ") + from);
    scribe_.SetCause(Cause::EXEMPTION, id);
    phone_.TellName(name, Aspect::EXEMPT, isAdded ? "exempt" : "not exempt", "from " + from, id);
}

void MessageStories::HalfHour(const Want& want) {
    const bool isOver = want.GetBoolParam(SCR_OFF_HALF_HOUR_STATUS, false);
    calls_.Radios().OnHalfHour(isOver);
    if (!isOver) {
        return;
    }
    const bool isTimed = config_ != nullptr && config_->mode == HostMode::AUTOMATIC;
    const std::string off =
        isTimed ? "off for " + LengthOf(config_->policy.halfHourSeconds) : "off for long, as a message says";
    const Scribe::Id id = scribe_.Write(Subject::SCREEN, Outcome::DONE, off);
    scribe_.At(id).use = Use::ROUTINE;
    scribe_.SetCause(Cause::HALF_HOUR, isTimed ? "screen " + off + " at night" : "at night, the screen " + off, id);
    calls_.Radios().OnChance(/*isDeep=*/false);
}

void MessageStories::DeviceState(const Want& want) {
    const bool isOn = want.GetBoolParam(DEVICE_STATE, false);
    std::string text;
    switch (want.GetIntParam(DEVICE_STATE_TYPE, -1)) {
        case DeviceStateCache::DIS_COMP_CHANGE:
            text = isOn ? "a distributed component connects" : "no distributed component";
            break;
        case DeviceStateCache::TELEPHONE_STATE_CHANGE:
            text = isOn ? "a call begins" : "the call ends";
            break;
        default:
            text = "its state changes";
            break;
    }
    scribe_.SetCause(Cause::DEVICE_STATE, text, scribe_.Write(Subject::DEVICE, Outcome::HAPPENED, text));
}

void MessageStories::UserSleep(const Want& want) {
    const bool isSleep = want.GetBoolParam("isSleep", false);
    scribe_.SetCause(isSleep ? Cause::ASLEEP : Cause::AWAKE, sleep_.OnReported(isSleep));
}

void MessageStories::KeepAlive(const Want& want) {
    const int32_t seconds = want.GetIntParam(MESSAGE_INTERVAL, 0);
    const Scribe::Id id = scribe_.Write(Subject::TIMER, Outcome::HAPPENED,
                                        want.GetBoolParam(MESSAGE_ENABLE, false) && seconds != 0
                                            ? "network keep-alive asks for " + std::to_string(seconds) + " s"
                                            : "network keep-alive asks for no interval");
    scribe_.SetCause(Cause::KEEP_ALIVE, id);
}

void MessageStories::BackgroundTask(const Want& want) {
    const int32_t uid = want.GetIntParam("uid", -1);
    const bool isStarted = want.GetBoolParam("started", false);
    const std::string task = NameOf(kTasks, want.GetIntParam("typeId", -1), "task of type");
    const Scribe::Id id =
        scribe_.Write(Subject::TASK, Outcome::HAPPENED,
                      task + (isStarted ? " begins" : " ends") + (uid >= 0 ? ": " + phone_.NameOfUid(uid) : ""));
    scribe_.SetCause(Cause::EXEMPTION, task + (isStarted ? " begins" : " ends"), id);
}

}  // namespace TARN::Story
