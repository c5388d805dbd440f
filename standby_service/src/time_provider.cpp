#include "time_provider.h"

#include "condition_watch.h"
#include "device.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

uint32_t TimeProvider::GetCondition(int64_t offsetMs) {
    if (const int32_t code = Device::Current().Fault("TimeProvider.GetCondition"); code != 0) {
        return static_cast<uint32_t>(code);
    }
    return StandbyServiceImpl::GetInstance()->GetConditionWatch().At(offsetMs);
}

}  // namespace TARN::DevStandbyMgr
