#ifndef PLATFORM_ISYSTEM_ABILITY_MANAGER_H
#define PLATFORM_ISYSTEM_ABILITY_MANAGER_H

#include <cstdint>
#include <memory>

#include "iremote_object.h"

namespace TARN {

/// The directory of the phone's services.
class ISystemAbilityManager {
public:
    virtual ~ISystemAbilityManager() = default;

    /// The service with this identifier, null when it is not running.
    virtual std::shared_ptr<IRemoteObject> GetSystemAbility(int32_t systemAbilityId) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_ISYSTEM_ABILITY_MANAGER_H
