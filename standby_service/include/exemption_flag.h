#ifndef STANDBY_SERVICE_EXEMPTION_FLAG_H
#define STANDBY_SERVICE_EXEMPTION_FLAG_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TARN::DevStandbyMgr {

/// Why a process may go on while others are held back. None at all: it is held back.
namespace ExemptionFlag {
inline constexpr uint8_t CONTINUOUS_TASK = 0x01;  ///< runs an exempting continuous task
inline constexpr uint8_t FOREGROUND = 0x02;       ///< the user looks at it
inline constexpr uint8_t UNRESTRICTED = 0x10;     ///< belongs to the system
inline constexpr uint8_t EXEMPTION = 0x20;        ///< on the allow list: goes on whatever else is set
inline constexpr uint8_t RESTRICTED = 0x40;       ///< in the restrict set: held back unless on the allow list
}  // namespace ExemptionFlag

/// Whether bits let a process go on.
[[nodiscard]] constexpr bool IsExempted(uint8_t flags) {
    return (flags & ExemptionFlag::EXEMPTION) != 0 || (flags != 0 && (flags & ExemptionFlag::RESTRICTED) == 0);
}

/// Bits as people read them: "on the allow list, in the foreground"; "nothing exempts it" for none.
[[nodiscard]] std::string DescribeExemption(uint8_t flags);

/// Bits as programs write them, in the same order: "allow_list", "foreground".
[[nodiscard]] std::vector<std::string_view> ExemptionKeys(uint8_t flags);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_EXEMPTION_FLAG_H
