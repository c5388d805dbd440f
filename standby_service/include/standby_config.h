#ifndef STANDBY_SERVICE_STANDBY_CONFIG_H
#define STANDBY_SERVICE_STANDBY_CONFIG_H

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "json_value.h"

namespace TARN::DevStandbyMgr {

/// How the host behaves: on its own as on a phone, or deciding nothing.
enum class HostMode : uint8_t { AUTOMATIC, SCRIPTED };

/// The numbers of the host's own policy in automatic mode. Keys of the object "policy" in the configuration.
struct StandbyPolicy {
    int64_t napAfterSeconds = 300;     ///< "nap_after_s": DARK to NAP, and to the next try
    int64_t sleepAfterSeconds = 1800;  ///< "sleep_after_s": NAP to SLEEP, and to the next try
    int64_t phaseEverySeconds = 600;   ///< "phase_every_s": one phase of SLEEP to the next
    int64_t maintenanceSeconds = 300;  ///< "maintenance_s": length of a MAINTENANCE
    /// "maintenance_after_s": SLEEP before each MAINTENANCE; the last value goes on
    std::vector<int64_t> maintenanceAfterSeconds = {3600, 7200, 14'400};
    int64_t halfHourSeconds = 1800;  ///< "half_hour_s": screen off until it is reported
    int32_t nightStartHour = 22;     ///< "night_start_hour": local hour at which condition 2 begins
    int32_t nightEndHour = 7;        ///< "night_end_hour": local hour at which condition 1 begins
    int64_t retryAfterSeconds = 60;  ///< "retry_after_s": until what the device refused is tried again
    /// "radio_ledger": a ledger of the radios that were switched off lies between service and device
    bool hasRadioLedger = false;
};

/// One entry of a resource-control configuration: names that are allowed, or not.
struct ResCtrlItem {
    bool allow = false;
    std::vector<std::string> names;
};

/// Everything the service is configured with. A default-constructed one is what a phone ships with.
struct StandbyConfig {
    HostMode mode = HostMode::AUTOMATIC;
    int32_t standbyMode = 0;
    std::vector<std::string> strategies = {"FREEZE",      "PUSH",  "NETWORK",         "RUNNING_LOCK",
                                           "SLEEP_CLEAN", "TIMER", "POWER_SAVE_CLEAN"};
    std::map<std::string, bool> halfHourSwitches = {{"poweroff", true}};
    std::map<std::string, int32_t> params;
    /// parameter name, then condition, to the names that are restricted under it
    std::map<std::string, std::map<uint32_t, std::set<std::string>>> persistAllow;
    std::map<std::string, std::shared_ptr<std::vector<ResCtrlItem>>> resCtrl;
    StandbyPolicy policy;

    /// Replaces each key that `object` names. `name` is the object's own, empty for none, in the
    /// message of the InputError that an unknown key or a wrong type throws. The key "policy" is known only if
    /// `withPolicy`.
    void Merge(const JsonValue& object, const std::string& name, bool withPolicy);
};

/// A configuration file: a JSON object with the keys of StandbyConfig, comments allowed. Read once, so that it may
/// come from a pipe and still be laid over many configurations.
class StandbyConfigFile {
public:
    /// Throws InputError, in the file's name, when it cannot be read or is not such an object.
    explicit StandbyConfigFile(const std::string& path);
    ~StandbyConfigFile();
    StandbyConfigFile(StandbyConfigFile&&) noexcept;
    StandbyConfigFile& operator=(StandbyConfigFile&&) noexcept;

    /// Replaces each key of `config` that the file names.
    void LayOver(StandbyConfig& config) const;

private:
    std::string path_;
    JsonDocument document_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_CONFIG_H
