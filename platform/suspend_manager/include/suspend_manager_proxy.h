#ifndef PLATFORM_SUSPEND_MANAGER_PROXY_H
#define PLATFORM_SUSPEND_MANAGER_PROXY_H

#include <memory>
#include <string>
#include <utility>

#include "broker_registration.h"

namespace TARN::SuspendManager {

/// The suspend manager's remote object, typed.
class SuspendManagerProxy : public IRemoteBroker {
public:
    explicit SuspendManagerProxy(std::shared_ptr<IRemoteObject> remote) : remote_(std::move(remote)) {}

    static std::string GetDescriptor() { return "tarn.suspendmanager.ISuspendManager"; }

private:
    std::shared_ptr<IRemoteObject> remote_;
};

}  // namespace TARN::SuspendManager

#endif  // PLATFORM_SUSPEND_MANAGER_PROXY_H
