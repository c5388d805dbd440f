#include "constraint_manager_adapter.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "battery_srv_client.h"
#include "dump_words.h"
#include "movement_client.h"
#include "standby_constants.h"
#include "standby_names.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using Msdp::MovementClient;
using Msdp::MovementData;
using Msdp::MovementType;
using Msdp::MovementValue;

/// Holds unless the movement service says that the phone left stillness.
class StillnessMonitor : public IConstraintMonitor {
public:
    ConditionFound Look() override {
        switch (MovementClient::GetInstance().GetMovementData(MovementType::TYPE_STILL).value) {
            case MovementValue::VALUE_EXIT:
                return {"still", false, "moving"};
            case MovementValue::VALUE_INVALID:
                STANDBYSERVICE_LOGW("the movement service does not answer, the phone counts as still");
                return {"still", true, "no answer, counts as still"};
            case MovementValue::VALUE_NONE:
                return {"still", true, "nothing reported, counts as still"};
            default:
                return {"still", true, "still"};
        }
    }
};

class UnpluggedMonitor : public IConstraintMonitor {
public:
    ConditionFound Look() override { return Unplugged(PowerMgr::BatterySrvClient::GetInstance().GetPluggedType()); }
};

void OnMovement(const MovementData& movement) {
    const auto service = StandbyServiceImpl::GetInstance();
    if (movement.value != MovementValue::VALUE_EXIT || service == nullptr) {
        return;
    }
    service->GetHandler()->PostTask([] {
        const auto running = StandbyServiceImpl::GetInstance();
        const auto stateManager = running == nullptr ? nullptr : running->GetStateManager();
        if (stateManager != nullptr) {
            stateManager->OnMoved();
        }
    });
}

}  // namespace

ConditionFound Unplugged(int32_t pluggedType) {
    const bool isMet = pluggedType == 0;
    return {"unplugged", isMet, isMet ? "unplugged" : "plugged type " + std::to_string(pluggedType)};
}

bool ConstraintManagerAdapter::Init() {
    if (!StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        return true;
    }
    const auto still = std::make_shared<StillnessMonitor>();
    const auto unplugged = std::make_shared<UnpluggedMonitor>();
    for (const ConstraintEvalParam& step : {ConstraintEvalParam{StandbyState::DARK, StandbyState::NAP},
                                            ConstraintEvalParam{StandbyState::NAP, StandbyState::SLEEP}}) {
        RegisterConstraintCallback(step, still);
        RegisterConstraintCallback(step, unplugged);
    }
    MovementClient::GetInstance().Observe(OnMovement);
    isWatching_ = true;
    return true;
}

bool ConstraintManagerAdapter::UnInit() {
    if (isWatching_) {
        MovementClient::GetInstance().Observe(nullptr);
        isWatching_ = false;
    }
    monitors_.clear();
    return true;
}

void ConstraintManagerAdapter::StartEvalution(const ConstraintEvalParam& params) {
    const auto [first, last] = monitors_.equal_range(params);
    std::vector<ConditionFound> found;
    const bool isMet = std::all_of(
        first, last, [&found](const auto& entry) { return found.emplace_back(entry.second->Look()).isMet; });
    const auto stateManager = StandbyServiceImpl::GetInstance()->GetStateManager();
    stateManager->TakeFound(std::move(found));
    stateManager->EndEvalCurrentState(isMet);
}

void ConstraintManagerAdapter::StopEvalution() {}  // an evaluation is over when StartEvalution returns

void ConstraintManagerAdapter::RegisterConstraintCallback(const ConstraintEvalParam& params,
                                                          const std::shared_ptr<IConstraintMonitor>& monitor) {
    monitors_.emplace(params, monitor);
}

void ConstraintManagerAdapter::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (!IsDetailDump(args)) {
        return;
    }
    for (const auto& [step, monitor] : monitors_) {
        const ConditionFound condition = monitor->Look();
        result += "from " + StateName(step.curState) + " to " + StateName(step.nextState) + ": " + condition.name +
                  (condition.isMet ? ", yes" : ", no") + "\n";
    }
}

}  // namespace TARN::DevStandbyMgr
