#include "standby_service_impl.h"

#include <mutex>
#include <utility>

#include "base_network_strategy.h"
#include "condition_watch.h"
#include "device.h"
#include "device_state_cache.h"
#include "dump_words.h"
#include "local_time.h"
#include "plugin_library.h"
#include "standby_config_manager.h"
#include "standby_constants.h"
#include "standby_names.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

int32_t STANDBT_MODE = 0;

namespace {

constexpr char kRefreshTask[] = "standby_refresh_task";

/// The process's service, which any thread may ask for.
class Instance {
public:
    static std::shared_ptr<StandbyServiceImpl> Get() {
        const std::lock_guard lock(Mutex());
        return Service();
    }

    /// Returns the one of before, which so ends outside the lock.
    static std::shared_ptr<StandbyServiceImpl> Exchange(std::shared_ptr<StandbyServiceImpl> service) {
        const std::lock_guard lock(Mutex());
        return std::exchange(Service(), std::move(service));
    }

private:
    static std::mutex& Mutex() {
        static std::mutex mutex;
        return mutex;
    }
    static std::shared_ptr<StandbyServiceImpl>& Service() {
        static std::shared_ptr<StandbyServiceImpl> service;
        return service;
    }
};

void Report(bool isInitialised, const char* adapter) {
    if (!isInitialised) {
        STANDBYSERVICE_LOGW("the plugin's %{public}s did not initialise", adapter);
    }
}

}  // namespace

std::shared_ptr<StandbyServiceImpl> StandbyServiceImpl::GetInstance() {
    return Instance::Get();
}

std::shared_ptr<StandbyServiceImpl> StandbyServiceImpl::Create(StandbyConfig config) {
    std::shared_ptr<StandbyServiceImpl> service(new StandbyServiceImpl(std::move(config)));
    if (service->handler_ == nullptr) {
        return nullptr;
    }
    Instance::Exchange(service);
    return service;
}

void StandbyServiceImpl::Destroy() {
    if (const auto service = Instance::Get()) {
        service->UnloadPlugin();  // here, whoever releases the service last; its listeners may ask for it until then
    }
    Instance::Exchange(nullptr);
}

StandbyServiceImpl::StandbyServiceImpl(StandbyConfig config)
    : handler_(Device::Current().CreateEventHandler()),
      tasks_(handler_),
      configManager_(std::make_shared<StandbyConfigManager>(std::move(config))),
      deviceStateCache_(std::make_shared<DeviceStateCache>()),
      conditionWatch_(std::make_unique<ConditionWatch>(configManager_->Config(), handler_)),
      radioWatch_(configManager_->Config(), handler_),
      applications_(IsAutomatic()) {
    STANDBT_MODE = configManager_->Config().standbyMode;
}

StandbyServiceImpl::~StandbyServiceImpl() {
    UnloadPlugin();
}

bool StandbyServiceImpl::LoadPlugin(const std::string& path, std::string& error) {
    UnloadPlugin();
    plugin_ = PluginLibrary::Load(path, error);
    if (plugin_ == nullptr) {
        return false;
    }
    if (!plugin_->Register() || strategyManager_ == nullptr) {
        error = path + ": the plugin did not register";
        UnloadPlugin();
        return false;
    }
    return true;
}

void StandbyServiceImpl::UnloadPlugin() {
    if (plugin_ != nullptr || strategyManager_ != nullptr) {
        Device::Current().DropPending();
        isRefreshQueued_ = false;
        isRefreshWaiting_ = false;
        radioWatch_.OnUnload();
    }
    stateManager_.reset();
    strategyManager_.reset();
    listenerManager_.reset();
    constraintManager_.reset();
    plugin_.reset();
    BaseNetworkStrategy::ForgetShared();
}

void StandbyServiceImpl::RegisterPluginInner(IConstraintManagerAdapter* constraintManager,
                                             IListenerManagerAdapter* listenerManager,
                                             IStrategyManagerAdapter* strategyManager,
                                             IStateManagerAdapter* stateManager) {
    constraintManager_.reset(constraintManager);
    listenerManager_.reset(listenerManager);
    strategyManager_.reset(strategyManager);
    stateManager_.reset(stateManager);
}

void StandbyServiceImpl::Init() {
    applications_.MarkStale();
    Report(constraintManager_->Init(), "constraint manager");
    Report(listenerManager_->Init(), "listener manager");
    Report(strategyManager_->Init(), "strategy manager");
    Report(stateManager_->Init(), "state manager");
    static_cast<void>(listenerManager_->StartListener());
    conditionWatch_->Start();
    radioWatch_.Start();
}

void StandbyServiceImpl::UnInit() {
    conditionWatch_->Stop();
    radioWatch_.Stop();
    static_cast<void>(listenerManager_->UnInit());
    static_cast<void>(strategyManager_->UnInit());
    static_cast<void>(stateManager_->UnInit());
    static_cast<void>(constraintManager_->UnInit());
    tasks_.Remove(kRefreshTask);
    isRefreshWaiting_ = false;
}

void StandbyServiceImpl::DispatchEvent(StandbyMessage message) {
    const int32_t eventId = message.eventId;
    const bool isPosted = handler_->PostTask([service = weak_from_this(), message = std::move(message)] {
        if (const auto running = service.lock()) {
            running->Deliver(message);
        }
    });
    if (!isPosted) {
        STANDBYSERVICE_LOGE("message %{public}d could not be queued", eventId);
    }
}

void StandbyServiceImpl::Refresh() {
    applications_.MarkStale();
    if (IsAutomatic() && !isRefreshQueued_.exchange(true)) {
        DispatchEvent(StandbyMessage(StandbyMessageType::HOST_REFRESH));
    }
}

void StandbyServiceImpl::RefreshLater() {
    if (!IsAutomatic() || std::exchange(isRefreshWaiting_, true)) {
        return;
    }
    const int64_t delayMs = configManager_->Config().policy.retryAfterSeconds * kMsPerSecond;
    if (WantsReasons()) {
        nextRefreshMs_ = NowMs() + delayMs;
    }
    tasks_.Post(
        [this] {
            isRefreshWaiting_ = false;
            Refresh();
        },
        kRefreshTask, delayMs);
}

void StandbyServiceImpl::Deliver(const StandbyMessage& message) {
    if (message.eventId == StandbyMessageType::HOST_REFRESH) {
        isRefreshQueued_ = false;
    }
    if (strategyManager_ == nullptr) {
        return;
    }
    if (deliveryObserver_) {
        deliveryObserver_(message);
    }
    const RadioWatch::Work work(radioWatch_, MessageName(message.eventId));
    strategyManager_->HandleEvent(message);
    listenerManager_->HandleEvent(message);
    stateManager_->HandleEvent(message);
    radioWatch_.OnDelivered(message);
}

void StandbyServiceImpl::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (strategyManager_ == nullptr) {
        return;
    }
    const RadioWatch::Work work(radioWatch_, "a dump");
    const bool isDetailed = IsDetailDump(args);
    const size_t length = result.size();
    if (IsAutomatic()) {
        if (isDetailed) {
            DumpHost(args, result);
        } else {
            stateManager_->ShellDump(args, result);
        }
    }
    if (isDetailed || result.size() == length) {  // words that the state manager answered are its alone
        strategyManager_->ShellDump(args, result);
    }
}

bool StandbyServiceImpl::IsAutomatic() const {
    return configManager_->Config().mode == HostMode::AUTOMATIC;
}

int32_t StandbyServiceImpl::GetAllowList(int32_t allowType, std::vector<AllowInfo>& allowInfos,
                                         uint32_t /*reasonCode*/) const {
    if (const int32_t code = Device::Current().Fault("StandbyServiceImpl.GetAllowList"); code != 0) {
        return code;
    }
    allowInfos.clear();
    if (const auto names = allowLists_.find(allowType); names != allowLists_.end()) {
        for (const std::string& name : names->second) {
            allowInfos.emplace_back(allowType, name);
        }
    }
    return ERR_OK;
}

int32_t StandbyServiceImpl::GetEligiableRestrictSet(int32_t allowType, const std::string& /*strategyName*/,
                                                    uint32_t /*reasonCode*/, std::set<std::string>& restrictSet) const {
    if (const int32_t code = Device::Current().Fault("StandbyServiceImpl.GetEligiableRestrictSet"); code != 0) {
        return code;
    }
    const auto names = restrictSets_.find(allowType);
    restrictSet = names == restrictSets_.end() ? std::set<std::string>() : names->second;
    return ERR_OK;
}

uint8_t StandbyServiceImpl::FetchExemptions(int32_t allowType, const std::string& strategyName,
                                            std::set<std::string>& allowed, std::set<std::string>& restricted) const {
    std::vector<AllowInfo> allowInfos;
    std::set<std::string> restrictSet;
    uint8_t question = Question::ALLOW_LIST;
    int32_t status = GetAllowList(allowType, allowInfos, 0);
    if (status == ERR_OK) {
        question = Question::RESTRICT_SET;
        status = GetEligiableRestrictSet(allowType, strategyName, 0, restrictSet);
    }
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGE("the exemptions for %{public}s could not be fetched, err code is %{public}d",
                            strategyName.c_str(), status);
        return question;
    }
    allowed.clear();
    for (const AllowInfo& info : allowInfos) {
        allowed.insert(info.GetName());
    }
    restricted.swap(restrictSet);
    return 0;
}

void StandbyServiceImpl::SetRestrictSet(int32_t allowType, std::set<std::string> names) {
    std::set<std::string>& restricted = restrictSets_[allowType];
    if (restricted == names) {
        return;
    }
    restricted = std::move(names);
    if (ReportsChanges()) {
        Refresh();
    }
}

void StandbyServiceImpl::SetAllowList(int32_t allowType, const std::vector<std::string>& names) {
    const std::vector<std::string> before = std::exchange(allowLists_[allowType], names);
    if (!ReportsChanges()) {
        return;
    }
    const std::set<std::string> had(before.begin(), before.end());
    const std::set<std::string> has(names.begin(), names.end());
    for (const std::string& name : had) {
        if (has.count(name) == 0) {
            ReportAllowChange(allowType, name, false);
        }
    }
    for (const std::string& name : has) {
        if (had.count(name) == 0) {
            ReportAllowChange(allowType, name, true);
        }
    }
}

void StandbyServiceImpl::ReportAllowChange(int32_t allowType, const std::string& name, bool added) {
    AAFwk::Want want;
    want.SetParam("allowType", allowType).SetParam("name", name).SetParam("added", added);
    DispatchEvent(StandbyMessage(StandbyMessageType::ALLOW_LIST_CHANGED, {}, std::move(want)));
}

}  // namespace TARN::DevStandbyMgr
