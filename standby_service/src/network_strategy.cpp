#include "network_strategy.h"

#include "dump_words.h"
#include "net_policy_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

bool IsAutomatic() {
    return StandbyServiceImpl::GetInstance()->IsAutomatic();
}

}  // namespace

void NetworkStrategy::HandleEvent(const StandbyMessage& message) {
    const AAFwk::Want& want = message.Params();
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            curState_ = want.GetIntParam(CURRENT_STATE, 0);
            if (curState_ == StandbyState::MAINTENANCE && IsAutomatic()) {
                static_cast<void>(DisableNetworkFirewall(message));
            }
            break;
        case StandbyMessageType::PHASE_TRANSIT:
            curState_ = want.GetIntParam(CURRENT_STATE, 0);
            curPhase_ = want.GetIntParam(CURRENT_PHASE, 0);
            if (IsAutomatic()) {
                static_cast<void>(EnableNetworkFirewall(message));
            }
            break;
        case StandbyMessageType::RES_CTRL_CONDITION_CHANGED:
            condition_ = want.GetIntParam(RES_CTRL_CONDITION, 0);
            break;
        default:
            break;
    }
    BaseNetworkStrategy::HandleEvent(message);
}

void NetworkStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (IsDetailDump(args) && IsAutomatic()) {
        result += "\n=================NetworkFirewall=========================\n";
        BaseNetworkStrategy::ShellDump(args, result);
    }
}

void NetworkStrategy::SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) {
    if (IsAskedOnly(uids) || uids.empty()) {
        return;
    }
    const int32_t status =
        DelayedSingleton<NetManagerStandard::NetPolicyClient>::GetInstance()->SetDeviceIdleTrustlist(uids, isAdded);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("the trust list was refused, err code is %{public}d", status);
    }
}

}  // namespace TARN::DevStandbyMgr
