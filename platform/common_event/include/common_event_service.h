#ifndef PLATFORM_COMMON_EVENT_SERVICE_H
#define PLATFORM_COMMON_EVENT_SERVICE_H

#include <memory>

#include "common_event_publish_info.h"
#include "common_event_subscriber.h"

namespace TARN::EventFwk {

/// What stands behind CommonEventManager. Every operation returns whether the service accepted it.
class CommonEventService {
public:
    virtual ~CommonEventService() = default;

    virtual bool Subscribe(const std::shared_ptr<CommonEventSubscriber>& subscriber) = 0;
    virtual bool Unsubscribe(const std::shared_ptr<CommonEventSubscriber>& subscriber) = 0;
    virtual bool Publish(const CommonEventData& data, const CommonEventPublishInfo& info) = 0;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_SERVICE_H
