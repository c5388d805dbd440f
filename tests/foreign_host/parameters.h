#pragma once

#include <string>

namespace TARN::system {
[[nodiscard]] int GetStringParameter(const std::string& key, std::string& value, const std::string& defaultValue);
[[nodiscard]] bool GetBoolParameter(const std::string& key, bool defaultValue);
}  // namespace TARN::system
