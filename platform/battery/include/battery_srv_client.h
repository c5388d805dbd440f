#ifndef PLATFORM_BATTERY_SRV_CLIENT_H
#define PLATFORM_BATTERY_SRV_CLIENT_H

#include <cstdint>

#include "device.h"

namespace TARN::PowerMgr {

/// The battery service.
class BatterySrvClient {
public:
    virtual ~BatterySrvClient() = default;

    static BatterySrvClient& GetInstance() { return Device::Current().Battery(); }

    /// What the phone is plugged into: 0 nothing, any other value a charger of some kind.
    virtual int32_t GetPluggedType() = 0;
};

}  // namespace TARN::PowerMgr

#endif  // PLATFORM_BATTERY_SRV_CLIENT_H
