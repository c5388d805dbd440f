#include "sleep_clean_strategy.h"

#include <memory>
#include <string>
#include <vector>

#include "app_mgr_helper.h"
#include "common_event_support.h"
#include "os_account_manager.h"
#include "parameters.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_datashare_helper.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"
#include "time_provider_ext.h"

namespace TARN::DevStandbyMgr {

namespace {

using AppExecFwk::EventHandler;
using EventFwk::CommonEventSupport;

const std::string SLEEP_CLEAN_LOOP_TASK = "sleep_clean_loop_task";
const std::string USER_SETUP_COMPLETE = "user_setup_complete";
constexpr char kConfigName[] = "SLEEP_CLEAN";
constexpr int64_t kCheckPeriodMs = 120'000;
constexpr int64_t kCleanIntervalMs = 43'200'000;  // 12 hours

}  // namespace

ErrCode SleepCleanStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("SleepCleanStrategy is now OnCreated");
    handler_ = StandbyServiceImpl::GetInstance()->GetHandler();
    InitConfigList();
    return PhoneStatus::OK;
}

void SleepCleanStrategy::InitConfigList() {
    if (!cleaner_.LoadConfig(kConfigName)) {
        STANDBYSERVICE_LOGE("tagList is null");
    }
}

ErrCode SleepCleanStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("SleepCleanStrategy is now OnDestroy");
    handler_.reset();
    cleaner_.ForgetConfig();
    return PhoneStatus::OK;
}

void SleepCleanStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter SleepCleanStrategy HandleEvent, eventId is %{public}d", message.eventId);
    if (message.eventId == StandbyMessageType::COMMON_EVENT) {
        HandleCommonEvent(message);
    }
}

void SleepCleanStrategy::HandleCommonEvent(const StandbyMessage& message) {
    if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        STANDBYSERVICE_LOGD("COMMON_EVENT_SCREEN_ON");
        isScreenOn_ = true;
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        STANDBYSERVICE_LOGD("COMMON_EVENT_SCREEN_OFF");
        isScreenOn_ = false;
    } else if (message.action == COMMON_EVENT_USER_SLEEP_STATE_CHANGED) {
        isSleep_ = ParamsOf(message).GetBoolParam("isSleep", false);
        STANDBYSERVICE_LOGI("COMMON_EVENT_USER_SLEEP_STATE_CHANGED, sleep: %{public}d", isSleep_);
        HandleSleepStateChange();
    }
}

void SleepCleanStrategy::HandleSleepStateChange() {
    if (isSleep_) {
        StartMonitor();
    } else {
        StopMonitor();
    }
}

void SleepCleanStrategy::StopMonitor() {
    STANDBYSERVICE_LOGI("sleepClean stop monitor");
    if (handler_ == nullptr) {
        STANDBYSERVICE_LOGE("handler is null");
        return;
    }
    handler_->RemoveTask(SLEEP_CLEAN_LOOP_TASK);
}

void SleepCleanStrategy::StartMonitor() {
    if (handler_ == nullptr) {
        STANDBYSERVICE_LOGE("handler is null");
        return;
    }
    handler_->RemoveTask(SLEEP_CLEAN_LOOP_TASK);
    PostCheck();
}

void SleepCleanStrategy::PostCheck() {
    static_cast<void>(handler_->PostTask([strategy = shared_from_this()] { strategy->StartSleepCleanTask(); },
                                         SLEEP_CLEAN_LOOP_TASK, kCheckPeriodMs,
                                         static_cast<EventHandler::Priority>(PHONE_TASK_PRIORITY)));
}

void SleepCleanStrategy::StartSleepCleanTask() {
    STANDBYSERVICE_LOGI("run sleepClean start");
    if (handler_ == nullptr) {
        STANDBYSERVICE_LOGE("handler is null");
        return;
    }
    if (StartSleepClean()) {
        STANDBYSERVICE_LOGI("sleepClean sucess");
        return;
    }
    PostCheck();
}

bool SleepCleanStrategy::StartSleepClean() {
    const int64_t nowMs = TimeProviderExt::GetCurMsecTimestamp();
    if (!CheckBurshCleanConditions(nowMs)) {
        return false;
    }
    lastSleepCleanTime_ = nowMs;
    STANDBYSERVICE_LOGI("brush clean when sleepclean");
    CleanProcess();
    return true;
}

bool SleepCleanStrategy::CheckBurshCleanConditions(int64_t nowMs) const {
    if (isScreenOn_) {
        STANDBYSERVICE_LOGD("not brush clean because screen on");
        return false;
    }
    if (!isSleep_) {
        STANDBYSERVICE_LOGD("not brush clean because not sleep");
        return false;
    }
    if (!IsTreatAsChinaProduct()) {
        STANDBYSERVICE_LOGD("not brush clean because not china product");
        return false;
    }
    if (lastSleepCleanTime_ != 0 && nowMs - lastSleepCleanTime_ <= kCleanIntervalMs) {  // twelve hours are too few
        STANDBYSERVICE_LOGD("not brush clean because not reach time interval since last sleep clean");
        return false;
    }
    if (!IsUserSetupComplete()) {
        STANDBYSERVICE_LOGD("not brush clean because user setup not complete");
        return false;
    }
    return true;
}

bool SleepCleanStrategy::IsTreatAsChinaProduct() {
    std::string locale;
    return system::GetStringParameter("const.global.locale", locale, "") == PhoneStatus::OK && locale == "zh-Hans-CN";
}

bool SleepCleanStrategy::IsUserSetupComplete() {
    const auto helper = std::make_shared<StandbyDataShareHelper>(SETTINGS_DATA_ABILITY_ID);
    std::vector<int> accounts;
    if (AccountSA::OsAccountManager::QueryActiveOsAccountIds(accounts) != PhoneStatus::OK || accounts.empty()) {
        return false;
    }
    const std::string address = "datashare:///com.tarn.settingsdata/entry/settingsdata/USER_SETTINGSDATA_SECURE_" +
                                std::to_string(accounts.front()) + "?Proxy=true&key=" + USER_SETUP_COMPLETE;
    STANDBYSERVICE_LOGD("uri : %{public}s", address.c_str());
    Uri uri(address);
    std::string value;
    if (helper->Query(uri, USER_SETUP_COMPLETE, value) != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("query user_setup_complete failed");
        return false;
    }
    STANDBYSERVICE_LOGD("user_setup_complete is %{public}s", value.c_str());
    return value == "1";
}

void SleepCleanStrategy::CleanProcess() {
    std::vector<AppExecFwk::RunningProcessInfo> processes;
    if (!AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes)) {
        STANDBYSERVICE_LOGE("get all running processes failed");
        return;
    }
    for (const auto& process : processes) {
        if (CankillProcess(process)) {
            KillProcessByPid(process.pid_);
        }
    }
}

bool SleepCleanStrategy::CankillProcess(const AppExecFwk::RunningProcessInfo& process) const {
    if (cleaner_.IsListed(process)) {
        STANDBYSERVICE_LOGD("system app can kill in list, process name: %{public}s, uid : %{public}d",
                            process.processName_.c_str(), process.uid_);
        return true;
    }
    return !ProcessCleaner::IsSystemApp(process);
}

void SleepCleanStrategy::KillProcessByPid(int32_t pid) {
    if (cleaner_.Kill(pid)) {
        STANDBYSERVICE_LOGI("kill process pid: %{public}d", pid);
    } else {
        STANDBYSERVICE_LOGE("failed to kill process, pid: %{public}d", pid);
    }
}

}  // namespace TARN::DevStandbyMgr
