#ifndef STANDBY_SERVICE_STRING_UTILS_H
#define STANDBY_SERVICE_STRING_UTILS_H

#include <cstdint>
#include <string>

namespace TARN::DevStandbyMgr {

class StringUtils {
public:
    /// The decimal integer that `text` begins with, after white space and a sign, as strtoll reads it: 0 when
    /// there is none, the nearest limit when it does not fit.
    [[nodiscard]] static int64_t StringToNumber(const std::string& text);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STRING_UTILS_H
