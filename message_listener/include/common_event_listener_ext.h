#ifndef MESSAGE_LISTENER_COMMON_EVENT_LISTENER_EXT_H
#define MESSAGE_LISTENER_COMMON_EVENT_LISTENER_EXT_H

#include <memory>

#include "common_event_subscriber.h"
#include "event_handler.h"
#include "imesssage_listener.h"
#include "istate_manager_adapter.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// Turns received broadcasts into standby messages: a screen unlock into COMMON_EVENT, the user's sleep into
/// USER_SLEEP_STATE_CHANGED with the broadcast's Want. Owned by a shared pointer, which subscribing takes.
class CommonEventListenerExt : public EventFwk::CommonEventSubscriber,
                               public IMesssageListener,
                               public std::enable_shared_from_this<CommonEventListenerExt> {
public:
    explicit CommonEventListenerExt(const EventFwk::CommonEventSubscribeInfo& subscribeInfo);
    ~CommonEventListenerExt() override = default;

    /// Arrives on the common-event service's thread; only hands a message to the service.
    void OnReceiveEvent(const EventFwk::CommonEventData& data) override;

    /// COMMON_EVENT_SUBSCRIBE when the platform refuses.
    ErrCode StartListener() override;

    /// COMMON_EVENT_UNSUBSCRIBE when the platform refuses.
    ErrCode StopListener() override;

private:
    std::shared_ptr<IStateManagerAdapter> stateManager_;
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // MESSAGE_LISTENER_COMMON_EVENT_LISTENER_EXT_H
