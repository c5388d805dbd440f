#include "phone_strategy_manager_adapter_ext.h"

#include <map>

#include "freeze_strategy.h"
#include "standby_config_manager.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

/// One object for each configuration name, made when the library is loaded; they outlive UnInit.
const std::map<std::string, std::shared_ptr<IBaseStrategy>> g_strategyTable = {
    {"FREEZE", std::make_shared<FreezeStrategy>()},
};

}  // namespace

bool PhoneStrategyManagerAdapterExt::Init() {
    const auto config = StandbyConfigManager::GetInstance();
    if (config == nullptr) {
        STANDBYSERVICE_LOGE("standby service ptr is nullptr, init failed");
        return false;
    }
    const std::vector<std::string> strategies = config->GetStrategyConfigList();
    if (strategies.empty()) {
        STANDBYSERVICE_LOGI("strategies is disabled");
        return false;
    }
    RegisterPolicy(strategies);
    return true;
}

void PhoneStrategyManagerAdapterExt::RegisterPolicy(const std::vector<std::string>& strategies) {
    for (const std::string& name : strategies) {
        const auto entry = g_strategyTable.find(name);
        if (entry != g_strategyTable.end() && entry->second != nullptr && entry->second->OnCreated() == ERR_OK) {
            STANDBYSERVICE_LOGI("phone strategy manager init %{public}s", name.c_str());
            strategyList_.push_back(entry->second);
        }
    }
}

void PhoneStrategyManagerAdapterExt::HandleEvent(const StandbyMessage& message) {
    for (const auto& strategy : strategyList_) {
        strategy->HandleEvent(message);
    }
}

void PhoneStrategyManagerAdapterExt::ShellDump(const std::vector<std::string>& args, std::string& result) {
    for (const auto& strategy : strategyList_) {
        strategy->ShellDump(args, result);
    }
}

bool PhoneStrategyManagerAdapterExt::UnInit() {
    for (const auto& strategy : strategyList_) {
        strategy->OnDestroy();
    }
    strategyList_.clear();
    return true;
}

}  // namespace TARN::DevStandbyMgr
