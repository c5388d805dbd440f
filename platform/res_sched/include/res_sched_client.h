#ifndef PLATFORM_RES_SCHED_CLIENT_H
#define PLATFORM_RES_SCHED_CLIENT_H

#include <cstdint>
#include <string>
#include <unordered_map>

#include "device.h"

namespace TARN::ResourceSchedule {

/// The resource scheduler.
class ResSchedClient {
public:
    virtual ~ResSchedClient() = default;

    static ResSchedClient& GetInstance() { return Device::Current().ResourceScheduler(); }

    /// Kills the process that `processInfo` names under "pid" (decimal). Returns 0 on success.
    virtual int32_t KillProcess(const std::unordered_map<std::string, std::string>& processInfo) = 0;
};

}  // namespace TARN::ResourceSchedule

#endif  // PLATFORM_RES_SCHED_CLIENT_H
