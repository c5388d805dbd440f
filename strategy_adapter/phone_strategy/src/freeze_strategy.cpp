#include "freeze_strategy.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <string_view>
#include <unordered_map>

#include "ability_manager_helper.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_config_manager.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "suspend_manager_client.h"
#include "time_provider.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::SystemProcessInfo;
using SuspendManager::NativeProcessInfo;
using SuspendManager::SuspendManagerClient;

constexpr char kConfigName[] = "FREEZE";
constexpr int32_t kNoPid = -1;

/// Of a name by how it begins and ends: thousands of running processes are looked for among the configured ones.
struct EndsHash {
    size_t operator()(std::string_view name) const noexcept {
        uint64_t head = 0;
        uint64_t tail = 0;
        const size_t size = std::min(name.size(), sizeof head);
        std::memcpy(&head, name.data(), size);
        std::memcpy(&tail, name.data() + name.size() - size, size);
        constexpr uint64_t kGoldenRatio = 0x9E37'79B9'7F4A'7C15;
        uint64_t mixed = (head + name.size()) * kGoldenRatio;
        mixed = (mixed ^ (mixed >> 32) ^ tail) * kGoldenRatio;
        return static_cast<size_t>(mixed ^ (mixed >> 32));
    }
};

std::set<std::string> ConfiguredProcesses(uint32_t condition) {
    const auto config = StandbyConfigManager::GetInstance();
    if (config == nullptr) {
        return {};
    }
    return config->GetEligiblePersistAllowConfig(kConfigName, condition, /*isAllow=*/false, /*isApp=*/false);
}

}  // namespace

void FreezeStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter FreezeStrategy HandleEvent, eventId is %{public}d", message.eventId);
    switch (message.eventId) {
        case StandbyMessageType::STATE_TRANSIT:
            static_cast<void>(StopFreeze(message));
            break;
        case StandbyMessageType::PHASE_TRANSIT:
            static_cast<void>(StartFreeze(message));
            break;
        case StandbyMessageType::RES_CTRL_CONDITION_CHANGED:
            static_cast<void>(UpdateResourceConfig(message));
            break;
        case StandbyMessageType::ALLOW_LIST_CHANGED:
            static_cast<void>(UpdateAllowedList(message));
            break;
        default:
            break;
    }
}

ErrCode FreezeStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("FreezeStrategy is now OnCreated");
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("FreezeStrategy is now OnDestroy");
    defaultNativeProcessSet_.clear();
    allowProcessNameSet_.clear();
    freezedNativeProcess_.clear();
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::StopFreeze(const StandbyMessage& message) {
    const int32_t previous = ParamsOf(message).GetIntParam(PREVIOUS_STATE, 0);
    const int32_t current = ParamsOf(message).GetIntParam(CURRENT_STATE, 0);
    if (previous == StandbyState::MAINTENANCE && current == StandbyState::SLEEP) {
        // the end of a maintenance freezes whether or not the group was frozen before it
        if (const ErrCode status = CalculateFreezeInfo(); status != PhoneStatus::OK) {
            return status;
        }
        SendFreezeInfo(true);
        return PhoneStatus::OK;
    }
    if (!isDoze_) {
        STANDBYSERVICE_LOGD("now is thaw, do not need to StopFreeze");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    if (previous != StandbyState::SLEEP || current == StandbyState::SLEEP) {
        STANDBYSERVICE_LOGD("previous_state is same as current_state or previous_state not equal to SLEEP state!");
        return PhoneStatus::NOT_LEAVING_SLEEP;
    }
    SendFreezeInfo(false);
    if (current != StandbyState::MAINTENANCE) {
        freezedNativeProcess_.clear();
        isDoze_ = false;
    }
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::StartFreeze(const StandbyMessage& message) {
    if (isDoze_) {
        STANDBYSERVICE_LOGD("now is doze, do not need startFreeze, repeat process");
        return PhoneStatus::ALREADY_IN_STATE;
    }
    const int32_t phase = ParamsOf(message).GetIntParam(CURRENT_PHASE, 0);
    const int32_t state = ParamsOf(message).GetIntParam(CURRENT_STATE, 0);
    if (phase != StandbyPhase::APP_RES_DEEP || state != StandbyState::SLEEP) {
        STANDBYSERVICE_LOGD("current state is not SLEEP or current phase is not APP_RES_DEEP!");
        return PhoneStatus::STATE_REQ_NOT_MET;
    }
    STANDBYSERVICE_LOGD("current state is %{public}d, current phase is %{public}d", state, phase);
    if (const ErrCode status = CalculateFreezeInfo(); status != PhoneStatus::OK) {
        return status;
    }
    SendFreezeInfo(true);
    isDoze_ = true;
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::UpdateResourceConfig(const StandbyMessage& message) {
    STANDBYSERVICE_LOGI("%{public}s UpdateResourceConfig by restrict action", kConfigName);
    // The calculation below asks again, for the condition of this moment; both queries stay, in this order.
    defaultNativeProcessSet_ =
        ConfiguredProcesses(static_cast<uint32_t>(ParamsOf(message).GetIntParam(RES_CTRL_CONDITION, 0)));
    SendFreezeInfo(false);
    freezedNativeProcess_.clear();
    if (const ErrCode status = CalculateFreezeInfo(); status != PhoneStatus::OK) {
        return status;
    }
    SendFreezeInfo(true);
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::UpdateAllowedList(const StandbyMessage& message) {
    STANDBYSERVICE_LOGI("enter FreezeStrategy::UpdateAllowedList");
    const AAFwk::Want& want = ParamsOf(message);
    if (const int32_t allowType = want.GetIntParam("allowType", 0); allowType != PhoneAllowType::FREEZE) {
        STANDBYSERVICE_LOGD("allowType is not freeze, currentType is %{public}d", allowType);
        return PhoneStatus::ALLOW_TYPE_MISMATCH;
    }
    const std::string name = want.GetStringParam("name");
    const bool added = want.GetBoolParam("added", false);
    STANDBYSERVICE_LOGD("%{public}s apply allow, added is %{public}d", name.c_str(), added);
    if (added) {
        STANDBYSERVICE_LOGD("%{public}s is thaw do not need apply allowed", name.c_str());
        return PhoneStatus::OK;
    }
    if (defaultNativeProcessSet_.count(name) == 0 || !isDoze_) {
        return PhoneStatus::OK;
    }
    std::list<SystemProcessInfo> processes;
    if (!AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(processes)) {
        STANDBYSERVICE_LOGE("connect to app ability service failed");
        return PhoneStatus::SYSTEM_PROCESS_UNAVAILABLE;
    }
    const auto process = std::find_if(processes.begin(), processes.end(),
                                      [&name](const SystemProcessInfo& info) { return info.processName == name; });
    if (process == processes.end() || process->pid == kNoPid) {
        STANDBYSERVICE_LOGD("%{public}s 's pid is -1, find error", name.c_str());
        return PhoneStatus::PROCESS_NOT_FOUND;
    }
    NativeProcessInfo info;
    info.SetPid(process->pid);
    info.SetProcessName(name);
    freezedNativeProcess_.push_back(info);
    info.SetFreeze(true);
    const std::vector<int32_t> results = SuspendManagerClient::GetInstance().OperateNativeProcesses({info});
    const bool isFrozen = !results.empty() && results.back() == PhoneStatus::OK;
    STANDBYSERVICE_LOGD("Freeze nativeProcess %{public}s, freezed is %{public}s", name.c_str(),
                        isFrozen ? "successed" : "failed");
    return PhoneStatus::OK;
}

ErrCode FreezeStrategy::CalculateFreezeInfo() {
    defaultNativeProcessSet_ = ConfiguredProcesses(TimeProvider::GetCondition(0));
    STANDBYSERVICE_LOGD("defaultNativeProcess size is %{public}lu", defaultNativeProcessSet_.size());
    return CreateFreezeInfo();
}

ErrCode FreezeStrategy::CreateFreezeInfo() {
    std::vector<AllowInfo> allowInfos;
    if (const ErrCode status = StandbyServiceImpl::GetInstance()->GetAllowList(PhoneAllowType::FREEZE, allowInfos, 0);
        status != PhoneStatus::OK) {
        STANDBYSERVICE_LOGD("GetAllowList failed!");
        return status;
    }
    STANDBYSERVICE_LOGD("allowInfoList size is %{public}lu", allowInfos.size());
    allowProcessNameSet_.clear();
    for (const AllowInfo& info : allowInfos) {
        allowProcessNameSet_.insert(info.GetName());
    }
    std::vector<const std::string*> names;
    for (const std::string& name : defaultNativeProcessSet_) {
        if (allowProcessNameSet_.count(name) == 0) {
            names.push_back(&name);
        }
    }
    STANDBYSERVICE_LOGD("processNameDozeset size is %{public}lu", names.size());
    std::list<SystemProcessInfo> processes;
    if (!AbilityManagerHelper::GetInstance()->GetRunningSystemProcess(processes)) {
        STANDBYSERVICE_LOGE("connect to app ability service failed");
        return PhoneStatus::SYSTEM_PROCESS_UNAVAILABLE;
    }
    STANDBYSERVICE_LOGD("systemProcessInfos size is %{public}lu", processes.size());
    std::vector<const SystemProcessInfo*> firstOfName(names.size());
    std::unordered_map<std::string_view, size_t, EndsHash> places;
    places.reserve(names.size());
    for (const std::string* name : names) {
        places.emplace(*name, places.size());
    }
    for (const SystemProcessInfo& process : processes) {
        const auto wanted = places.find(process.processName);
        if (wanted != places.end() && firstOfName[wanted->second] == nullptr) {
            firstOfName[wanted->second] = &process;
        }
    }
    freezedNativeProcess_.clear();
    freezedNativeProcess_.reserve(names.size());
    for (size_t place = 0; place < names.size(); ++place) {
        const SystemProcessInfo* process = firstOfName[place];
        if (process == nullptr || process->pid == kNoPid) {
            STANDBYSERVICE_LOGD("%{public}s 's pid is -1", names[place]->c_str());
            continue;
        }
        NativeProcessInfo& info = freezedNativeProcess_.emplace_back();
        info.SetPid(process->pid);
        info.SetProcessName(*names[place]);
        info.SetFreeze(false);
    }
    return PhoneStatus::OK;
}

void FreezeStrategy::SendFreezeInfo(bool isFreeze) {
    const char* label = isFreeze ? "Freeze" : "Thaw";
    if (freezedNativeProcess_.empty()) {
        STANDBYSERVICE_LOGD("FreezedNativeProcess size is %{public}lu", freezedNativeProcess_.size());
        return;
    }
    for (NativeProcessInfo& info : freezedNativeProcess_) {
        info.SetFreeze(isFreeze);
    }
    const std::vector<int32_t> results =
        SuspendManagerClient::GetInstance().OperateNativeProcesses(freezedNativeProcess_);
    const auto succeeded = static_cast<int32_t>(std::count(results.begin(), results.end(), PhoneStatus::OK));
    STANDBYSERVICE_LOGI("%{public}s, list size is %{public}lu, %{public}s successd list is %{public}d", label,
                        freezedNativeProcess_.size(), label, succeeded);
}

}  // namespace TARN::DevStandbyMgr
