#ifndef PHONE_STRATEGY_RUNNING_LOCK_STRATEGY_EXT_H
#define PHONE_STRATEGY_RUNNING_LOCK_STRATEGY_EXT_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "phone_standby_status.h"
#include "running_lock_strategy.h"

namespace TARN::DevStandbyMgr {

/// Extends the service's running-lock strategy to native processes: those in the restrict set have their locks
/// proxied along with the applications'.
///
/// Listens to and commands what the base does, which calls the operations below at the right transitions.
/// A process that starts after InitNativeProcInfo is unknown until the next one.
class RunningLockStrategyExt : public RunningLockStrategy {
public:
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    ~RunningLockStrategyExt() override = default;

    /// RUNNING_PROCESSES_UNAVAILABLE when the native processes could not be read; then nothing changes.
    ErrCode InitNativeProcInfo() override;

    /// Does nothing at all, not even in the base, while proxying is not in force.
    void AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) override;

    /// Unlike the above it works, and proxies again, whether or not proxying is in force.
    void RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) override;
    void ProxyAppAndProcess(bool isProxied) override;
    void ClearProxyRecord() override;

private:
    [[nodiscard]] ErrCode UpdateNativeProcesses();
    void DumpShowDetailInfo(const std::vector<std::string>& args, std::string& result);

    std::unordered_map<std::string, ProxiedAppInfo> proxiedNativeProcessMap_;  ///< by uid, "_" and name
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_RUNNING_LOCK_STRATEGY_EXT_H
