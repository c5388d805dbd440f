#ifndef DEVICE_SIMULATED_SIMULATED_PHONE_H
#define DEVICE_SIMULATED_SIMULATED_PHONE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "device.h"
#include "facts.h"
#include "phone_observer.h"
#include "radio_news.h"
#include "virtual_time.h"
#include "want.h"

namespace TARN::Simulated {

struct PhonePorts;

/// A phone in memory under virtual time: every platform service answers from facts, every operation is
/// shown to the observer, and any of them can be made to fail.
///
/// Everything except the posting of work belongs on the thread that runs the virtual time.
class SimulatedPhone : public Device, public RadioNews {
public:
    /// `startMs` is the wall clock and `bootNs` the boot clock at the beginning. The observer and `files` outlive the
    /// phone; without `files` they are in memory and go with it. Throws std::runtime_error when the settings database
    /// cannot be made.
    SimulatedPhone(int64_t startMs, int64_t bootNs, PhoneObserver& observer, FileUtil::FileService* files = nullptr);
    ~SimulatedPhone() override;
    SimulatedPhone(const SimulatedPhone&) = delete;
    SimulatedPhone& operator=(const SimulatedPhone&) = delete;

    [[nodiscard]] VirtualTime& Clock() noexcept;
    [[nodiscard]] const PhoneFacts& Facts() const noexcept;

    /// How many operations that change something were called.
    [[nodiscard]] uint64_t Calls() const noexcept;

    /// Changes facts at once; whoever observes them hears of it as work of its own, of a radio at once.
    void Apply(const FactsChange& change);

    /// Another party publishes a system broadcast.
    void Broadcast(AAFwk::Want want);

    /// Writes one of the service's files behind its back, or removes it. Throws std::runtime_error when it cannot.
    void WriteFile(const std::string& name, const std::optional<std::string>& text);

    /// The service is dead, or another one lives. What a dead one still does, which has not heard of it yet, fails,
    /// changes nothing and is not shown.
    void CutOff(bool isCutOff) noexcept;

    void ObserveRadios(RadioObserver observer) override;

    void DropPending() override;

    [[nodiscard]] int32_t Fault(std::string_view operation) const noexcept override;
    [[nodiscard]] std::shared_ptr<AppExecFwk::EventHandler> CreateEventHandler() override;
    AccountSA::OsAccountManager& Accounts() override;
    AppExecFwk::AbilityManagerClient& Abilities() override;
    AppExecFwk::AppMgrClient& Apps() override;
    AppExecFwk::BundleMgrClient& Bundles() override;
    BackgroundTaskMgr::BackgroundTaskMgrHelper& BackgroundTasks() override;
    PowerMgr::BatterySrvClient& Battery() override;
    Bluetooth::BluetoothHost& Bluetooth() override;
    BrokerRegistration& Brokers() override;
    EventFwk::CommonEventService& CommonEvents() override;
    DataShare::DataShareService& Settings() override;
    FileUtil::FileService& Files() override;
    LogService& Log() override;
    Telephony::CoreServiceClient& Modem() override;
    Msdp::MovementClient& Movement() override;
    NetManagerStandard::NetPolicyClient& NetPolicy() override;
    system::Parameters& Parameters() override;
    PowerMgr::PowerMgrClient& Power() override;
    NativePreferences::PreferencesService& Preferences() override;
    ResourceSchedule::ResSchedClient& ResourceScheduler() override;
    Sensors::SensorService& Sensors() override;
    SuspendManager::SuspendManagerClient& Suspend() override;
    SystemAbilityManagerClient& SystemAbilities() override;
    MiscServices::TimeServiceClient& Time() override;
    [[nodiscard]] std::shared_ptr<Wifi::WifiDevice> Wifi(int32_t systemAbilityId, int32_t instance) override;

private:
    std::unique_ptr<PhonePorts> ports_;
};

/// The folder of the service's files.
inline constexpr char kServiceFolder[] = "/data/service/el1/public/device_standby";

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_SIMULATED_PHONE_H
