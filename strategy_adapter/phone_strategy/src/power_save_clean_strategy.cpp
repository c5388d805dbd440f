#include "power_save_clean_strategy.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "app_mgr_helper.h"
#include "background_task_mgr_helper.h"
#include "battery_srv_client.h"
#include "common_event_support.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "power_mgr_client.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::EventHandler;
using EventFwk::CommonEventSupport;

const std::string g_cleanTask = "power_save_clean_task";
constexpr char kConfigName[] = "POWER_SAVE_CLEAN";
constexpr char kPowerModeKey[] = "current_power_mode";
constexpr int64_t kDelayMs = 30'000;
constexpr int64_t kStrictDelayMs = 10'000;

}  // namespace

ErrCode PowerSaveCleanStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("PowerSaveCleanStrategy is now OnCreated");
    handler_ = StandbyServiceImpl::GetInstance()->GetHandler();
    InitConfigList();
    return PhoneStatus::OK;
}

void PowerSaveCleanStrategy::InitConfigList() {
    if (!cleaner_.LoadConfig(kConfigName)) {
        STANDBYSERVICE_LOGE("tagList is null");
    }
}

ErrCode PowerSaveCleanStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("PowerSaveCleanStrategy is now OnDestroy");
    return PhoneStatus::OK;
}

void PowerSaveCleanStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter HandleEvent, eventId is %{public}d", message.eventId);
    if (message.eventId == StandbyMessageType::COMMON_EVENT) {
        HandleCommonEvent(message);
    }
}

void PowerSaveCleanStrategy::HandleCommonEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter HandleCommonEvent, action_ is %{public}s", message.action.c_str());
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
        handler_->RemoveTask(g_cleanTask);
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        HandleScrOffAction();
    } else if (message.action == CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED) {
        HandlePowerSaveModeChanged(message);
    }
}

void PowerSaveCleanStrategy::HandleScrOffAction() {
    handler_->RemoveTask(g_cleanTask);
    static_cast<void>(handler_->PostTask([strategy = shared_from_this()] { strategy->OnCleanTask(); }, g_cleanTask,
                                         isStrictPowerSaveMode_ ? kStrictDelayMs : kDelayMs,
                                         static_cast<EventHandler::Priority>(PHONE_TASK_PRIORITY)));
}

void PowerSaveCleanStrategy::OnCleanTask() {
    if (isScreenOn_ || !isPowerSaveMode_ || (!isStrictPowerSaveMode_ && IsCharging())) {
        return;
    }
    CleanProcess();
}

void PowerSaveCleanStrategy::HandlePowerSaveModeChanged(const StandbyMessage& message) {
    isPowerSaveMode_ = ParamsOf(message).GetBoolParam(kPowerModeKey, false);
    isStrictPowerSaveMode_ = PowerMgr::PowerMgrClient::GetInstance().GetDeviceMode() == DEVICE_MODE_ECM;
    if (isStrictPowerSaveMode_) {
        CleanProcess();  // at once: neither screen nor charger nor the mode's own flag is asked
    }
}

bool PowerSaveCleanStrategy::IsCharging() {
    return PowerMgr::BatterySrvClient::GetInstance().GetPluggedType() != 0;
}

void PowerSaveCleanStrategy::CleanProcess() {
    std::vector<AppExecFwk::RunningProcessInfo> processes;
    if (!AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes)) {
        STANDBYSERVICE_LOGE("get all running processes failed");
        return;
    }
    std::vector<AppExecFwk::AppStateData> foreground;
    if (!AppMgrHelper::GetInstance()->GetForegroundApplications(foreground)) {
        STANDBYSERVICE_LOGE("get fg running processes failed");
        return;
    }
    std::unordered_set<int32_t> protectedPids;
    std::vector<std::shared_ptr<BackgroundTaskMgr::ContinuousTaskCallbackInfo>> tasks;
    // A refusal does not end the clean: it is the only one of this screen-off, and the foreground is spared anyway.
    static_cast<void>(BackgroundTaskMgr::BackgroundTaskMgrHelper::GetContinuousTaskApps(tasks));
    for (const auto& task : tasks) {
        if (task == nullptr) {
            continue;
        }
        STANDBYSERVICE_LOGI("continuous task type: %{public}u, uid: %{public}d. no clean", task->GetTypeId(),
                            task->GetCreatorUid());
        protectedPids.insert(task->GetCreatorPid());
    }
    for (const auto& app : foreground) {
        protectedPids.insert(app.pid);
    }
    for (const auto& process : processes) {
        if (CankillProcess(process) && protectedPids.count(process.pid_) == 0) {
            KillProcessByPid(process.pid_);
        }
    }
}

bool PowerSaveCleanStrategy::CankillProcess(const AppExecFwk::RunningProcessInfo& process) const {
    if (cleaner_.IsListed(process)) {
        STANDBYSERVICE_LOGD("system app can kill in list, process name: %{public}s, uid : %{public}d",
                            process.processName_.c_str(), process.uid_);
        return true;
    }
    return !ProcessCleaner::IsSystemApp(process);
}

void PowerSaveCleanStrategy::KillProcessByPid(int32_t pid) {
    if (cleaner_.Kill(pid)) {
        STANDBYSERVICE_LOGI("kill process pid: %{public}d", pid);
    } else {
        STANDBYSERVICE_LOGE("failed to kill process, pid: %{public}d", pid);
    }
}

}  // namespace TARN::DevStandbyMgr
