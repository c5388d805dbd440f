#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "standby_message.h"

namespace TARN::DevStandbyMgr {
class IStateManagerAdapter {
public:
    virtual ~IStateManagerAdapter();
    [[nodiscard]] virtual bool Init() = 0;
    [[nodiscard]] virtual bool UnInit() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    virtual void StartEvalCurrentState() = 0;
    virtual void EndEvalCurrentState(bool evalResult) = 0;
    virtual uint32_t TransitToState(uint32_t nextState) = 0;
    virtual uint32_t TransitToStateInner(uint32_t nextState) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual uint32_t GetCurState() = 0;
    virtual uint32_t GetPreState() = 0;
    virtual void BlockCurrentState() = 0;
    virtual void UnblockCurrentState() = 0;
    virtual void OnScreenOffHalfHour(bool scrOffHalfHour, bool repeated) = 0;
    virtual void StopEvalution() = 0;
    virtual int64_t GetScreenOffTimeStamp() = 0;
    virtual bool IsScrOffHalfHourCtrl() = 0;
};
}  // namespace TARN::DevStandbyMgr
