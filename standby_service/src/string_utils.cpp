#include "string_utils.h"

#include <cstdlib>

namespace TARN::DevStandbyMgr {

int64_t StringUtils::StringToNumber(const std::string& text) {
    constexpr int kDecimal = 10;
    return std::strtoll(text.c_str(), nullptr, kDecimal);
}

}  // namespace TARN::DevStandbyMgr
