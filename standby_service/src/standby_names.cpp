#include "standby_names.h"

#include <array>
#include <cstddef>

namespace TARN::DevStandbyMgr {

namespace {

template <size_t N>
std::string NameOf(const std::array<const char*, N>& names, int64_t value) {
    const bool isNamed = value >= 0 && static_cast<size_t>(value) < N;
    return isNamed ? names[static_cast<size_t>(value)] : std::to_string(value);
}

}  // namespace

std::string StateName(int64_t state) {
    static constexpr std::array kNames = {"WORKING", "DARK", "NAP", "MAINTENANCE", "SLEEP"};
    return NameOf(kNames, state);
}

std::string PhaseName(int64_t phase) {
    static constexpr std::array kNames = {"LIGHT", "APP_RES_DEEP", "SYS_RES_DEEP", "DEEP"};
    return NameOf(kNames, phase);
}

}  // namespace TARN::DevStandbyMgr
