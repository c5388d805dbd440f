#include "process_cleaner.h"

#include <algorithm>
#include <unordered_map>

#include "app_mgr_helper.h"
#include "bundle_manager_helper.h"
#include "res_sched_client.h"
#include "standby_config_manager.h"
#include "standby_service_errors.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

void ProcessCleaner::LoadConfig(const std::string& configName) {
    const auto tagList = StandbyConfigManager::GetInstance()->GetResCtrlConfig(configName);
    if (tagList == nullptr) {
        STANDBYSERVICE_LOGE_FROM(sourceFile_, "tagList is null");
        return;
    }
    const auto refused = std::find_if(tagList->begin(), tagList->end(), [](const auto& item) { return !item.allow; });
    if (refused != tagList->end()) {
        canKillSystemAppList_ = {refused->names.begin(), refused->names.end()};
    }
}

bool ProcessCleaner::FetchRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& processes) const {
    if (!AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes)) {
        STANDBYSERVICE_LOGE_FROM(sourceFile_, "get all running processes failed");
        return false;
    }
    return true;
}

bool ProcessCleaner::CankillProcess(const AppExecFwk::RunningProcessInfo& process) const {
    const bool isListed = std::any_of(process.bundleNames.begin(), process.bundleNames.end(),
                                      [this](const auto& name) { return canKillSystemAppList_.count(name) != 0; });
    if (isListed) {
        STANDBYSERVICE_LOGD_FROM(sourceFile_, "system app can kill in list, process name: %{public}s, uid : %{public}d",
                                 process.processName_.c_str(), process.uid_);
        return true;
    }
    bool isSystemApp = false;
    // a uid that cannot be classified counts as killable
    return !BundleManagerHelper::GetInstance()->CheckIsSystemAppByUid(process.uid_, isSystemApp) || !isSystemApp;
}

void ProcessCleaner::KillProcessByPid(int32_t pid) const {
    const std::unordered_map<std::string, std::string> processInfo = {{"pid", std::to_string(pid)}};
    if (ResourceSchedule::ResSchedClient::GetInstance().KillProcess(processInfo) == ERR_OK) {
        STANDBYSERVICE_LOGI_FROM(sourceFile_, "kill process pid: %{public}d", pid);
    } else {
        STANDBYSERVICE_LOGE_FROM(sourceFile_, "failed to kill process, pid: %{public}d", pid);
    }
}

}  // namespace TARN::DevStandbyMgr
