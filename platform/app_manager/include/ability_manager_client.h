#ifndef PLATFORM_ABILITY_MANAGER_CLIENT_H
#define PLATFORM_ABILITY_MANAGER_CLIENT_H

#include <list>

#include "device.h"
#include "system_process_info.h"

namespace TARN::AppExecFwk {

/// The ability manager, as far as it knows the native processes.
class AbilityManagerClient {
public:
    virtual ~AbilityManagerClient() = default;

    static AbilityManagerClient& GetInstance() { return Device::Current().Abilities(); }

    /// Replaces `infos` with the running native processes. False when the manager does not answer.
    virtual bool GetRunningSystemProcess(std::list<SystemProcessInfo>& infos) = 0;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_ABILITY_MANAGER_CLIENT_H
