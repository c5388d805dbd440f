#ifndef PLATFORM_COMMON_EVENT_SUBSCRIBER_H
#define PLATFORM_COMMON_EVENT_SUBSCRIBER_H

#include <utility>

#include "common_event_data.h"
#include "common_event_subscribe_info.h"

namespace TARN::EventFwk {

/// A receiver of broadcasts.
class CommonEventSubscriber {
public:
    explicit CommonEventSubscriber(CommonEventSubscribeInfo info) : info_(std::move(info)) {}
    virtual ~CommonEventSubscriber() = default;

    /// Called once for each broadcast that matches, on the common-event service's thread.
    virtual void OnReceiveEvent(const CommonEventData& data) = 0;

    [[nodiscard]] const CommonEventSubscribeInfo& GetSubscribeInfo() const noexcept { return info_; }

private:
    CommonEventSubscribeInfo info_;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_SUBSCRIBER_H
