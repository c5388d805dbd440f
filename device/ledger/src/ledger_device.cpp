#include "ledger_device.h"

#include <utility>

#include "bluetooth_host.h"
#include "core_service_client.h"
#include "event_handler.h"
#include "radio_book.h"
#include "wifi_device.h"

namespace TARN::Ledger {

namespace {

class EnteredBluetooth : public Bluetooth::BluetoothHost {
public:
    EnteredBluetooth(Device& phone, RadioBook& book) : phone_(phone), book_(book) {}

    int32_t GetBtState() override { return phone_.Bluetooth().GetBtState(); }
    int32_t GetBtConnectionState() override { return phone_.Bluetooth().GetBtConnectionState(); }

    int32_t DisableBt() override {
        return book_.SwitchOff(kBluetooth, [this] { return phone_.Bluetooth().DisableBt(); });
    }

    int32_t EnableBle() override {
        return book_.SwitchOn(kBluetooth, [this] { return phone_.Bluetooth().EnableBle(); });
    }

private:
    Device& phone_;
    RadioBook& book_;
};

class EnteredModem : public Telephony::CoreServiceClient {
public:
    EnteredModem(Device& phone, RadioBook& book) : phone_(phone), book_(book) {}

    int32_t GetMaxSimCount() override { return phone_.Modem().GetMaxSimCount(); }
    std::optional<bool> IsRadioOn(int32_t slotId) override { return phone_.Modem().IsRadioOn(slotId); }

    int32_t SetRadioState(int32_t slotId, bool isOn, const RadioCallback& callback) override {
        bool isAsked = false;
        const auto call = [&] {
            isAsked = true;
            return phone_.Modem().SetRadioState(slotId, isOn, callback);
        };
        const std::string name = ModemName(slotId);
        const int32_t code = isOn ? book_.SwitchOn(name, call) : book_.SwitchOff(name, call);
        if (!isAsked && callback) {
            callback(code);
        }
        return code;
    }

private:
    Device& phone_;
    RadioBook& book_;
};

class EnteredWifi : public Wifi::WifiDevice {
public:
    EnteredWifi(std::shared_ptr<Wifi::WifiDevice> wifi, RadioBook& book) : wifi_(std::move(wifi)), book_(book) {}

    int32_t Enable() override {
        return book_.SwitchOn(kWifi, [this] { return wifi_->Enable(); });
    }
    int32_t Disable() override {
        return book_.SwitchOff(kWifi, [this] { return wifi_->Disable(); });
    }
    std::optional<bool> IsEnabled() override { return wifi_->IsEnabled(); }

private:
    std::shared_ptr<Wifi::WifiDevice> wifi_;
    RadioBook& book_;
};

}  // namespace

LedgerDevice::LedgerDevice(Device& phone, RadioNews& news)
    : phone_(phone),
      news_(news),
      book_(std::make_unique<RadioBook>(phone)),
      bluetooth_(std::make_unique<EnteredBluetooth>(phone, *book_)),
      modem_(std::make_unique<EnteredModem>(phone, *book_)) {
    Listen();
}

LedgerDevice::~LedgerDevice() {
    news_.ObserveRadios(nullptr);
}

void LedgerDevice::Listen() {
    news_.ObserveRadios([this] { book_->Look(); });
}

RadioLedger* LedgerDevice::Radios() noexcept {
    return book_.get();
}

void LedgerDevice::DropPending() {
    phone_.DropPending();
    book_->Close();
    Listen();
}

std::shared_ptr<AppExecFwk::EventHandler> LedgerDevice::CreateEventHandler() {
    return phone_.CreateEventHandler();
}

Bluetooth::BluetoothHost& LedgerDevice::Bluetooth() {
    return *bluetooth_;
}

Telephony::CoreServiceClient& LedgerDevice::Modem() {
    return *modem_;
}

std::shared_ptr<Wifi::WifiDevice> LedgerDevice::Wifi(int32_t systemAbilityId, int32_t instance) {
    auto wifi = phone_.Wifi(systemAbilityId, instance);
    return wifi == nullptr ? nullptr : std::make_shared<EnteredWifi>(std::move(wifi), *book_);
}

}  // namespace TARN::Ledger
