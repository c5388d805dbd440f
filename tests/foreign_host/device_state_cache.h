#pragma once

#include <cstdint>
#include <memory>

namespace TARN::DevStandbyMgr {
class DeviceStateCache {
public:
    static std::shared_ptr<DeviceStateCache> GetInstance();
    bool GetDeviceState(int32_t type);
};
}  // namespace TARN::DevStandbyMgr
