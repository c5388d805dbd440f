#ifndef PLATFORM_DEVICE_H
#define PLATFORM_DEVICE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace TARN {

namespace AccountSA {
class OsAccountManager;
}
namespace AppExecFwk {
class AbilityManagerClient;
class AppMgrClient;
class BundleMgrClient;
class EventHandler;
}  // namespace AppExecFwk
namespace BackgroundTaskMgr {
class BackgroundTaskMgrHelper;
}
namespace Bluetooth {
class BluetoothHost;
}
namespace DataShare {
class DataShareService;
}
namespace EventFwk {
class CommonEventService;
}
namespace FileUtil {
class FileService;
}
namespace MiscServices {
class TimeServiceClient;
}
namespace Msdp {
class MovementClient;
}
namespace NativePreferences {
class PreferencesService;
}
namespace NetManagerStandard {
class NetPolicyClient;
}
namespace PowerMgr {
class BatterySrvClient;
class PowerMgrClient;
}  // namespace PowerMgr
namespace ResourceSchedule {
class ResSchedClient;
}
namespace Sensors {
class SensorService;
}
namespace SuspendManager {
class SuspendManagerClient;
}
namespace Telephony {
class CoreServiceClient;
}
namespace Wifi {
class WifiDevice;
}
namespace system {
class Parameters;
}
class BrokerRegistration;
class LogService;
class RadioLedger;
class SystemAbilityManagerClient;

/// One phone: the owner of every platform service that the standby service and its plugin may call.
///
/// A device is installed before the plugin is loaded and stays until after it is unloaded. The client
/// classes of `platform/` ask the installed device for their implementation; there is no other global.
class Device {
public:
    virtual ~Device() = default;

    /// Makes `device` the phone of this process; null takes it away. The caller keeps the ownership.
    static void Install(Device* device) noexcept;

    /// The installed device, null when there is none (a library that is loaded for its symbols only).
    [[nodiscard]] static Device* Installed() noexcept;

    /// The installed device; having none is a programming error and aborts.
    [[nodiscard]] static Device& Current() noexcept;

    /// The non-zero code with which `operation` ("Class.Method") is being made to fail, else 0.
    /// A rehearsal device injects faults this way; a real one has none.
    [[nodiscard]] virtual int32_t Fault(std::string_view operation) const noexcept;

    /// What remembers the radios that were switched off through this device; null where nothing does.
    [[nodiscard]] virtual RadioLedger* Radios() noexcept;

    /// Drops whatever may call into a library that is about to be unloaded: the waiting tasks of all handlers, timers,
    /// sensor subscriptions, broadcast subscriptions, observers, open preferences. Waits until none of their callbacks
    /// runs any more, the caller's own aside; when it returns, no thread of the device is in the library's code or
    /// will be, and nothing of the device holds an object of the library. Called on the handler's thread.
    virtual void DropPending() = 0;

    /// A new handler with a thread of its own, or null when the device cannot start one.
    [[nodiscard]] virtual std::shared_ptr<AppExecFwk::EventHandler> CreateEventHandler() = 0;

    virtual AccountSA::OsAccountManager& Accounts() = 0;
    virtual AppExecFwk::AbilityManagerClient& Abilities() = 0;
    virtual AppExecFwk::AppMgrClient& Apps() = 0;
    virtual AppExecFwk::BundleMgrClient& Bundles() = 0;
    virtual BackgroundTaskMgr::BackgroundTaskMgrHelper& BackgroundTasks() = 0;
    virtual PowerMgr::BatterySrvClient& Battery() = 0;
    virtual Bluetooth::BluetoothHost& Bluetooth() = 0;
    virtual BrokerRegistration& Brokers() = 0;
    virtual EventFwk::CommonEventService& CommonEvents() = 0;
    virtual DataShare::DataShareService& Settings() = 0;
    virtual FileUtil::FileService& Files() = 0;
    virtual LogService& Log() = 0;
    virtual Telephony::CoreServiceClient& Modem() = 0;
    virtual Msdp::MovementClient& Movement() = 0;
    virtual NetManagerStandard::NetPolicyClient& NetPolicy() = 0;
    virtual system::Parameters& Parameters() = 0;
    virtual PowerMgr::PowerMgrClient& Power() = 0;
    virtual NativePreferences::PreferencesService& Preferences() = 0;
    virtual ResourceSchedule::ResSchedClient& ResourceScheduler() = 0;
    virtual Sensors::SensorService& Sensors() = 0;
    virtual SuspendManager::SuspendManagerClient& Suspend() = 0;
    virtual SystemAbilityManagerClient& SystemAbilities() = 0;
    virtual MiscServices::TimeServiceClient& Time() = 0;

    /// The Wi-Fi client of one system ability and instance, or null when the phone has none.
    [[nodiscard]] virtual std::shared_ptr<Wifi::WifiDevice> Wifi(int32_t systemAbilityId, int32_t instance) = 0;
};

}  // namespace TARN

#endif  // PLATFORM_DEVICE_H
