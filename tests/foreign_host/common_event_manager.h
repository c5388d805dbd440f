#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common_event_subscriber.h"

namespace TARN::EventFwk {
class CommonEventPublishInfo {
public:
    void SetSubscriberPermissions(const std::vector<std::string>& permissions);
};

class CommonEventManager {
public:
    [[nodiscard]] static bool SubscribeCommonEvent(const std::shared_ptr<CommonEventSubscriber>& subscriber);
    [[nodiscard]] static bool UnSubscribeCommonEvent(const std::shared_ptr<CommonEventSubscriber>& subscriber);
    [[nodiscard]] static bool PublishCommonEvent(const CommonEventData& data);
    [[nodiscard]] static bool PublishCommonEvent(const CommonEventData& data, const CommonEventPublishInfo& info);
};
}  // namespace TARN::EventFwk
