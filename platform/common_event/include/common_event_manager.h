#ifndef PLATFORM_COMMON_EVENT_MANAGER_H
#define PLATFORM_COMMON_EVENT_MANAGER_H

#include <memory>

#include "common_event_service.h"
#include "device.h"

namespace TARN::EventFwk {

/// System broadcasts. Every operation returns whether the service accepted it; a broadcast reaches its
/// receivers later, each on the service's thread. A subscription keeps the subscriber alive. Unsubscribing waits until
/// the subscriber does not receive any more, unless it comes from within its OnReceiveEvent.
class CommonEventManager {
public:
    static bool SubscribeCommonEvent(const std::shared_ptr<CommonEventSubscriber>& subscriber) {
        return Device::Current().CommonEvents().Subscribe(subscriber);
    }

    static bool UnSubscribeCommonEvent(const std::shared_ptr<CommonEventSubscriber>& subscriber) {
        return Device::Current().CommonEvents().Unsubscribe(subscriber);
    }

    static bool PublishCommonEvent(const CommonEventData& data) {
        return PublishCommonEvent(data, CommonEventPublishInfo());
    }

    static bool PublishCommonEvent(const CommonEventData& data, const CommonEventPublishInfo& info) {
        return Device::Current().CommonEvents().Publish(data, info);
    }
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_MANAGER_H
