#ifndef STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
#define STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H

#include <string_view>

namespace TARN::DevStandbyMgr {

/// The broadcasts that this plugin names itself, by action.
inline constexpr std::string_view COMMON_EVENT_USER_SLEEP_STATE_CHANGED = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STANDBY_VOCABULARY_H
