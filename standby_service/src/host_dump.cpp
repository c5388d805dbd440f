// What the service itself tells a person who asks it for every detail.
#include <algorithm>
#include <iterator>

#include "condition_watch.h"
#include "local_time.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "suspend_manager_client.h"
#include "time_service_client.h"

namespace TARN::DevStandbyMgr {

namespace {

/// What stands where the device does not tell.
std::string Unknown(const char* what, int32_t status) {
    STANDBYSERVICE_LOGW("the %{public}s could not be read for the dump, err code is %{public}d", what, status);
    return "not known, err code is " + std::to_string(status) + "\n";
}

std::string Line(const std::set<std::string>& names) {
    std::string line;
    for (const std::string& name : names) {
        line += (line.empty() ? "" : ", ") + name;
    }
    return line.empty() ? "nobody" : line;
}

std::string Condition(uint32_t condition) {
    return std::to_string(condition) + (condition == ConditionType::NIGHT_STANDBY ? " night" : " day");
}

std::string Frozen() {
    std::vector<SuspendManager::NativeProcessInfo> processes;
    if (const int32_t status = SuspendManager::SuspendManagerClient::GetInstance().GetFrozenProcesses(processes);
        status != ERR_OK) {
        return Unknown("frozen processes", status);
    }
    std::string text = std::to_string(processes.size()) + "\n";
    for (const auto& process : processes) {
        text += "  pid " + std::to_string(process.GetPid()) + " " + process.GetProcessName() + "\n";
    }
    return text;
}

std::string Batching() {
    MiscServices::TimerBatching batching;
    if (const int32_t status = MiscServices::TimeServiceClient::GetInstance()->GetTimerBatching(batching);
        status != ERR_OK) {
        return Unknown("timers' batching", status);
    }
    return (batching.isAdjusted ? "stretched to " + std::to_string(batching.intervalSeconds) + " s"
                                : std::string("not stretched")) +
           ", exempted: " + Line(batching.exemptedNames) + "\n";
}

}  // namespace

void StandbyServiceImpl::DumpHost(const std::vector<std::string>& args, std::string& result) const {
    result += "=================StandbyService=========================\n";
    result += "time: " + LocalTimeText(NowMs()) + ", condition " + Condition(conditionWatch_->At(0)) + "\n";
    stateManager_->ShellDump(args, result);
    constraintManager_->ShellDump(args, result);
    result += "frozen: " + Frozen();
    result += "exempt from freezing: ";
    std::vector<AllowInfo> allowInfos;
    if (const int32_t status = GetAllowList(AllowType::FREEZE, allowInfos, 0); status != ERR_OK) {
        result += Unknown("allow list", status);
    } else {
        std::set<std::string> names;
        std::transform(allowInfos.begin(), allowInfos.end(), std::inserter(names, names.end()),
                       [](const AllowInfo& info) { return info.GetName(); });
        result += Line(names) + "\n";
    }
    result += "timers: " + Batching();
}

}  // namespace TARN::DevStandbyMgr
