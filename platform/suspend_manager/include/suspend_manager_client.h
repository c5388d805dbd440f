#ifndef PLATFORM_SUSPEND_MANAGER_CLIENT_H
#define PLATFORM_SUSPEND_MANAGER_CLIENT_H

#include <vector>

#include "device.h"
#include "native_process_info.h"

namespace TARN::SuspendManager {

/// The suspend manager, which freezes and thaws processes.
class SuspendManagerClient {
public:
    virtual ~SuspendManagerClient() = default;

    static SuspendManagerClient& GetInstance() { return Device::Current().Suspend(); }

    /// Applies each entry's freeze flag to its process. Returns one result an entry, 0 on success.
    virtual std::vector<int32_t> OperateNativeProcesses(const std::vector<NativeProcessInfo>& processes) = 0;

    /// Replaces `processes` with the native processes that are frozen now. Returns 0 on success; else `processes` is
    /// untouched.
    virtual int32_t GetFrozenProcesses(std::vector<NativeProcessInfo>& processes) = 0;
};

}  // namespace TARN::SuspendManager

#endif  // PLATFORM_SUSPEND_MANAGER_CLIENT_H
