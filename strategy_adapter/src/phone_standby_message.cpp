#include "phone_standby_message.h"

#include <utility>

namespace TARN::DevStandbyMgr {

const AAFwk::Want& ParamsOf(const StandbyMessage& message) {
    static const AAFwk::Want kNone;
    return message.want.has_value() ? *message.want : kNone;
}

StandbyMessage MakeMessage(int32_t eventId, const std::string& action, std::optional<AAFwk::Want> want) {
    StandbyMessage message;
    message.eventId = eventId;
    message.action = action;
    message.want = std::move(want);
    return message;
}

}  // namespace TARN::DevStandbyMgr
