#ifndef STANDBY_SERVICE_ICONSTRAINT_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_ICONSTRAINT_MANAGER_ADAPTER_H

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host_reason.h"

namespace TARN::DevStandbyMgr {

/// The transition that is being evaluated.
struct ConstraintEvalParam {
    int32_t curState = 0;
    int32_t nextState = 0;

    friend auto operator<=>(const ConstraintEvalParam&, const ConstraintEvalParam&) = default;
};

/// One condition of a transition.
class IConstraintMonitor {
public:
    virtual ~IConstraintMonitor() = default;

    /// Whether the condition holds now, and what was found.
    [[nodiscard]] virtual ConditionFound Look() = 0;
};

/// Knows under which conditions the phone may go deeper.
class IConstraintManagerAdapter {
public:
    virtual bool Init() = 0;
    virtual bool UnInit() = 0;

    /// Evaluates the conditions of a transition and tells the state manager the verdict.
    virtual void StartEvalution(const ConstraintEvalParam& params) = 0;
    virtual void StopEvalution() = 0;

    /// Adds a condition to a transition.
    virtual void RegisterConstraintCallback(const ConstraintEvalParam& params,
                                            const std::shared_ptr<IConstraintMonitor>& monitor) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual ~IConstraintManagerAdapter() = default;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ICONSTRAINT_MANAGER_ADAPTER_H
