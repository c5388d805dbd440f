#include "common_event_listener_ext.h"

#include <string>

#include "common_event_manager.h"
#include "common_event_support.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

using EventFwk::CommonEventManager;
using EventFwk::CommonEventSupport;

CommonEventListenerExt::CommonEventListenerExt(const EventFwk::CommonEventSubscribeInfo& subscribeInfo)
    : CommonEventSubscriber(subscribeInfo),
      stateManager_(StandbyServiceImpl::GetInstance()->GetStateManager()),
      handler_(StandbyServiceImpl::GetInstance()->GetHandler()) {}

void CommonEventListenerExt::OnReceiveEvent(const EventFwk::CommonEventData& data) {
    const AAFwk::Want& want = data.GetWant();
    const std::string& action = want.GetAction();
    STANDBYSERVICE_LOGD("receive common event %{public}s", action.c_str());
    if (action == CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED) {
        StandbyServiceImpl::GetInstance()->DispatchEvent(MakeMessage(StandbyMessageType::COMMON_EVENT, action));
    } else if (action == COMMON_EVENT_USER_SLEEP_STATE_CHANGED) {
        StandbyServiceImpl::GetInstance()->DispatchEvent(
            MakeMessage(StandbyMessageType::USER_SLEEP_STATE_CHANGED, {}, want));
    }
}

ErrCode CommonEventListenerExt::StartListener() {
    if (!CommonEventManager::SubscribeCommonEvent(shared_from_this())) {
        STANDBYSERVICE_LOGE("SubscribeCommonEvent occur exception");
        return PhoneStatus::COMMON_EVENT_SUBSCRIBE;
    }
    return PhoneStatus::OK;
}

ErrCode CommonEventListenerExt::StopListener() {
    if (!CommonEventManager::UnSubscribeCommonEvent(shared_from_this())) {
        STANDBYSERVICE_LOGE("UnsubscribeCommonEvent occur exception");
        return PhoneStatus::COMMON_EVENT_UNSUBSCRIBE;
    }
    return PhoneStatus::OK;
}

}  // namespace TARN::DevStandbyMgr
