#ifndef STANDBY_SERVICE_DEVICE_STATE_CACHE_H
#define STANDBY_SERVICE_DEVICE_STATE_CACHE_H

#include <cstdint>
#include <map>
#include <memory>

namespace TARN::DevStandbyMgr {

/// What the service last heard of the phone's use: 0 a distributed component is connected, 1 a call is active.
class DeviceStateCache {
public:
    static constexpr int32_t DIS_COMP_CHANGE = 0;
    static constexpr int32_t TELEPHONE_STATE_CHANGE = 1;

    /// The running service's cache.
    [[nodiscard]] static std::shared_ptr<DeviceStateCache> GetInstance();

    /// False for a type that was never set.
    [[nodiscard]] bool GetDeviceState(int32_t type) const;

    /// Sets a state; in automatic mode a change is a DEVICE_STATE_CHANGED. Returns whether it changed.
    bool SetDeviceState(int32_t type, bool enabled);

private:
    std::map<int32_t, bool> states_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_DEVICE_STATE_CACHE_H
