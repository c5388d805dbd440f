#include "power_off_strategy.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "bluetooth_host.h"
#include "common_event_manager.h"
#include "common_event_support.h"
#include "core_service_client.h"
#include "device_state_cache.h"
#include "json_utils.h"
#include "phone_dump_words.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "power_mgr_client.h"
#include "standby_constants.h"
#include "standby_datashare_helper.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "time_provider.h"
#include "time_service_client.h"
#include "timed_task.h"
#include "wifi_device.h"

namespace TARN::DevStandbyMgr {

namespace {

using Bluetooth::BluetoothHost;
using EventFwk::CommonEventSupport;
using MiscServices::TimeServiceClient;
using PowerMgr::PowerMgrClient;
using Telephony::CoreServiceClient;
using Wifi::WifiDevice;

constexpr char kRecordPath[] = "/data/service/el1/public/device_standby/power_off_record";
constexpr char kAirplaneUri[] =
    "datashare:///com.tarn.settingsdata/entry/settingsdata/SETTINGSDATA?Proxy=true&key=airplane_mode";
constexpr char kAirplaneKey[] = "settings.telephony.airplanemode";  // not the URI's key, and that is right

constexpr int32_t kNothingToRestore = 0;
constexpr int32_t kConnectionExists = 1;
constexpr int32_t kSwitchedOff = 2;

constexpr int32_t kBtTurningOff = 2;
constexpr int32_t kBtOff = 3;
constexpr int32_t kBtDisconnected = 3;

constexpr int32_t kDistributedComponentState = 0;
constexpr int32_t kCallState = 1;

constexpr int32_t kWifiAbilityId = 1120;
constexpr int32_t kWifiInstance = 0;
constexpr int64_t kEcmDelayMs = 600'000;

/// Far more than any phone has: what a failing service answers must not keep the thread for minutes.
constexpr int32_t kMostSimSlots = 4096;

/// True: radios are off through this plugin, and it owes a restore.
Relaxed<bool> g_isPowerOff = false;

std::shared_ptr<WifiDevice> Wifi() {
    return WifiDevice::GetInstance(kWifiAbilityId, kWifiInstance);
}

void SwitchModem(bool isOn) {
    const int32_t slots = std::min(CoreServiceClient::GetInstance().GetMaxSimCount(), kMostSimSlots);
    for (int32_t slot = 0; slot < slots; ++slot) {
        static_cast<void>(CoreServiceClient::GetInstance().SetRadioState(slot, isOn, nullptr));
    }
}

}  // namespace

PowerOffStrategy::PowerOffStrategy() : handler_(StandbyServiceImpl::GetInstance()->GetHandler()) {}

bool PowerOffStrategy::GetPowerOffState() {
    return g_isPowerOff;
}

void PowerOffStrategy::SetPowerOffState(bool isPowerOff) {
    g_isPowerOff = isPowerOff;
}

void PowerOffStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("PowerOffStrategy revceived message %{public}u, action: %{public}s", message.eventId,
                        message.action.c_str());
    switch (message.eventId) {
        case StandbyMessageType::COMMON_EVENT:
            HandleCommonEvent(message);
            break;
        case StandbyMessageType::STATE_TRANSIT:
            OnStateChanged(message);
            break;
        case StandbyMessageType::RES_CTRL_CONDITION_CHANGED:
            if (ParamsOf(message).GetIntParam(RES_CTRL_CONDITION, 0) == PhoneCondition::DAY) {
                static_cast<void>(StopPowerOffStatus());
            }
            break;
        case StandbyMessageType::SCREEN_OFF_HALF_HOUR:
            scrOffHalfHour_ = ParamsOf(message).GetBoolParam(SCR_OFF_HALF_HOUR_STATUS, false);
            if (scrOffHalfHour_ && TimeProvider::GetCondition(0) == PhoneCondition::NIGHT) {
                static_cast<void>(StartPowerOffStatus());
            }
            break;
        case StandbyMessageType::DEVICE_STATE_CHANGED:
            OnDeviceStateChanged();
            break;
        default:
            break;
    }
}

ErrCode PowerOffStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("PowerOffStrategy is OnCreated now");
    static_cast<void>(ResetPowerOffStatus());
    return PhoneStatus::OK;
}

ErrCode PowerOffStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("PowerOffStrategy is OnDestroy now");
    static_cast<void>(StopPowerOffStatus());
    return PhoneStatus::OK;
}

void PowerOffStrategy::HandleCommonEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter HandleCommonEvent, action_ is %{public}s", message.action.c_str());
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
        EcmPowerOff();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        EcmPowerOff();
    }
}

void PowerOffStrategy::EcmPowerOff() {
    if (isScreenOn_) {
        if (ecmTimerId_ != 0) {
            static_cast<void>(TimeServiceClient::GetInstance()->StopTimer(ecmTimerId_));
        }
        static_cast<void>(ResetPowerOffStatus());
        return;
    }
    if (PowerMgrClient::GetInstance().GetDeviceMode() != DEVICE_MODE_ECM) {
        return;
    }
    // A new timer each time: the old one is stopped at screen-on, never destroyed.
    ecmTimerId_ =
        TimedTask::CreateTimer(false, 0, false, false, [strategy = shared_from_this()] { strategy->OnEcmTimer(); });
    const int64_t triggerMs = TimeServiceClient::GetInstance()->GetWallTimeMs() + kEcmDelayMs;
    if (ecmTimerId_ == 0 ||
        !TimeServiceClient::GetInstance()->StartTimer(ecmTimerId_, static_cast<uint64_t>(triggerMs))) {
        STANDBYSERVICE_LOGW("failed to start timer, timer ID: %{public}lu", ecmTimerId_);
    }
}

void PowerOffStrategy::OnEcmTimer() {
    if (PowerMgrClient::GetInstance().GetDeviceMode() == DEVICE_MODE_ECM && !isScreenOn_) {
        STANDBYSERVICE_LOGI("power off net because of ecm");
        DisableWifiComponentInner();
        DisableModemInner();
        static_cast<void>(SavePowerOffRecord());
    }
}

void PowerOffStrategy::OnStateChanged(const StandbyMessage& message) {
    const int32_t previous = ParamsOf(message).GetIntParam(PREVIOUS_STATE, 0);
    const int32_t current = ParamsOf(message).GetIntParam(CURRENT_STATE, 0);
    if (previous == StandbyState::SLEEP) {
        static_cast<void>(StopPowerOffStatus());
        return;
    }
    if (current == StandbyState::SLEEP && scrOffHalfHour_ && TimeProvider::GetCondition(0) == PhoneCondition::NIGHT) {
        STANDBYSERVICE_LOGI("start power off, current is %{public}d, scrOffHalfHour is %{public}d", current,
                            scrOffHalfHour_);
        static_cast<void>(StartPowerOffStatus());
    }
}

void PowerOffStrategy::OnDeviceStateChanged() {
    if (!GetPowerOffState()) {
        STANDBYSERVICE_LOGI("has not been power off state, do not need to process");
        return;
    }
    if (DisableBlueTooth()) {
        static_cast<void>(SavePowerOffRecord());
    }
}

ErrCode PowerOffStrategy::StartPowerOffStatus() {
    if (GetPowerOffState()) {
        STANDBYSERVICE_LOGW("has already been power off state, do not need to stop");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    if (IsAirPlaneMode()) {
        STANDBYSERVICE_LOGW("current is airplane mode, do not need process");
        return PhoneStatus::AIRPLANE_MODE;
    }
    STANDBYSERVICE_LOGI("current is not airplane mode");
    SetPowerOffState(true);
    static_cast<void>(DisableBlueTooth());  // Wi-Fi and the modem are left alone here
    static_cast<void>(SavePowerOffRecord());
    return PhoneStatus::OK;
}

ErrCode PowerOffStrategy::StopPowerOffStatus() {
    if (!GetPowerOffState()) {
        STANDBYSERVICE_LOGI("already power on, do not need to stop");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    if (!LoadPowerOffRecord()) {
        STANDBYSERVICE_LOGI("failed to load allow record from file");
        return PhoneStatus::RECORD_UNAVAILABLE;
    }
    StopPowerOffStatusInner();
    SetPowerOffState(false);
    static_cast<void>(SavePowerOffRecord());
    return PhoneStatus::OK;
}

ErrCode PowerOffStrategy::ResetPowerOffStatus() {
    if (!LoadPowerOffRecord()) {
        STANDBYSERVICE_LOGI("failed to load allow record from file");
        return PhoneStatus::RECORD_UNAVAILABLE;
    }
    StopPowerOffStatusInner();
    static_cast<void>(SavePowerOffRecord());
    return PhoneStatus::OK;
}

void PowerOffStrategy::StopPowerOffStatusInner() {
    static_cast<void>(EnableBlueTooth());
    static_cast<void>(EnableWifiComponent());
    static_cast<void>(EnableModem());
}

bool PowerOffStrategy::DisableBlueTooth() {
    if (bluetoothStatus_ == kSwitchedOff) {
        STANDBYSERVICE_LOGW("do not need repeatedly disable bluetooth");
        return false;
    }
    BluetoothHost& host = BluetoothHost::GetDefaultHost();
    if (const int32_t state = host.GetBtState(); state == kBtTurningOff || state == kBtOff) {
        STANDBYSERVICE_LOGI("bluetooth is already off, bt state is %{public}d", state);
        return false;
    }
    if (host.GetBtConnectionState() != kBtDisconnected) {
        STANDBYSERVICE_LOGI("bluetooth is in connecting state, can not disable");
        return false;
    }
    if (DeviceStateCache::GetInstance()->GetDeviceState(kCallState)) {
        STANDBYSERVICE_LOGI("telephone is calling, can not disable");
        return false;
    }
    if (DeviceStateCache::GetInstance()->GetDeviceState(kDistributedComponentState)) {
        STANDBYSERVICE_LOGI("discomponent is connecting, can not disable");
        return false;
    }
    if (host.DisableBt() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGW("failed to disable classic bluetooth");
    }
    // recorded as off although the call may have failed, so that the restore is tried
    STANDBYSERVICE_LOGW("succeed in disabling bluetooth");
    bluetoothStatus_ = kSwitchedOff;
    return true;
}

bool PowerOffStrategy::EnableBlueTooth() {
    if (bluetoothStatus_ == kNothingToRestore) {
        STANDBYSERVICE_LOGW("do not need enable bluetooth");
        return false;
    }
    bluetoothStatus_ = kNothingToRestore;
    if (BluetoothHost::GetDefaultHost().EnableBle() != PhoneStatus::OK) {  // the low-energy enable brings back both
        STANDBYSERVICE_LOGW("failed to enable ble bluetooth");
    }
    STANDBYSERVICE_LOGI("succeed in enabling bluetooth");
    return true;
}

bool PowerOffStrategy::EnableWifiComponent() {
    if (wifiStatus_ == kNothingToRestore) {
        STANDBYSERVICE_LOGW("do not need enable wifi");
        return false;
    }
    wifiStatus_ = kNothingToRestore;
    const auto wifi = Wifi();
    if (wifi == nullptr) {
        STANDBYSERVICE_LOGW("can not get wifiDevice");
        return false;
    }
    if (wifi->Enable() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGW("failed enable wifi");
        return false;
    }
    STANDBYSERVICE_LOGI("succeed in enabling wifi");
    return true;
}

bool PowerOffStrategy::EnableModem() {
    if (modemStatus_ == kNothingToRestore) {
        STANDBYSERVICE_LOGW("do not need enable Modem");
        return false;
    }
    STANDBYSERVICE_LOGI("start enable modem");
    modemStatus_ = kNothingToRestore;
    SwitchModem(true);
    STANDBYSERVICE_LOGI("succeed in enabling modem");
    return true;
}

void PowerOffStrategy::DisableWifiComponentInner() {
    STANDBYSERVICE_LOGI("start disable wifi");
    const auto wifi = Wifi();
    if (wifi != nullptr && wifi->Disable() == PhoneStatus::OK) {
        STANDBYSERVICE_LOGI("succeed disable wifi");
    } else {
        STANDBYSERVICE_LOGW("can not get wifiDevice or failed to disable wifi");
    }
    wifiStatus_ = kSwitchedOff;
    SendNetworkCtrlCommonEvent();
}

void PowerOffStrategy::DisableModemInner() {
    STANDBYSERVICE_LOGI("start disable modem");
    SwitchModem(false);
    modemStatus_ = kSwitchedOff;
}

void PowerOffStrategy::SendNetworkCtrlCommonEvent() const {
    if (wifiStatus_ == kConnectionExists || cellularDataStatus_ == kConnectionExists) {
        STANDBYSERVICE_LOGD("network connection is still existing, can not send network ctrl common event");
        return;
    }
    AAFwk::Want want;
    want.SetAction(COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK);
    want.SetParam("ctrl_network_status", false);
    if (EventFwk::CommonEventManager::PublishCommonEvent(EventFwk::CommonEventData(std::move(want)))) {
        STANDBYSERVICE_LOGD("PublishCommonEvent for ctrl network succeed");
    } else {
        STANDBYSERVICE_LOGE("PublishCommonEvent for ctrl network failed");
    }
}

bool PowerOffStrategy::IsAirPlaneMode() const {
    const auto helper = std::make_shared<StandbyDataShareHelper>(SETTINGS_DATA_ABILITY_ID);
    Uri uri(kAirplaneUri);
    std::string value;
    if (helper->Query(uri, kAirplaneKey, value) != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("query airplaneMode failed");
        return false;
    }
    STANDBYSERVICE_LOGI("airplaneMode is %{public}s", value.c_str());
    return value == "1";
}

bool PowerOffStrategy::SavePowerOffRecord() const {
    nlohmann::json::object_t record;  // by hand: what makes JSON of a list in braces is larger than this strategy
    record.emplace("wifi_off", static_cast<int32_t>(wifiStatus_));
    record.emplace("modem_off", static_cast<int32_t>(modemStatus_));
    record.emplace("cellular_data_off", static_cast<int32_t>(cellularDataStatus_));
    record.emplace("bluetooth_off", static_cast<int32_t>(bluetoothStatus_));
    if (!JsonUtils::DumpJsonValueToFile(std::move(record), kRecordPath)) {
        STANDBYSERVICE_LOGE("dump power off record failed");
        return false;
    }
    return true;
}

bool PowerOffStrategy::LoadPowerOffRecord() {
    nlohmann::json record;
    if (!JsonUtils::LoadJsonValueFromFile(record, kRecordPath)) {
        STANDBYSERVICE_LOGE("load power off record failed");
        return false;
    }
    const std::array<std::pair<const char*, Relaxed<int32_t>*>, 4> members = {
        {{"wifi_off", &wifiStatus_},
         {"modem_off", &modemStatus_},
         {"cellular_data_off", &cellularDataStatus_},
         {"bluetooth_off", &bluetoothStatus_}}};
    const auto* object = record.get_ptr<const nlohmann::json::object_t*>();
    if (object == nullptr) {
        return true;
    }
    for (const auto& [key, status] : members) {
        const auto found = object->find(key);
        const auto* value = found == object->end() ? nullptr : found->second.get_ptr<const int64_t*>();
        if (value != nullptr) {
            *status = static_cast<int32_t>(*value);  // one beyond 32 bits wraps
        }
    }
    return true;
}

void PowerOffStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (AsksForDetails(args)) {
        DumpShowDetailInfo(result);
    } else if (IsWordAt(args, DUMP_SECOND_PARAM, DUMP_POWEROFF_STRATEGY)) {
        DumpPowerOffStratgy();
    }
}

void PowerOffStrategy::DumpShowDetailInfo(std::string& result) const {
    result += "=================PowerOff=========================\n";
    result += "power off strategy\n";
    result += "isPowerOff: " + std::to_string(static_cast<int>(GetPowerOffState()));
    result += "\nbluetoothStatus_: " + std::to_string(static_cast<int32_t>(bluetoothStatus_));
}

// A simulated power-off for tests on a phone: it skips every check.
void PowerOffStrategy::DumpPowerOffStratgy() {
    STANDBYSERVICE_LOGI("start power save off, after %{public}d callback", powerOffCallbackCount_);
    SetPowerOffState(true);
    if (BluetoothHost::GetDefaultHost().DisableBt() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGW("failed to disable classic bluetooth");
    }
    STANDBYSERVICE_LOGW("succeed in disabling bluetooth");
    bluetoothStatus_ = kSwitchedOff;
    static_cast<void>(SavePowerOffRecord());
}

}  // namespace TARN::DevStandbyMgr
