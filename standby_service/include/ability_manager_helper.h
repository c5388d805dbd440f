#ifndef STANDBY_SERVICE_ABILITY_MANAGER_HELPER_H
#define STANDBY_SERVICE_ABILITY_MANAGER_HELPER_H

#include <list>
#include <memory>

#include "system_process_info.h"

namespace TARN::DevStandbyMgr {

using AppExecFwk::SystemProcessInfo;

/// The service's way to the ability manager.
class AbilityManagerHelper {
public:
    [[nodiscard]] static std::shared_ptr<AbilityManagerHelper> GetInstance();

    /// Replaces `systemProcessInfos` with the running native processes. False when they cannot be fetched.
    [[nodiscard]] bool GetRunningSystemProcess(std::list<SystemProcessInfo>& systemProcessInfos);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ABILITY_MANAGER_HELPER_H
