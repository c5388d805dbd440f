#ifndef STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H
#define STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host_reason.h"
#include "ibase_strategy.h"
#include "proxied_app_info.h"

namespace TARN::DevStandbyMgr {

/// Holds idle applications' running locks back from keeping the phone awake.
///
/// In automatic mode proxying is in force in SLEEP from phase SYS_RES_DEEP on, until SLEEP is left. Exempt are
/// applications on the allow list, in the foreground or with a continuous task, and those of the system unless
/// the restrict set names them; while in force it follows changes of those, of who runs, and of the restrict set. The
/// device is told differences only, and what it refuses is logged and tried again at the next change and after
/// StandbyPolicy::retryAfterSeconds. Each answer that differs from the one before is told as a RunningLockReason. In
/// scripted mode it acts only when told.
class RunningLockStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;

    /// Restores what is proxied.
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    ~RunningLockStrategy() override = default;

    /// For derived classes that proxy native processes too: collects them before proxying begins.
    virtual ErrCode InitNativeProcInfo();

    /// Sets or clears exemption bits of a process, and restores or proxies it if that decides.
    virtual void AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag);
    virtual void RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag);

    /// Proxies (true) or restores (false) every process that is not exempted.
    virtual void ProxyAppAndProcess(bool isProxied);

    /// Forgets every process.
    virtual void ClearProxyRecord();

    /// Proxies (true) or restores (false) the running locks of each listed process, a pair that is handed to the power
    /// manager as it is. An empty list, and restoring while nothing is held back, tells it nothing. What the power
    /// manager answers is returned.
    ErrCode ProxyRunningLockList(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& proxiedAppList);

protected:
    bool isProxied_ = false;  ///< proxying is in force

private:
    using Pair = std::pair<int32_t, int32_t>;
    using Native = std::pair<int32_t, std::string>;  ///< uid and name

    void Settle();
    void StartProxy();
    void StopProxy();
    void FollowChanges();
    ErrCode CollectApps();
    void TellApps();
    void CollectNatives();
    void FollowAllowedNatives();
    [[nodiscard]] std::vector<Native> CollectAllowedNatives();
    void RenewNatives();
    void RestoreLeft();
    void LookAtHeld();
    [[nodiscard]] std::vector<Pair> HeldNatives() const;
    void ChangeFlag(int32_t uid, const std::string& name, uint8_t flag, bool isSet);
    void TellReason();

    bool isWanted_ = false;                ///< SLEEP has reached the phase
    bool areNativesKnown_ = false;         ///< the last InitNativeProcInfo succeeded
    bool areAllowedNativesKnown_ = true;   ///< whom of them the allow list names, as far as that matters
    uint8_t unanswered_ = 0;               ///< bits of Question that failed when the applications were collected
    RunningLockReason told_;               ///< the last reason
    bool isSettingUp_ = false;             ///< natives are collected and none of them is held back yet
    bool areAppsLeftAlone_ = false;        ///< ProxyAppAndProcess is meant for natives only
    int64_t sinceMs_ = 0;                  ///< since when proxying is in force
    std::map<Pair, ProxiedAppInfo> apps_;  ///< the running applications' processes, by pid and uid
    std::set<Pair> held_;                  ///< what the power manager holds back, as it confirmed
    std::set<Pair> refused_;               ///< what it would not hold back when it was asked to
    std::set<Pair> owed_;                  ///< what it would not restore
    bool isHeldKnown_ = true;              ///< false: it was asked what it holds, and did not tell
    std::set<std::string> allowed_;        ///< the allow list, as last seen
    std::set<std::string> restricted_;     ///< the restrict set, as last seen
    std::set<Native> exemptedNatives_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H
