#ifndef SLEEP_DETECTION_SATURATING_H
#define SLEEP_DETECTION_SATURATING_H

#include <cstdint>
#include <limits>

namespace TARN::DevStandbyMgr {

/// Sums of times that may be any number at all: one that does not fit is the nearest limit.
[[nodiscard]] constexpr int64_t SaturatingAdd(int64_t a, int64_t b) {
    int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        return b < 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
    }
    return sum;
}

[[nodiscard]] constexpr int64_t SaturatingSub(int64_t a, int64_t b) {
    int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        return b > 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
    }
    return difference;
}

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_SATURATING_H
