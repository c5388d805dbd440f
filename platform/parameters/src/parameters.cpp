#include "parameters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace TARN::system {

int32_t GetStringParameter(const std::string& key, std::string& value, const std::string& defaultValue) {
    const int32_t code = Device::Current().Fault("system.GetStringParameter");
    value = code != 0 ? defaultValue : Device::Current().Parameters().Find(key).value_or(defaultValue);
    return code;
}

bool GetBoolParameter(const std::string& key, bool defaultValue) {
    static constexpr std::array<std::string_view, 5> kTrue = {"1", "y", "yes", "on", "true"};
    static constexpr std::array<std::string_view, 5> kFalse = {"0", "n", "no", "off", "false"};
    Device* device = Device::Installed();
    if (device == nullptr) {
        return defaultValue;
    }
    if (device->Fault("system.GetBoolParameter") != 0) {
        return false;
    }
    const std::string value = device->Parameters().Find(key).value_or("");
    if (std::find(kTrue.begin(), kTrue.end(), value) != kTrue.end()) {
        return true;
    }
    return std::find(kFalse.begin(), kFalse.end(), value) == kFalse.end() && defaultValue;
}

}  // namespace TARN::system
