#ifndef STANDBY_SERVICE_HOST_LISTENERS_H
#define STANDBY_SERVICE_HOST_LISTENERS_H

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "imesssage_listener.h"

namespace TARN::DevStandbyMgr {

/// The service's own listeners: to the broadcasts that strategies match, to continuous tasks, applications, the
/// device-idle policy and the clock.
struct HostListeners {
    std::vector<std::shared_ptr<IMesssageListener>> listeners;  ///< in the order in which they are started
    std::shared_ptr<IMesssageListener> again;                   ///< starts those once more that the phone refused
};

[[nodiscard]] HostListeners MakeHostListeners();

/// The broadcasts that they hand on as COMMON_EVENT, and those that tell them that the clock was set.
[[nodiscard]] std::span<const std::string_view> StrategyBroadcasts() noexcept;
[[nodiscard]] std::span<const std::string_view> ClockBroadcasts() noexcept;

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_HOST_LISTENERS_H
