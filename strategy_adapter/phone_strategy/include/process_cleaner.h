#ifndef PHONE_STRATEGY_PROCESS_CLEANER_H
#define PHONE_STRATEGY_PROCESS_CLEANER_H

#include <string>
#include <unordered_set>
#include <vector>

#include "running_process_info.h"

namespace TARN::DevStandbyMgr {

/// Which processes may be killed, and the killing: the rule that both clean strategies share. Its log lines carry
/// the source file of the strategy that owns it.
class ProcessCleaner {
public:
    /// `sourceFile` is a literal.
    explicit ProcessCleaner(const char* sourceFile) : sourceFile_(sourceFile) {}

    /// Takes from a resource-control configuration the bundle names of system applications that may be killed
    /// nonetheless: those of its first entry that does not allow. Without one, what was taken before stays.
    void LoadConfig(const std::string& configName);
    void ForgetConfig() { canKillSystemAppList_.clear(); }

    /// Replaces `processes` with the running application processes. False, and logged, when it cannot.
    [[nodiscard]] bool FetchRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& processes) const;

    /// Whether the process may be killed: a listed bundle, or anything but a confirmed system application.
    [[nodiscard]] bool CankillProcess(const AppExecFwk::RunningProcessInfo& process) const;

    /// Kills one process; a failure is logged and not tried again.
    void KillProcessByPid(int32_t pid) const;

private:
    const char* sourceFile_;
    std::unordered_set<std::string> canKillSystemAppList_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_PROCESS_CLEANER_H
