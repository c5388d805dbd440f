#include "ability_manager_client.h"
#include "ability_manager_helper.h"
#include "app_mgr_client.h"
#include "app_mgr_helper.h"
#include "bundle_manager_helper.h"
#include "bundle_mgr_client.h"

namespace TARN::DevStandbyMgr {

std::shared_ptr<AbilityManagerHelper> AbilityManagerHelper::GetInstance() {
    static const auto instance = std::make_shared<AbilityManagerHelper>();
    return instance;
}

bool AbilityManagerHelper::GetRunningSystemProcess(std::list<SystemProcessInfo>& systemProcessInfos) {
    return AppExecFwk::AbilityManagerClient::GetInstance().GetRunningSystemProcess(systemProcessInfos);
}

std::shared_ptr<AppMgrHelper> AppMgrHelper::GetInstance() {
    static const auto instance = std::make_shared<AppMgrHelper>();
    return instance;
}

bool AppMgrHelper::GetAllRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& allAppProcessInfos) {
    return AppExecFwk::AppMgrClient::GetInstance().GetAllRunningProcesses(allAppProcessInfos);
}

bool AppMgrHelper::GetForegroundApplications(std::vector<AppExecFwk::AppStateData>& fgApps) {
    return AppExecFwk::AppMgrClient::GetInstance().GetForegroundApplications(fgApps);
}

std::shared_ptr<BundleManagerHelper> BundleManagerHelper::GetInstance() {
    static const auto instance = std::make_shared<BundleManagerHelper>();
    return instance;
}

bool BundleManagerHelper::CheckIsSystemAppByUid(int uid, bool& isSystemApp) {
    return AppExecFwk::BundleMgrClient::GetInstance().CheckIsSystemAppByUid(uid, isSystemApp);
}

}  // namespace TARN::DevStandbyMgr
