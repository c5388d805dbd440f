#include "radio.h"

#include <charconv>
#include <string_view>

#include "bluetooth_host.h"
#include "core_service_client.h"
#include "wifi_device.h"

namespace TARN::Ledger {

namespace {

constexpr std::string_view kModem = "modem ";

constexpr int32_t kWifiAbilityId = 1120;
constexpr int32_t kWifiInstance = 0;
constexpr int32_t kNoClient = -1;

class BluetoothRadio : public Radio {
public:
    explicit BluetoothRadio(Device& phone) : phone_(phone) {}

    std::optional<bool> IsOn() override {
        constexpr int32_t kOn = 1;
        constexpr int32_t kTurningOff = 2;
        constexpr int32_t kOff = 3;
        const int32_t state = phone_.Bluetooth().GetBtState();
        return state == kOn                            ? std::optional(true)
               : state == kTurningOff || state == kOff ? std::optional(false)
                                                       : std::nullopt;
    }

    int32_t SwitchOn() override { return phone_.Bluetooth().EnableBle(); }

private:
    Device& phone_;
};

class WifiRadio : public Radio {
public:
    explicit WifiRadio(Device& phone) : phone_(phone) {}

    std::optional<bool> IsOn() override {
        const auto wifi = Client();
        return wifi == nullptr ? std::nullopt : wifi->IsEnabled();
    }

    int32_t SwitchOn() override {
        const auto wifi = Client();
        return wifi == nullptr ? kNoClient : wifi->Enable();
    }

private:
    [[nodiscard]] std::shared_ptr<Wifi::WifiDevice> Client() { return phone_.Wifi(kWifiAbilityId, kWifiInstance); }

    Device& phone_;
};

class ModemRadio : public Radio {
public:
    ModemRadio(Device& phone, int32_t slot) : phone_(phone), slot_(slot) {}

    std::optional<bool> IsOn() override { return phone_.Modem().IsRadioOn(slot_); }
    int32_t SwitchOn() override { return phone_.Modem().SetRadioState(slot_, true, nullptr); }

private:
    Device& phone_;
    int32_t slot_;
};

}  // namespace

std::string ModemName(int32_t slot) {
    return std::string(kModem) + std::to_string(slot);
}

std::unique_ptr<Radio> FindRadio(Device& phone, const std::string& name) {
    if (name == kBluetooth) {
        return std::make_unique<BluetoothRadio>(phone);
    }
    if (name == kWifi) {
        return std::make_unique<WifiRadio>(phone);
    }
    int32_t slot = -1;
    if (name.starts_with(kModem)) {
        std::from_chars(name.data() + kModem.size(), name.data() + name.size(), slot);
    }
    return slot >= 0 && name == ModemName(slot) ? std::make_unique<ModemRadio>(phone, slot) : nullptr;
}

}  // namespace TARN::Ledger
