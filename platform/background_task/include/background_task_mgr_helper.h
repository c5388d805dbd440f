#ifndef PLATFORM_BACKGROUND_TASK_MGR_HELPER_H
#define PLATFORM_BACKGROUND_TASK_MGR_HELPER_H

#include <functional>
#include <memory>
#include <vector>

#include "continuous_task_callback_info.h"
#include "device.h"

namespace TARN::BackgroundTaskMgr {

/// The background-task manager.
class BackgroundTaskMgrHelper {
public:
    using ContinuousTaskObserver = std::function<void(const ContinuousTaskCallbackInfo& task, bool started)>;

    virtual ~BackgroundTaskMgrHelper() = default;

    /// Replaces `list` with the continuous tasks that run now. Returns 0 on success; else `list` is empty.
    static int32_t GetContinuousTaskApps(std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>>& list) {
        return Device::Current().BackgroundTasks().ContinuousTasks(list);
    }

    /// Calls `observer` for every continuous task that starts or stops, until the next call with another
    /// one; an empty observer ends it. Calls arrive on the manager's thread. The call waits until the earlier observer
    /// does not run any more, unless it comes from within it.
    static void ObserveContinuousTasks(ContinuousTaskObserver observer) {
        Device::Current().BackgroundTasks().Observe(std::move(observer));
    }

protected:
    virtual int32_t ContinuousTasks(std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>>& list) = 0;
    virtual void Observe(ContinuousTaskObserver observer) = 0;
};

}  // namespace TARN::BackgroundTaskMgr

#endif  // PLATFORM_BACKGROUND_TASK_MGR_HELPER_H
