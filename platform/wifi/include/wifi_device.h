#ifndef PLATFORM_WIFI_DEVICE_H
#define PLATFORM_WIFI_DEVICE_H

#include <cstdint>
#include <memory>
#include <optional>

#include "device.h"

namespace TARN::Wifi {

/// A client of one Wi-Fi interface.
class WifiDevice {
public:
    virtual ~WifiDevice() = default;

    /// The client for a system ability and instance, null when the phone has no such interface.
    static std::shared_ptr<WifiDevice> GetInstance(int32_t systemAbilityId, int32_t instance) {
        return Device::Current().Wifi(systemAbilityId, instance);
    }

    /// Switches Wi-Fi on. Returns 0 on success.
    virtual int32_t Enable() = 0;

    /// Switches Wi-Fi off. Returns 0 on success.
    virtual int32_t Disable() = 0;

    /// Whether Wi-Fi is on; nothing when that cannot be told.
    virtual std::optional<bool> IsEnabled() = 0;
};

}  // namespace TARN::Wifi

#endif  // PLATFORM_WIFI_DEVICE_H
