#ifndef STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H
#define STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ibase_strategy.h"

namespace TARN::DevStandbyMgr {

/// An application that the firewall may limit, and the bits that exempt or restrict it.
struct NetLimitedAppInfo {
    std::string name;
    uint8_t exemptionFlags = 0;
};

/// Limits idle applications' network through the device-idle policy: while it is on, only the uids on the
/// policy's trust list reach the network. This class keeps each running application's exemption bits (see
/// ExemptionFlag) from the allow list, the continuous tasks and the foreground, and the trust list from them.
///
/// In automatic mode it follows changes of those, and leaving SLEEP disables the firewall; only MAINTENANCE leaves
/// it to derived classes. In scripted mode it acts only when told. What it knows of applications and whether the
/// firewall is on is one for all network strategies, which therefore stay on one thread. The state and phase fields are
/// for derived classes to keep.
class BaseNetworkStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

    /// Forgets what all network strategies share, as when their library is unloaded.
    static void ForgetShared();

    /// Switches the policy itself: on after the trust list of a firewall that is off is filled, off before the
    /// list is emptied.
    virtual void HandleDeviceIdlePolicy(bool enableFirewall);

protected:
    /// Puts uids on the trust list or takes them off.
    virtual void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) = 0;

    /// ALLOW_LIST_CHANGED for the network: "name" is exempted, or no more.
    virtual void UpdateExemptionList(const StandbyMessage& message);

    /// Looks at the running applications anew and refills the trust list.
    virtual void UpdateFirewallAllowList();

    /// Enables the firewall when the message says SLEEP, phase DEEP; refreshes the trust list of an enabled
    /// one. ERR_STATE_REQ_NOT_MET otherwise, or why it could not.
    virtual ErrCode EnableNetworkFirewall(const StandbyMessage& message);

    /// Disables the firewall when the message says any state but SLEEP. ERR_STATE_REQ_NOT_MET otherwise.
    virtual ErrCode DisableNetworkFirewall(const StandbyMessage& message);

    /// BG_TASK_STATUS_CHANGED: an application's exempting task started or stopped.
    virtual void UpdateBgTaskAppStatus(const StandbyMessage& message);

    /// PROCESS_STATE_CHANGED: an application came to or left the foreground.
    virtual void HandleProcessStatusChanged(const StandbyMessage& message);

    /// Collects the running applications with all their exemption bits. ERR_RUNNING_PROCESSES_UNAVAILABLE
    /// when the applications or the exemptions cannot be had.
    virtual ErrCode InitNetLimitedAppInfo();

    /// Puts the allowed applications on the trust list, or takes them off: those with EXEMPTION, and those
    /// with any other bit but not RESTRICTED.
    virtual void SetNetAllowApps(bool isAllow);

    /// Takes everything back: the policy is off and no running application is on the trust list.
    void ResetFirewallAllowList();
    static void SetFirewallStatus(bool isEnabled);

    /// Replaces what is known by the running applications, with UNRESTRICTED for those of the system.
    ErrCode GetAllRunningAppInfo();

    /// Adds EXEMPTION and RESTRICTED from the allow list and the restrict set.
    ErrCode GetExemptionConfig();

    ErrCode EnableNetworkFirewallInner();
    void DisableNetworkFirewallInner();

    int32_t idlePolicyStatus_ = 0;    ///< what the policy service answered last
    int32_t exemptedTaskType_ = 278;  ///< continuous tasks that exempt, bit 1 << type: 1, 2, 4, 8
    int32_t condition_ = 0;
    int32_t curState_ = 0;
    int32_t curPhase_ = 0;

    static bool isFirewallEnabled_;
    static std::unordered_map<uint32_t, NetLimitedAppInfo> netLimitedAppInfo_;  ///< by uid

private:
    static bool isUseExempting_;  ///< continuous tasks and the foreground count, not only the configuration

    /// Sets or clears bits of the applications that match, and carries the change to the trust list.
    void ChangeFlags(const std::function<bool(uint32_t, const NetLimitedAppInfo&)>& matches, uint8_t flag, bool isSet);
    void AddTaskAndForegroundFlags();
    void EmptyFirewallAllowList();
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H
