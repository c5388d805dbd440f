#include "player.h"

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include "condition_watch.h"
#include "device_state_cache.h"
#include "simulated_phone.h"
#include "standby_service_impl.h"

namespace TARN::Replay {

namespace {

using DevStandbyMgr::StandbyServiceImpl;
using Simulated::SimulatedPhone;

/// Puts the time on what the phone shows, counts it and hands it on.
class Recorder : public Simulated::PhoneObserver {
public:
    explicit Recorder(RecordSink& sink) : sink_(sink) {}

    void Watch(const Simulated::VirtualTime& clock) { clock_ = &clock; }

    [[nodiscard]] bool WantsLog(LogLevel level) const noexcept override { return sink_.WantsLog(level); }

    void OnLog(const LogLine& line) override {
        ++summary_.logs;
        sink_.OnLog(Now(), line);
    }

    void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override {
        ++summary_.calls;
        sink_.OnCall(Now(), operation, arguments, result);
    }

    void OnDeliver(const DevStandbyMgr::StandbyMessage& message) {
        ++summary_.messages;
        sink_.OnDeliver(Now(), message);
    }

    [[nodiscard]] Summary Total() const { return summary_; }

private:
    [[nodiscard]] int64_t Now() const { return clock_->NowMs(); }

    RecordSink& sink_;
    const Simulated::VirtualTime* clock_ = nullptr;
    Summary summary_;
};

/// A phone that is the process's device for as long as it lives.
class InstalledPhone {
public:
    InstalledPhone(const Trace& trace, Recorder& recorder) : phone_(trace.start, trace.bootNs, recorder) {
        recorder.Watch(phone_.Clock());
        Device::Install(&phone_);
    }
    ~InstalledPhone() {
        phone_.DropPending();
        StandbyServiceImpl::Destroy();
        Device::Install(nullptr);
    }
    InstalledPhone(const InstalledPhone&) = delete;
    InstalledPhone& operator=(const InstalledPhone&) = delete;

    SimulatedPhone& operator*() { return phone_; }

private:
    SimulatedPhone phone_;
};

/// One run of one trace.
class Run {
public:
    Run(const Trace& trace, const PlayOptions& options, RecordSink& sink)
        : trace_(trace), options_(options), sink_(sink), recorder_(sink), installed_(trace, recorder_) {}

    void Play() {
        phone_.Apply(trace_.device.phone);
        service_ = StandbyServiceImpl::Create(trace_.host);
        service_->ObserveDelivery([this](const auto& message) { recorder_.OnDeliver(message); });
        ApplyToHost(trace_.device.host);
        sink_.OnBegin(trace_);
        Start();
        for (const Step& step : trace_.steps) {
            AdvanceTo(step.t);
            sink_.OnStep(step);
            std::visit([this](const auto& what) { Do(what); }, step.what);
        }
        AdvanceTo(trace_.end);
        phone_.Clock().RunThrough(trace_.end);
        service_->UnInit();
        service_->UnloadPlugin();
        Summary summary = recorder_.Total();
        summary.virtualMs = trace_.end - trace_.start;
        sink_.OnEnd(trace_.end, summary);
    }

private:
    void Start() {
        std::string error;
        if (!service_->LoadPlugin(options_.pluginPath, error)) {
            throw RunError("cannot load the plugin: " + error);
        }
        service_->Init();
    }

    /// Runs what is due before `t`, a day at a time for the sake of the progress.
    void AdvanceTo(int64_t t) {
        constexpr int64_t kDayMs = 24L * 3600 * 1000;
        Simulated::VirtualTime& clock = phone_.Clock();
        for (int64_t next = clock.NowMs() + kDayMs; next < t; next += kDayMs) {
            clock.RunBefore(next);
            ReportProgress(next);
        }
        clock.RunBefore(t);
        ReportProgress(t);
    }

    void ReportProgress(int64_t t) const {
        if (options_.progress && trace_.end > trace_.start) {
            options_.progress(static_cast<double>(t - trace_.start) / static_cast<double>(trace_.end - trace_.start));
        }
    }

    void Do(const SetStep& step) {
        phone_.Apply(step.phone);
        ApplyToHost(step.host);
    }

    void Do(const MessageStep& step) { service_->DispatchEvent(step.message); }

    void Do(const BroadcastStep& step) { phone_.Broadcast(step.want); }

    void Do(const DumpStep& step) {
        std::string text;
        service_->ShellDump(step.words, text);
        sink_.OnDump(NowMs(), text);
    }

    void Do(const RestartStep& step) {
        if (!step.isCrash) {
            service_->UnInit();
        }
        service_->UnloadPlugin();
        Start();
    }

    void Do(const FileStep& step) { phone_.WriteFile(step.name, step.text); }

    void ApplyToHost(const HostFactsChange& change) {
        if (change.condition) {
            service_->GetConditionWatch().Set(*change.condition);
        }
        for (const auto& [type, enabled] : change.deviceState) {
            service_->GetDeviceStateCache()->SetDeviceState(type, enabled);
        }
        for (const auto& [type, names] : change.allowList) {
            service_->SetAllowList(type, names);
        }
        for (const auto& [type, names] : change.restrictSet) {
            service_->SetRestrictSet(type, std::set<std::string>(names.begin(), names.end()));
        }
    }

    [[nodiscard]] int64_t NowMs() const { return phone_.Clock().NowMs(); }

    const Trace& trace_;
    const PlayOptions& options_;
    RecordSink& sink_;
    Recorder recorder_;
    InstalledPhone installed_;
    SimulatedPhone& phone_ = *installed_;
    std::shared_ptr<StandbyServiceImpl> service_;
};

}  // namespace

void Play(const Trace& trace, const PlayOptions& options, RecordSink& sink) {
    trace.timezone.Use();
    Run(trace, options, sink).Play();
}

}  // namespace TARN::Replay
