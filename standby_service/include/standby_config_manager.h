#ifndef STANDBY_SERVICE_STANDBY_CONFIG_MANAGER_H
#define STANDBY_SERVICE_STANDBY_CONFIG_MANAGER_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "standby_config.h"

namespace TARN::DevStandbyMgr {

/// Answers what the service is configured with.
class StandbyConfigManager {
public:
    explicit StandbyConfigManager(StandbyConfig config) : config_(std::move(config)) {}

    /// The running service's configuration; null when no service runs.
    [[nodiscard]] static std::shared_ptr<StandbyConfigManager> GetInstance();

    /// Names of the strategies to create, in order.
    [[nodiscard]] std::vector<std::string> GetStrategyConfigList() const;

    /// Whether a half-hour action is on; false when it is not configured.
    [[nodiscard]] bool GetHalfHourSwitch(const std::string& switchName) const;

    /// A standby parameter; 0 when it is not configured.
    [[nodiscard]] int32_t GetStandbyParam(const std::string& paramName) const;

    /// The names that are configured for `paramName` under exactly this condition; empty when there are none.
    /// `isAllow` asks for allowed instead of restricted names and `isApp` for applications instead of
    /// native processes; this service configures restricted natives only.
    [[nodiscard]] std::set<std::string> GetEligiblePersistAllowConfig(const std::string& paramName, uint32_t condition,
                                                                      bool isAllow, bool isApp) const;

    /// The resource-control entries of a name; null when it is not configured.
    [[nodiscard]] std::shared_ptr<std::vector<ResCtrlItem>> GetResCtrlConfig(const std::string& name) const;

    [[nodiscard]] const StandbyConfig& Config() const noexcept { return config_; }

private:
    StandbyConfig config_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_CONFIG_MANAGER_H
