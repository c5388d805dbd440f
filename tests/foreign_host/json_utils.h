#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace TARN::DevStandbyMgr {
class JsonUtils {
public:
    [[nodiscard]] static bool LoadJsonValueFromFile(nlohmann::json& value, const std::string& path);
    [[nodiscard]] static bool DumpJsonValueToFile(const nlohmann::json& value, const std::string& path);
};
}  // namespace TARN::DevStandbyMgr
