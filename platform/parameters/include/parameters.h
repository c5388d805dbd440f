#ifndef PLATFORM_PARAMETERS_H
#define PLATFORM_PARAMETERS_H

#include <cstdint>
#include <string>

#include "device.h"

namespace TARN::system {

/// The store of system parameters behind the functions below.
class Parameters {
public:
    virtual ~Parameters() = default;

    /// Reads `key` into `value`, or `defaultValue` when it is not set. Returns 0 on success.
    virtual int32_t Get(const std::string& key, std::string& value, const std::string& defaultValue) = 0;
};

/// Reads a parameter as text into `value`; `defaultValue` when it is not set. Returns 0 on success.
int32_t GetStringParameter(const std::string& key, std::string& value, const std::string& defaultValue);

/// Reads a parameter as a bool: "1", "y", "yes", "on", "true" and "0", "n", "no", "off", "false"; anything
/// else, a parameter that is not set and a store that is not there give `defaultValue`.
bool GetBoolParameter(const std::string& key, bool defaultValue);

}  // namespace TARN::system

#endif  // PLATFORM_PARAMETERS_H
