#include "listener_manager_adapter_ext.h"

#include <cstdint>
#include <memory>
#include <utility>

#include "common_event_listener_ext.h"
#include "common_event_support.h"
#include "phone_standby_vocabulary.h"
#include "standby_constants.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

bool ListenerManagerAdapterExt::Init() {
    constexpr int32_t kLastListeningMode = 2;
    static_cast<void>(ListenerManagerAdapter::Init());
    EventFwk::MatchingSkills skills;
    if (STANDBT_MODE > kLastListeningMode) {
        STANDBYSERVICE_LOGD("listener manager plugin initialization failed");
        return false;
    }
    skills.AddEvent(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED);
    skills.AddEvent(COMMON_EVENT_USER_SLEEP_STATE_CHANGED);
    messageListenerList_.push_back(
        std::make_shared<CommonEventListenerExt>(EventFwk::CommonEventSubscribeInfo(std::move(skills))));
    return true;
}

bool ListenerManagerAdapterExt::UnInit() {
    static_cast<void>(StopListener());
    messageListenerList_.clear();
    return true;
}

ErrCode ListenerManagerAdapterExt::StartListener() {
    for (const auto& listener : messageListenerList_) {
        static_cast<void>(listener->StartListener());
    }
    return PhoneStatus::OK;
}

ErrCode ListenerManagerAdapterExt::StopListener() {
    for (const auto& listener : messageListenerList_) {
        static_cast<void>(listener->StopListener());
    }
    return PhoneStatus::OK;
}

}  // namespace TARN::DevStandbyMgr
