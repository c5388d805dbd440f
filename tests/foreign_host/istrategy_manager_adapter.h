#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ibase_strategy.h"

namespace TARN::DevStandbyMgr {
class IStrategyManagerAdapter {
public:
    virtual ~IStrategyManagerAdapter();
    [[nodiscard]] virtual bool Init() = 0;
    [[nodiscard]] virtual bool UnInit() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual void RegisterPolicy(const std::vector<std::string>& strategies) = 0;

protected:
    std::vector<std::shared_ptr<IBaseStrategy>> strategyList_;
};
}  // namespace TARN::DevStandbyMgr
