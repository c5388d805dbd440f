#ifndef PLATFORM_APP_MGR_CLIENT_H
#define PLATFORM_APP_MGR_CLIENT_H

#include <functional>
#include <vector>

#include "app_state_data.h"
#include "device.h"
#include "running_process_info.h"

namespace TARN::AppExecFwk {

/// The application manager: which applications run, and which of them the user looks at.
class AppMgrClient {
public:
    using StateObserver = std::function<void(const AppStateData&)>;

    virtual ~AppMgrClient() = default;

    static AppMgrClient& GetInstance() { return Device::Current().Apps(); }

    /// Replaces `infos` with every running application process. False when the manager does not answer.
    virtual bool GetAllRunningProcesses(std::vector<RunningProcessInfo>& infos) = 0;

    /// Replaces `apps` with the applications in the foreground. False when the manager does not answer.
    virtual bool GetForegroundApplications(std::vector<AppStateData>& apps) = 0;

    /// Calls `observer` for every application process that starts, ends, comes to or leaves the foreground, until the
    /// next call with another one; an empty observer ends it. Calls arrive on the manager's thread. The call waits
    /// until the earlier observer does not run any more, unless it comes from within it.
    virtual void ObserveStates(StateObserver observer) = 0;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_APP_MGR_CLIENT_H
