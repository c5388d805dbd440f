#ifndef PLATFORM_PARAMETERS_H
#define PLATFORM_PARAMETERS_H

#include <cstdint>
#include <optional>
#include <string>

#include "device.h"

namespace TARN::system {

/// The store of system parameters behind the functions below.
class Parameters {
public:
    virtual ~Parameters() = default;

    /// The parameter's text; nothing when it is not set.
    [[nodiscard]] virtual std::optional<std::string> Find(const std::string& key) const = 0;
};

/// Reads a parameter as text into `value`; `defaultValue` when it is not set or cannot be read. Returns 0 on
/// success.
[[nodiscard]] int32_t GetStringParameter(const std::string& key, std::string& value, const std::string& defaultValue);

/// Reads a parameter as a bool: "1", "y", "yes", "on", "true" and "0", "n", "no", "off", "false"; anything
/// else, a parameter that is not set and a device that is not there give `defaultValue`.
[[nodiscard]] bool GetBoolParameter(const std::string& key, bool defaultValue);

}  // namespace TARN::system

#endif  // PLATFORM_PARAMETERS_H
