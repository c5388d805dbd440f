#include "call_stories.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace TARN::Story {

namespace {

constexpr std::string_view kUserSleep = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";

std::vector<std::string> Strings(const Json& array) {
    return array.get<std::vector<std::string>>();
}

/// Operations of which nothing is told but a failure, and that the plugin logs as an error.
constexpr std::array<std::string_view, 4> kLogged = {"SensorAgent.ActivateSensor", "SensorAgent.DeactivateSensor",
                                                     "SensorAgent.SubscribeSensor", "SensorAgent.UnsubscribeSensor"};

/// What is told of an operation that nobody has a better story for: only its failure.
void TellFailure(Scribe& scribe, std::string_view operation, const Json& result) {
    // Creating a timer answers its id, and 0 where there is none.
    const bool isId = operation == "TimedTask.CreateTimer";
    if (isId ? result == 0 : IsFailure(result)) {
        scribe.WriteNew(Subject::FAULT, Outcome::FAILED,
                        std::string(operation) + " failed" + (isId ? "" : FailureCode(result)));
    }
}

}  // namespace

struct CallStories::Story {
    std::string_view operation;
    void (*tell)(CallStories& stories, const Json& arguments, const Json& result);
};

const CallStories::Story* CallStories::Find(std::string_view operation) {
    static constexpr std::array kStories = {
        Story{"BluetoothHost.DisableBt",
              [](CallStories& my, const Json&, const Json& result) { my.radios_.Bluetooth(false, result); }},
        Story{"BluetoothHost.EnableBle",
              [](CallStories& my, const Json&, const Json& result) { my.radios_.Bluetooth(true, result); }},
        Story{"CommonEventManager.PublishCommonEvent",
              [](CallStories& my, const Json& arguments, const Json& result) { my.Publish(arguments, result); }},
        Story{"CoreServiceClient.SetRadioState",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.radios_.ModemSlot(arguments.value("slot", 0), arguments.value("on", false), result);
              }},
        Story{"NetPolicyClient.SetDeviceIdlePolicy",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.network_.SetPolicy(arguments.value("enable", false), result);
              }},
        Story{"NetPolicyClient.SetDeviceIdleTrustlist",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.network_.SetTrusted(arguments.at("uids"), arguments.value("added", false), result);
              }},
        Story{"PowerMgrClient.ProxyRunningLocks",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.processes_.ProxyLocks(arguments.value("proxied", false), arguments.at("processes"), result);
              }},
        Story{"ResSchedClient.KillProcess",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  const int32_t pid = std::atoi(arguments.value("pid", "").c_str());
                  const Scribe::Id event = my.processes_.Kill(pid, result);
                  if (!IsFailure(result)) {
                      my.phone_.Kill(pid);
                      my.processes_.ForgetEnded(event);
                  }
              }},
        Story{"SuspendManagerClient.OperateNativeProcesses",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.processes_.OperateNatives(arguments.at("processes"), result);
              }},
        Story{"TimeServiceClient.AdjustTimer",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.AdjustTimer(arguments.value("adjust", false), arguments.value("interval", int64_t{0}), result);
              }},
        Story{"TimeServiceClient.SetTimerExemption",
              [](CallStories& my, const Json& arguments, const Json& result) {
                  my.ExemptFromStretching(arguments.at("names"), arguments.value("exempt", false), result);
              }},
        Story{"WifiDevice.Disable",
              [](CallStories& my, const Json&, const Json& result) { my.radios_.Wifi(false, result); }},
        Story{"WifiDevice.Enable",
              [](CallStories& my, const Json&, const Json& result) { my.radios_.Wifi(true, result); }},
    };
    const auto* found =
        std::find_if(kStories.begin(), kStories.end(), [&](const Story& one) { return one.operation == operation; });
    return found == kStories.end() ? nullptr : found;
}

bool CallStories::Knows(std::string_view operation) noexcept {
    return std::find(kLogged.begin(), kLogged.end(), operation) == kLogged.end();
}

void CallStories::OnCall(std::string_view operation, const Json& arguments, const Json& result) {
    if (const Story* story = Find(operation)) {
        story->tell(*this, arguments, result);
    } else if (Knows(operation)) {
        TellFailure(scribe_, operation, result);
    }
}

void CallStories::AdjustTimer(bool isStretched, int64_t seconds, const Json& result) {
    if (IsFailure(result)) {
        scribe_.Write(
            Subject::TIMER, Outcome::FAILED,
            std::string(isStretched ? "stretching" : "going back to normal") + " failed" + FailureCode(result),
            scribe_.WhyInWords());
        return;
    }
    const int64_t before = std::exchange(stretchedTo_, isStretched ? seconds : 0);
    const Scribe::Id id = scribe_.Write(
        Subject::TIMER, before == stretchedTo_ ? Outcome::NOTED : Outcome::DONE,
        isStretched ? "stretched to " + std::to_string(seconds) + " s" : "back to normal", scribe_.WhyInWords());
    const Cause why = scribe_.Why();
    const bool isRoutine =
        why == Cause::SCREEN_ON || why == Cause::SCREEN_OFF || why == Cause::CHARGING || why == Cause::DISCHARGING;
    scribe_.At(id).use = isRoutine ? Use::ROUTINE : Use::NONE;
    scribe_.At(id).isRepeat = before == stretchedTo_;
    scribe_.Set(LaneId::TIMERS, isStretched ? "stretched" : "normal", stretchedTo_, id);
}

void CallStories::ExemptFromStretching(const Json& names, bool isExempt, const Json& result) {
    if (IsFailure(result)) {
        scribe_.Write(Subject::TIMER, Outcome::FAILED,
                      "exempting " + Names(Strings(names)) + " failed" + FailureCode(result));
        return;
    }
    if (names.empty()) {
        return;
    }
    const Scribe::Id id = scribe_.Write(
        Subject::TIMER, Outcome::DONE,
        Names(Strings(names)) + (isExempt ? " exempt from stretching" : " no longer exempt"), scribe_.WhyInWords());
    for (const std::string& name : Strings(names)) {
        phone_.TellName(name, Aspect::STRETCHING, isExempt ? "exempt" : "not exempt", scribe_.WhyInWords(), id);
    }
}

void CallStories::Publish(const Json& arguments, const Json& result) {
    const Json& want = arguments.at("want");
    if (arguments.value("action", "") != kUserSleep) {
        network_.TellPushClients(want, result);
        return;
    }
    sleep_.OnPublished(want.value("isSleep", false), want.value("wakeupTime", int64_t{-1}), !IsFailure(result));
}

}  // namespace TARN::Story
