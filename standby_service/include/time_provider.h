#ifndef STANDBY_SERVICE_TIME_PROVIDER_H
#define STANDBY_SERVICE_TIME_PROVIDER_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

class TimeProvider {
public:
    /// The resource-control condition `offsetMs` from now: ConditionType::DAY_STANDBY or NIGHT_STANDBY.
    [[nodiscard]] static uint32_t GetCondition(int64_t offsetMs = 0);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_TIME_PROVIDER_H
