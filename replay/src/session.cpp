#include "session.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "condition_watch.h"
#include "device_state_cache.h"
#include "folder_files.h"
#include "ledger_device.h"
#include "player.h"
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

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return sink_.LeastLog(); }

    void OnLog(const LogLine& line) override {
        ++summary_.logs;
        sink_.OnLog(Now(), line);
    }

    [[nodiscard]] bool WantsCall(std::string_view operation) const noexcept override {
        return sink_.WantsCall(operation);
    }

    void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override {
        sink_.OnCall(Now(), operation, arguments, result);
    }

    void OnFile(const std::string& path) override { sink_.OnFile(Now(), path); }

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

/// Files below a folder of the machine, which are there after the run as well. A folder that takes no more is the
/// machine's trouble and not the phone's.
class KeptFiles : public FileUtil::FolderFiles {
public:
    explicit KeptFiles(const std::string& folder) : FolderFiles(folder), folder_(folder) {
        std::error_code error;
        if (!std::filesystem::is_directory(folder, error)) {
            throw RunError(folder + ": no folder to keep the phone's files in" + (error ? ": " + error.message() : ""));
        }
    }

    [[nodiscard]] bool Replace(const std::string& path, const std::string& content) override {
        return Note(FolderFiles::Replace(path, content));
    }

    bool Remove(const std::string& path) override { return Note(FolderFiles::Remove(path)); }

    void CheckWritten() const {
        if (hasFailed_) {
            throw RunError("the phone's files cannot be written below " + folder_);
        }
    }

private:
    bool Note(bool isDone) noexcept {
        hasFailed_ = hasFailed_ || !isDone;
        return isDone;
    }

    std::string folder_;
    std::atomic<bool> hasFailed_ = false;
};

template <class Map>
void Overlay(Map& map, const Map& change) {
    for (const auto& [key, value] : change) {
        map.insert_or_assign(key, value);
    }
}

/// A phone that is the process's device for as long as it lives.
class InstalledPhone {
public:
    InstalledPhone(const Trace& trace, Recorder& recorder, FileUtil::FileService* files)
        : phone_(trace.start, trace.bootNs, recorder, files) {
        recorder.Watch(phone_.Clock());
        if (trace.host.mode == DevStandbyMgr::HostMode::AUTOMATIC && trace.host.policy.hasRadioLedger) {
            ledger_.emplace(phone_, phone_);
        }
        Device::Install(&Outermost());
    }
    ~InstalledPhone() {
        Outermost().DropPending();
        StandbyServiceImpl::Destroy();
        Device::Install(nullptr);
    }
    InstalledPhone(const InstalledPhone&) = delete;
    InstalledPhone& operator=(const InstalledPhone&) = delete;

    SimulatedPhone& operator*() { return phone_; }
    SimulatedPhone* operator->() { return &phone_; }

private:
    /// What the service takes for the phone.
    Device& Outermost() {
        if (ledger_) {
            return *ledger_;
        }
        return phone_;
    }

    SimulatedPhone phone_;
    std::optional<Ledger::LedgerDevice> ledger_;
};

}  // namespace

struct Session::Parts {
    Parts(const Trace& trace, RecordSink& sink, const std::string& filesFolder)
        : recorder(sink),
          files(filesFolder.empty() ? nullptr : std::make_unique<KeptFiles>(filesFolder)),
          installed(trace, recorder, files.get()),
          config(trace.host),
          hostFacts(trace.device.host) {}

    Recorder recorder;
    std::unique_ptr<KeptFiles> files;
    InstalledPhone installed;
    DevStandbyMgr::StandbyConfig config;
    HostFactsChange hostFacts;  ///< all that was changed so far; a service that starts again is told them anew
    std::shared_ptr<StandbyServiceImpl> service;
};

Session::Session(const Trace& trace, std::string pluginPath, RecordSink& sink, const std::string& filesFolder,
                 std::string side)
    : name_(trace.name), side_(std::move(side)), start_(trace.start), pluginPath_(std::move(pluginPath)), sink_(sink) {
    trace.timezone.Use();
    parts_ = std::make_unique<Parts>(trace, sink, filesFolder);
    isPhoneThere_ = true;
    Phone().Apply(trace.device.phone);
    CreateService();
    sink_.OnBegin(trace);
    LoadAndInit();
}

Session::~Session() = default;

Session::PhoneEnd::~PhoneEnd() {
    if (session_.isPhoneThere_) {
        session_.sinceStartMs_ = session_.NowMs() - session_.start_;
        session_.isPhoneThere_ = false;
    }
}

std::optional<Running> WhatRuns() noexcept {
    const Session* session = Session::running_;
    if (session == nullptr) {
        return std::nullopt;
    }
    const int64_t sinceStart = session->isPhoneThere_ ? session->NowMs() - session->start_ : session->sinceStartMs_;
    return Running{session->name_.c_str(), session->side_.c_str(), sinceStart};
}

SimulatedPhone& Session::Phone() {
    return *parts_->installed;
}

StandbyServiceImpl& Session::Service() {
    return *parts_->service;
}

int64_t Session::NowMs() const {
    return parts_->installed->Clock().NowMs();
}

void Session::CreateService() {
    parts_->service = StandbyServiceImpl::Create(parts_->config);
    Service().ObserveDelivery([this](const auto& message) { parts_->recorder.OnDeliver(message); });
    if (sink_.WantsReasons()) {
        Service().ObserveReasons([this](const auto& reason) { sink_.OnReason(NowMs(), reason); });
    }
    Tell(parts_->hostFacts);
}

void Session::LoadAndInit() {
    std::string error;
    if (!Service().LoadPlugin(pluginPath_, error)) {
        throw RunError("cannot load the plugin: " + error);
    }
    Service().Init();
}

void Session::AdvanceTo(int64_t t) {
    Phone().Clock().RunBefore(t);
    CheckFiles();
}

void Session::RunThrough(int64_t t) {
    Phone().Clock().RunThrough(t);
    CheckFiles();
}

void Session::CheckFiles() const {
    if (parts_->files != nullptr) {
        parts_->files->CheckWritten();
    }
}

void Session::Do(const Step& step) {
    AdvanceTo(step.t);
    sink_.OnStep(step);
    std::visit([this](const auto& what) { Apply(what); }, step.what);
}

void Session::Kill() {
    Phone().CutOff(true);
}

void Session::StartAgain() {
    parts_->service.reset();
    StandbyServiceImpl::Destroy();
    Phone().CutOff(false);
    CreateService();
    LoadAndInit();
}

void Session::Finish(int64_t end) {
    AdvanceTo(end);
    RunThrough(end);
    Service().UnInit();
    Service().UnloadPlugin();
    CheckFiles();
    Summary summary = parts_->recorder.Total();
    summary.calls = Phone().Calls();
    summary.virtualMs = end - start_;
    sink_.OnEnd(end, summary);
}

void Session::Apply(const SetStep& step) {
    Phone().Apply(step.phone);
    Apply(step.host);
}

void Session::Apply(const MessageStep& step) {
    Service().DispatchEvent(step.message);
}

void Session::Apply(const BroadcastStep& step) {
    Phone().Broadcast(step.want);
}

void Session::Apply(const DumpStep& step) {
    std::string text;
    Service().ShellDump(step.words, text);
    sink_.OnDump(NowMs(), text);
}

void Session::Apply(const RestartStep& step) {
    if (step.isCrash) {
        Kill();
        StartAgain();
        return;
    }
    Service().UnInit();
    Service().UnloadPlugin();
    LoadAndInit();
}

void Session::Apply(const FileStep& step) {
    try {
        Phone().WriteFile(step.name, step.text);
    } catch (const std::runtime_error&) {
        CheckFiles();  // which names the folder on the machine
        throw;
    }
}

void Session::Apply(const HostFactsChange& change) {
    HostFactsChange& all = parts_->hostFacts;
    all.condition = change.condition ? change.condition : all.condition;
    Overlay(all.deviceState, change.deviceState);
    Overlay(all.allowList, change.allowList);
    Overlay(all.restrictSet, change.restrictSet);
    Tell(change);
}

void Session::Tell(const HostFactsChange& change) {
    if (change.condition) {
        Service().GetConditionWatch().Set(*change.condition);
    }
    for (const auto& [type, enabled] : change.deviceState) {
        Service().GetDeviceStateCache()->SetDeviceState(type, enabled);
    }
    for (const auto& [type, names] : change.allowList) {
        Service().SetAllowList(type, names);
    }
    for (const auto& [type, names] : change.restrictSet) {
        Service().SetRestrictSet(type, std::set<std::string>(names.begin(), names.end()));
    }
}

}  // namespace TARN::Replay
