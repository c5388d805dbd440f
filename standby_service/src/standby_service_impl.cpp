#include "standby_service_impl.h"

#include <algorithm>

#include "base_network_strategy.h"
#include "condition_watch.h"
#include "device.h"
#include "device_state_cache.h"
#include "plugin_library.h"
#include "standby_config_manager.h"
#include "standby_constants.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

int32_t STANDBT_MODE = 0;

namespace {

/// The process's service.
std::shared_ptr<StandbyServiceImpl>& Instance() {
    static std::shared_ptr<StandbyServiceImpl> instance;
    return instance;
}

void Report(bool isInitialised, const char* adapter) {
    if (!isInitialised) {
        STANDBYSERVICE_LOGW("the plugin's %{public}s did not initialise", adapter);
    }
}

}  // namespace

std::shared_ptr<StandbyServiceImpl> StandbyServiceImpl::GetInstance() {
    return Instance();
}

std::shared_ptr<StandbyServiceImpl> StandbyServiceImpl::Create(StandbyConfig config) {
    std::shared_ptr<StandbyServiceImpl> service(new StandbyServiceImpl(std::move(config)));
    if (service->handler_ == nullptr) {
        return nullptr;
    }
    Instance() = service;
    return service;
}

void StandbyServiceImpl::Destroy() {
    Instance().reset();
}

StandbyServiceImpl::StandbyServiceImpl(StandbyConfig config)
    : handler_(Device::Current().CreateEventHandler()),
      configManager_(std::make_shared<StandbyConfigManager>(std::move(config))),
      deviceStateCache_(std::make_shared<DeviceStateCache>()),
      conditionWatch_(std::make_unique<ConditionWatch>(configManager_->Config(), handler_)) {
    STANDBT_MODE = configManager_->Config().standbyMode;
}

StandbyServiceImpl::~StandbyServiceImpl() {
    UnloadPlugin();
}

bool StandbyServiceImpl::LoadPlugin(const std::string& path, std::string& error) {
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
    Report(constraintManager_->Init(), "constraint manager");
    Report(listenerManager_->Init(), "listener manager");
    Report(strategyManager_->Init(), "strategy manager");
    Report(stateManager_->Init(), "state manager");
    listenerManager_->StartListener();
    conditionWatch_->Start();
}

void StandbyServiceImpl::UnInit() {
    conditionWatch_->Stop();
    listenerManager_->UnInit();
    strategyManager_->UnInit();
    stateManager_->UnInit();
    constraintManager_->UnInit();
}

void StandbyServiceImpl::DispatchEvent(const StandbyMessage& message) {
    handler_->PostTask([this, message] { Deliver(message); });
}

void StandbyServiceImpl::Deliver(const StandbyMessage& message) {
    if (strategyManager_ == nullptr) {
        return;
    }
    if (deliveryObserver_) {
        deliveryObserver_(message);
    }
    strategyManager_->HandleEvent(message);
    listenerManager_->HandleEvent(message);
    stateManager_->HandleEvent(message);
}

void StandbyServiceImpl::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (strategyManager_ != nullptr) {
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
