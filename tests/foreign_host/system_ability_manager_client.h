#pragma once

#include <cstdint>
#include <memory>

namespace TARN {
class IRemoteObject;

class ISystemAbilityManager {
public:
    std::shared_ptr<IRemoteObject> GetSystemAbility(int32_t systemAbilityId);
};

class SystemAbilityManagerClient {
public:
    static SystemAbilityManagerClient& GetInstance();
    std::shared_ptr<ISystemAbilityManager> GetSystemAbilityManager();
};
}  // namespace TARN
