#ifndef DEVICE_LEDGER_LEDGER_DEVICE_H
#define DEVICE_LEDGER_LEDGER_DEVICE_H

#include <cstdint>
#include <memory>
#include <string_view>

#include "device.h"
#include "radio_news.h"

namespace TARN::Ledger {

class RadioBook;

/// A phone whose ports remember, in a file of its own, which radios were switched off through them: see RadioLedger.
/// All else is the phone's own.
class LedgerDevice : public Device {
public:
    /// `phone` tells by `news` when its radios change; both are one phone and outlive this.
    LedgerDevice(Device& phone, RadioNews& news);
    ~LedgerDevice() override;
    LedgerDevice(const LedgerDevice&) = delete;
    LedgerDevice& operator=(const LedgerDevice&) = delete;

    [[nodiscard]] RadioLedger* Radios() noexcept override;
    void DropPending() override;
    Bluetooth::BluetoothHost& Bluetooth() override;
    Telephony::CoreServiceClient& Modem() override;
    [[nodiscard]] std::shared_ptr<Wifi::WifiDevice> Wifi(int32_t systemAbilityId, int32_t instance) override;

    [[nodiscard]] int32_t Fault(std::string_view operation) const noexcept override { return phone_.Fault(operation); }
    [[nodiscard]] std::shared_ptr<AppExecFwk::EventHandler> CreateEventHandler() override;
    AccountSA::OsAccountManager& Accounts() override { return phone_.Accounts(); }
    AppExecFwk::AbilityManagerClient& Abilities() override { return phone_.Abilities(); }
    AppExecFwk::AppMgrClient& Apps() override { return phone_.Apps(); }
    AppExecFwk::BundleMgrClient& Bundles() override { return phone_.Bundles(); }
    BackgroundTaskMgr::BackgroundTaskMgrHelper& BackgroundTasks() override { return phone_.BackgroundTasks(); }
    PowerMgr::BatterySrvClient& Battery() override { return phone_.Battery(); }
    BrokerRegistration& Brokers() override { return phone_.Brokers(); }
    EventFwk::CommonEventService& CommonEvents() override { return phone_.CommonEvents(); }
    DataShare::DataShareService& Settings() override { return phone_.Settings(); }
    FileUtil::FileService& Files() override { return phone_.Files(); }
    LogService& Log() override { return phone_.Log(); }
    Msdp::MovementClient& Movement() override { return phone_.Movement(); }
    NetManagerStandard::NetPolicyClient& NetPolicy() override { return phone_.NetPolicy(); }
    system::Parameters& Parameters() override { return phone_.Parameters(); }
    PowerMgr::PowerMgrClient& Power() override { return phone_.Power(); }
    NativePreferences::PreferencesService& Preferences() override { return phone_.Preferences(); }
    ResourceSchedule::ResSchedClient& ResourceScheduler() override { return phone_.ResourceScheduler(); }
    Sensors::SensorService& Sensors() override { return phone_.Sensors(); }
    SuspendManager::SuspendManagerClient& Suspend() override { return phone_.Suspend(); }
    SystemAbilityManagerClient& SystemAbilities() override { return phone_.SystemAbilities(); }
    MiscServices::TimeServiceClient& Time() override { return phone_.Time(); }

private:
    void Listen();

    Device& phone_;
    RadioNews& news_;
    std::unique_ptr<RadioBook> book_;
    std::unique_ptr<Bluetooth::BluetoothHost> bluetooth_;
    std::unique_ptr<Telephony::CoreServiceClient> modem_;
};

}  // namespace TARN::Ledger

#endif  // DEVICE_LEDGER_LEDGER_DEVICE_H
