#include "phone_network_strategy.h"

#include "exemption_flag.h"
#include "phone_standby_vocabulary.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "time_provider.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr int32_t kNightExemptedTaskType = 340;

/// At night an application that is exempted by UNRESTRICTED alone loses the network.
bool IsAllowedAtNight(uint8_t flags) {
    return (flags & ExemptionFlag::EXEMPTION) != 0 ||
           ((flags & ~ExemptionFlag::UNRESTRICTED) != 0 && (flags & ExemptionFlag::RESTRICTED) == 0);
}

}  // namespace

ErrCode PhoneNetWorkStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("PhonePhoneNetWorkStrategy is now OnCreated");
    ResetFirewallAllowList();
    SetFirewallStatus(false);
    condition_ = static_cast<int32_t>(TimeProvider::GetCondition(0));
    if (condition_ == ConditionType::NIGHT_STANDBY) {
        exemptedTaskType_ = kNightExemptedTaskType;
    }
    return ERR_OK;
}

ErrCode PhoneNetWorkStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("PhoneNetWorkStrategy is now OnDestroy");
    ResetFirewallAllowList();
    return ERR_OK;
}

ErrCode PhoneNetWorkStrategy::DisableNetworkFirewall(const StandbyMessage& message) {
    if (!isFirewallEnabled_) {
        return ERR_STATE_REQ_NOT_MET;
    }
    if (userSleepState) {
        STANDBYSERVICE_LOGW("current is AI sleeping, do nothing");
        return ERR_OK;
    }
    return NetworkStrategy::DisableNetworkFirewall(message);
}

ErrCode PhoneNetWorkStrategy::InitNetLimitedAppInfo() {
    if (GetAllRunningAppInfo() != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (!userSleepState) {
        return NetworkStrategy::InitNetLimitedAppInfo();
    }
    if (GetExemptionConfig() != ERR_OK) {
        STANDBYSERVICE_LOGE("get exemption config err");
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    return ERR_OK;
}

void PhoneNetWorkStrategy::SetNetAllowApps(bool isAllow) {
    std::vector<uint32_t> uids;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        const bool isNight = condition_ == ConditionType::NIGHT_STANDBY;
        if (!IsExempted(app.exemptionFlags) || (isNight && !IsAllowedAtNight(app.exemptionFlags))) {
            continue;
        }
        uids.push_back(uid);
        STANDBYSERVICE_LOGD("uid: %{public}d, name: %{public}s, isAllow: %{public}d", uid, app.name.c_str(), isAllow);
    }
    STANDBYSERVICE_LOGD("all application size: %{public}lu, network allow: %{public}lu", netLimitedAppInfo_.size(),
                        uids.size());
    SetFirewallAllowedList(uids, isAllow);
}

}  // namespace TARN::DevStandbyMgr
