#ifndef PLATFORM_COMMON_EVENT_PUBLISH_INFO_H
#define PLATFORM_COMMON_EVENT_PUBLISH_INFO_H

#include <string>
#include <utility>
#include <vector>

namespace TARN::EventFwk {

/// The terms of a broadcast.
class CommonEventPublishInfo {
public:
    /// Limits the broadcast to subscribers that hold all of these permissions.
    void SetSubscriberPermissions(std::vector<std::string> permissions) { permissions_ = std::move(permissions); }

    [[nodiscard]] const std::vector<std::string>& GetSubscriberPermissions() const noexcept { return permissions_; }

private:
    std::vector<std::string> permissions_;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_PUBLISH_INFO_H
