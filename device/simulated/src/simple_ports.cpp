#include "simple_ports.h"

#include <algorithm>
#include <utility>

namespace TARN::Simulated {

namespace {

using Json = nlohmann::ordered_json;

constexpr int32_t kBluetoothOn = 1;
constexpr int32_t kBluetoothOff = 3;

/// A question that answers a number answers the code while it fails.
int32_t Answer(const PhoneCore& core, std::string_view operation, int32_t fact) {
    const int32_t code = core.Fault(operation);
    return code != 0 ? code : fact;
}

class Service : public IRemoteObject {};

class ServiceDirectory : public ISystemAbilityManager {
public:
    explicit ServiceDirectory(PhoneCore& core) : core_(core) {}

    std::shared_ptr<IRemoteObject> GetSystemAbility(int32_t /*systemAbilityId*/) override {
        return core_.Fault("SystemAbilityManager.GetSystemAbility") != 0 ? nullptr : std::make_shared<Service>();
    }

private:
    PhoneCore& core_;
};

}  // namespace

int32_t Accounts::QueryActive(std::vector<int>& ids) {
    const int32_t code = core_.Fault("OsAccountManager.QueryActiveOsAccountIds");
    if (code == 0) {
        ids = core_.facts.accounts;
    }
    return code;
}

int32_t Battery::GetPluggedType() {
    return Answer(core_, "BatterySrvClient.GetPluggedType", core_.facts.plugged);
}

int32_t BluetoothAdapter::GetBtState() {
    return Answer(core_, "BluetoothHost.GetBtState", core_.facts.bluetoothState);
}

int32_t BluetoothAdapter::GetBtConnectionState() {
    return Answer(core_, "BluetoothHost.GetBtConnectionState", core_.facts.bluetoothConnection);
}

int32_t BluetoothAdapter::DisableBt() {
    const int32_t code = core_.Call("BluetoothHost.DisableBt");
    if (code == 0) {
        core_.SetRadio(core_.facts.bluetoothState, kBluetoothOff);
    }
    return code;
}

int32_t BluetoothAdapter::EnableBle() {
    const int32_t code = core_.Call("BluetoothHost.EnableBle");
    if (code == 0) {
        core_.SetRadio(core_.facts.bluetoothState, kBluetoothOn);
    }
    return code;
}

bool Brokers::Register(const std::string& descriptor, Creator /*creator*/) {
    return taken_.insert(descriptor).second;
}

void Brokers::Unregister(const std::string& descriptor) {
    taken_.erase(descriptor);
}

int32_t Modem::GetMaxSimCount() {
    return Answer(core_, "CoreServiceClient.GetMaxSimCount", core_.facts.simSlots);
}

int32_t Modem::SetRadioState(int32_t slotId, bool isOn, const RadioCallback& callback) {
    const int32_t code = core_.Call("CoreServiceClient.SetRadioState", [&] {
        return Json{{"slot", slotId}, {"on", isOn}};
    });
    if (code == 0) {
        std::set<int32_t> off = core_.facts.slotsOff;
        if (isOn) {
            off.erase(slotId);
        } else {
            off.insert(slotId);
        }
        core_.SetRadio(core_.facts.slotsOff, std::move(off));
    }
    if (callback) {
        callback(code);
    }
    return code;
}

std::optional<bool> Modem::IsRadioOn(int32_t slotId) {
    return core_.Fault("CoreServiceClient.IsRadioOn") == 0 ? std::optional(!core_.facts.slotsOff.contains(slotId))
                                                           : std::nullopt;
}

Msdp::MovementData MovementDetector::GetMovementData(Msdp::MovementType type) {
    Msdp::MovementData data;
    data.type = type;
    if (core_.Fault("MovementClient.GetMovementData") == 0 && type == Msdp::MovementType::TYPE_STILL) {
        data.value = static_cast<Msdp::MovementValue>(core_.facts.movement.value);
        data.timestamp = core_.BootNsAt(core_.facts.movement.atMs);
    }
    return data;
}

void MovementDetector::Report() {
    if (!observer_) {
        return;
    }
    core_.time.Post(core_.time.NowMs(), [this] {
        if (observer_) {
            observer_(GetMovementData(Msdp::MovementType::TYPE_STILL));
        }
    });
}

int32_t NetPolicy::SetDeviceIdleTrustlist(const std::vector<uint32_t>& uids, bool isAdded) {
    std::vector<uint32_t> sorted = uids;
    std::sort(sorted.begin(), sorted.end());
    const int32_t code = core_.Call("NetPolicyClient.SetDeviceIdleTrustlist", [&] {
        return Json{{"uids", sorted}, {"added", isAdded}};
    });
    if (code == 0 && isAdded) {
        trusted_.insert(sorted.begin(), sorted.end());
    } else if (code == 0) {
        for (const uint32_t uid : sorted) {
            trusted_.erase(uid);
        }
    }
    return code;
}

int32_t NetPolicy::GetDeviceIdleTrustlist(std::vector<uint32_t>& uids) {
    const int32_t code = core_.Fault("NetPolicyClient.GetDeviceIdleTrustlist");
    if (code == 0) {
        uids.assign(trusted_.begin(), trusted_.end());
    }
    return code;
}

int32_t NetPolicy::SetDeviceIdlePolicy(bool enable) {
    const int32_t code = core_.Call("NetPolicyClient.SetDeviceIdlePolicy", [&] { return Json{{"enable", enable}}; });
    if (code == 0 && std::exchange(isIdle_, enable) != enable && observer_) {
        core_.time.Post(core_.time.NowMs(), [this, enable] {
            if (observer_) {
                observer_(enable);
            }
        });
    }
    return code;
}

std::optional<std::string> SystemParameters::Find(const std::string& key) const {
    const auto found = core_.facts.parameters.find(key);
    return found == core_.facts.parameters.end() ? std::nullopt : std::optional(found->second);
}

int32_t Power::GetDeviceMode() {
    return Answer(core_, "PowerMgrClient.GetDeviceMode", core_.facts.deviceMode);
}

std::optional<bool> Power::IsScreenOn() {
    return core_.Fault("PowerMgrClient.IsScreenOn") == 0 ? std::optional(core_.isScreenOn) : std::nullopt;
}

int32_t Power::ProxyRunningLocks(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& processes) {
    const int32_t code = core_.Call("PowerMgrClient.ProxyRunningLocks", [&] {
        Json pairs = Json::array();
        for (const auto& [first, second] : processes) {
            pairs.push_back(Json::array({first, second}));
        }
        return Json{{"proxied", isProxied}, {"processes", std::move(pairs)}};
    });
    for (const auto& pair : processes) {
        if (code == 0 && isProxied) {
            proxied_.insert(pair);
        } else if (code == 0) {
            proxied_.erase(pair);
        }
    }
    return code;
}

int32_t Power::GetProxiedRunningLocks(std::vector<std::pair<int32_t, int32_t>>& processes) {
    const int32_t code = core_.Fault("PowerMgrClient.GetProxiedRunningLocks");
    if (code == 0) {
        processes.assign(proxied_.begin(), proxied_.end());
    }
    return code;
}

std::vector<int32_t> Freezer::OperateNativeProcesses(const std::vector<SuspendManager::NativeProcessInfo>& processes) {
    constexpr std::string_view kOperation = "SuspendManagerClient.OperateNativeProcesses";
    const int32_t code = core_.Fault(kOperation);
    for (const auto& process : processes) {
        if (code == 0 && process.IsFreeze()) {
            frozen_.insert_or_assign(process.GetPid(), process);
        } else if (code == 0) {
            frozen_.erase(process.GetPid());
        }
    }
    std::vector<int32_t> results(processes.size(), code);
    const auto arguments = [&processes] {
        Json entries = Json::array();
        for (const auto& process : processes) {
            entries.push_back(
                {{"pid", process.GetPid()}, {"name", process.GetProcessName()}, {"freeze", process.IsFreeze()}});
        }
        return Json{{"processes", std::move(entries)}};
    };
    core_.Show(kOperation, arguments, results);
    return results;
}

int32_t Freezer::GetFrozenProcesses(std::vector<SuspendManager::NativeProcessInfo>& processes) {
    if (const int32_t code = core_.Fault("SuspendManagerClient.GetFrozenProcesses"); code != 0) {
        return code;
    }
    processes.clear();
    for (const auto& [pid, process] : frozen_) {
        // one that ended, or whose pid is another's now, is frozen no more
        const bool isRunning = std::any_of(core_.facts.processes.begin(), core_.facts.processes.end(),
                                           [frozenPid = pid, &name = process.GetProcessName()](const Process& one) {
                                               return one.native && one.pid == frozenPid && one.name == name;
                                           });
        if (isRunning) {
            processes.push_back(process);
        }
    }
    return 0;
}

std::shared_ptr<ISystemAbilityManager> SystemAbilities::GetSystemAbilityManager() {
    if (core_.Fault("SystemAbilityManagerClient.GetSystemAbilityManager") != 0) {
        return nullptr;
    }
    return std::make_shared<ServiceDirectory>(core_);
}

int32_t WifiInterface::Enable() {
    const int32_t code = core_.Call("WifiDevice.Enable");
    core_.SetRadio(core_.facts.isWifiEnabled, core_.facts.isWifiEnabled || code == 0);
    return code;
}

int32_t WifiInterface::Disable() {
    const int32_t code = core_.Call("WifiDevice.Disable");
    core_.SetRadio(core_.facts.isWifiEnabled, core_.facts.isWifiEnabled && code != 0);
    return code;
}

std::optional<bool> WifiInterface::IsEnabled() {
    return core_.Fault("WifiDevice.IsEnabled") == 0 ? std::optional(core_.facts.isWifiEnabled) : std::nullopt;
}

}  // namespace TARN::Simulated
