#ifndef PLATFORM_SYSTEM_ABILITY_MANAGER_CLIENT_H
#define PLATFORM_SYSTEM_ABILITY_MANAGER_CLIENT_H

#include <memory>

#include "device.h"
#include "isystem_ability_manager.h"

namespace TARN {

/// The way to the directory of services.
class SystemAbilityManagerClient {
public:
    virtual ~SystemAbilityManagerClient() = default;

    static SystemAbilityManagerClient& GetInstance() { return Device::Current().SystemAbilities(); }

    /// The directory, null when it cannot be reached.
    virtual std::shared_ptr<ISystemAbilityManager> GetSystemAbilityManager() = 0;
};

}  // namespace TARN

#endif  // PLATFORM_SYSTEM_ABILITY_MANAGER_CLIENT_H
