#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "standby_message.h"

namespace TARN::AppExecFwk {
class EventHandler;
}

namespace TARN::DevStandbyMgr {
class IConstraintManagerAdapter;
class IListenerManagerAdapter;
class IStateManagerAdapter;
class IStrategyManagerAdapter;

class AllowInfo {
public:
    std::string GetName() const;
};

class StandbyServiceImpl {
public:
    static std::shared_ptr<StandbyServiceImpl> GetInstance();
    void RegisterPluginInner(IConstraintManagerAdapter* constraintManager, IListenerManagerAdapter* listenerManager,
                             IStrategyManagerAdapter* strategyManager, IStateManagerAdapter* stateManager);
    void DispatchEvent(const StandbyMessage& message);
    std::shared_ptr<AppExecFwk::EventHandler> GetHandler();
    std::shared_ptr<IStateManagerAdapter> GetStateManager();
    [[nodiscard]] int32_t GetAllowList(uint32_t allowType, std::vector<AllowInfo>& allowInfos, uint32_t reasonCode);
    [[nodiscard]] int32_t GetEligiableRestrictSet(uint32_t allowType, const std::string& strategyName,
                                                  uint32_t reasonCode, std::set<std::string>& restrictSet);
};
}  // namespace TARN::DevStandbyMgr
