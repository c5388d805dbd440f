#include "vocabulary.h"

#include <algorithm>
#include <array>

#include "common_event_support.h"
#include "host_listeners.h"
#include "standby_constants.h"
#include "standby_message.h"

namespace TARN::Checks {

namespace {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;

constexpr std::string_view kUserSleep = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";

constexpr Member kPreviousState = {PREVIOUS_STATE, MemberType::INTEGER, StandbyState::WORKING, StandbyState::SLEEP};
constexpr Member kCurrentState = {CURRENT_STATE, MemberType::INTEGER, StandbyState::WORKING, StandbyState::SLEEP};
constexpr Member kCurrentPhase = {CURRENT_PHASE, MemberType::INTEGER, StandbyPhase::LIGHT, StandbyPhase::DEEP};
constexpr Member kCondition = {RES_CTRL_CONDITION, MemberType::INTEGER, ConditionType::DAY_STANDBY,
                               ConditionType::NIGHT_STANDBY};

constexpr std::array kStates = {kPreviousState, kCurrentState};
constexpr std::array kPhases = {kCurrentState, kCurrentPhase};
constexpr std::array kConditions = {kCondition};
constexpr std::array kAllowLists = {Member{"allowType", MemberType::INTEGER}, Member{"name", MemberType::STRING},
                                    Member{"added", MemberType::BOOL}};
constexpr std::array kHalfHours = {Member{SCR_OFF_HALF_HOUR_STATUS, MemberType::BOOL}};
constexpr std::array kDeviceStates = {Member{DEVICE_STATE_TYPE, MemberType::INTEGER, 0, 1},
                                      Member{DEVICE_STATE, MemberType::BOOL}};
constexpr std::array kSleep = {Member{"isSleep", MemberType::BOOL}, Member{"wakeupTime", MemberType::INTEGER}};
constexpr std::array kIdlePolicies = {Member{NET_IDLE_POLICY_STATUS, MemberType::BOOL}};
constexpr std::array kResources = {Member{BG_TASK_TYPE, MemberType::INTEGER},
                                   Member{BG_TASK_RESOURCE_STATUS, MemberType::BOOL},
                                   Member{BG_TASK_BUNDLE_NAME, MemberType::STRING}};
constexpr std::array kNatIntervals = {Member{MESSAGE_ENABLE, MemberType::BOOL},
                                      Member{MESSAGE_INTERVAL, MemberType::INTEGER}};
constexpr std::array kSleepRecords = {Member{"mUserStationaryDuration", MemberType::INTEGER},
                                      Member{"mLightDarkDuration", MemberType::INTEGER},
                                      Member{"mScrOffDuration", MemberType::INTEGER},
                                      Member{"mScrOnCount", MemberType::INTEGER},
                                      Member{"mLight", MemberType::FLOAT},
                                      Member{"mProximity", MemberType::FLOAT},
                                      Member{"mUnlockTimestamp", MemberType::INTEGER},
                                      Member{"mTimestamp", MemberType::INTEGER},
                                      Member{"mNextAlarmClockTriggerTime", MemberType::INTEGER}};
constexpr std::array kTasks = {Member{"typeId", MemberType::INTEGER}, Member{"started", MemberType::BOOL},
                               Member{"uid", MemberType::INTEGER}};
constexpr std::array kPowerModes = {Member{"current_power_mode", MemberType::BOOL}};

constexpr std::array kMessages = {KnownMessage{StandbyMessageType::COMMON_EVENT, {}},
                                  KnownMessage{StandbyMessageType::STATE_TRANSIT, kStates},
                                  KnownMessage{StandbyMessageType::PHASE_TRANSIT, kPhases},
                                  KnownMessage{StandbyMessageType::RES_CTRL_CONDITION_CHANGED, kConditions},
                                  KnownMessage{StandbyMessageType::ALLOW_LIST_CHANGED, kAllowLists},
                                  KnownMessage{StandbyMessageType::SCREEN_OFF_HALF_HOUR, kHalfHours},
                                  KnownMessage{StandbyMessageType::DEVICE_STATE_CHANGED, kDeviceStates},
                                  KnownMessage{StandbyMessageType::USER_SLEEP_STATE_CHANGED, kSleep},
                                  KnownMessage{StandbyMessageType::NET_IDLE_POLICY_TRANSIT, kIdlePolicies},
                                  KnownMessage{StandbyMessageType::RESOURCE_APPLY, kResources},
                                  KnownMessage{StandbyMessageType::NAT_INTERVAL_CHANGED, kNatIntervals},
                                  KnownMessage{StandbyMessageType::SLEEP_COLLECT_FINISHED, kSleepRecords},
                                  KnownMessage{StandbyMessageType::BG_TASK_STATUS_CHANGED, kTasks},
                                  KnownMessage{StandbyMessageType::HOST_REFRESH, {}}};

}  // namespace

std::span<const KnownMessage> KnownMessages() noexcept {
    return kMessages;
}

std::span<const Member> BroadcastMembers(std::string_view action) noexcept {
    if (action == kUserSleep) {
        return kSleep;
    }
    return action == CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED ? std::span<const Member>(kPowerModes)
                                                                              : std::span<const Member>();
}

std::span<const std::string_view> ListenerBroadcasts() noexcept {
    static constexpr std::array kActions = {CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED, kUserSleep};
    return kActions;
}

std::vector<std::string_view> MatchedActions() {
    const auto host = StrategyBroadcasts();
    const auto listener = ListenerBroadcasts();
    std::vector<std::string_view> actions(host.begin(), host.end());
    actions.insert(actions.end(), listener.begin(), listener.end());
    return actions;
}

std::vector<std::string_view> HeardBroadcasts() {
    std::vector<std::string_view> actions = MatchedActions();
    const auto clock = ClockBroadcasts();
    actions.insert(actions.end(), clock.begin(), clock.end());
    return actions;
}

}  // namespace TARN::Checks
