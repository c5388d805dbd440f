#pragma once

#include <list>
#include <memory>

#include "system_process_info.h"

namespace TARN::DevStandbyMgr {
class AbilityManagerHelper {
public:
    static std::shared_ptr<AbilityManagerHelper> GetInstance();
    [[nodiscard]] bool GetRunningSystemProcess(std::list<AppExecFwk::SystemProcessInfo>& infos);
};
}  // namespace TARN::DevStandbyMgr
