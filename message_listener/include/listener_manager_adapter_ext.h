#ifndef MESSAGE_LISTENER_LISTENER_MANAGER_ADAPTER_EXT_H
#define MESSAGE_LISTENER_LISTENER_MANAGER_ADAPTER_EXT_H

#include "listener_manager_adapter.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// Adds to the service's listeners the one for the broadcasts that only this plugin needs: screen unlock and
/// the user's sleep. Device kinds above 2 do without it.
class ListenerManagerAdapterExt : public ListenerManagerAdapter {
public:
    /// False, without a listener of its own, for device kinds above 2.
    bool Init() override;
    bool UnInit() override;

    /// Start and stop every listener; what a listener answers is not passed on: OK always.
    ErrCode StartListener() override;
    ErrCode StopListener() override;
};

}  // namespace TARN::DevStandbyMgr

#endif  // MESSAGE_LISTENER_LISTENER_MANAGER_ADAPTER_EXT_H
