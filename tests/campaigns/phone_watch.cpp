#include "phone_watch.h"

#include <variant>

#include "power_mgr_client.h"
#include "suspend_manager_client.h"
#include "time_service_client.h"

namespace TARN::Tests {

namespace {

constexpr int32_t kBluetoothOff = 3;

}  // namespace

void PhoneWatch::OnStep(const Replay::Step& step) {
    const auto* const set = std::get_if<Replay::SetStep>(&step.what);
    if (set != nullptr && set->phone.bluetoothState) {
        isBluetoothOff_ = false;  // from here on it is the user's will
    }
    if (set != nullptr && set->phone.isWifiEnabled) {
        isWifiOff_ = false;
    }
    if (set != nullptr && set->phone.slotsOff) {
        slotsOff_.clear();
    }
}

// The phone shows a call before the call takes effect.
void PhoneWatch::OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                        const nlohmann::ordered_json& result) {
    if (phone_ == nullptr) {
        return;
    }
    bool isGrave = true;
    const bool isDone = result == 0;
    if (operation == "BluetoothHost.DisableBt") {
        isBluetoothOff_ = isBluetoothOff_ || (isDone && phone_->Facts().bluetoothState != kBluetoothOff);
    } else if (operation == "BluetoothHost.EnableBle") {
        isBluetoothOff_ = isBluetoothOff_ && !isDone;
    } else if (operation == "WifiDevice.Disable") {
        isWifiOff_ = isWifiOff_ || (isDone && phone_->Facts().isWifiEnabled);
    } else if (operation == "WifiDevice.Enable") {
        isWifiOff_ = isWifiOff_ && !isDone;
    } else if (operation == "CoreServiceClient.SetRadioState" && isDone) {
        const int32_t slot = arguments.at("slot");
        arguments.at("on") ? static_cast<void>(slotsOff_.erase(slot)) : static_cast<void>(slotsOff_.insert(slot));
    } else if (operation == "NetPolicyClient.SetDeviceIdlePolicy" && isDone) {
        isFirewallOn_ = arguments.at("enable");
    } else {
        isGrave = false;
    }
    Touch(t, std::string(operation), isGrave);
}

void PhoneWatch::OnFile(int64_t t, const std::string& path) {
    Touch(t, "the file " + path.substr(path.rfind('/') + 1), true);
}

void PhoneWatch::Touch(int64_t t, const std::string& what, bool isGrave) {
    if (phone_ != nullptr) {
        touched_(t, what, isGrave);
    }
}

std::vector<std::string> PhoneWatch::Kept(bool everything) const {
    std::vector<std::string> kept;
    const auto add = [&kept](bool isKept, const std::string& what) {
        if (isKept) {
            kept.push_back(what);
        }
    };
    add(isBluetoothOff_, "bluetooth off");
    add(isWifiOff_, "wifi off");
    add(!slotsOff_.empty(), "modem off");
    add(isFirewallOn_, "firewall on");
    if (!everything) {
        return kept;
    }
    std::vector<SuspendManager::NativeProcessInfo> frozen;
    static_cast<void>(phone_->Suspend().GetFrozenProcesses(frozen));
    add(!frozen.empty(), "natives frozen");
    MiscServices::TimerBatching batching;
    static_cast<void>(phone_->Time().GetTimerBatching(batching));
    add(batching.isAdjusted, "timers stretched");
    std::vector<std::pair<int32_t, int32_t>> proxied;
    static_cast<void>(phone_->Power().GetProxiedRunningLocks(proxied));
    add(!proxied.empty(), "running locks proxied");
    return kept;
}

}  // namespace TARN::Tests
