#ifndef PLATFORM_WANT_H
#define PLATFORM_WANT_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace TARN::AAFwk {

/// An action and named parameters: what a broadcast or a message carries.
///
/// A typed getter answers its default for an absent key and for a value of another type; an integer may be
/// read as int (its low 32 bits) or as long, a floating-point number as float.
class Want {
public:
    using Value = std::variant<bool, int64_t, double, std::string>;
    using Params = std::map<std::string, Value, std::less<>>;

    Want& SetAction(std::string action) {
        action_ = std::move(action);
        return *this;
    }
    [[nodiscard]] const std::string& GetAction() const noexcept { return action_; }

    Want& SetParam(std::string_view key, bool value) { return Set(key, value); }
    Want& SetParam(std::string_view key, int32_t value) { return Set(key, static_cast<int64_t>(value)); }
    Want& SetParam(std::string_view key, int64_t value) { return Set(key, value); }
    Want& SetParam(std::string_view key, float value) { return Set(key, static_cast<double>(value)); }
    Want& SetParam(std::string_view key, double value) { return Set(key, value); }
    Want& SetParam(std::string_view key, const char* value) { return Set(key, std::string(value)); }
    Want& SetParam(std::string_view key, std::string value) { return Set(key, std::move(value)); }

    [[nodiscard]] bool GetBoolParam(std::string_view key, bool defaultValue) const {
        return Get<bool>(key, defaultValue);
    }
    [[nodiscard]] int32_t GetIntParam(std::string_view key, int32_t defaultValue) const {
        return static_cast<int32_t>(Get<int64_t>(key, defaultValue));
    }
    [[nodiscard]] int64_t GetLongParam(std::string_view key, int64_t defaultValue) const {
        return Get<int64_t>(key, defaultValue);
    }
    [[nodiscard]] float GetFloatParam(std::string_view key, float defaultValue) const {
        return static_cast<float>(Get<double>(key, static_cast<double>(defaultValue)));
    }
    [[nodiscard]] std::string GetStringParam(std::string_view key) const { return Get<std::string>(key, {}); }

    /// Every parameter, by key.
    [[nodiscard]] const Params& GetParams() const noexcept { return params_; }

private:
    template <class T>
    Want& Set(std::string_view key, T value) {
        params_.insert_or_assign(std::string(key), Value(std::move(value)));
        return *this;
    }

    template <class T>
    [[nodiscard]] T Get(std::string_view key, T defaultValue) const {
        const auto found = params_.find(key);
        if (found == params_.end()) {
            return defaultValue;
        }
        const T* value = std::get_if<T>(&found->second);
        return value == nullptr ? std::move(defaultValue) : *value;
    }

    std::string action_;
    Params params_;
};

}  // namespace TARN::AAFwk

#endif  // PLATFORM_WANT_H
