#ifndef STANDBY_SERVICE_OWNED_TASKS_H
#define STANDBY_SERVICE_OWNED_TASKS_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "event_handler.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

/// The named tasks of one object on a handler. A task that still waits when this goes with its owner does nothing when
/// its time comes. For the handler's thread, where the owner has to be destroyed too.
class OwnedTasks {
public:
    explicit OwnedTasks(std::shared_ptr<AppExecFwk::EventHandler> handler) : handler_(std::move(handler)) {}

    /// Posts a task in place of a waiting one of that name. A handler that takes no more is a line in the log.
    template <class Work>
    void Post(Work task, const std::string& name, int64_t delayMs) {
        handler_->RemoveTask(name);
        const bool isPosted = handler_->PostTask(
            [owner = std::weak_ptr<bool>(life_), task = std::move(task)]() mutable {
                if (!owner.expired()) {
                    task();
                }
            },
            name, delayMs);
        if (!isPosted) {
            STANDBYSERVICE_LOGE("%{public}s could not be posted", name.c_str());
        }
    }

    void Remove(const std::string& name) { handler_->RemoveTask(name); }

private:
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    std::shared_ptr<bool> life_ = std::make_shared<bool>(true);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_OWNED_TASKS_H
