#ifndef DEVICE_SIMULATED_PROCESS_PORTS_H
#define DEVICE_SIMULATED_PROCESS_PORTS_H

#include <cstddef>
#include <cstdint>
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

/// Where the processes of a number, a uid or a pid, stand in a list, in its order.
class PlacesByNumber {
public:
    static constexpr size_t kNone = SIZE_MAX;

    /// Takes the numbers of a list, by place.
    void Assign(const std::vector<int32_t>& numbers);

    /// The first of a number, kNone when there is none (any more).
    [[nodiscard]] size_t First(int32_t number) const;
    [[nodiscard]] size_t Next(size_t place) const { return next_[place]; }

    /// From now on the number's list begins there.
    void BeginAt(int32_t number, size_t place);

private:
    std::unordered_map<int32_t, size_t> first_;
    std::vector<size_t> next_;
};

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
    PlacesByNumber byUid_;
    PlacesByNumber byPid_;
    std::vector<bool> isDead_;  ///< by place in the facts
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
