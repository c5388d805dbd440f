#ifndef STRATEGY_ADAPTER_PHONE_STRATEGY_MANAGER_ADAPTER_EXT_H
#define STRATEGY_ADAPTER_PHONE_STRATEGY_MANAGER_ADAPTER_EXT_H

#include <memory>
#include <string>
#include <vector>

#include "istrategy_manager_adapter.h"

namespace TARN::DevStandbyMgr {

/// Decides which strategies live and passes each message and each dump to all of them, in list order, on the
/// caller's thread. It takes no lock: the service calls it from one thread at a time.
class PhoneStrategyManagerAdapterExt : public IStrategyManagerAdapter {
public:
    ~PhoneStrategyManagerAdapterExt() override = default;

    /// False, and no strategy lives, when there is no configuration or it lists no strategy.
    bool Init() override;
    bool UnInit() override;
    void HandleEvent(const StandbyMessage& message) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

    /// Appends to the live strategies those of fixed rule and those that `strategies` names. A name that is
    /// listed twice lives twice: its one object then hears everything twice, and that is intended.
    void RegisterPolicy(const std::vector<std::string>& strategies) override;

private:
    /// Makes a strategy live if it can be created.
    void Admit(const std::shared_ptr<IBaseStrategy>& strategy);
};

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_STRATEGY_MANAGER_ADAPTER_EXT_H
