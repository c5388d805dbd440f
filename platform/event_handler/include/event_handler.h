#ifndef PLATFORM_EVENT_HANDLER_H
#define PLATFORM_EVENT_HANDLER_H

#include <cstdint>
#include <string>

#include "task.h"

namespace TARN::AppExecFwk {

/// A thread that runs posted tasks one at a time: by due time, and among equals in the order of posting. Delays run on
/// the boot clock: setting the wall clock moves nothing, and the phone's own sleep counts.
class EventHandler {
public:
    using Callback = Task;

    enum class Priority : uint32_t { VIP, IMMEDIATE, HIGH, LOW, IDLE };

    virtual ~EventHandler() = default;

    /// Queues `task` to run `delayMs` from now. `name`, if any, is the key for RemoveTask. May be called from
    /// any thread. False when the handler takes no more tasks.
    virtual bool PostTask(Callback task, const std::string& name = {}, int64_t delayMs = 0,
                          Priority priority = Priority::LOW) = 0;

    /// Drops every waiting task of that name that was posted to this handler. Does not wait: a task that already runs
    /// goes on.
    virtual void RemoveTask(const std::string& name) = 0;

    /// Drops every waiting task of this handler, named or not, with all that it holds. Does not wait.
    virtual void RemoveAllTasks() = 0;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_EVENT_HANDLER_H
