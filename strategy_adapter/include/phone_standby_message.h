#ifndef STRATEGY_ADAPTER_PHONE_STANDBY_MESSAGE_H
#define STRATEGY_ADAPTER_PHONE_STANDBY_MESSAGE_H

#include <cstdint>
#include <optional>
#include <string>

#include "standby_message.h"

namespace TARN::DevStandbyMgr {

/// A message's parameters, none when it carries no Want: a sender that forgot it must not bring the service down.
[[nodiscard]] const AAFwk::Want& ParamsOf(const StandbyMessage& message);

/// A message of the plugin's own; `action` is empty unless it is a COMMON_EVENT.
[[nodiscard]] StandbyMessage MakeMessage(int32_t eventId, const std::string& action,
                                         std::optional<AAFwk::Want> want = {});

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STANDBY_MESSAGE_H
