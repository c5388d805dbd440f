#include "running_lock_strategy_ext.h"

#include <list>
#include <set>
#include <utility>
#include <vector>

#include "ability_manager_helper.h"
#include "exemption_bits.h"
#include "phone_dump_words.h"
#include "phone_standby_vocabulary.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr char kStrategyName[] = "RUNNING_LOCK";

std::string NativeKey(int32_t uid, const std::string& name) {
    return std::to_string(uid) + "_" + name;
}

}  // namespace

ErrCode RunningLockStrategyExt::UpdateNativeProcesses() {
    std::list<AppExecFwk::SystemProcessInfo> processes;
    if (!AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(processes)) {
        STANDBYSERVICE_LOGE("connect to app ability service failed");
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    STANDBYSERVICE_LOGI("running native processes size is %{public}lu", processes.size());
    for (const auto& process : processes) {
        // overwrites what was known, flag bits included; entries of processes that ended stay
        proxiedNativeProcessMap_[NativeKey(process.uid, process.processName)] = {
            process.processName, process.uid, process.pid, ExemptionBit::UNRESTRICTED};
    }
    return PhoneStatus::OK;
}

ErrCode RunningLockStrategyExt::InitNativeProcInfo() {
    if (UpdateNativeProcesses() != PhoneStatus::OK) {
        return PhoneStatus::RUNNING_PROCESSES_UNAVAILABLE;
    }
    std::set<std::string> restrictSet;
    static_cast<void>(StandbyServiceImpl::GetInstance()->GetEligiableRestrictSet(PhoneAllowType::RUNNING_LOCK,
                                                                                 kStrategyName, 0, restrictSet));
    STANDBYSERVICE_LOGI("running lock restrict native process list, size is %{public}lu", restrictSet.size());
    for (auto& [key, info] : proxiedNativeProcessMap_) {
        auto& [name, uid, pid, flags] = info;  // the order of the service's record is agreed on, its names are not
        if (restrictSet.count(name) != 0) {
            flags |= ExemptionBit::RESTRICTED;
        }
    }
    return PhoneStatus::OK;
}

void RunningLockStrategyExt::ProxyAppAndProcess(bool isProxied) {
    RunningLockStrategy::ProxyAppAndProcess(isProxied);
    std::vector<std::pair<int32_t, int32_t>> processes;
    for (const auto& [key, info] : proxiedNativeProcessMap_) {
        const auto& [name, uid, pid, flags] = info;
        if (IsHeldBack(flags)) {
            processes.emplace_back(pid, uid);
        }
    }
    static_cast<void>(ProxyRunningLockList(isProxied, processes));
}

void RunningLockStrategyExt::AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    if (!isProxied_) {
        return;
    }
    RunningLockStrategy::AddExemptionFlag(uid, name, flag);
    const auto entry = proxiedNativeProcessMap_.find(NativeKey(uid, name));
    if (entry == proxiedNativeProcessMap_.end()) {
        return;
    }
    auto& [entryName, entryUid, pid, flags] = entry->second;
    if (IsHeldBack(flags)) {
        // uid before pid here, the reverse of the above
        static_cast<void>(ProxyRunningLockList(false, {{entryUid, pid}}));
    }
    flags |= flag;
}

void RunningLockStrategyExt::RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag) {
    RunningLockStrategy::RemoveExemptionFlag(uid, name, flag);
    const auto entry = proxiedNativeProcessMap_.find(NativeKey(uid, name));
    if (entry == proxiedNativeProcessMap_.end()) {
        return;
    }
    auto& [entryName, entryUid, pid, flags] = entry->second;
    flags = static_cast<uint8_t>(flags & ~flag);
    if (IsHeldBack(flags)) {
        static_cast<void>(ProxyRunningLockList(true, {{entryUid, pid}}));
    }
}

void RunningLockStrategyExt::ClearProxyRecord() {
    RunningLockStrategy::ClearProxyRecord();
    proxiedNativeProcessMap_.clear();
}

void RunningLockStrategyExt::ShellDump(const std::vector<std::string>& args, std::string& result) {
    if (AsksForDetails(args)) {
        DumpShowDetailInfo(args, result);
    }
}

void RunningLockStrategyExt::DumpShowDetailInfo(const std::vector<std::string>& args, std::string& result) {
    RunningLockStrategy::ShellDump(args, result);
    result += "\nproxied native process info: \n";
    for (const auto& [key, info] : proxiedNativeProcessMap_) {
        const auto& [name, uid, pid, flags] = info;
        result += "key: " + key + " name: " + name + " uid: " + std::to_string(uid) + " pid: " + std::to_string(pid) +
                  " exemption flag: " + std::to_string(flags) + "\n";
    }
}

}  // namespace TARN::DevStandbyMgr
