#ifndef STANDBY_SERVICE_HOST_LISTENERS_H
#define STANDBY_SERVICE_HOST_LISTENERS_H

#include <memory>
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

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_HOST_LISTENERS_H
