#ifndef STANDBY_SERVICE_LISTENER_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_LISTENER_MANAGER_ADAPTER_H

#include <cstdint>
#include <map>
#include <memory>

#include "ilistener_manager_adapter.h"
#include "imesssage_listener.h"

namespace TARN::DevStandbyMgr {

/// The service's own listener manager.
///
/// In automatic mode Init adds the listeners of the service: the system broadcasts that strategies match
/// become COMMON_EVENT messages; of each type of continuous task every start and the end of the last one
/// BG_TASK_STATUS_CHANGED; applications and tasks that come, go or change place HOST_REFRESH; the device-idle network
/// policy NET_IDLE_POLICY_TRANSIT; a wall clock or time zone that is set has the condition looked at. What the
/// broadcast service refuses is logged and tried again. In scripted mode it adds none.
class ListenerManagerAdapter : public IListenerManagerAdapter {
public:
    bool Init() override;
    bool UnInit() override;
    ErrCode StartListener() override;
    ErrCode StopListener() override;
    void HandleEvent(const StandbyMessage& message) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

protected:
    /// Every listener, in the order in which they are started and stopped.
    std::vector<std::shared_ptr<IMesssageListener>> messageListenerList_;

    /// Listeners that are started (again) by every message of one kind, by its identifier.
    std::map<int32_t, std::shared_ptr<IMesssageListener>> eventListenerMap_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_LISTENER_MANAGER_ADAPTER_H
