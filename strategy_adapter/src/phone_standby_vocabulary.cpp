#include "phone_standby_vocabulary.h"

namespace TARN::DevStandbyMgr {

Relaxed<bool> userSleepState = false;

}  // namespace TARN::DevStandbyMgr
