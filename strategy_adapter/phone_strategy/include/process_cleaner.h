#ifndef PHONE_STRATEGY_PROCESS_CLEANER_H
#define PHONE_STRATEGY_PROCESS_CLEANER_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "running_process_info.h"

namespace TARN::DevStandbyMgr {

/// Which processes may be killed, and the killing: the rule that both clean strategies share. It logs nothing, since
/// each line belongs to the strategy that cleans.
class ProcessCleaner {
public:
    /// Takes from a resource-control configuration the bundle names of system applications that may be killed
    /// nonetheless: those of its first entry that does not allow. Without one, what was taken before stays. False
    /// when there is no such configuration.
    [[nodiscard]] bool LoadConfig(const std::string& configName);
    void ForgetConfig() { canKillSystemAppList_.clear(); }

    /// Whether one of the process's bundles is in the list.
    [[nodiscard]] bool IsListed(const AppExecFwk::RunningProcessInfo& process) const;

    /// Whether the process is known to be a system application's; a uid that cannot be classified is not.
    [[nodiscard]] static bool IsSystemApp(const AppExecFwk::RunningProcessInfo& process);

    /// Kills one process. False when it fails.
    [[nodiscard]] bool Kill(int32_t pid);

private:
    std::unordered_map<std::string, std::string> killed_ = {{"pid", ""}};  ///< kept: a clean may kill thousands
    std::unordered_set<std::string> canKillSystemAppList_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_PROCESS_CLEANER_H
