#include "standby_config_manager.h"

#include "device.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

std::shared_ptr<StandbyConfigManager> StandbyConfigManager::GetInstance() {
    const auto service = StandbyServiceImpl::GetInstance();
    if (service == nullptr || Device::Current().Fault("StandbyConfigManager.GetInstance") != 0) {
        return nullptr;
    }
    return service->GetConfigManager();
}

std::vector<std::string> StandbyConfigManager::GetStrategyConfigList() const {
    if (Device::Current().Fault("StandbyConfigManager.GetStrategyConfigList") != 0) {
        return {};
    }
    return config_.strategies;
}

bool StandbyConfigManager::GetHalfHourSwitch(const std::string& switchName) const {
    const auto found = config_.halfHourSwitches.find(switchName);
    return found != config_.halfHourSwitches.end() && found->second &&
           Device::Current().Fault("StandbyConfigManager.GetHalfHourSwitch") == 0;
}

int32_t StandbyConfigManager::GetStandbyParam(const std::string& paramName) const {
    if (const int32_t code = Device::Current().Fault("StandbyConfigManager.GetStandbyParam"); code != 0) {
        return code;
    }
    const auto found = config_.params.find(paramName);
    return found == config_.params.end() ? 0 : found->second;
}

std::set<std::string> StandbyConfigManager::GetEligiblePersistAllowConfig(const std::string& paramName,
                                                                          uint32_t condition, bool isAllow,
                                                                          bool isApp) const {
    const auto conditions = config_.persistAllow.find(paramName);
    if (isAllow || isApp || conditions == config_.persistAllow.end() ||
        Device::Current().Fault("StandbyConfigManager.GetEligiblePersistAllowConfig") != 0) {
        return {};
    }
    const auto names = conditions->second.find(condition);
    return names == conditions->second.end() ? std::set<std::string>() : names->second;
}

std::shared_ptr<std::vector<ResCtrlItem>> StandbyConfigManager::GetResCtrlConfig(const std::string& name) const {
    const auto found = config_.resCtrl.find(name);
    if (found == config_.resCtrl.end() || Device::Current().Fault("StandbyConfigManager.GetResCtrlConfig") != 0) {
        return nullptr;
    }
    return found->second;
}

}  // namespace TARN::DevStandbyMgr
