#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>

#include "common_event_support.h"
#include "json_fields.h"
#include "night.h"
#include "night_reader.h"
#include "night_script.h"
#include "player.h"
#include "standby_constants.h"
#include "standby_names.h"
#include "why.h"

namespace TARN::Tests {
namespace {

namespace fs = std::filesystem;
namespace StandbyMessageType = DevStandbyMgr::StandbyMessageType;
using DevStandbyMgr::StandbyMessage;
using EventFwk::CommonEventSupport;
using Json = nlohmann::ordered_json;
using Story::About;

constexpr int64_t kMinuteMs = 60'000;

/// What a run's calls, messages and steps alone say of the phone, kept for every time at which something changed: the
/// raw record read anew, without any of the code that makes a Night of it.
class Truth : public Replay::RecordSink {
public:
    using Picture = std::array<std::string, Story::kAbouts>;

    /// How things stand at the end of the millisecond `t`.
    [[nodiscard]] const Picture& At(int64_t t) const { return std::prev(pictures_.upper_bound(t))->second; }

    [[nodiscard]] bool WantsLog(LogLevel /*level*/) const noexcept override { return false; }
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnDump(int64_t /*t*/, const std::string& /*text*/) override {}
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

    void OnBegin(const Replay::Trace& trace) override {
        Facts(trace.device.phone);
        Keep(trace.start);
    }

    void OnStep(const Replay::Step& step) override {
        if (const auto* set = std::get_if<Replay::SetStep>(&step.what)) {
            Facts(set->phone);
        } else if (std::holds_alternative<Replay::RestartStep>(step.what)) {
            state_ = DevStandbyMgr::StandbyState::WORKING;
            phase_ = -1;
            isAsleep_ = false;
        }
        Keep(step.t);
    }

    void OnDeliver(int64_t t, const StandbyMessage& message) override {
        const AAFwk::Want want = message.want.value_or(AAFwk::Want());
        if (message.eventId == StandbyMessageType::STATE_TRANSIT) {
            state_ = want.GetIntParam("CURRENT_STATE", 0);
            phase_ = -1;
        } else if (message.eventId == StandbyMessageType::PHASE_TRANSIT) {
            phase_ = want.GetIntParam("CURRENT_PHASE", 0);
        } else if (message.eventId == StandbyMessageType::USER_SLEEP_STATE_CHANGED ||
                   message.action == "COMMON_EVENT_USER_SLEEP_STATE_CHANGED") {
            isAsleep_ = want.GetBoolParam("isSleep", false);
        } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON ||
                   message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
            isScreenOn_ = message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON;
        }
        Keep(t);
    }

    void OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) override {
        const bool isDone = result == 0 || result == true;
        if (operation == "SuspendManagerClient.OperateNativeProcesses") {
            for (size_t i = 0; i < result.size(); ++i) {
                if (result[i] == 0) {
                    Put(frozen_, arguments["processes"][i]["pid"].get<int64_t>(), arguments["processes"][i]["freeze"]);
                }
            }
        } else if (isDone && operation == "ResSchedClient.KillProcess") {
            ++killed_;
        } else if (isDone && operation == "PowerMgrClient.ProxyRunningLocks") {
            for (const Json& pair : arguments["processes"]) {
                const int64_t a = pair[0];
                const int64_t b = pair[1];
                Put(proxied_, std::pair(std::min(a, b), std::max(a, b)), arguments["proxied"]);
            }
        } else if (isDone && operation == "NetPolicyClient.SetDeviceIdlePolicy") {
            isFirewallOn_ = arguments["enable"];
        } else if (isDone && operation == "NetPolicyClient.SetDeviceIdleTrustlist") {
            for (const Json& uid : arguments["uids"]) {
                Put(trusted_, uid.get<int64_t>(), arguments["added"]);
            }
        } else if (isDone && operation == "TimeServiceClient.AdjustTimer") {
            stretchedTo_ = arguments["adjust"] ? arguments["interval"].get<int64_t>() : 0;
        } else if (isDone && operation == "CoreServiceClient.SetRadioState") {
            Put(slotsOff_, arguments["slot"].get<int64_t>(), !arguments["on"].get<bool>());
        } else if (isDone && operation.starts_with("BluetoothHost.")) {
            isBluetoothOn_ = operation == "BluetoothHost.EnableBle";
        } else if (isDone && operation.starts_with("WifiDevice.")) {
            isWifiOn_ = operation == "WifiDevice.Enable";
        }
        Keep(t);
    }

private:
    template <class Set>
    static void Put(Set& set, const typename Set::value_type& one, bool isIn) {
        if (isIn) {
            set.insert(one);
        } else {
            set.erase(one);
        }
    }

    void Facts(const Simulated::FactsChange& change) {
        constexpr int32_t kTurningOff = 2;
        isBluetoothOn_ = change.bluetoothState ? *change.bluetoothState < kTurningOff : isBluetoothOn_;
        isWifiOn_ = change.isWifiEnabled.value_or(isWifiOn_);
        isWifiPresent_ = change.isWifiPresent.value_or(isWifiPresent_);
        slots_ = change.simSlots.value_or(slots_);
        if (change.processes) {
            std::erase_if(frozen_, [&change](int64_t pid) {
                return std::none_of(change.processes->begin(), change.processes->end(),
                                    [pid](const Simulated::Process& process) { return process.pid == pid; });
            });
        }
    }

    void Keep(int64_t t) {
        const auto onOff = [](bool isOn) { return std::string(isOn ? "on" : "off"); };
        const auto number = [](const auto& set) { return std::to_string(set.size()); };
        Picture& now = pictures_[t];
        const auto put = [&now](About about, std::string text) { now[static_cast<size_t>(about)] = std::move(text); };
        put(About::STATE, DevStandbyMgr::StateName(state_) + (phase_ < 0 ? "" : " " + std::to_string(phase_)));
        put(About::SLEEP, isAsleep_ ? "asleep" : "awake");
        put(About::SCREEN, isScreenOn_ ? onOff(*isScreenOn_) : std::string(Story::kNotKnown));
        put(About::BLUETOOTH, onOff(isBluetoothOn_));
        put(About::WIFI, isWifiPresent_ ? onOff(isWifiOn_) : "absent");
        put(About::MODEM, slotsOff_.empty()                                ? "on"
                          : slotsOff_.size() < static_cast<size_t>(slots_) ? "partly off"
                                                                           : "off");
        put(About::NETWORK, isFirewallOn_ ? "on " + number(trusted_) : "off");
        put(About::FREEZE, number(frozen_));
        put(About::LOCKS, number(proxied_));
        put(About::TIMERS, std::to_string(stretchedTo_));
        put(About::CLEAN, std::to_string(killed_));
    }

    std::map<int64_t, Picture> pictures_;
    int32_t state_ = DevStandbyMgr::StandbyState::WORKING;
    int32_t phase_ = -1;
    bool isAsleep_ = false;
    std::optional<bool> isScreenOn_;  ///< nobody said yet
    bool isBluetoothOn_ = true;
    bool isWifiOn_ = true;
    bool isWifiPresent_ = true;
    bool isFirewallOn_ = false;
    int32_t slots_ = 2;
    std::set<int64_t> slotsOff_;
    std::set<int64_t> trusted_;
    std::set<int64_t> frozen_;
    std::set<std::pair<int64_t, int64_t>> proxied_;
    int64_t stretchedTo_ = 0;
    int64_t killed_ = 0;
};

/// Shows a run to two sinks.
class Both : public Replay::RecordSink {
public:
    Both(Replay::RecordSink& a, Replay::RecordSink& b) : sinks_{&a, &b} {}

    [[nodiscard]] bool WantsLog(LogLevel level) const noexcept override {
        return sinks_[0]->WantsLog(level) || sinks_[1]->WantsLog(level);
    }
    [[nodiscard]] bool WantsReasons() const noexcept override {
        return sinks_[0]->WantsReasons() || sinks_[1]->WantsReasons();
    }
    void OnBegin(const Replay::Trace& trace) override {
        Each([&](auto& sink) { sink.OnBegin(trace); });
    }
    void OnStep(const Replay::Step& step) override {
        Each([&](auto& sink) { sink.OnStep(step); });
    }
    void OnLog(int64_t t, const LogLine& line) override {
        Each([&](auto& sink) {
            if (sink.WantsLog(line.level)) {
                sink.OnLog(t, line);
            }
        });
    }
    void OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) override {
        Each([&](auto& sink) { sink.OnCall(t, operation, arguments, result); });
    }
    void OnDeliver(int64_t t, const StandbyMessage& message) override {
        Each([&](auto& sink) { sink.OnDeliver(t, message); });
    }
    void OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) override {
        Each([&](auto& sink) {
            if (sink.WantsReasons()) {
                sink.OnReason(t, reason);
            }
        });
    }
    void OnDump(int64_t t, const std::string& text) override {
        Each([&](auto& sink) { sink.OnDump(t, text); });
    }
    void OnEnd(int64_t t, const Replay::Summary& summary) override {
        Each([&](auto& sink) { sink.OnEnd(t, summary); });
    }

private:
    template <class Do>
    void Each(Do action) {
        for (Replay::RecordSink* sink : sinks_) {
            action(*sink);
        }
    }

    std::array<Replay::RecordSink*, 2> sinks_;
};

/// The answer's state in the truth's words.
std::string Named(const Story::SubjectAnswer& answer, const Story::Night& night, int64_t t) {
    const std::string number = std::to_string(answer.number);
    switch (answer.about) {
        case About::STATE:
            return answer.state + (answer.phase ? " " + std::to_string(answer.phase->number) : "");
        case About::NETWORK:
            return answer.state + (answer.state == "on" ? " " + number : "");
        case About::FREEZE:
        case About::LOCKS:
        case About::TIMERS:
            return number;
        case About::CLEAN:
            return std::to_string(
                std::count_if(night.appEvents.begin(), night.appEvents.end(), [t](const Story::AppEvent& event) {
                    return event.t <= t && event.aspect == Story::Aspect::CLEAN && event.value == "killed";
                }));
        default:
            return answer.state;
    }
}

/// What no sentence may say.
std::string Nonsense(const std::string& text) {
    constexpr std::array kNever = {"-1",  "1970", " .",  "..", ": .", "()",   "  .",  ", .", "::",
                                   " : ", "null", " - ", " -", ",,",  "\n\n", " nan", "(,",  ": \n"};
    for (const char* never : kNever) {
        if (text.find(never) != std::string::npos) {
            return never;
        }
    }
    return {};
}

Replay::Trace ReadFile(const fs::path& path) {
    std::ifstream file(path);
    return Replay::ReadTrace(file, path.filename().string());
}

std::vector<fs::path> TracesIn(const fs::path& folder) {
    std::vector<fs::path> traces;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".jsonl") {
            traces.push_back(entry.path());
        }
    }
    std::sort(traces.begin(), traces.end());
    return traces;
}

class WhyOf : public testing::TestWithParam<fs::path> {};

TEST_P(WhyOf, NamesTheStateThatTheRecordedCallsMadeAtEveryMinute) {
    const Replay::Trace trace = ReadFile(GetParam());
    trace.timezone.Use();
    Truth truth;
    Story::NightReader reader;
    Both both(truth, reader);
    Replay::Play(trace, {PluginPath(), {}}, both);
    const Story::Night& night = reader.Result();
    for (int64_t t = trace.start; t <= trace.end; t += kMinuteMs) {
        const Story::WhyAnswer answer = Story::Ask(night, t, {});
        ASSERT_EQ(answer.subjects.size(), Story::kAbouts);
        for (const Story::SubjectAnswer& subject : answer.subjects) {
            EXPECT_EQ(Named(subject, night, t), truth.At(t)[static_cast<size_t>(subject.about)])
                << Story::WordOf(subject.about) << " at " << Replay::TimeZone::Format(t, "%F %T");
        }
        std::ostringstream text;
        Tell(answer, text);
        EXPECT_EQ(Nonsense(text.str()), "") << text.str();
    }
}

INSTANTIATE_TEST_SUITE_P(EveryTrace, WhyOf, testing::ValuesIn(TracesIn(TRACES_FOLDER)), [](const auto& given) {
    std::string name = given.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace TARN::Tests
