#pragma once

#include <cstdint>
#include <memory>

namespace TARN::Wifi {
class WifiDevice {
public:
    static std::shared_ptr<WifiDevice> GetInstance(int32_t systemAbilityId, int32_t instance);
    [[nodiscard]] int32_t Enable();
    [[nodiscard]] int32_t Disable();
};
}  // namespace TARN::Wifi
