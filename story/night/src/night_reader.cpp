#include "night_reader.h"

#include "call_stories.h"
#include "condition_watch.h"
#include "fact_stories.h"
#include "log_stories.h"
#include "message_stories.h"
#include "phone_picture.h"
#include "scribe.h"
#include "sleep/sleep_story.h"
#include "standby_constants.h"
#include "state_story.h"

namespace TARN::Story {

struct NightReader::Storytellers {
    explicit Storytellers(const ReadOptions& options)
        : view(options.view),
          scribe(night, options.view, options.isKept),
          phone(scribe),
          sleep(scribe),
          states(scribe),
          calls(scribe, phone, sleep),
          messages(scribe, phone, calls, states, sleep),
          logs(scribe, calls, sleep, options.leastLog) {}

    void Settle() {
        sleep.Settle();
        calls.Processes().Settle();
        scribe.Settle();
    }

    /// What was going on is over when time goes on.
    void MoveTo(int64_t t) {
        if (t != scribe.Now()) {
            Settle();
            scribe.MoveTo(t);
        }
    }

    void SetFacts(const Replay::SetStep& step, bool isStart) {
        calls.Radios().OnFacts(step, isStart);
        calls.Processes().OnFacts(step);
        states.OnFacts(step);
        phone.Apply(step);
        Name(step);
        if (step.phone.processes) {
            calls.Processes().ForgetEnded(kNoEvent);
        }
        sleep.OnFacts(step);
        DrawCurves(night, scribe.Now(), step, isStart);
        if (!scribe.IsKept()) {
            ForgetCurves(night, scribe.Now());
        }
        if (step.host.condition) {
            SetCondition(*step.host.condition);
        }
    }

    /// Whoever is named, be it in a list or by a task, can be asked for.
    void Name(const Replay::SetStep& step) {
        for (const auto* lists : {&step.host.allowList, &step.host.restrictSet}) {
            for (const auto& [type, names] : *lists) {
                for (const std::string& name : names) {
                    phone.Mention(name, -1);
                }
            }
        }
        for (const Simulated::ContinuousTask& task :
             step.phone.continuousTasks.value_or(std::vector<Simulated::ContinuousTask>())) {
            phone.Mention({}, task.uid);
        }
    }

    void SetCondition(uint32_t condition) {
        using DevStandbyMgr::ConditionType::DAY_STANDBY;
        using DevStandbyMgr::ConditionType::NIGHT_STANDBY;
        scribe.Set(LaneId::CONDITION,
                   condition == DAY_STANDBY     ? "day"
                   : condition == NIGHT_STANDBY ? "night"
                                                : "condition " + std::to_string(condition),
                   condition);
        calls.Processes().OnCondition(condition);
    }

    void Begin(const Replay::Trace& trace) {
        config = trace.host;
        night.name = trace.name;
        night.timezone = trace.timezone.Name();
        night.start = trace.start;
        night.end = trace.end;
        night.isScripted = trace.host.mode == DevStandbyMgr::HostMode::SCRIPTED;
        night.strategies = trace.host.strategies;
        night.head = TellHead(trace);
        calls.Processes().OnConfig(config);
        calls.Network().OnConfig(config);
        calls.Radios().OnConfig(config);
        states.OnConfig(config);
        night.isPowerOffAlive = IsPowerOffAlive(config);
        messages.OnConfig(config);
        sleep.OnConfig(config.standbyMode);
        scribe.MoveTo(trace.start);
        // A simulated phone's screen is on until a broadcast says otherwise, and a host that decides by itself asks.
        scribe.Set(LaneId::SCREEN, night.isScripted ? kNotKnown : "on");
        scribe.Set(LaneId::CHARGER, trace.device.phone.plugged.value_or(0) != 0 ? "plugged" : "unplugged");
        scribe.Set(LaneId::FIREWALL, "off");
        scribe.Set(LaneId::FROZEN, "none");
        scribe.Set(LaneId::LOCKS, "none");
        scribe.Set(LaneId::TIMERS, "normal");
        states.OnStart(!night.isScripted, kNoEvent);
        SetCondition(night.isScripted ? trace.device.host.condition.value_or(DevStandbyMgr::ConditionType::DAY_STANDBY)
                                      : DevStandbyMgr::ConditionAt(config.policy, trace.start));
        SetFacts(trace.device, /*isStart=*/true);
        for (const auto& [type, names] : trace.device.host.allowList) {
            for (const std::string& name : names) {
                phone.TellName(name, Aspect::EXEMPT, "exempt", "from " + NameOfLimit(type), kNoEvent);
            }
        }
        sleep.OnStart(kNoEvent);
        if (view != nullptr) {
            view->OnHead(night);
        }
    }

    void Do(const Replay::SetStep& step) {
        TellFacts(scribe, step);
        TellRestricted(scribe, step);
        SetFacts(step, /*isStart=*/false);
    }

    void Do(const Replay::RestartStep& step) {
        Settle();
        const Scribe::Id id = scribe.Write(Subject::SERVICE, Outcome::HAPPENED,
                                           step.isCrash ? "crashes and starts again" : "stops and starts again");
        sleep.OnStart(id);
        states.OnStart(!night.isScripted, id);
    }

    void Do(const Replay::FileStep& step) {
        scribe.Write(Subject::FILE, Outcome::HAPPENED,
                     step.name + (step.text ? " is written behind the service's back"
                                            : " is removed behind the service's back"));
    }

    void Do(const Replay::DumpStep& step) {
        std::string words;
        for (const std::string& word : step.words) {
            words += (words.empty() ? "" : " ") + word;
        }
        scribe.SetCause(Cause::DUMP, scribe.Write(Subject::DUMP, Outcome::HAPPENED, std::move(words)));
    }

    // Messages are told when they reach the strategies, and so are broadcasts that a host hears.
    void Do(const Replay::MessageStep& /*step*/) {}
    // A scripted host hears of no broadcast.
    void Do(const Replay::BroadcastStep& step) {
        if (night.isScripted) {
            messages.OnUnheard(step.want.GetAction());
        }
    }

    void Hear(const DevStandbyMgr::StateReason& reason) { states.OnReason(reason); }
    void Hear(const DevStandbyMgr::FirewallReason& reason) { calls.Network().OnReason(reason); }
    void Hear(const DevStandbyMgr::RunningLockReason& reason) { calls.Processes().OnReason(reason); }

    Night night;
    NightView* view;
    DevStandbyMgr::StandbyConfig config;
    Scribe scribe;
    PhonePicture phone;
    SleepStory sleep;
    StateStory states;
    CallStories calls;
    MessageStories messages;
    LogStories logs;
};

NightReader::NightReader(const ReadOptions& options) : my_(std::make_unique<Storytellers>(options)) {}

NightReader::~NightReader() = default;

const Night& NightReader::Result() const noexcept {
    return my_->night;
}

void NightReader::Settle() {
    my_->Settle();
}

void NightReader::OnBegin(const Replay::Trace& trace) {
    my_->Begin(trace);
}

void NightReader::OnStep(const Replay::Step& step) {
    my_->MoveTo(step.t);
    std::visit([this](const auto& what) { my_->Do(what); }, step.what);
}

void NightReader::OnLog(int64_t t, const LogLine& line) {
    my_->MoveTo(t);
    my_->logs.OnLog(line);
}

void NightReader::OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                         const nlohmann::ordered_json& result) {
    my_->MoveTo(t);
    my_->calls.OnCall(operation, arguments, result);
}

void NightReader::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    my_->MoveTo(t);
    my_->sleep.OnMessage(message);
    my_->messages.OnDeliver(message);
}

bool NightReader::WantsCall(std::string_view operation) const noexcept {
    return CallStories::Knows(operation);
}

void NightReader::OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) {
    my_->MoveTo(t);
    std::visit([this](const auto& one) { my_->Hear(one); }, reason);
}

void NightReader::OnDump(int64_t t, const std::string& text) {
    my_->MoveTo(t);
    size_t from = 0;
    while (from < text.size()) {
        const size_t to = std::min(text.find('\n', from), text.size());
        if (to > from) {
            my_->scribe.Write(Subject::DUMP, Outcome::NOTED, "│ " + text.substr(from, to - from));
        }
        from = to + 1;
    }
}

void NightReader::OnEnd(int64_t t, const Replay::Summary& summary) {
    my_->MoveTo(t);
    my_->Settle();
    Night& night = my_->night;
    night.end = t;
    night.record = summary;
    for (Lane& lane : night.lanes) {
        lane.End(t);
    }
    if (my_->view != nullptr) {
        my_->view->OnEnd(night);
    }
}

}  // namespace TARN::Story
