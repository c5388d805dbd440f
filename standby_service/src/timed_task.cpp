#include "timed_task.h"

#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

uint64_t TimedTask::CreateTimer(bool repeat, uint64_t intervalMs, bool isExact, bool isIdle,
                                const std::function<void()>& callback) {
    return MiscServices::TimeServiceClient::GetInstance()->CreateTimer({repeat, intervalMs, isExact, isIdle}, callback);
}

}  // namespace TARN::DevStandbyMgr
