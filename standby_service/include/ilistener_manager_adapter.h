#ifndef STANDBY_SERVICE_ILISTENER_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_ILISTENER_MANAGER_ADAPTER_H

#include <string>
#include <vector>

#include "standby_message.h"
#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// Owns the listeners that turn the phone's events into standby messages.
class IListenerManagerAdapter {
public:
    virtual bool Init() = 0;
    virtual bool UnInit() = 0;
    virtual ErrCode StartListener() = 0;
    virtual ErrCode StopListener() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual ~IListenerManagerAdapter() = default;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ILISTENER_MANAGER_ADAPTER_H
