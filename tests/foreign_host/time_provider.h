#pragma once

#include <cstdint>

namespace TARN::DevStandbyMgr {
class TimeProvider {
public:
    static uint32_t GetCondition(int64_t offset);
};
}  // namespace TARN::DevStandbyMgr
