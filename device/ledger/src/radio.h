#ifndef DEVICE_LEDGER_RADIO_H
#define DEVICE_LEDGER_RADIO_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "device.h"

namespace TARN::Ledger {

/// One radio of the phone below, by the name under which the ledger holds it.
class Radio {
public:
    virtual ~Radio() = default;

    /// Nothing while it is being switched on, or where the phone does not tell.
    virtual std::optional<bool> IsOn() = 0;

    /// Returns 0 when the phone does it, now or a little later.
    virtual int32_t SwitchOn() = 0;
};

inline constexpr char kBluetooth[] = "bluetooth";
inline constexpr char kWifi[] = "wifi";
[[nodiscard]] std::string ModemName(int32_t slot);

/// The radio of that name; null for a name that means none.
[[nodiscard]] std::unique_ptr<Radio> FindRadio(Device& phone, const std::string& name);

}  // namespace TARN::Ledger

#endif  // DEVICE_LEDGER_RADIO_H
