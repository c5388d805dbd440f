#include "power_save_network_strategy.h"

#include "net_policy_client.h"
#include "phone_dump_words.h"
#include "phone_standby_vocabulary.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "time_provider.h"

namespace TARN::DevStandbyMgr {

using NetManagerStandard::NetPolicyClient;

namespace {
constexpr int32_t kDeepestPhase = 3;
}

ErrCode PowerSaveNetStrategy::OnCreated() {
    ResetFirewallAllowList();
    isFirewallEnabled_ = false;
    return PhoneStatus::OK;
}

ErrCode PowerSaveNetStrategy::OnDestroy() {
    ResetFirewallAllowList();
    return PhoneStatus::OK;
}

void PowerSaveNetStrategy::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (AsksForDetails(args)) {
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
    if (status != PhoneStatus::OK) {
        STANDBYSERVICE_LOGW("failed to SetFirewallAllowedList, err code is %{public}d", status);
    } else {
        STANDBYSERVICE_LOGI("secceed SetFirewallAllowedList");
    }
}

ErrCode PowerSaveNetStrategy::InitNetLimitedAppInfo() {
    if (!userSleepState) {
        return BaseNetworkStrategy::InitNetLimitedAppInfo();
    }
    if (GetAllRunningAppInfo() != PhoneStatus::OK) {
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (GetExemptionConfig() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("get exemption config err");
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    return PhoneStatus::OK;
}

ErrCode PowerSaveNetStrategy::UpdatePowerSaveFirewall(bool enable) {
    STANDBYSERVICE_LOGD("current_state is %{public}d ,current_phase is %{public}d, conditionType is %{public}d",
                        curState_, curPhase_, TimeProvider::GetCondition(0));
    const bool isDeepest = curState_ == StandbyState::SLEEP && curPhase_ == kDeepestPhase;
    if (!enable && !isDeepest) {
        DisableNetworkFirewallInner();
        isFirewallEnabled_ = false;
        return PhoneStatus::OK;
    }
    if (isFirewallEnabled_) {
        UpdateFirewallAllowList();
        STANDBYSERVICE_LOGD("update firewall list end");
    } else if (EnableNetworkFirewallInner() == PhoneStatus::OK) {
        isFirewallEnabled_ = true;
    }
    return PhoneStatus::OK;
}

}  // namespace TARN::DevStandbyMgr
