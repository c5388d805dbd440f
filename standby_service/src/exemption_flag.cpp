#include "exemption_flag.h"

#include <array>
#include <utility>

namespace TARN::DevStandbyMgr {

std::string DescribeExemption(uint8_t flags) {
    static constexpr std::array<std::pair<uint8_t, const char*>, 5> kReasons = {
        {{ExemptionFlag::EXEMPTION, "on the allow list"},
         {ExemptionFlag::RESTRICTED, "in the restrict set"},
         {ExemptionFlag::FOREGROUND, "in the foreground"},
         {ExemptionFlag::CONTINUOUS_TASK, "runs a continuous task"},
         {ExemptionFlag::UNRESTRICTED, "belongs to the system"}}};
    std::string text;
    for (const auto& [flag, reason] : kReasons) {
        if ((flags & flag) != 0) {
            text += (text.empty() ? "" : ", ") + std::string(reason);
        }
    }
    return text.empty() ? "nothing exempts it" : text;
}

}  // namespace TARN::DevStandbyMgr
