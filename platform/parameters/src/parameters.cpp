#include "parameters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace TARN::system {

int32_t GetStringParameter(const std::string& key, std::string& value, const std::string& defaultValue) {
    return Device::Current().Parameters().Get(key, value, defaultValue);
}

bool GetBoolParameter(const std::string& key, bool defaultValue) {
    static constexpr std::array<std::string_view, 5> kTrue = {"1", "y", "yes", "on", "true"};
    static constexpr std::array<std::string_view, 5> kFalse = {"0", "n", "no", "off", "false"};
    Device* device = Device::Installed();
    std::string value;
    if (device == nullptr || device->Parameters().Get(key, value, "") != 0) {
        return defaultValue;
    }
    if (std::find(kTrue.begin(), kTrue.end(), value) != kTrue.end()) {
        return true;
    }
    return std::find(kFalse.begin(), kFalse.end(), value) == kFalse.end() && defaultValue;
}

}  // namespace TARN::system
