#pragma once

#include <cstdint>
#include <string>

namespace TARN::AAFwk {
class Want {
public:
    void SetAction(const std::string& action);
    std::string GetAction() const;
    void SetParam(const std::string& key, bool value);
    void SetParam(const std::string& key, int32_t value);
    void SetParam(const std::string& key, int64_t value);
    void SetParam(const std::string& key, float value);
    int32_t GetIntParam(const std::string& key, int32_t defaultValue) const;
    bool GetBoolParam(const std::string& key, bool defaultValue) const;
    std::string GetStringParam(const std::string& key) const;
    int64_t GetLongParam(const std::string& key, int64_t defaultValue) const;
    float GetFloatParam(const std::string& key, float defaultValue) const;
};
}  // namespace TARN::AAFwk
