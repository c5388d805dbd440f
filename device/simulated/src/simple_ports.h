#ifndef DEVICE_SIMULATED_SIMPLE_PORTS_H
#define DEVICE_SIMULATED_SIMPLE_PORTS_H

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "battery_srv_client.h"
#include "bluetooth_host.h"
#include "broker_registration.h"
#include "core_service_client.h"
#include "log_service.h"
#include "movement_client.h"
#include "net_policy_client.h"
#include "os_account_manager.h"
#include "parameters.h"
#include "phone_core.h"
#include "power_mgr_client.h"
#include "suspend_manager_client.h"
#include "system_ability_manager_client.h"
#include "wifi_device.h"

namespace TARN::Simulated {

/// The ports that answer from a fact or take note of a call, and no more.

class Accounts : public AccountSA::OsAccountManager {
public:
    explicit Accounts(PhoneCore& core) : core_(core) {}

protected:
    int32_t QueryActive(std::vector<int>& ids) override;

private:
    PhoneCore& core_;
};

class Battery : public PowerMgr::BatterySrvClient {
public:
    explicit Battery(PhoneCore& core) : core_(core) {}
    int32_t GetPluggedType() override;

private:
    PhoneCore& core_;
};

class BluetoothAdapter : public Bluetooth::BluetoothHost {
public:
    explicit BluetoothAdapter(PhoneCore& core) : core_(core) {}
    int32_t GetBtState() override;
    int32_t GetBtConnectionState() override;
    int32_t DisableBt() override;
    int32_t EnableBle() override;

private:
    PhoneCore& core_;
};

class Brokers : public BrokerRegistration {
public:
    bool Register(const std::string& descriptor, Creator creator) override;
    void Unregister(const std::string& descriptor) override;

private:
    std::set<std::string> taken_;  ///< descriptors; nobody on this phone makes proxies, so the creators are not kept
};

class Logger : public LogService {
public:
    explicit Logger(PhoneCore& core) : core_(core) {}
    [[nodiscard]] LogLevel LeastLevel() const noexcept override { return core_.observer.LeastLog(); }
    void Write(const LogLine& line) override {
        if (!core_.isCutOff) {
            core_.observer.OnLog(line);
        }
    }

private:
    PhoneCore& core_;
};

class Modem : public Telephony::CoreServiceClient {
public:
    explicit Modem(PhoneCore& core) : core_(core) {}
    int32_t GetMaxSimCount() override;
    int32_t SetRadioState(int32_t slotId, bool isOn, const RadioCallback& callback) override;
    std::optional<bool> IsRadioOn(int32_t slotId) override;

private:
    PhoneCore& core_;
};

class MovementDetector : public Msdp::MovementClient {
public:
    explicit MovementDetector(PhoneCore& core) : core_(core) {}
    Msdp::MovementData GetMovementData(Msdp::MovementType type) override;
    void Observe(Observer observer) override { observer_ = std::move(observer); }

    /// Tells the observer, as work of its own, what the fact says now.
    void Report();

private:
    PhoneCore& core_;
    Observer observer_;
};

class NetPolicy : public NetManagerStandard::NetPolicyClient {
public:
    explicit NetPolicy(PhoneCore& core) : core_(core) {}
    int32_t SetDeviceIdleTrustlist(const std::vector<uint32_t>& uids, bool isAdded) override;
    int32_t GetDeviceIdleTrustlist(std::vector<uint32_t>& uids) override;
    int32_t SetDeviceIdlePolicy(bool enable) override;
    void ObserveDeviceIdlePolicy(IdlePolicyObserver observer) override { observer_ = std::move(observer); }

private:
    PhoneCore& core_;
    IdlePolicyObserver observer_;
    bool isIdle_ = false;
    std::set<uint32_t> trusted_;
};

class SystemParameters : public system::Parameters {
public:
    explicit SystemParameters(PhoneCore& core) : core_(core) {}
    [[nodiscard]] std::optional<std::string> Find(const std::string& key) const override;

private:
    PhoneCore& core_;
};

class Power : public PowerMgr::PowerMgrClient {
public:
    explicit Power(PhoneCore& core) : core_(core) {}
    int32_t GetDeviceMode() override;
    std::optional<bool> IsScreenOn() override;
    int32_t ProxyRunningLocks(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& processes) override;
    int32_t GetProxiedRunningLocks(std::vector<std::pair<int32_t, int32_t>>& processes) override;

private:
    PhoneCore& core_;
    std::set<std::pair<int32_t, int32_t>> proxied_;
};

class Freezer : public SuspendManager::SuspendManagerClient {
public:
    explicit Freezer(PhoneCore& core) : core_(core) {}
    std::vector<int32_t> OperateNativeProcesses(
        const std::vector<SuspendManager::NativeProcessInfo>& processes) override;
    int32_t GetFrozenProcesses(std::vector<SuspendManager::NativeProcessInfo>& processes) override;

private:
    PhoneCore& core_;
    std::map<int32_t, SuspendManager::NativeProcessInfo> frozen_;  ///< by pid
};

class SystemAbilities : public SystemAbilityManagerClient {
public:
    explicit SystemAbilities(PhoneCore& core) : core_(core) {}
    std::shared_ptr<ISystemAbilityManager> GetSystemAbilityManager() override;

private:
    PhoneCore& core_;
};

class WifiInterface : public Wifi::WifiDevice {
public:
    explicit WifiInterface(PhoneCore& core) : core_(core) {}
    int32_t Enable() override;
    int32_t Disable() override;
    std::optional<bool> IsEnabled() override;

private:
    PhoneCore& core_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_SIMPLE_PORTS_H
