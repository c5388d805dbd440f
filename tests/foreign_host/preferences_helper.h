#pragma once

#include <memory>
#include <string>

namespace TARN::NativePreferences {
class Preferences {
public:
    bool GetBool(const std::string& key, bool defaultValue);
    [[nodiscard]] int PutBool(const std::string& key, bool value);
    [[nodiscard]] int FlushSync();
};

class PreferencesHelper {
public:
    static std::shared_ptr<Preferences> GetPreferences(const std::string& path, int& errCode);
    [[nodiscard]] static int RemovePreferencesFromCache(const std::string& path);
};
}  // namespace TARN::NativePreferences
