#include "message_stories.h"

#include <algorithm>
#include <array>

#include "common_event_support.h"
#include "device_state_cache.h"
#include "standby_constants.h"
#include "standby_names.h"

namespace TARN::Story {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;

namespace {

constexpr std::string_view kUserSleep = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";

/// A broadcast that says all by its name.
struct BroadcastWords {
    std::string_view action;
    Subject subject;
    std::string_view told;
    Cause cause;
    Use use = Use::NONE;
};

constexpr std::array kBroadcasts = {
    BroadcastWords{CommonEventSupport::COMMON_EVENT_SCREEN_ON, Subject::SCREEN, "on", Cause::SCREEN_ON, Use::SCREEN_ON},
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

struct NamedNumber {
    int32_t number;
    std::string_view name;
};

constexpr std::array kTasks = {NamedNumber{2, "audio playback"}, NamedNumber{4, "location"},
                               NamedNumber{8, "voice call"}};
constexpr std::array kExemptions = {NamedNumber{AllowType::NETWORK, "network limits"},
                                    NamedNumber{AllowType::RUNNING_LOCK, "running-lock limits"},
                                    NamedNumber{AllowType::FREEZE, "freezing"}};

template <size_t N>
std::string NameOf(const std::array<NamedNumber, N>& names, int32_t number, std::string_view otherwise) {
    const auto found =
        std::find_if(names.begin(), names.end(), [number](const NamedNumber& one) { return one.number == number; });
    return found == names.end() ? std::string(otherwise) + " " + std::to_string(number) : std::string(found->name);
}

}  // namespace

struct MessageStories::Story {
    int32_t eventId;
    void (*tell)(MessageStories& stories, const StandbyMessage& message);
};

const MessageStories::Story* MessageStories::Find(int32_t eventId) {
    using My = MessageStories;
    static constexpr auto kSilent = [](My&, const StandbyMessage&) {};
    static constexpr std::array kStories = {
        Story{StandbyMessageType::COMMON_EVENT, [](My& my, const StandbyMessage& message) { my.Broadcast(message); }},
        Story{StandbyMessageType::STATE_TRANSIT, [](My& my, const StandbyMessage& m) { my.State(m.Params()); }},
        Story{StandbyMessageType::PHASE_TRANSIT, [](My& my, const StandbyMessage& m) { my.Phase(m.Params()); }},
        Story{StandbyMessageType::RES_CTRL_CONDITION_CHANGED,
              [](My& my, const StandbyMessage& m) { my.Condition(m.Params()); }},
        Story{StandbyMessageType::ALLOW_LIST_CHANGED,
              [](My& my, const StandbyMessage& m) { my.Exemption(m.Params()); }},
        Story{StandbyMessageType::SCREEN_OFF_HALF_HOUR,
              [](My& my, const StandbyMessage& m) { my.HalfHour(m.Params()); }},
        // An application that comes, goes or changes place is told by what the firewall makes of it.
        Story{StandbyMessageType::HOST_REFRESH, kSilent},
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
                  my.teller_.SetCause(Cause::COLLECTED);
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
    teller_.SetCause(Cause::NONE);
    if (const Story* story = Find(message.eventId)) {
        story->tell(*this, message);
    } else {
        teller_.Tell(Subject::MESSAGE, "message " + std::to_string(message.eventId) + ", which no strategy knows");
    }
}

void MessageStories::Broadcast(const StandbyMessage& message) {
    if (message.action == kUserSleep) {
        UserSleep(message.Params());
        return;
    }
    if (message.action == CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED) {
        const bool isOn = message.Params().GetBoolParam("current_power_mode", false);
        teller_.SetCause(Cause::POWER_SAVE_MODE);
        teller_.Tell(Subject::POWER, isOn ? "power-save mode on" : "power-save mode off");
        return;
    }
    const auto* words = std::find_if(kBroadcasts.begin(), kBroadcasts.end(),
                                     [&](const BroadcastWords& one) { return one.action == message.action; });
    if (words == kBroadcasts.end()) {
        teller_.Tell(Subject::MESSAGE, "broadcast " + message.action + ", which no strategy knows");
        return;
    }
    teller_.SetCause(words->cause);
    teller_.Tell(words->subject, std::string(words->told), Tone::PLAIN, words->use);
}

void MessageStories::State(const Want& want) {
    const int32_t previous = want.GetIntParam(PREVIOUS_STATE, 0);
    const int32_t current = want.GetIntParam(CURRENT_STATE, 0);
    teller_.SetCause(CauseOf(previous, current));
    stateInstant_ = teller_.Instant();
    stateEntry_ = &teller_.Tell(Subject::STATE, StateName(previous) + " → " + StateName(current), Tone::PLAIN,
                                IsDeep(previous) || IsDeep(current) ? Use::NONE : Use::ROUTINE);
}

void MessageStories::Phase(const Want& want) {
    const int32_t phase = want.GetIntParam(CURRENT_PHASE, 0);
    teller_.SetCause(Cause::PHASE);
    const std::string text = ", phase " + std::to_string(phase) + " (" + PhaseName(phase) + ")";
    if (stateEntry_ != nullptr && stateInstant_ == teller_.Instant()) {
        stateEntry_->text += text;
        stateEntry_ = nullptr;
    } else {
        teller_.Tell(Subject::STATE, StateName(want.GetIntParam(CURRENT_STATE, 0)) + text);
    }
}

void MessageStories::Condition(const Want& want) {
    const int32_t condition = want.GetIntParam(RES_CTRL_CONDITION, 0);
    const bool isDay = condition == ConditionType::DAY_STANDBY;
    const bool isNight = condition == ConditionType::NIGHT_STANDBY;
    teller_.SetCause(isDay ? Cause::DAY : isNight ? Cause::NIGHT : Cause::NONE);
    teller_.Tell(Subject::NIGHT, isDay     ? "ends (condition 1)"
                                 : isNight ? "begins (condition 2)"
                                           : "condition " + std::to_string(condition));
}

void MessageStories::Exemption(const Want& want) {
    const std::string from = NameOf(kExemptions, want.GetIntParam("allowType", 0), "limit");
    teller_.SetCause(Cause::EXEMPTION);
    teller_.Tell(Subject::EXEMPTION,
                 want.GetStringParam("name") +
                     (want.GetBoolParam("added", false) ? " is now exempt from " : " is no longer exempt from ") +
                     from);
}

void MessageStories::HalfHour(const Want& want) {
    if (want.GetBoolParam(SCR_OFF_HALF_HOUR_STATUS, false)) {
        teller_.SetCause(Cause::HALF_HOUR);
        teller_.Tell(Subject::SCREEN, "off for half an hour", Tone::PLAIN, Use::ROUTINE);
    }
}

void MessageStories::DeviceState(const Want& want) {
    teller_.SetCause(Cause::DEVICE_STATE);
    const bool isOn = want.GetBoolParam(DEVICE_STATE, false);
    switch (want.GetIntParam(DEVICE_STATE_TYPE, -1)) {
        case DeviceStateCache::DIS_COMP_CHANGE:
            teller_.Tell(Subject::DEVICE, isOn ? "a distributed component connects" : "no distributed component");
            break;
        case DeviceStateCache::TELEPHONE_STATE_CHANGE:
            teller_.Tell(Subject::DEVICE, isOn ? "a call begins" : "the call ends");
            break;
        default:
            teller_.Tell(Subject::DEVICE, "its state changes");
            break;
    }
}

void MessageStories::UserSleep(const Want& want) {
    teller_.SetCause(want.GetBoolParam("isSleep", false) ? Cause::ASLEEP : Cause::AWAKE);
    sleep_.OnReported(want);
}

void MessageStories::KeepAlive(const Want& want) {
    teller_.SetCause(Cause::KEEP_ALIVE);
    const int32_t seconds = want.GetIntParam(MESSAGE_INTERVAL, 0);
    teller_.Tell(Subject::TIMER, want.GetBoolParam(MESSAGE_ENABLE, false) && seconds != 0
                                     ? "network keep-alive asks for " + std::to_string(seconds) + " s"
                                     : "network keep-alive asks for no interval");
}

void MessageStories::BackgroundTask(const Want& want) {
    const int32_t uid = want.GetIntParam("uid", -1);
    teller_.Tell(Subject::TASK, NameOf(kTasks, want.GetIntParam("typeId", -1), "task of type") +
                                    (want.GetBoolParam("started", false) ? " begins" : " ends") +
                                    (uid >= 0 ? ": " + phone_.NameOfUid(uid) : ""));
}

}  // namespace TARN::Story
