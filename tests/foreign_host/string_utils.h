#pragma once

#include <cstdint>
#include <string>

namespace TARN::DevStandbyMgr {
class StringUtils {
public:
    static int64_t StringToNumber(const std::string& text);
};
}  // namespace TARN::DevStandbyMgr
