#ifndef STANDBY_SERVICE_ISTATE_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_ISTATE_MANAGER_ADAPTER_H

#include <cstdint>
#include <string>
#include <vector>

#include "host_reason.h"
#include "standby_message.h"
#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// Decides the standby state and phase of the phone.
class IStateManagerAdapter {
public:
    virtual ~IStateManagerAdapter() = default;
    virtual bool Init() = 0;
    virtual bool UnInit() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;

    /// Has the conditions of the next transition evaluated; the verdict comes through EndEvalCurrentState.
    virtual void StartEvalCurrentState() = 0;
    virtual void EndEvalCurrentState(bool evalResult) = 0;

    /// What the evaluation found whose verdict comes next.
    virtual void TakeFound(std::vector<ConditionFound> found) = 0;

    /// Goes to another state unless the current one is blocked.
    virtual uint32_t TransitToState(uint32_t nextState) = 0;
    virtual uint32_t TransitToStateInner(uint32_t nextState) = 0;

    /// The phone left stillness: back to DARK from any deeper state.
    virtual void OnMoved() = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    [[nodiscard]] virtual uint32_t GetCurState() = 0;
    [[nodiscard]] virtual uint32_t GetPreState() = 0;

    /// Holds the phone in its present state until UnblockCurrentState.
    virtual void BlockCurrentState() = 0;
    virtual void UnblockCurrentState() = 0;

    /// The screen has been off for half an hour (true), or is on again (false). `repeated` reports tell
    /// nothing new and are dropped.
    virtual void OnScreenOffHalfHour(bool scrOffHalfHour, bool repeated) = 0;
    virtual void StopEvalution() = 0;

    /// When the screen last went off, milliseconds of the wall clock; 0 when it is on.
    [[nodiscard]] virtual int64_t GetScreenOffTimeStamp() = 0;
    [[nodiscard]] virtual bool IsScrOffHalfHourCtrl() = 0;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ISTATE_MANAGER_ADAPTER_H
