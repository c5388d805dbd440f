#include "phone_network_strategy.h"

#include <cstdint>
#include <vector>

#include "exemption_bits.h"
#include "phone_standby_vocabulary.h"
#include "standby_service_log.h"
#include "time_provider.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr int32_t kNightExemptedTaskType = 340;

/// At night an application that is exempted by UNRESTRICTED alone loses the network.
bool IsAllowedAtNight(uint8_t flags) {
    return (flags & ExemptionBit::EXEMPTED) != 0 ||
           ((flags & ~ExemptionBit::UNRESTRICTED) != 0 && (flags & ExemptionBit::RESTRICTED) == 0);
}

}  // namespace

ErrCode PhoneNetWorkStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("PhonePhoneNetWorkStrategy is now OnCreated");
    ResetFirewallAllowList();
    SetFirewallStatus(false);
    condition_ = static_cast<int32_t>(TimeProvider::GetCondition(0));
    if (condition_ == PhoneCondition::NIGHT) {
        exemptedTaskType_ = kNightExemptedTaskType;
    }
    return PhoneStatus::OK;
}

ErrCode PhoneNetWorkStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("PhoneNetWorkStrategy is now OnDestroy");
    ResetFirewallAllowList();
    return PhoneStatus::OK;
}

ErrCode PhoneNetWorkStrategy::DisableNetworkFirewall(const StandbyMessage& message) {
    if (!isFirewallEnabled_) {
        return PhoneStatus::STATE_REQ_NOT_MET;
    }
    if (userSleepState) {
        STANDBYSERVICE_LOGW("current is AI sleeping, do nothing");
        return PhoneStatus::OK;
    }
    return NetworkStrategy::DisableNetworkFirewall(message);
}

ErrCode PhoneNetWorkStrategy::InitNetLimitedAppInfo() {
    if (GetAllRunningAppInfo() != PhoneStatus::OK) {
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    if (!userSleepState) {
        return NetworkStrategy::InitNetLimitedAppInfo();
    }
    if (GetExemptionConfig() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("get exemption config err");
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    return PhoneStatus::OK;
}

void PhoneNetWorkStrategy::SetNetAllowApps(bool isAllow) {
    std::vector<uint32_t> uids;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        const auto& [name, flags] = app;  // the order of the service's record is agreed on, its names are not
        const bool isNight = condition_ == PhoneCondition::NIGHT;
        if (IsHeldBack(flags) || (isNight && !IsAllowedAtNight(flags))) {
            continue;
        }
        uids.push_back(uid);
        STANDBYSERVICE_LOGD("uid: %{public}d, name: %{public}s, isAllow: %{public}d", uid, name.c_str(), isAllow);
    }
    STANDBYSERVICE_LOGD("all application size: %{public}lu, network allow: %{public}lu", netLimitedAppInfo_.size(),
                        uids.size());
    SetFirewallAllowedList(uids, isAllow);
}

}  // namespace TARN::DevStandbyMgr
