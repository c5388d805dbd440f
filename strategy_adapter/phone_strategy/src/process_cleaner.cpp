#include "process_cleaner.h"

#include <algorithm>

#include "bundle_manager_helper.h"
#include "phone_standby_status.h"
#include "res_sched_client.h"
#include "standby_config_manager.h"

namespace TARN::DevStandbyMgr {

bool ProcessCleaner::LoadConfig(const std::string& configName) {
    const auto config = StandbyConfigManager::GetInstance();
    const auto tagList = config != nullptr ? config->GetResCtrlConfig(configName) : nullptr;
    if (tagList == nullptr) {
        return false;
    }
    const auto refused = std::find_if(tagList->begin(), tagList->end(), [](const auto& item) { return !item.allow; });
    if (refused != tagList->end()) {
        canKillSystemAppList_ = {refused->names.begin(), refused->names.end()};
    }
    return true;
}

bool ProcessCleaner::IsListed(const AppExecFwk::RunningProcessInfo& process) const {
    return std::any_of(process.bundleNames.begin(), process.bundleNames.end(),
                       [this](const auto& name) { return canKillSystemAppList_.count(name) != 0; });
}

bool ProcessCleaner::IsSystemApp(const AppExecFwk::RunningProcessInfo& process) {
    bool isSystemApp = false;
    return BundleManagerHelper::GetInstance()->CheckIsSystemAppByUid(process.uid_, isSystemApp) && isSystemApp;
}

bool ProcessCleaner::Kill(int32_t pid) {
    killed_.begin()->second = std::to_string(pid);
    return ResourceSchedule::ResSchedClient::GetInstance().KillProcess(killed_) == PhoneStatus::OK;
}

}  // namespace TARN::DevStandbyMgr
