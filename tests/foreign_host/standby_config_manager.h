#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace TARN::DevStandbyMgr {
struct ResourceControlEntry {
    bool allow;
    std::vector<std::string> names;
};

class StandbyConfigManager {
public:
    static std::shared_ptr<StandbyConfigManager> GetInstance();
    std::vector<std::string> GetStrategyConfigList();
    bool GetHalfHourSwitch(const std::string& name);
    int32_t GetStandbyParam(const std::string& name);
    std::set<std::string> GetEligiblePersistAllowConfig(const std::string& name, uint32_t condition, bool isAllow,
                                                        bool isApp);
    std::shared_ptr<std::vector<ResourceControlEntry>> GetResCtrlConfig(const std::string& name);
};
}  // namespace TARN::DevStandbyMgr
