#include "running_lock_strategy_ext.h"

#include <list>
#include <set>
#include <utility>
#include <vector>

#include "ability_manager_helper.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {
constexpr char kStrategyName[] = "RUNNING_LOCK";
}

ErrCode RunningLockStrategyExt::UpdateNativeProcesses() {
    std::list<SystemProcessInfo> processes;
    if (!AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(processes)) {
        STANDBYSERVICE_LOGE("connect to app ability service failed");
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    STANDBYSERVICE_LOGI("running native processes size is %{public}lu", processes.size());
    for (const SystemProcessInfo& process : processes) {
        // overwrites what was known, flag bits included; entries of processes that ended stay
        proxiedNativeProcessMap_[KeyOf(process.uid, process.processName)] = {process.processName, process.uid,
                                                                             process.pid, ExemptionFlag::UNRESTRICTED};
    }
    return ERR_OK;
}

ErrCode RunningLockStrategyExt::InitNativeProcInfo() {
    if (UpdateNativeProcesses() != ERR_OK) {
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    std::set<std::string> restrictSet;
    StandbyServiceImpl::GetInstance()->GetEligiableRestrictSet(AllowType::RUNNING_LOCK, kStrategyName, 0, restrictSet);
    STANDBYSERVICE_LOGI("running lock restrict native process list, size is %{public}lu", restrictSet.size());
    for (auto& [key, info] : proxiedNativeProcessMap_) {
        if (restrictSet.count(info.name) != 0) {
            info.exemptionFlag |= ExemptionFlag::RESTRICTED;
        }
    }
    return ERR_OK;
}

void RunningLockStrategyExt::ProxyAppAndProcess(bool isProxied) {
    RunningLockStrategy::ProxyAppAndProcess(isProxied);
    std::vector<std::pair<int32_t, int32_t>> processes;
    for (const auto& [key, info] : proxiedNativeProcessMap_) {
        if (info.IsProxied()) {
            processes.emplace_back(info.pid, info.uid);
        }
    }
    ProxyRunningLockList(isProxied, processes);
}

void RunningLockStrategyExt::AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    if (!isProxied_) {
        return;
    }
    RunningLockStrategy::AddExemptionFlag(uid, name, flag);
    const auto entry = proxiedNativeProcessMap_.find(KeyOf(uid, name));
    if (entry == proxiedNativeProcessMap_.end()) {
        return;
    }
    ProxiedAppInfo& info = entry->second;
    if (info.IsProxied()) {
        ProxyRunningLockList(false, {{info.uid, info.pid}});  // uid before pid here, the reverse of the above
    }
    info.exemptionFlag |= flag;
}

void RunningLockStrategyExt::RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    RunningLockStrategy::RemoveExemptionFlag(uid, name, flag);
    const auto entry = proxiedNativeProcessMap_.find(KeyOf(uid, name));
    if (entry == proxiedNativeProcessMap_.end()) {
        return;
    }
    ProxiedAppInfo& info = entry->second;
    info.exemptionFlag = static_cast<uint8_t>(info.exemptionFlag & ~flag);
    if (info.IsProxied()) {
        ProxyRunningLockList(true, {{info.uid, info.pid}});
    }
}

void RunningLockStrategyExt::ClearProxyRecord() {
    RunningLockStrategy::ClearProxyRecord();
    proxiedNativeProcessMap_.clear();
}

void RunningLockStrategyExt::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (IsDumpWord(args, DUMP_FIRST_PARAM, DUMP_DETAIL_INFO) &&
        IsDumpWord(args, DUMP_SECOND_PARAM, DUMP_STRATGY_DETAIL)) {
        DumpShowDetailInfo(args, result);
    }
}

void RunningLockStrategyExt::DumpShowDetailInfo(const std::vector<std::string>& args, std::string& result) {
    RunningLockStrategy::ShellDump(args, result);
    result += "\nproxied native process info: \n";
    for (const auto& [key, info] : proxiedNativeProcessMap_) {
        result += "key: " + key + " name: " + info.name + " uid: " + std::to_string(info.uid) +
                  " pid: " + std::to_string(info.pid) + " exemption flag: " + std::to_string(info.exemptionFlag) + "\n";
    }
}

}  // namespace TARN::DevStandbyMgr
