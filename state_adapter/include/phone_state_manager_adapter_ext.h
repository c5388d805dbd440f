#ifndef STATE_ADAPTER_PHONE_STATE_MANAGER_ADAPTER_EXT_H
#define STATE_ADAPTER_PHONE_STATE_MANAGER_ADAPTER_EXT_H

#include "state_manager_adapter.h"

namespace TARN::DevStandbyMgr {

/// The phone's state manager: the service's own under the plugin's name.
class PhoneStateManagerAdapterExt : public StateManagerAdapter {
public:
    ~PhoneStateManagerAdapterExt() override = default;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STATE_ADAPTER_PHONE_STATE_MANAGER_ADAPTER_EXT_H
