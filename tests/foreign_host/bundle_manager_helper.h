#pragma once

#include <memory>

namespace TARN::DevStandbyMgr {
class BundleManagerHelper {
public:
    static std::shared_ptr<BundleManagerHelper> GetInstance();
    [[nodiscard]] bool CheckIsSystemAppByUid(int uid, bool& isSystemApp);
};
}  // namespace TARN::DevStandbyMgr
