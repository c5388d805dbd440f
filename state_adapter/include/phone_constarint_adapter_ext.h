#ifndef STATE_ADAPTER_PHONE_CONSTARINT_ADAPTER_EXT_H
#define STATE_ADAPTER_PHONE_CONSTARINT_ADAPTER_EXT_H

#include "constraint_manager_adapter.h"

namespace TARN::DevStandbyMgr {

/// The phone's constraint manager: the service's own under the plugin's name.
class PhoneConstarintAdapterExt : public ConstraintManagerAdapter {
public:
    ~PhoneConstarintAdapterExt() override = default;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STATE_ADAPTER_PHONE_CONSTARINT_ADAPTER_EXT_H
