#include "listener_manager_adapter.h"

#include <utility>

#include "host_listeners.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

bool ListenerManagerAdapter::Init() {
    if (!StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        return true;
    }
    HostListeners host = MakeHostListeners();
    messageListenerList_ = std::move(host.listeners);
    eventListenerMap_[StandbyMessageType::HOST_REFRESH] = std::move(host.again);
    return true;
}

bool ListenerManagerAdapter::UnInit() {
    static_cast<void>(StopListener());
    messageListenerList_.clear();
    eventListenerMap_.clear();
    return true;
}

ErrCode ListenerManagerAdapter::StartListener() {
    for (const auto& listener : messageListenerList_) {
        static_cast<void>(listener->StartListener());
    }
    return ERR_OK;
}

ErrCode ListenerManagerAdapter::StopListener() {
    for (const auto& listener : messageListenerList_) {
        static_cast<void>(listener->StopListener());
    }
    return ERR_OK;
}

void ListenerManagerAdapter::HandleEvent(const StandbyMessage& message) {
    if (const auto listener = eventListenerMap_.find(message.eventId); listener != eventListenerMap_.end()) {
        static_cast<void>(listener->second->StartListener());
    }
}

void ListenerManagerAdapter::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {}

}  // namespace TARN::DevStandbyMgr
