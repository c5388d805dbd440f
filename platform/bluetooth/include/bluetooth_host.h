#ifndef PLATFORM_BLUETOOTH_HOST_H
#define PLATFORM_BLUETOOTH_HOST_H

#include <cstdint>

#include "device.h"

namespace TARN::Bluetooth {

/// The phone's Bluetooth adapter.
class BluetoothHost {
public:
    virtual ~BluetoothHost() = default;

    static BluetoothHost& GetDefaultHost() { return Device::Current().Bluetooth(); }

    /// Classic Bluetooth: 0 turning on, 1 on, 2 turning off, 3 off.
    virtual int32_t GetBtState() = 0;

    /// Connection of any profile: 0 connecting, 1 connected, 2 disconnecting, 3 disconnected.
    virtual int32_t GetBtConnectionState() = 0;

    /// Switches classic Bluetooth off. Returns 0 on success.
    virtual int32_t DisableBt() = 0;

    /// Switches low-energy Bluetooth on; the adapter brings classic Bluetooth back with it. Returns 0 on success.
    virtual int32_t EnableBle() = 0;
};

}  // namespace TARN::Bluetooth

#endif  // PLATFORM_BLUETOOTH_HOST_H
