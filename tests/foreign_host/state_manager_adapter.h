#pragma once

#include "istate_manager_adapter.h"

namespace TARN::DevStandbyMgr {
class StateManagerAdapter : public IStateManagerAdapter {
public:
    ~StateManagerAdapter() override;
    [[nodiscard]] bool Init() override;
    [[nodiscard]] bool UnInit() override;
    void HandleEvent(const StandbyMessage& message) override;
    void StartEvalCurrentState() override;
    void EndEvalCurrentState(bool evalResult) override;
    uint32_t TransitToState(uint32_t nextState) override;
    uint32_t TransitToStateInner(uint32_t nextState) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    uint32_t GetCurState() override;
    uint32_t GetPreState() override;
    void BlockCurrentState() override;
    void UnblockCurrentState() override;
    void OnScreenOffHalfHour(bool scrOffHalfHour, bool repeated) override;
    void StopEvalution() override;
    int64_t GetScreenOffTimeStamp() override;
    bool IsScrOffHalfHourCtrl() override;
};
}  // namespace TARN::DevStandbyMgr
