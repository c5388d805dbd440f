#include "base_network_strategy.h"

#include <algorithm>
#include <memory>
#include <set>

#include "app_mgr_helper.h"
#include "background_task_mgr_helper.h"
#include "bundle_manager_helper.h"
#include "exemption_flag.h"
#include "net_policy_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::RunningProcessInfo;
using BackgroundTaskMgr::BackgroundTaskMgrHelper;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;
using NetManagerStandard::NetPolicyClient;

constexpr uint32_t kTaskTypes = 32;

bool IsExempting(uint32_t taskType, int32_t mask) {
    return taskType < kTaskTypes && ((static_cast<uint32_t>(mask) >> taskType) & 1U) != 0;
}

}  // namespace

bool BaseNetworkStrategy::isFirewallEnabled_ = false;
std::unordered_map<uint32_t, NetLimitedAppInfo> BaseNetworkStrategy::netLimitedAppInfo_;

bool BaseNetworkStrategy::isUseExempting_ = false;

void BaseNetworkStrategy::SetFirewallStatus(bool isEnabled) {
    isFirewallEnabled_ = isEnabled;
}

void BaseNetworkStrategy::ForgetShared() {
    isFirewallEnabled_ = false;
    isUseExempting_ = false;
    netLimitedAppInfo_.clear();
}

void BaseNetworkStrategy::HandleEvent(const StandbyMessage& message) {
    if (!StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        return;
    }
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            if (message.Params().GetIntParam(CURRENT_STATE, 0) != StandbyState::MAINTENANCE) {
                DisableNetworkFirewall(message);
            }
            break;
        case StandbyMessageType::ALLOW_LIST_CHANGED:
            UpdateExemptionList(message);
            break;
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
            UpdateBgTaskAppStatus(message);
            break;
        case StandbyMessageType::PROCESS_STATE_CHANGED:
            HandleProcessStatusChanged(message);
            break;
        default:
            break;
    }
}

ErrCode BaseNetworkStrategy::OnCreated() {
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::OnDestroy() {
    return ERR_OK;
}

void BaseNetworkStrategy::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {}

ErrCode BaseNetworkStrategy::EnableNetworkFirewall(const StandbyMessage& message) {
    const AAFwk::Want& want = message.Params();
    if (want.GetIntParam(CURRENT_STATE, 0) != StandbyState::SLEEP ||
        want.GetIntParam(CURRENT_PHASE, 0) != StandbyPhase::DEEP) {
        return ERR_STATE_REQ_NOT_MET;
    }
    if (isFirewallEnabled_) {
        UpdateFirewallAllowList();
        return ERR_OK;
    }
    const ErrCode status = EnableNetworkFirewallInner();
    isFirewallEnabled_ = status == ERR_OK;
    return status;
}

ErrCode BaseNetworkStrategy::DisableNetworkFirewall(const StandbyMessage& message) {
    if (!isFirewallEnabled_ || message.Params().GetIntParam(CURRENT_STATE, 0) == StandbyState::SLEEP) {
        return ERR_STATE_REQ_NOT_MET;
    }
    DisableNetworkFirewallInner();
    isFirewallEnabled_ = false;
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::EnableNetworkFirewallInner() {
    if (const ErrCode status = InitNetLimitedAppInfo(); status != ERR_OK) {
        return status;
    }
    HandleDeviceIdlePolicy(true);
    return idlePolicyStatus_;
}

void BaseNetworkStrategy::DisableNetworkFirewallInner() {
    HandleDeviceIdlePolicy(false);
}

void BaseNetworkStrategy::HandleDeviceIdlePolicy(bool enableFirewall) {
    if (enableFirewall && !isFirewallEnabled_) {
        SetNetAllowApps(true);
    }
    idlePolicyStatus_ = DelayedSingleton<NetPolicyClient>::GetInstance()->SetDeviceIdlePolicy(enableFirewall);
    if (idlePolicyStatus_ != ERR_OK) {
        STANDBYSERVICE_LOGW("the device-idle policy was refused, err code is %{public}d", idlePolicyStatus_);
    }
    if (!enableFirewall || idlePolicyStatus_ != ERR_OK) {
        EmptyFirewallAllowList();
    } else {
        isFirewallEnabled_ = true;
    }
}

// Every application, not only those that are allowed now: the rule may have changed since they were put on.
void BaseNetworkStrategy::EmptyFirewallAllowList() {
    std::vector<uint32_t> uids;
    uids.reserve(netLimitedAppInfo_.size());
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        uids.push_back(uid);
    }
    SetFirewallAllowedList(uids, false);
}

void BaseNetworkStrategy::UpdateFirewallAllowList() {
    EmptyFirewallAllowList();
    if (InitNetLimitedAppInfo() == ERR_OK) {
        SetNetAllowApps(true);
    }
}

void BaseNetworkStrategy::SetNetAllowApps(bool isAllow) {
    std::vector<uint32_t> uids;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        if (IsExempted(app.exemptionFlags)) {
            uids.push_back(uid);
        }
    }
    SetFirewallAllowedList(uids, isAllow);
}

void BaseNetworkStrategy::ResetFirewallAllowList() {
    std::set<uint32_t> uids;
    for (const auto& [uid, app] : netLimitedAppInfo_) {
        uids.insert(uid);
    }
    std::vector<RunningProcessInfo> processes;
    if (AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes)) {
        for (const RunningProcessInfo& process : processes) {
            uids.insert(static_cast<uint32_t>(process.uid_));
        }
    }
    const auto client = DelayedSingleton<NetPolicyClient>::GetInstance();
    client->SetDeviceIdlePolicy(false);
    if (!uids.empty()) {
        client->SetDeviceIdleTrustlist({uids.begin(), uids.end()}, false);
    }
    netLimitedAppInfo_.clear();
}

ErrCode BaseNetworkStrategy::InitNetLimitedAppInfo() {
    if (GetAllRunningAppInfo() != ERR_OK || GetExemptionConfig() != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    AddTaskAndForegroundFlags();
    isUseExempting_ = true;
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::GetAllRunningAppInfo() {
    std::vector<RunningProcessInfo> processes;
    if (!AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes)) {
        STANDBYSERVICE_LOGE("the running applications could not be fetched");
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    netLimitedAppInfo_.clear();
    isUseExempting_ = false;
    for (const RunningProcessInfo& process : processes) {
        const auto [entry, isNew] = netLimitedAppInfo_.try_emplace(static_cast<uint32_t>(process.uid_));
        if (!isNew) {
            continue;
        }
        bool isSystemApp = false;
        const bool isKnown = BundleManagerHelper::GetInstance()->CheckIsSystemAppByUid(process.uid_, isSystemApp);
        entry->second.name = AppMgrHelper::NameOf(process);
        entry->second.exemptionFlags = isKnown && isSystemApp ? ExemptionFlag::UNRESTRICTED : uint8_t{0};
    }
    return ERR_OK;
}

ErrCode BaseNetworkStrategy::GetExemptionConfig() {
    const auto service = StandbyServiceImpl::GetInstance();
    std::vector<AllowInfo> allowInfos;
    std::set<std::string> restricted;
    if (service->GetAllowList(AllowType::NETWORK, allowInfos, 0) != ERR_OK ||
        service->GetEligiableRestrictSet(AllowType::NETWORK, "NETWORK", 0, restricted) != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    std::set<std::string> allowed;
    for (const AllowInfo& info : allowInfos) {
        allowed.insert(info.GetName());
    }
    for (auto& [uid, app] : netLimitedAppInfo_) {
        if (allowed.count(app.name) != 0) {
            app.exemptionFlags |= ExemptionFlag::EXEMPTION;
        }
        if (restricted.count(app.name) != 0) {
            app.exemptionFlags |= ExemptionFlag::RESTRICTED;
        }
    }
    return ERR_OK;
}

void BaseNetworkStrategy::AddTaskAndForegroundFlags() {
    std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>> tasks;
    if (BackgroundTaskMgrHelper::GetContinuousTaskApps(tasks) != ERR_OK) {
        STANDBYSERVICE_LOGW("the continuous tasks could not be fetched");
    }
    for (const auto& task : tasks) {
        const auto app = netLimitedAppInfo_.find(static_cast<uint32_t>(task->GetCreatorUid()));
        if (app != netLimitedAppInfo_.end() && IsExempting(task->GetTypeId(), exemptedTaskType_)) {
            app->second.exemptionFlags |= ExemptionFlag::CONTINUOUS_TASK;
        }
    }
    std::vector<AppExecFwk::AppStateData> foreground;
    if (!AppMgrHelper::GetInstance()->GetForegroundApplications(foreground)) {
        STANDBYSERVICE_LOGW("the foreground applications could not be fetched");
    }
    for (const auto& state : foreground) {
        const auto app = netLimitedAppInfo_.find(static_cast<uint32_t>(state.uid));
        if (app != netLimitedAppInfo_.end()) {
            app->second.exemptionFlags |= ExemptionFlag::FOREGROUND;
        }
    }
}

void BaseNetworkStrategy::UpdateExemptionList(const StandbyMessage& message) {
    const AAFwk::Want& want = message.Params();
    if (want.GetIntParam("allowType", 0) != AllowType::NETWORK) {
        return;
    }
    const std::string name = want.GetStringParam("name");
    ChangeFlags([&name](uint32_t /*uid*/, const NetLimitedAppInfo& app) { return app.name == name; },
                ExemptionFlag::EXEMPTION, want.GetBoolParam("added", false));
}

void BaseNetworkStrategy::UpdateBgTaskAppStatus(const StandbyMessage& message) {
    const AAFwk::Want& want = message.Params();
    const auto changed = static_cast<uint32_t>(want.GetIntParam("uid", -1));
    if (isUseExempting_ && IsExempting(static_cast<uint32_t>(want.GetIntParam("typeId", -1)), exemptedTaskType_)) {
        ChangeFlags([changed](uint32_t uid, const NetLimitedAppInfo& /*app*/) { return uid == changed; },
                    ExemptionFlag::CONTINUOUS_TASK, want.GetBoolParam("started", false));
    }
}

void BaseNetworkStrategy::HandleProcessStatusChanged(const StandbyMessage& message) {
    if (!isUseExempting_) {
        return;
    }
    const AAFwk::Want& want = message.Params();
    const auto changed = static_cast<uint32_t>(want.GetIntParam("uid", -1));
    const bool isForeground = want.GetBoolParam("isForeground", false);
    if (isFirewallEnabled_ && isForeground) {
        netLimitedAppInfo_.try_emplace(changed, NetLimitedAppInfo{want.GetStringParam("name"), 0});
    }
    ChangeFlags([changed](uint32_t uid, const NetLimitedAppInfo& /*app*/) { return uid == changed; },
                ExemptionFlag::FOREGROUND, isForeground);
}

void BaseNetworkStrategy::ChangeFlags(const std::function<bool(uint32_t, const NetLimitedAppInfo&)>& matches,
                                      uint8_t flag, bool isSet) {
    std::vector<uint32_t> allowed;
    std::vector<uint32_t> refused;
    for (auto& [uid, app] : netLimitedAppInfo_) {
        if (!matches(uid, app)) {
            continue;
        }
        const bool wasExempted = IsExempted(app.exemptionFlags);
        app.exemptionFlags = static_cast<uint8_t>(isSet ? app.exemptionFlags | flag : app.exemptionFlags & ~flag);
        if (IsExempted(app.exemptionFlags) != wasExempted) {
            (wasExempted ? refused : allowed).push_back(uid);
        }
    }
    if (isFirewallEnabled_ && !allowed.empty()) {
        SetFirewallAllowedList(allowed, true);
    }
    if (isFirewallEnabled_ && !refused.empty()) {
        SetFirewallAllowedList(refused, false);
    }
}

}  // namespace TARN::DevStandbyMgr
