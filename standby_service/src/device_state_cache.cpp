#include "device_state_cache.h"

#include <utility>

#include "device.h"
#include "standby_constants.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

std::shared_ptr<DeviceStateCache> DeviceStateCache::GetInstance() {
    return StandbyServiceImpl::GetInstance()->GetDeviceStateCache();
}

bool DeviceStateCache::GetDeviceState(int32_t type) const {
    const auto found = states_.find(type);
    return found != states_.end() && found->second && Device::Current().Fault("DeviceStateCache.GetDeviceState") == 0;
}

bool DeviceStateCache::SetDeviceState(int32_t type, bool enabled) {
    if (std::exchange(states_[type], enabled) == enabled) {
        return false;
    }
    const auto service = StandbyServiceImpl::GetInstance();
    if (service->ReportsChanges()) {
        AAFwk::Want want;
        want.SetParam(DEVICE_STATE_TYPE, type).SetParam(DEVICE_STATE, enabled);
        service->DispatchEvent(StandbyMessage(StandbyMessageType::DEVICE_STATE_CHANGED, {}, std::move(want)));
    }
    return true;
}

}  // namespace TARN::DevStandbyMgr
