#include "running_lock_strategy.h"

#include <algorithm>
#include <list>
#include <memory>
#include <set>

#include "ability_manager_helper.h"
#include "app_mgr_helper.h"
#include "background_task_mgr_helper.h"
#include "bundle_manager_helper.h"
#include "power_mgr_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::RunningProcessInfo;

std::list<SystemProcessInfo> RunningNatives() {
    std::list<SystemProcessInfo> natives;
    if (!AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(natives)) {
        STANDBYSERVICE_LOGW("the native processes could not be fetched");
    }
    return natives;
}

}  // namespace

std::string RunningLockStrategy::KeyOf(int32_t uid, const std::string& name) {
    return std::to_string(uid) + "_" + name;
}

void RunningLockStrategy::HandleEvent(const StandbyMessage& message) {
    if (!StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        return;
    }
    const AAFwk::Want& want = message.Params();
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            if (want.GetIntParam(CURRENT_STATE, 0) != StandbyState::SLEEP) {
                StopProxy();
            }
            break;
        case StandbyMessageType::PHASE_TRANSIT:
            if (want.GetIntParam(CURRENT_PHASE, 0) >= StandbyPhase::SYS_RES_DEEP) {
                StartProxy();
            }
            break;
        case StandbyMessageType::ALLOW_LIST_CHANGED:
            UpdateExemptionList(message);
            break;
        case StandbyMessageType::BG_TASK_STATUS_CHANGED:
            ChangeFlagOfUid(message, ExemptionFlag::CONTINUOUS_TASK, want.GetBoolParam("started", false));
            break;
        case StandbyMessageType::PROCESS_STATE_CHANGED:
            ChangeFlagOfUid(message, ExemptionFlag::FOREGROUND, want.GetBoolParam("isForeground", false));
            break;
        default:
            break;
    }
}

ErrCode RunningLockStrategy::OnCreated() {
    isProxied_ = false;
    return ERR_OK;
}

ErrCode RunningLockStrategy::OnDestroy() {
    StopProxy();
    return ERR_OK;
}

void RunningLockStrategy::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {}

void RunningLockStrategy::StartProxy() {
    if (isProxied_ || InitProxiedAppInfo() != ERR_OK) {
        return;
    }
    InitNativeProcInfo();
    isProxied_ = true;
    ExemptAllowedNatives();
    ProxyAppAndProcess(true);
}

void RunningLockStrategy::ExemptAllowedNatives() {
    std::vector<AllowInfo> allowInfos;
    if (StandbyServiceImpl::GetInstance()->GetAllowList(AllowType::RUNNING_LOCK, allowInfos, 0) != ERR_OK) {
        return;
    }
    std::set<std::string> allowed;
    for (const AllowInfo& info : allowInfos) {
        allowed.insert(info.GetName());
    }
    for (const SystemProcessInfo& process : RunningNatives()) {
        if (allowed.count(process.processName) != 0) {
            AddExemptionFlag(process.uid, process.processName, ExemptionFlag::EXEMPTION);
        }
    }
}

void RunningLockStrategy::StopProxy() {
    if (!isProxied_) {
        return;
    }
    ProxyAppAndProcess(false);
    isProxied_ = false;
    ClearProxyRecord();
}

ErrCode RunningLockStrategy::InitProxiedAppInfo() {
    const auto service = StandbyServiceImpl::GetInstance();
    std::vector<RunningProcessInfo> processes;
    std::vector<AllowInfo> allowInfos;
    std::set<std::string> restricted;
    if (!AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes) ||
        service->GetAllowList(AllowType::RUNNING_LOCK, allowInfos, 0) != ERR_OK ||
        service->GetEligiableRestrictSet(AllowType::RUNNING_LOCK, "RUNNING_LOCK", 0, restricted) != ERR_OK) {
        STANDBYSERVICE_LOGE("the running applications or their exemptions could not be fetched");
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    std::set<std::string> allowed;
    for (const AllowInfo& info : allowInfos) {
        allowed.insert(info.GetName());
    }
    std::set<int32_t> busyUids;
    std::vector<std::shared_ptr<BackgroundTaskMgr::ContinuousTaskCallbackInfo>> tasks;
    if (BackgroundTaskMgr::BackgroundTaskMgrHelper::GetContinuousTaskApps(tasks) != ERR_OK) {
        STANDBYSERVICE_LOGW("the continuous tasks could not be fetched");
    }
    for (const auto& task : tasks) {
        busyUids.insert(task->GetCreatorUid());
    }
    std::set<int32_t> foregroundPids;
    std::vector<AppExecFwk::AppStateData> foreground;
    if (!AppMgrHelper::GetInstance()->GetForegroundApplications(foreground)) {
        STANDBYSERVICE_LOGW("the foreground applications could not be fetched");
    }
    for (const auto& app : foreground) {
        foregroundPids.insert(app.pid);
    }
    proxiedAppInfo_.clear();
    for (const RunningProcessInfo& process : processes) {
        const std::string& name = AppMgrHelper::NameOf(process);
        bool isSystemApp = false;
        const bool isKnown = BundleManagerHelper::GetInstance()->CheckIsSystemAppByUid(process.uid_, isSystemApp);
        uint8_t flag = 0;
        flag |= isKnown && isSystemApp ? ExemptionFlag::UNRESTRICTED : uint8_t{0};
        flag |= allowed.count(name) != 0 ? ExemptionFlag::EXEMPTION : uint8_t{0};
        flag |= restricted.count(name) != 0 ? ExemptionFlag::RESTRICTED : uint8_t{0};
        flag |= busyUids.count(process.uid_) != 0 ? ExemptionFlag::CONTINUOUS_TASK : uint8_t{0};
        flag |= foregroundPids.count(process.pid_) != 0 ? ExemptionFlag::FOREGROUND : uint8_t{0};
        proxiedAppInfo_[KeyOf(process.uid_, process.processName_)] = {name, process.uid_, process.pid_, flag};
    }
    return ERR_OK;
}

ErrCode RunningLockStrategy::InitNativeProcInfo() {
    return ERR_OK;
}

void RunningLockStrategy::ProxyAppAndProcess(bool isProxied) {
    std::vector<std::pair<int32_t, int32_t>> processes;
    for (const auto& [key, info] : proxiedAppInfo_) {
        if (info.IsProxied()) {
            processes.emplace_back(info.pid, info.uid);
        }
    }
    ProxyRunningLockList(isProxied, processes);
}

void RunningLockStrategy::AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    ChangeFlag(uid, name, flag, true);
}

void RunningLockStrategy::RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    ChangeFlag(uid, name, flag, false);
}

void RunningLockStrategy::ChangeFlag(int32_t uid, const std::string& name, uint8_t flag, bool isSet) {
    std::vector<std::pair<int32_t, int32_t>> changed;
    for (auto& [key, info] : proxiedAppInfo_) {
        if (info.uid != uid || info.name != name) {
            continue;
        }
        const bool wasProxied = info.IsProxied();
        info.exemptionFlag = static_cast<uint8_t>(isSet ? info.exemptionFlag | flag : info.exemptionFlag & ~flag);
        if (info.IsProxied() != wasProxied) {
            changed.emplace_back(info.pid, info.uid);
        }
    }
    if (isProxied_ && !changed.empty()) {
        ProxyRunningLockList(!isSet, changed);
    }
}

void RunningLockStrategy::ChangeFlagOfUid(const StandbyMessage& message, uint8_t flag, bool isSet) {
    const int32_t uid = message.Params().GetIntParam("uid", -1);
    std::set<std::string> names;
    for (const auto& [key, info] : proxiedAppInfo_) {
        if (info.uid == uid) {
            names.insert(info.name);
        }
    }
    for (const std::string& name : names) {
        isSet ? AddExemptionFlag(uid, name, flag) : RemoveExemptionFlag(uid, name, flag);
    }
}

void RunningLockStrategy::UpdateExemptionList(const StandbyMessage& message) {
    const AAFwk::Want& want = message.Params();
    if (want.GetIntParam("allowType", 0) != AllowType::RUNNING_LOCK) {
        return;
    }
    const std::string name = want.GetStringParam("name");
    std::set<int32_t> uids;
    for (const auto& [key, info] : proxiedAppInfo_) {
        if (info.name == name) {
            uids.insert(info.uid);
        }
    }
    for (const SystemProcessInfo& process : RunningNatives()) {
        if (process.processName == name) {
            uids.insert(process.uid);
        }
    }
    for (const int32_t uid : uids) {
        want.GetBoolParam("added", false) ? AddExemptionFlag(uid, name, ExemptionFlag::EXEMPTION)
                                          : RemoveExemptionFlag(uid, name, ExemptionFlag::EXEMPTION);
    }
}

void RunningLockStrategy::ClearProxyRecord() {
    proxiedAppInfo_.clear();
}

ErrCode RunningLockStrategy::ProxyRunningLockList(bool isProxied,
                                                  const std::vector<std::pair<int32_t, int32_t>>& proxiedAppList) {
    const ErrCode status = PowerMgr::PowerMgrClient::GetInstance().ProxyRunningLocks(isProxied, proxiedAppList);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("running locks were not proxied or restored, err code is %{public}d", status);
    }
    return status;
}

}  // namespace TARN::DevStandbyMgr
