#ifndef PLATFORM_APP_MGR_PROXY_H
#define PLATFORM_APP_MGR_PROXY_H

#include <memory>
#include <string>
#include <utility>

#include "broker_registration.h"

namespace TARN::AppExecFwk {

/// The application manager's remote object, typed.
class AppMgrProxy : public IRemoteBroker {
public:
    explicit AppMgrProxy(std::shared_ptr<IRemoteObject> remote) : remote_(std::move(remote)) {}

    static std::string GetDescriptor() { return "tarn.appexecfwk.AppMgr"; }

private:
    std::shared_ptr<IRemoteObject> remote_;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_APP_MGR_PROXY_H
