#include "power_save_network_strategy.h"

#include "net_policy_client.h"
#include "phone_standby_vocabulary.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "time_provider.h"

namespace TARN::DevStandbyMgr {

using NetManagerStandard::NetPolicyClient;

ErrCode PowerSaveNetStrategy::OnCreated() {
    ResetFirewallAllowList();
    isFirewallEnabled_ = false;
    return ERR_OK;
}

ErrCode PowerSaveNetStrategy::OnDestroy() {
    ResetFirewallAllowList();
    return ERR_OK;
}

void PowerSaveNetStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (IsDumpWord(args, DUMP_FIRST_PARAM, DUMP_DETAIL_INFO) &&
        IsDumpWord(args, DUMP_SECOND_PARAM, DUMP_STRATGY_DETAIL)) {
        result += "=================PowerSaveFireWall=======================\n";
        BaseNetworkStrategy::ShellDump(args, result);
    }
}

void PowerSaveNetStrategy::SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) {
    if (uids.empty()) {
        STANDBYSERVICE_LOGD("allow list is empty");
        return;
    }
    const int32_t status = DelayedSingleton<NetPolicyClient>::GetInstance()->SetDeviceIdleTrustlist(uids, isAdded);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("failed to SetFirewallAllowedList, err code is %{public}d", status);
    } else {
        STANDBYSERVICE_LOGI("secceed SetFirewallAllowedList");
    }
}

ErrCode PowerSaveNetStrategy::InitNetLimitedAppInfo() {
    if (!userSleepState) {
        return BaseNetworkStrategy::InitNetLimitedAppInfo();
    }
    if (GetAllRunningAppInfo() != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (GetExemptionConfig() != ERR_OK) {
        STANDBYSERVICE_LOGE("get exemption config err");
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    return ERR_OK;
}

ErrCode PowerSaveNetStrategy::UpdatePowerSaveFirewall(bool enable) {
    STANDBYSERVICE_LOGD("current_state is %{public}d ,current_phase is %{public}d, conditionType is %{public}d",
                        curState_, curPhase_, TimeProvider::GetCondition(0));
    const bool isDeepest = curState_ == StandbyState::SLEEP && curPhase_ == StandbyPhase::DEEP;
    if (!enable && !isDeepest) {
        DisableNetworkFirewallInner();
        isFirewallEnabled_ = false;
        return ERR_OK;
    }
    if (isFirewallEnabled_) {
        UpdateFirewallAllowList();
        STANDBYSERVICE_LOGD("update firewall list end");
    } else if (EnableNetworkFirewallInner() == ERR_OK) {
        isFirewallEnabled_ = true;
    }
    return ERR_OK;
}

}  // namespace TARN::DevStandbyMgr
