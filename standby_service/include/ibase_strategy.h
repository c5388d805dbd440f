#ifndef STANDBY_SERVICE_IBASE_STRATEGY_H
#define STANDBY_SERVICE_IBASE_STRATEGY_H

#include <string>
#include <vector>

#include "standby_message.h"
#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// One way of saving power. Held by shared pointers; every call arrives on the service's handler thread.
class IBaseStrategy {
public:
    /// Takes one message; a strategy ignores the identifiers that are not its own.
    virtual void HandleEvent(const StandbyMessage& message) = 0;

    /// Called before the strategy becomes live. Anything but ERR_OK keeps it out.
    virtual ErrCode OnCreated() = 0;

    /// Called when the strategy leaves; the object may live on and be created again.
    virtual ErrCode OnDestroy() = 0;

    /// Appends to `result` what the dump words ask of this strategy.
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result);

    virtual ~IBaseStrategy() = default;
};

inline void IBaseStrategy::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {}

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_IBASE_STRATEGY_H
