#ifndef STRATEGY_ADAPTER_EXEMPTION_BITS_H
#define STRATEGY_ADAPTER_EXEMPTION_BITS_H

#include <cstdint>

namespace TARN::DevStandbyMgr {

/// The bits of the service's exemption flags that decide whether a process is held back.
namespace ExemptionBit {
inline constexpr uint8_t UNRESTRICTED = 0x10;  ///< held back by nobody yet
inline constexpr uint8_t EXEMPTED = 0x20;      ///< goes on whatever else is set
inline constexpr uint8_t RESTRICTED = 0x40;    ///< held back unless exempted
}  // namespace ExemptionBit

/// Whether a process with these bits is held back; one without any bit is.
[[nodiscard]] constexpr bool IsHeldBack(uint8_t flags) {
    return (flags & ExemptionBit::EXEMPTED) == 0 && (flags == 0 || (flags & ExemptionBit::RESTRICTED) != 0);
}

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_EXEMPTION_BITS_H
