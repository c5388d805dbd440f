#ifndef STANDBY_SERVICE_STANDBY_NAMES_H
#define STANDBY_SERVICE_STANDBY_NAMES_H

#include <cstdint>
#include <string>
#include <string_view>

namespace TARN::DevStandbyMgr {

/// What people call a standby state, "SLEEP"; the number of a value that has no name.
[[nodiscard]] std::string StateName(int64_t state);

/// The same for a phase within SLEEP, "APP_RES_DEEP".
[[nodiscard]] std::string PhaseName(int64_t phase);

/// The name of a message by its identifier, "STATE_TRANSIT"; empty for one that has none.
[[nodiscard]] std::string_view MessageName(int64_t eventId) noexcept;

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_NAMES_H
