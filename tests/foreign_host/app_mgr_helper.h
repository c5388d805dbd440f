#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "running_process_info.h"

namespace TARN::AppExecFwk {
struct AppStateData {
    int32_t pid;
};
}  // namespace TARN::AppExecFwk

namespace TARN::DevStandbyMgr {
class AppMgrHelper {
public:
    static std::shared_ptr<AppMgrHelper> GetInstance();
    [[nodiscard]] bool GetAllRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& infos);
    [[nodiscard]] bool GetForegroundApplications(std::vector<AppExecFwk::AppStateData>& apps);
};
}  // namespace TARN::DevStandbyMgr
