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
#include <tuple>

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
    struct Picture {
        std::array<std::string, Story::kAbouts> states;
        std::set<int64_t> frozen;           ///< pids
        std::set<int64_t> proxied;          ///< pids
        std::map<int64_t, int64_t> killed;  ///< by pid: when
        std::set<int64_t> trusted;          ///< uids

        bool operator==(const Picture&) const = default;
        [[nodiscard]] bool HasSameProcesses(const Picture& other) const {
            return std::tie(frozen, proxied, killed, trusted) ==
                   std::tie(other.frozen, other.proxied, other.killed, other.trusted);
        }
    };

    /// How things stand at the end of the millisecond `t`.
    [[nodiscard]] const Picture& At(int64_t t) const { return std::prev(pictures_.upper_bound(t))->second; }

    /// When something changed.
    [[nodiscard]] const std::map<int64_t, Picture>& Changes() const { return pictures_; }

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnDump(int64_t /*t*/, const std::string& /*text*/) override {}
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

    void OnBegin(const Replay::Trace& trace) override {
        isScripted_ = trace.host.mode == DevStandbyMgr::HostMode::SCRIPTED;
        OnRestart();
        isScreenOn_ = isScripted_ ? std::nullopt : std::optional(true);  // an automatic host asks the phone
        Facts(trace.device.phone);
        Keep(trace.start);
    }

    void OnStep(const Replay::Step& step) override {
        if (const auto* set = std::get_if<Replay::SetStep>(&step.what)) {
            Facts(set->phone);
        } else if (std::holds_alternative<Replay::RestartStep>(step.what)) {
            OnRestart();
        } else if (const auto* sent = std::get_if<Replay::BroadcastStep>(&step.what); sent != nullptr && isScripted_) {
            Screen(sent->want.GetAction());
        }
        Keep(step.t);
    }

    void OnDeliver(int64_t t, const StandbyMessage& message) override {
        const AAFwk::Want want = message.want.value_or(AAFwk::Want());
        if (message.eventId == StandbyMessageType::STATE_TRANSIT) {
            const int32_t state = want.GetIntParam("CURRENT_STATE", 0);
            state_ = DevStandbyMgr::StateName(static_cast<uint32_t>(state));
            phase_ = state == DevStandbyMgr::StandbyState::SLEEP ? phase_ : "";
        } else if (message.eventId == StandbyMessageType::PHASE_TRANSIT) {
            phase_ = " " + std::to_string(want.GetIntParam("CURRENT_PHASE", 0));
        } else if (message.eventId == StandbyMessageType::USER_SLEEP_STATE_CHANGED ||
                   message.action == "COMMON_EVENT_USER_SLEEP_STATE_CHANGED") {
            isAsleep_ = want.GetBoolParam("isSleep", false);
        } else {
            Screen(message.action);
        }
        Keep(t);
    }

    void OnCall(int64_t t, std::string_view operation, const Json& arguments, const Json& result) override {
        const bool isDone = result == 0 || result == true;
        if (operation == "SuspendManagerClient.OperateNativeProcesses") {
            for (size_t i = 0; i < result.size(); ++i) {
                if (result[i] == 0) {
                    Put(now_.frozen, arguments["processes"][i]["pid"].get<int64_t>(),
                        arguments["processes"][i]["freeze"]);
                }
            }
        } else if (isDone && operation == "ResSchedClient.KillProcess") {
            const int64_t pid = std::stoi(arguments["pid"].get<std::string>());
            ++kills_;
            now_.killed[pid] = t;
            running_.erase(pid);
            ForgetEnded();
        } else if (isDone && operation == "PowerMgrClient.ProxyRunningLocks") {
            for (const Json& pair : arguments["processes"]) {
                // some calls name the uid first, others the pid
                const bool isPidFirst = running_.count(pair[0]) != 0 && running_[pair[0]] == pair[1];
                Put(now_.proxied, pair[isPidFirst ? 0 : 1].get<int64_t>(), arguments["proxied"]);
            }
        } else if (isDone && operation == "NetPolicyClient.SetDeviceIdlePolicy") {
            isFirewallOn_ = arguments["enable"];
        } else if (isDone && operation == "NetPolicyClient.SetDeviceIdleTrustlist") {
            for (const Json& uid : arguments["uids"]) {
                Put(now_.trusted, uid.get<int64_t>(), arguments["added"]);
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
    void Screen(const std::string& action) {
        if (action == CommonEventSupport::COMMON_EVENT_SCREEN_ON ||
            action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
            isScreenOn_ = action == CommonEventSupport::COMMON_EVENT_SCREEN_ON;
        }
    }

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
            running_.clear();
            now_.killed.clear();
            for (const Simulated::Process& process : *change.processes) {
                running_.emplace(process.pid, process.uid);
            }
            ForgetEnded();
        }
    }

    /// Nobody is frozen or held back that does not run any more.
    void ForgetEnded() {
        const auto isGone = [this](int64_t pid) { return running_.count(pid) == 0; };
        std::erase_if(now_.frozen, isGone);
        std::erase_if(now_.proxied, isGone);
    }

    /// The service begins as one that knows nothing.
    void OnRestart() {
        state_ = isScripted_ ? std::string(Story::kNotKnown)
                             : DevStandbyMgr::StateName(DevStandbyMgr::StandbyState::WORKING);
        phase_.clear();
        isAsleep_ = false;
    }

    void Keep(int64_t t) {
        const auto onOff = [](bool isOn) { return std::string(isOn ? "on" : "off"); };
        const auto put = [this](About about, std::string text) {
            now_.states[static_cast<size_t>(about)] = std::move(text);
        };
        put(About::STATE, state_ + phase_);
        put(About::SLEEP, isAsleep_ ? "asleep" : "awake");
        put(About::SCREEN, isScreenOn_ ? onOff(*isScreenOn_) : std::string(Story::kNotKnown));
        put(About::BLUETOOTH, onOff(isBluetoothOn_));
        put(About::WIFI, isWifiPresent_ ? onOff(isWifiOn_) : "absent");
        put(About::MODEM, slots_ == 0                                      ? "absent"
                          : slotsOff_.empty()                              ? "on"
                          : slotsOff_.size() < static_cast<size_t>(slots_) ? "partly off"
                                                                           : "off");
        put(About::NETWORK, isFirewallOn_ ? "on " + std::to_string(now_.trusted.size()) : "off");
        put(About::FREEZE, std::to_string(now_.frozen.size()));
        put(About::LOCKS, std::to_string(now_.proxied.size()));
        put(About::TIMERS, std::to_string(stretchedTo_));
        put(About::CLEAN, std::to_string(kills_));
        if (pictures_.empty() || pictures_.rbegin()->first == t || pictures_.rbegin()->second != now_) {
            pictures_[t] = now_;
        }
    }

    Picture now_;
    std::map<int64_t, Picture> pictures_;
    bool isScripted_ = false;
    std::string state_;
    std::string phase_;
    bool isAsleep_ = false;
    std::optional<bool> isScreenOn_;  ///< nobody said yet
    bool isBluetoothOn_ = true;
    bool isWifiOn_ = true;
    bool isWifiPresent_ = true;
    bool isFirewallOn_ = false;
    int32_t slots_ = 2;
    std::set<int64_t> slotsOff_;
    std::map<int64_t, int64_t> running_;  ///< pid to uid
    int64_t stretchedTo_ = 0;
    int64_t kills_ = 0;
};

/// Shows a run to two sinks.
class Both : public Replay::RecordSink {
public:
    Both(Replay::RecordSink& a, Replay::RecordSink& b) : sinks_{&a, &b} {}

    [[nodiscard]] LogLevel LeastLog() const noexcept override {
        return std::min(sinks_[0]->LeastLog(), sinks_[1]->LeastLog());
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
            if (line.level >= sink.LeastLog()) {
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
    constexpr std::array kNever = {"-1",   "1970", " .",   "..",   ": .", "()",   "  .", ", .", "::", " : ",
                                   "null", ",,",   "\n\n", " nan", "(,",  ": \n", " -1", " -2", " -3"};
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

/// One night, played once, with what is true of it.
class WhyOf : public testing::TestWithParam<fs::path> {
protected:
    WhyOf() : trace_(ReadFile(GetParam())) {
        trace_.timezone.Use();
        Both both(truth_, reader_);
        Replay::Play(trace_, {PluginPath(), {}}, both);
    }

    /// Every so often from the start to the end.
    template <class Do>
    void Every(int64_t stepMs, Do ask) const {
        for (int64_t t = trace_.start; t <= trace_.end; t += stepMs) {
            ask(t);
        }
    }

    void ExpectStates(int64_t t) const {
        const Story::WhyAnswer answer = Story::Ask(night_, t, {});
        ASSERT_EQ(answer.subjects.size(), Story::kAbouts);
        for (const Story::SubjectAnswer& subject : answer.subjects) {
            EXPECT_EQ(Named(subject, night_, t), truth_.At(t).states[static_cast<size_t>(subject.about)])
                << Story::WordOf(subject.about) << " at " << Replay::TimeZone::Format(t, "%F %T");
        }
    }

    void ExpectApps(int64_t t) const {
        const Truth::Picture& truth = truth_.At(t);
        for (const Story::App& app : night_.apps) {
            for (const Story::AppAnswer& answer : Story::Ask(night_, t, {{}, app.name}).apps) {
                if (answer.app.pid != app.pid || Says(answer, Aspect::RUNNING, "ended")) {
                    continue;
                }
                const std::string where = app.name + " at " + Replay::TimeZone::Format(t, "%F %T");
                if (const auto killed = truth.killed.find(app.pid); killed != truth.killed.end()) {
                    EXPECT_TRUE(Says(answer, Aspect::CLEAN, "killed", killed->second)) << where;
                } else {
                    EXPECT_EQ(Says(answer, Aspect::FROZEN, "frozen"), truth.frozen.count(app.pid) != 0) << where;
                    EXPECT_EQ(Says(answer, Aspect::LOCKS, "proxied"), truth.proxied.count(app.pid) != 0) << where;
                    EXPECT_EQ(Says(answer, Aspect::FIREWALL, "on the trust list"), truth.trusted.count(app.uid) != 0)
                        << where;
                }
            }
        }
    }

    /// All subjects, each single one, and every application are told in sentences.
    void ExpectSense(int64_t t) const {
        ExpectSense(Story::Ask(night_, t, {}));
        for (size_t i = 0; i < Story::kAbouts; ++i) {
            ExpectSense(Story::Ask(night_, t, {static_cast<About>(i), {}}));
        }
        for (const Story::App& app : night_.apps) {
            ExpectSense(Story::Ask(night_, t, {{}, app.name}));
        }
    }

    const Replay::Trace trace_;
    Truth truth_;
    Story::NightReader reader_;
    const Story::Night& night_ = reader_.Result();

private:
    using Aspect = Story::Aspect;

    static bool Says(const Story::AppAnswer& answer, Aspect aspect, std::string_view value,
                     std::optional<int64_t> since = std::nullopt) {
        return std::any_of(answer.aspects.begin(), answer.aspects.end(), [&](const Story::AspectAnswer& one) {
            return one.aspect == aspect && one.value == value && (!since || one.since == since);
        });
    }

    static void ExpectSense(const Story::WhyAnswer& answer) {
        std::ostringstream text;
        Tell(answer, text);
        const std::string sentences = text.str().substr(text.str().find('\n'));  // behind the moment that was asked for
        EXPECT_EQ(Nonsense(sentences), "") << text.str();
        EXPECT_NE(ToJson(answer).dump(), "");
    }
};

TEST_P(WhyOf, NamesWhatTheRecordedCallsMadeAtEveryMinute) {
    constexpr int64_t kNowAndThenMs = 47 * kMinuteMs;
    Every(kMinuteMs, [this](int64_t t) { ExpectStates(t); });
    Every(kNowAndThenMs, [this](int64_t t) { ExpectSense(t); });
    const Truth::Picture* before = nullptr;
    for (const auto& [t, picture] : truth_.Changes()) {
        ExpectStates(t);
        if (before == nullptr || !picture.HasSameProcesses(*before)) {
            ExpectApps(t);
        }
        before = &picture;
    }
}

/// An evening with two applications and a native, its screen off from 22:30 on.
Night Evening() {
    Night night("UTC", "2026-03-01T21:00:00");
    night.Automatic().Strategies(R"(["FREEZE", "PUSH", "NETWORK", "RUNNING_LOCK", "TIMER"])");
    night.Host("persist_allow", R"({"FREEZE": {"1": ["media"], "2": ["media"]}})");
    night.Device("processes", R"([{"pid": 410, "uid": 1000, "name": "media", "native": true, "system": true},
                                  {"pid": 2100, "uid": 20010001, "name": "com.a.one"},
                                  {"pid": 2101, "uid": 20010002, "name": "com.b.two"}])");
    night.Device("light", "0").Device("proximity", "0");
    return night;
}

Night& Dark(Night& night) {
    return night.AdvanceTo("22:30").ScreenOff();
}

/// The answer about a subject or, where there is none of the name, an application.
std::string Answer(const Night& night, const std::string& end, const std::string& at, const std::string& about,
                   int64_t halfHourS = 1800) {
    std::istringstream text(night.Text(end));
    Replay::Trace trace = Replay::ReadTrace(text, "test");
    trace.host.policy.halfHourSeconds = halfHourS;
    Story::NightReader reader;
    Replay::Play(trace, {PluginPath(), {}}, reader);
    trace.timezone.Use();
    const std::string day = at < "12" ? "2026-03-02T" : "2026-03-01T";
    const int64_t t = Replay::TimeZone::ParseLocal(day + at + ":00");
    std::ostringstream output;
    Tell(Story::Ask(reader.Result(), t, {Story::AboutOf(about), Story::AboutOf(about) ? "" : about}), output);
    return output.str();
}

TEST(Why, TellsEachTimeWithItsOwnReasonAndWhatMayStillCome) {
    using testing::AllOf;
    using testing::HasSubstr;
    using testing::Not;
    Night task = Evening();
    Dark(task).AdvanceTo("23:40").Set(R"({"continuous_tasks": [{"type": 2, "uid": 20010001, "pid": 2100}]})");
    task.AdvanceTo("23:50").Set(R"({"continuous_tasks": []})");
    task.AdvanceTo("23:55").Set(R"({"restrict_set": {"1": ["com.a.one"]}})").AdvanceTo("00:20");
    task.Set(R"({"processes": []})");
    EXPECT_THAT(Answer(task, "00:40", "00:00", "com.a.one"),
                HasSubstr("Not on the trust list since 23:50: nothing exempts it; since 23:55: in the restrict set."));
    EXPECT_THAT(Answer(task, "00:40", "00:25", "com.a.one"), Not(HasSubstr("locks"))) << "it has ended";
    EXPECT_THAT(Answer(task, "00:40", "00:25", "locks"), HasSubstr("whose running locks were proxied ended"));
    EXPECT_THAT(Answer(task, "00:40", "23:20", "media"), HasSubstr("Frozen since 22:00: the night begins."));
    EXPECT_THAT(Answer(task, "00:40", "23:12", "state"), HasSubstr("Next: phase 1 (APP_RES_DEEP) at 23:15"));

    Night call = Evening();
    Dark(call)
        .AdvanceTo("23:40")
        .Set(R"({"continuous_tasks": [{"type": 8, "uid": 20010001, "pid": 2100}]})")
        .ScreenOn();
    EXPECT_THAT(Answer(call, "23:50", "23:40", "locks"),
                AllOf(HasSubstr("1 app (com.a.one) released, voice call begins"), HasSubstr("deep standby ends"),
                      HasSubstr("Caused at 23:40 by state: SLEEP → WORKING: screen on")));

    Night blinking = Evening();
    Dark(blinking).AdvanceTo("23:40").ScreenOn().ScreenOff();
    EXPECT_THAT(Answer(blinking, "23:50", "23:40", "state"),
                HasSubstr("DARK since 23:40: screen on, then screen off, by way of WORKING"));
    EXPECT_THAT(Answer(blinking, "23:50", "23:40", "bluetooth"), HasSubstr("screen: on, and off at once"));

    Night restarted = Evening();
    Dark(restarted).AdvanceTo("23:59").Restart();
    EXPECT_THAT(Answer(restarted, "00:10", "23:59", "network"), HasSubstr("off since 23:59: the service stops"));
}

TEST(Why, SaysOfBluetoothWhatThePluginTakesItForAndWhenItIsTriedAgain) {
    using testing::HasSubstr;
    Night unheard = Evening();
    Dark(unheard).AdvanceTo("22:40").Fail("BluetoothHost.EnableBle", 3).AdvanceTo("23:30").ScreenOn();
    unheard.AdvanceTo("23:31").ScreenOff().AdvanceTo("23:32").ScreenOn();
    EXPECT_THAT(Answer(unheard, "23:50", "23:45", "bluetooth"),
                HasSubstr("stayed off: the plugin takes it as on, since switching it on failed at 23:30"));

    Night taken = Evening();
    Dark(taken.Device("bluetooth", R"({"connection": 1})"));
    EXPECT_THAT(Answer(taken, "23:50", "23:40", "bluetooth"), HasSubstr("Next: at the end of a maintenance"));
    EXPECT_THAT(Answer(taken, "23:50", "23:40", "bluetooth", 5400),
                HasSubstr("the screen has not been off for 1 h 30 min"));
    EXPECT_THAT(Answer(taken.Host("half_hour_switches", "{}"), "23:50", "23:40", "bluetooth"),
                HasSubstr("Nothing has tried to change that yet: the power-off strategy is off"));

    Night off = Evening();
    Dark(off.Device("bluetooth", R"({"state": 3})"));
    EXPECT_THAT(Answer(off, "23:50", "23:10", "bluetooth"), HasSubstr("it was off already, and not by the plugin"));
}

std::string NameOf(const testing::TestParamInfo<fs::path>& given) {
    std::string name = given.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(EveryTrace, WhyOf, testing::ValuesIn(TracesIn(TRACES_FOLDER)), NameOf);
INSTANTIATE_TEST_SUITE_P(EveryScript, WhyOf, testing::ValuesIn(TracesIn(NIGHTS_FOLDER)), NameOf);

}  // namespace
}  // namespace TARN::Tests
