#ifndef DEVICE_SIMULATED_PROCESS_PORTS_H
#define DEVICE_SIMULATED_PROCESS_PORTS_H

#include <deque>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "ability_manager_client.h"
#include "app_mgr_client.h"
#include "background_task_mgr_helper.h"
#include "bundle_mgr_client.h"
#include "phone_core.h"
#include "res_sched_client.h"

namespace TARN::Simulated {

/// The phone's processes: one place behind the four services that know of them.
class Processes : public AppExecFwk::AbilityManagerClient,
                  public AppExecFwk::AppMgrClient,
                  public AppExecFwk::BundleMgrClient,
                  public ResourceSchedule::ResSchedClient {
public:
    explicit Processes(PhoneCore& core) : core_(core) {}

    bool GetRunningSystemProcess(std::list<AppExecFwk::SystemProcessInfo>& infos) override;
    bool GetAllRunningProcesses(std::vector<AppExecFwk::RunningProcessInfo>& infos) override;
    bool GetForegroundApplications(std::vector<AppExecFwk::AppStateData>& apps) override;
    void ObserveStates(StateObserver observer) override { observer_ = std::move(observer); }
    bool CheckIsSystemAppByUid(int32_t uid, bool& isSystemApp) override;
    int32_t KillProcess(const std::unordered_map<std::string, std::string>& processInfo) override;

    /// Replaces the processes and tells the observer which of the applications' ended, started or changed place.
    void Replace(std::vector<Process> processes);

private:
    void Index();
    void Report(const Process& process, AppExecFwk::AppState state);

    PhoneCore& core_;
    StateObserver observer_;
    std::unordered_map<int32_t, std::deque<size_t>> placesByUid_;  ///< of each uid's processes; the first counts
    std::unordered_multimap<std::string, size_t> placeByPid_;      ///< by the pid as text
    std::vector<bool> isDead_;                                     ///< by place in the facts
};

/// The continuous tasks.
class BackgroundTasks : public BackgroundTaskMgr::BackgroundTaskMgrHelper {
public:
    explicit BackgroundTasks(PhoneCore& core) : core_(core) {}

    /// Replaces the tasks and tells the observer which of them started and stopped.
    void Replace(std::vector<ContinuousTask> tasks);
    void DropObserver() { observer_ = nullptr; }

protected:
    int32_t ContinuousTasks(std::vector<std::shared_ptr<BackgroundTaskMgr::ContinuousTaskCallbackInfo>>& list) override;
    void Observe(ContinuousTaskObserver observer) override { observer_ = std::move(observer); }

private:
    void Report(const ContinuousTask& task, bool started);

    PhoneCore& core_;
    ContinuousTaskObserver observer_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PROCESS_PORTS_H
