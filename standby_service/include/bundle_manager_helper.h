#ifndef STANDBY_SERVICE_BUNDLE_MANAGER_HELPER_H
#define STANDBY_SERVICE_BUNDLE_MANAGER_HELPER_H

#include <memory>

namespace TARN::DevStandbyMgr {

/// The service's way to the bundle manager.
class BundleManagerHelper {
public:
    [[nodiscard]] static std::shared_ptr<BundleManagerHelper> GetInstance();

    /// Tells whether the application with this uid belongs to the system. False when the uid is not known.
    [[nodiscard]] bool CheckIsSystemAppByUid(int uid, bool& isSystemApp);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_BUNDLE_MANAGER_HELPER_H
