#ifndef STANDBY_SERVICE_NEAREST_NAME_H
#define STANDBY_SERVICE_NEAREST_NAME_H

#include <span>
#include <string_view>

namespace TARN::DevStandbyMgr {

/// The known name that was most likely meant: one that contains what was written, else the one with the fewest letters
/// wrong, capitals or not; empty if nothing is near.
[[nodiscard]] std::string_view NearestName(std::span<const std::string_view> known, std::string_view name);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_NEAREST_NAME_H
