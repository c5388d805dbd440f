#include "json_utils.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "device.h"
#include "file_util.h"

namespace TARN::DevStandbyMgr {

bool JsonUtils::LoadJsonValueFromFile(nlohmann::json& value, const std::string& filePath) {
    std::string text;
    if (Device::Current().Fault("JsonUtils.LoadJsonValueFromFile") != 0 || !FileUtil::LoadFile(filePath, text)) {
        return false;
    }
    nlohmann::json parsed = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (parsed.is_discarded()) {
        return false;
    }
    value = std::move(parsed);
    return true;
}

bool JsonUtils::DumpJsonValueToFile(const nlohmann::json& value, const std::string& filePath) {
    return Device::Current().Fault("JsonUtils.DumpJsonValueToFile") == 0 &&
           FileUtil::ReplaceFile(filePath, value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

}  // namespace TARN::DevStandbyMgr
