#include "operations.h"

#include <algorithm>
#include <array>

namespace TARN::Simulated {

namespace {

constexpr std::array<std::string_view, 73> kOperations = {
    "AbilityManagerHelper.GetRunningSystemProcess",
    "AppMgrHelper.GetAllRunningProcesses",
    "AppMgrHelper.GetForegroundApplications",
    "BackgroundTaskMgrHelper.GetContinuousTaskApps",
    "BatterySrvClient.GetPluggedType",
    "BluetoothHost.DisableBt",
    "BluetoothHost.EnableBle",
    "BluetoothHost.GetBtConnectionState",
    "BluetoothHost.GetBtState",
    "BundleManagerHelper.CheckIsSystemAppByUid",
    "CommonEventManager.PublishCommonEvent",
    "CommonEventManager.SubscribeCommonEvent",
    "CommonEventManager.UnSubscribeCommonEvent",
    "CoreServiceClient.GetMaxSimCount",
    "CoreServiceClient.IsRadioOn",
    "CoreServiceClient.SetRadioState",
    "DataShareHelper.Creator",
    "DataShareHelper.Query",
    "DataShareResultSet.GetColumnIndex",
    "DataShareResultSet.GetString",
    "DataShareResultSet.GoToFirstRow",
    "DeviceStateCache.GetDeviceState",
    "JsonUtils.DumpJsonValueToFile",
    "JsonUtils.LoadJsonValueFromFile",
    "MovementClient.GetMovementData",
    "NetPolicyClient.GetDeviceIdleTrustlist",
    "NetPolicyClient.SetDeviceIdlePolicy",
    "NetPolicyClient.SetDeviceIdleTrustlist",
    "OsAccountManager.QueryActiveOsAccountIds",
    "PowerMgrClient.GetDeviceMode",
    "PowerMgrClient.GetProxiedRunningLocks",
    "PowerMgrClient.IsScreenOn",
    "PowerMgrClient.ProxyRunningLocks",
    "Preferences.FlushSync",
    "Preferences.GetBool",
    "Preferences.PutBool",
    "PreferencesHelper.GetPreferences",
    "PreferencesHelper.RemovePreferencesFromCache",
    "ResSchedClient.KillProcess",
    "SensorAgent.ActivateSensor",
    "SensorAgent.DeactivateSensor",
    "SensorAgent.GetAllSensors",
    "SensorAgent.SetBatch",
    "SensorAgent.SubscribeSensor",
    "SensorAgent.UnsubscribeSensor",
    "StandbyConfigManager.GetEligiblePersistAllowConfig",
    "StandbyConfigManager.GetHalfHourSwitch",
    "StandbyConfigManager.GetInstance",
    "StandbyConfigManager.GetResCtrlConfig",
    "StandbyConfigManager.GetStandbyParam",
    "StandbyConfigManager.GetStrategyConfigList",
    "StandbyServiceImpl.GetAllowList",
    "StandbyServiceImpl.GetEligiableRestrictSet",
    "SuspendManagerClient.GetFrozenProcesses",
    "SuspendManagerClient.OperateNativeProcesses",
    "SystemAbilityManager.GetSystemAbility",
    "SystemAbilityManagerClient.GetSystemAbilityManager",
    "TimeProvider.GetCondition",
    "TimeServiceClient.AdjustTimer",
    "TimeServiceClient.DestroyTimer",
    "TimeServiceClient.GetBootTimeNs",
    "TimeServiceClient.GetTimerBatching",
    "TimeServiceClient.GetWallTimeMs",
    "TimeServiceClient.SetTimerExemption",
    "TimeServiceClient.StartTimer",
    "TimeServiceClient.StopTimer",
    "TimedTask.CreateTimer",
    "WifiDevice.Disable",
    "WifiDevice.Enable",
    "WifiDevice.GetInstance",
    "WifiDevice.IsEnabled",
    "system.GetBoolParameter",
    "system.GetStringParameter",
};
static_assert(std::is_sorted(kOperations.begin(), kOperations.end()));

}  // namespace

bool IsKnownOperation(std::string_view operation) {
    return std::binary_search(kOperations.begin(), kOperations.end(), operation);
}

std::span<const std::string_view> Operations() noexcept {
    return kOperations;
}

}  // namespace TARN::Simulated
