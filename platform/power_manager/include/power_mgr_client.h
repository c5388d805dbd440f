#ifndef PLATFORM_POWER_MGR_CLIENT_H
#define PLATFORM_POWER_MGR_CLIENT_H

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "device.h"

namespace TARN::PowerMgr {

/// The power manager.
class PowerMgrClient {
public:
    virtual ~PowerMgrClient() = default;

    static PowerMgrClient& GetInstance() { return Device::Current().Power(); }

    /// The device mode: 600 normal, other values are power-save modes of the manager's own.
    virtual int32_t GetDeviceMode() = 0;

    /// Whether the screen is on; nothing when the manager does not answer.
    virtual std::optional<bool> IsScreenOn() = 0;

    /// Proxies (true) or restores (false) the running locks of each process, a pair of pid and uid in the
    /// order in which the caller hands them. Returns 0 on success.
    virtual int32_t ProxyRunningLocks(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& processes) = 0;

    /// Replaces `processes` with the pairs that are proxied now, as they were handed over; they outlive whoever asked
    /// for it. Returns 0 on success; else `processes` is untouched.
    virtual int32_t GetProxiedRunningLocks(std::vector<std::pair<int32_t, int32_t>>& processes) = 0;
};

}  // namespace TARN::PowerMgr

#endif  // PLATFORM_POWER_MGR_CLIENT_H
