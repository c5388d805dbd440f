#ifndef STANDBY_SERVICE_ISTRATEGY_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_ISTRATEGY_MANAGER_ADAPTER_H

#include <memory>
#include <string>
#include <vector>

#include "ibase_strategy.h"

namespace TARN::DevStandbyMgr {

/// Decides which strategies live, and drives them.
class IStrategyManagerAdapter {
public:
    virtual ~IStrategyManagerAdapter() = default;
    virtual bool Init() = 0;
    virtual bool UnInit() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;

    /// Creates the strategies for these configuration names, and those that need no name.
    virtual void RegisterPolicy(const std::vector<std::string>& strategies) = 0;

protected:
    /// The live strategies, in the order in which they hear of everything.
    std::vector<std::shared_ptr<IBaseStrategy>> strategyList_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ISTRATEGY_MANAGER_ADAPTER_H
