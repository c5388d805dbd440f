#ifndef STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H
#define STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ibase_strategy.h"
#include "proxied_app_info.h"

namespace TARN::DevStandbyMgr {

/// Holds idle applications' running locks back from keeping the phone awake.
///
/// In automatic mode proxying is in force in SLEEP from phase SYS_RES_DEEP on, until SLEEP is left. Exempt are
/// applications on the allow list, in the foreground or with a continuous task, and those of the system unless
/// the restrict set names them. In scripted mode it acts only when told.
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

    /// Proxies (true) or restores (false) the running locks of each listed process, pid and uid.
    ErrCode ProxyRunningLockList(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& proxiedAppList);

protected:
    /// A process's key: its decimal uid, "_" and its name.
    [[nodiscard]] static std::string KeyOf(int32_t uid, const std::string& name);

    bool isProxied_ = false;  ///< proxying is in force

private:
    void StartProxy();
    void StopProxy();
    ErrCode InitProxiedAppInfo();
    void ExemptAllowedNatives();
    void UpdateExemptionList(const StandbyMessage& message);
    void ChangeFlag(int32_t uid, const std::string& name, uint8_t flag, bool isSet);
    void ChangeFlagOfUid(const StandbyMessage& message, uint8_t flag, bool isSet);

    std::unordered_map<std::string, ProxiedAppInfo> proxiedAppInfo_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_RUNNING_LOCK_STRATEGY_H
