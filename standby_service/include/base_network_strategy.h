#ifndef STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H
#define STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H

#include <cstdint>
#include <set>
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

/// Limits idle applications' network through the device-idle policy: while it is on, only the uids on the policy's
/// trust list reach the network.
///
/// Who may pass is derived from what is true of the running applications (RunningApplications, the allow list, the
/// restrict set) by the rule of the strategy that the moment belongs to: its virtual InitNetLimitedAppInfo and
/// SetNetAllowApps. The device is told the difference to what it says it holds. What it refuses is logged and, in
/// automatic mode, tried again at the next change and after StandbyPolicy::retryAfterSeconds; a trust list is never
/// emptied under a policy that stayed on, and the policy goes on only once its list could be derived.
///
/// Each answer that differs from the one before is told as a FirewallReason.
///
/// In automatic mode the firewall follows changes, and leaving SLEEP disables it; only MAINTENANCE leaves it to derived
/// classes. In scripted mode it acts only when told. What is known of applications and whether the firewall is on is
/// one for all network strategies, which therefore stay on one thread. The state and phase fields are for derived
/// classes to keep.
class BaseNetworkStrategy : public IBaseStrategy {
public:
    BaseNetworkStrategy() = default;
    ~BaseNetworkStrategy() override;
    BaseNetworkStrategy(const BaseNetworkStrategy&) = delete;
    BaseNetworkStrategy& operator=(const BaseNetworkStrategy&) = delete;

    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

    /// Forgets what all network strategies share, as when their library is unloaded.
    static void ForgetShared();

    /// Puts the firewall up, or makes sure that it is; takes it down.
    virtual void HandleDeviceIdlePolicy(bool enableFirewall);

protected:
    /// Whose rule a strategy brings: that of deep standby, or that of the time while the user sleeps.
    enum class Firewall : uint8_t { DEEP_STANDBY, USER_SLEEP };

    explicit BaseNetworkStrategy(Firewall kind) : kind_(kind) {}

    /// Puts uids on the trust list or takes them off.
    virtual void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) = 0;

    /// ALLOW_LIST_CHANGED: follows it if it is the network's.
    virtual void UpdateExemptionList(const StandbyMessage& message);

    /// Looks at the running applications anew and brings the trust list to what they are.
    virtual void UpdateFirewallAllowList();

    /// Enables the firewall when the message says SLEEP, phase DEEP; refreshes the trust list of an enabled
    /// one. ERR_STATE_REQ_NOT_MET otherwise, or why it could not.
    virtual ErrCode EnableNetworkFirewall(const StandbyMessage& message);

    /// Disables the firewall when the message says any state but SLEEP. ERR_STATE_REQ_NOT_MET otherwise.
    virtual ErrCode DisableNetworkFirewall(const StandbyMessage& message);

    /// BG_TASK_STATUS_CHANGED: follows it.
    virtual void UpdateBgTaskAppStatus(const StandbyMessage& message);

    /// HOST_REFRESH: applications started, ended or changed place, or something is to be tried again.
    virtual void HandleProcessStatusChanged(const StandbyMessage& message);

    /// Collects the running applications with all their exemption bits. ERR_RUNNING_PROCESSES_UNAVAILABLE
    /// when the applications or the exemptions cannot be had.
    virtual ErrCode InitNetLimitedAppInfo();

    /// Puts the allowed applications on the trust list, or takes them off: those with EXEMPTION, and those
    /// with any other bit but not RESTRICTED.
    virtual void SetNetAllowApps(bool isAllow);

    /// Takes everything back: the policy is off and nobody is on the trust list, whoever put him there.
    void ResetFirewallAllowList();
    static void SetFirewallStatus(bool isEnabled);

    /// Replaces what is known by the running applications, with UNRESTRICTED for those of the system.
    ErrCode GetAllRunningAppInfo();

    /// Adds EXEMPTION and RESTRICTED from the allow list and the restrict set.
    ErrCode GetExemptionConfig();

    /// 0, or why the firewall could not go up: no look-up, or what the policy service answered.
    ErrCode EnableNetworkFirewallInner();
    void DisableNetworkFirewallInner();

    /// For derived classes that hand uids to the device: true, and nothing to do, while SetNetAllowApps is only asked
    /// whom it would allow.
    static bool IsAskedOnly(const std::vector<uint32_t>& uids);

    /// The firewall that could not go up yet is wanted no more.
    void GiveUpPending();

    /// Brings the device to what is wanted now, if this strategy is the one in charge.
    void FollowChanges();

    int32_t idlePolicyStatus_ = 0;    ///< how the firewall's last switching ended
    int32_t exemptedTaskType_ = 278;  ///< continuous tasks that exempt, bit 1 << type: 1, 2, 4, 8
    int32_t condition_ = 0;
    int32_t curState_ = 0;
    int32_t curPhase_ = 0;

    static bool isFirewallEnabled_;
    static std::unordered_map<uint32_t, NetLimitedAppInfo> netLimitedAppInfo_;  ///< by uid

private:
    void Follow(const StandbyMessage& message);
    ErrCode Settle();
    ErrCode PutUp();
    ErrCode TakeDown();
    ErrCode DeriveAllowed(std::set<uint32_t>& allowed);
    ErrCode CollectApps();
    [[nodiscard]] std::set<uint32_t> AskWhoIsAllowed();
    void TellReason(ErrCode status, const std::set<uint32_t>& allowed) const;
    bool TellTrustlist(const std::set<uint32_t>& wanted, bool isSwitching);
    bool AddTaskAndForegroundFlags();
    void DumpApplications(std::string& result);

    Firewall kind_ = Firewall::USER_SLEEP;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_BASE_NETWORK_STRATEGY_H
