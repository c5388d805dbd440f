#pragma once

namespace TARN::Bluetooth {
class BluetoothHost {
public:
    static BluetoothHost& GetDefaultHost();
    int GetBtState();
    int GetBtConnectionState();
    [[nodiscard]] int DisableBt();
    [[nodiscard]] int EnableBle();
};
}  // namespace TARN::Bluetooth
