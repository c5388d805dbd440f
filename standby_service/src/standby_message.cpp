#include "standby_message.h"

namespace TARN::DevStandbyMgr {

const AAFwk::Want& StandbyMessage::Params() const {
    static const AAFwk::Want kNone;
    return want ? *want : kNone;
}

}  // namespace TARN::DevStandbyMgr
