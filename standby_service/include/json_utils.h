#ifndef STANDBY_SERVICE_JSON_UTILS_H
#define STANDBY_SERVICE_JSON_UTILS_H

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace TARN::DevStandbyMgr {

/// JSON files of the service, below the device's file root.
class JsonUtils {
public:
    /// Reads the file at `filePath`. False, and `value` untouched, when it cannot be read or is not JSON.
    [[nodiscard]] static bool LoadJsonValueFromFile(nlohmann::json& value, const std::string& filePath);

    /// Replaces the file at `filePath`: a crash leaves the old or the new content whole. False when it cannot.
    [[nodiscard]] static bool DumpJsonValueToFile(const nlohmann::json& value, const std::string& filePath);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_JSON_UTILS_H
