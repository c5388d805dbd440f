#include "running_applications.h"

#include <memory>
#include <utility>

#include "app_mgr_helper.h"
#include "background_task_mgr_helper.h"
#include "bundle_manager_helper.h"
#include "host_reason.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using BackgroundTaskMgr::BackgroundTaskMgrHelper;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;

std::optional<bool> IsOfTheSystem(int32_t uid) {
    bool isSystemApp = false;
    return BundleManagerHelper::GetInstance()->CheckIsSystemAppByUid(uid, isSystemApp) ? std::optional(isSystemApp)
                                                                                       : std::nullopt;
}

}  // namespace

void RunningApplications::MarkStale() noexcept {
    isStale_ = true;
    isUseStale_ = true;
}

void RunningApplications::NoteAnswer(uint8_t question, bool isAnswered) noexcept {
    unanswered_ = static_cast<uint8_t>(isAnswered ? unanswered_ & ~question : unanswered_ | question);
}

bool RunningApplications::IsDue(std::atomic<bool>& isStale) const {
    return isStale.exchange(false) || !isObserved_;
}

ErrCode RunningApplications::Update() {
    if (!IsDue(isStale_)) {
        return ERR_OK;
    }
    std::vector<AppExecFwk::RunningProcessInfo> processes;
    const bool isAnswered = AppMgrHelper::GetInstance()->GetAllRunningProcesses(processes);
    NoteAnswer(Question::APPLICATIONS, isAnswered);
    if (!isAnswered) {
        STANDBYSERVICE_LOGE("the running applications could not be fetched");
        isStale_ = true;
        return ERR_RUNNING_PROCESSES_UNAVAILABLE;
    }
    std::map<int32_t, RunningApplication> running;
    size_t unclassified = 0;
    for (const auto& process : processes) {
        const std::string& name = AppMgrHelper::NameOf(process);
        const auto [entry, isNew] = running.try_emplace(process.uid_);
        RunningApplication& app = entry->second;
        if (isNew) {
            const auto known = byUid_.find(process.uid_);
            const bool isSame = isObserved_ && known != byUid_.end() &&
                                known->second.processes.front().pid == process.pid_ && known->second.isSystem;
            app.name = name;
            app.isSystem = isSame ? known->second.isSystem : IsOfTheSystem(process.uid_);
            unclassified += app.isSystem ? 0 : 1;
        }
        app.processes.push_back({process.pid_, name});
    }
    NoteAnswer(Question::SYSTEM, unclassified == 0);
    if (std::exchange(unclassified_, unclassified) != unclassified && unclassified != 0) {
        STANDBYSERVICE_LOGW("%{public}lu applications could not be classified, they count as not the system's",
                            unclassified);
    }
    byUid_.swap(running);
    return ERR_OK;
}

bool RunningApplications::UpdateUse() {
    if (!IsDue(isUseStale_)) {
        return true;
    }
    const bool hasTasks = UpdateTasks();
    const bool hasForeground = UpdateForeground();
    for (auto& [uid, app] : byUid_) {
        const auto types = taskTypes_.find(uid);
        app.taskTypes = types == taskTypes_.end() ? std::set<uint32_t>() : types->second;
        app.isForeground = foregroundUids_.count(uid) != 0;
    }
    isUseStale_ = !hasTasks || !hasForeground;
    return hasTasks && hasForeground;
}

bool RunningApplications::UpdateTasks() {
    std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>> tasks;
    const bool isAnswered = BackgroundTaskMgrHelper::GetContinuousTaskApps(tasks) == ERR_OK;
    NoteAnswer(Question::TASKS, isAnswered);
    if (!isAnswered) {
        STANDBYSERVICE_LOGW("the continuous tasks could not be fetched");
        return false;
    }
    areTasksKnown_ = true;
    taskTypes_.clear();
    for (const auto& task : tasks) {
        if (task != nullptr) {
            taskTypes_[task->GetCreatorUid()].insert(task->GetTypeId());
        }
    }
    return true;
}

bool RunningApplications::UpdateForeground() {
    std::vector<AppExecFwk::AppStateData> foreground;
    const bool isAnswered = AppMgrHelper::GetInstance()->GetForegroundApplications(foreground);
    NoteAnswer(Question::FOREGROUND, isAnswered);
    if (!isAnswered) {
        STANDBYSERVICE_LOGW("the foreground applications could not be fetched");
        return false;
    }
    isForegroundKnown_ = true;
    foregroundUids_.clear();
    for (const auto& app : foreground) {
        foregroundUids_.insert(app.uid);
    }
    return true;
}

}  // namespace TARN::DevStandbyMgr
