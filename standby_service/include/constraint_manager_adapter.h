#ifndef STANDBY_SERVICE_CONSTRAINT_MANAGER_ADAPTER_H
#define STANDBY_SERVICE_CONSTRAINT_MANAGER_ADAPTER_H

#include <cstdint>
#include <map>

#include "iconstraint_manager_adapter.h"

namespace TARN::DevStandbyMgr {

/// The condition of every way deeper that the phone is not plugged in, as the battery service's answer has it.
[[nodiscard]] ConditionFound Unplugged(int32_t pluggedType);

/// The service's own constraint manager.
///
/// In automatic mode a phone goes deeper (DARK to NAP, NAP to SLEEP) only while it is still and unplugged,
/// and movement brings it back to DARK. A phone whose movement service reports nothing counts as still.
/// In scripted mode it has no condition of its own and watches nothing.
class ConstraintManagerAdapter : public IConstraintManagerAdapter {
public:
    bool Init() override;
    bool UnInit() override;
    void StartEvalution(const ConstraintEvalParam& params) override;
    void StopEvalution() override;
    void RegisterConstraintCallback(const ConstraintEvalParam& params,
                                    const std::shared_ptr<IConstraintMonitor>& monitor) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

private:
    std::multimap<ConstraintEvalParam, std::shared_ptr<IConstraintMonitor>> monitors_;
    bool isWatching_ = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_CONSTRAINT_MANAGER_ADAPTER_H
