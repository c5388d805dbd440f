#ifndef PHONE_STRATEGY_POWER_OFF_STRATEGY_H
#define PHONE_STRATEGY_POWER_OFF_STRATEGY_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "event_handler.h"
#include "ibase_strategy.h"
#include "phone_standby_status.h"
#include "relaxed.h"

namespace TARN::DevStandbyMgr {

/// Switches radios off in deep standby and back on when the phone is used: Bluetooth at night after half an hour
/// without screen; Wi-Fi and modem, in device mode 603 only, ten minutes after the screen went off. A record file
/// names what is off, so that it comes back after a restart.
///
/// Listens to: COMMON_EVENT (screen), STATE_TRANSIT, RES_CTRL_CONDITION_CHANGED, SCREEN_OFF_HALF_HOUR,
/// DEVICE_STATE_CHANGED. Commands: Bluetooth, Wi-Fi, modem, the network-control broadcast, its timer and record.
///
/// The timer callback runs on the timer thread and touches the statuses without a lock; see Relaxed.
class PowerOffStrategy : public IBaseStrategy, public std::enable_shared_from_this<PowerOffStrategy> {
public:
    PowerOffStrategy();
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    ~PowerOffStrategy() override = default;

    /// Switches Bluetooth off. ALREADY_IN_STATE, AIRPLANE_MODE or OK; OK also when Bluetooth
    /// had to stay on.
    [[nodiscard]] ErrCode StartPowerOffStatus();

    /// Switches on what the record names and ends the power-off state. ALREADY_IN_STATE when there is
    /// none, RECORD_UNAVAILABLE when the record cannot be read; then the state stays, for a later try.
    [[nodiscard]] ErrCode StopPowerOffStatus();

    /// Switches on what the record names, whatever the power-off state, which stays. RECORD_UNAVAILABLE.
    [[nodiscard]] ErrCode ResetPowerOffStatus();

    /// Whether this plugin switched radios off and owes a restore: one for the process, shared with
    /// UserSleepPowerOffStrategy.
    [[nodiscard]] static bool GetPowerOffState();
    static void SetPowerOffState(bool isPowerOff);

protected:
    /// False, with the reason logged, when Bluetooth stays as it is.
    [[nodiscard]] bool DisableBlueTooth();
    [[nodiscard]] bool EnableBlueTooth();
    [[nodiscard]] bool IsAirPlaneMode() const;

    /// Writes the four statuses to the record.
    [[nodiscard]] bool SavePowerOffRecord() const;

    /// Takes from the record the statuses that are integers in it; false, and nothing changed, when it cannot
    /// be read or is not JSON.
    [[nodiscard]] bool LoadPowerOffRecord();

private:
    void HandleCommonEvent(const StandbyMessage& message);
    void EcmPowerOff();
    void OnEcmTimer();
    void OnStateChanged(const StandbyMessage& message);
    void OnDeviceStateChanged();
    [[nodiscard]] bool EnableWifiComponent();
    [[nodiscard]] bool EnableModem();
    void DisableWifiComponentInner();
    void DisableModemInner();
    void StopPowerOffStatusInner();
    void SendNetworkCtrlCommonEvent() const;
    void DumpShowDetailInfo(std::string& result) const;
    void DumpPowerOffStratgy();

    Relaxed<bool> isScreenOn_ = false;
    Relaxed<int32_t> wifiStatus_ = 0;          ///< 2 switched off here, 1 a connection counts as existing, 0 neither
    Relaxed<int32_t> modemStatus_ = 0;         ///< 2 switched off here
    Relaxed<int32_t> cellularDataStatus_ = 0;  ///< 1 a connection counts as existing; only the record sets it
    Relaxed<int32_t> bluetoothStatus_ = 0;     ///< 2 switched off here
    uint64_t ecmTimerId_ = 0;
    int32_t powerOffCallbackCount_ = 0;
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    bool scrOffHalfHour_ = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_POWER_OFF_STRATEGY_H
