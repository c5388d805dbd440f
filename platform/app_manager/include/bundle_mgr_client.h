#ifndef PLATFORM_BUNDLE_MGR_CLIENT_H
#define PLATFORM_BUNDLE_MGR_CLIENT_H

#include <cstdint>

#include "device.h"

namespace TARN::AppExecFwk {

/// The bundle manager: what is installed, and as what.
class BundleMgrClient {
public:
    virtual ~BundleMgrClient() = default;

    static BundleMgrClient& GetInstance() { return Device::Current().Bundles(); }

    /// Tells in `isSystemApp` whether the application with this uid belongs to the system.
    /// False, and `isSystemApp` untouched, when the uid is not known.
    virtual bool CheckIsSystemAppByUid(int32_t uid, bool& isSystemApp) = 0;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_BUNDLE_MGR_CLIENT_H
