#ifndef STANDBY_SERVICE_APP_MGR_HELPER_H
#define STANDBY_SERVICE_APP_MGR_HELPER_H

#include <memory>
#include <string>
#include <vector>

#include "app_state_data.h"
#include "running_process_info.h"

namespace TARN::DevStandbyMgr {

/// The service's way to the application manager.
class AppMgrHelper {
public:
    [[nodiscard]] static std::shared_ptr<AppMgrHelper> GetInstance();

    /// Replaces `allAppProcessInfos` with the running application processes. False when they cannot be fetched.
    [[nodiscard]] bool GetAllRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& allAppProcessInfos);

    /// The name by which allow lists and restrict sets know an application: its first bundle's, else the process's.
    [[nodiscard]] static const std::string& NameOf(const AppExecFwk::RunningProcessInfo& process) {
        return process.bundleNames.empty() ? process.processName_ : process.bundleNames.front();
    }

    /// Replaces `fgApps` with the applications in the foreground. False when they cannot be fetched.
    [[nodiscard]] bool GetForegroundApplications(std::vector<AppExecFwk::AppStateData>& fgApps);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_APP_MGR_HELPER_H
