#include "process_ports.h"

#include <set>
#include <tuple>
#include <utility>

namespace TARN::Simulated {

namespace {

using AppExecFwk::AppState;
using AppExecFwk::AppStateData;
using AppExecFwk::RunningProcessInfo;
using AppExecFwk::SystemProcessInfo;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;

AppStateData StateOf(const Process& process, AppState state) {
    return {process.bundles.empty() ? process.name : process.bundles.front(), process.pid, process.uid, state};
}

}  // namespace

bool Processes::GetRunningSystemProcess(std::list<SystemProcessInfo>& infos) {
    if (core_.Fault("AbilityManagerHelper.GetRunningSystemProcess") != 0) {
        return false;
    }
    infos.clear();
    for (size_t i = 0; i < core_.facts.processes.size(); ++i) {
        const Process& process = core_.facts.processes[i];
        if (process.native && !isDead_[i]) {
            infos.push_back({process.name, process.pid, process.uid});
        }
    }
    return true;
}

bool Processes::GetAllRunningProcesses(std::vector<RunningProcessInfo>& infos) {
    if (core_.Fault("AppMgrHelper.GetAllRunningProcesses") != 0) {
        return false;
    }
    infos.clear();
    for (size_t i = 0; i < core_.facts.processes.size(); ++i) {
        const Process& process = core_.facts.processes[i];
        if (!process.native && !isDead_[i]) {
            infos.push_back({process.name, process.pid, process.uid, process.bundles});
        }
    }
    return true;
}

bool Processes::GetForegroundApplications(std::vector<AppStateData>& apps) {
    if (core_.Fault("AppMgrHelper.GetForegroundApplications") != 0) {
        return false;
    }
    apps.clear();
    for (size_t i = 0; i < core_.facts.processes.size(); ++i) {
        const Process& process = core_.facts.processes[i];
        if (!process.native && process.foreground && !isDead_[i]) {
            apps.push_back(StateOf(process, AppState::FOREGROUND));
        }
    }
    return true;
}

bool Processes::CheckIsSystemAppByUid(int32_t uid, bool& isSystemApp) {
    const auto found = placesByUid_.find(uid);
    if (core_.Fault("BundleManagerHelper.CheckIsSystemAppByUid") != 0 || found == placesByUid_.end()) {
        return false;
    }
    std::deque<size_t>& places = found->second;
    while (!places.empty() && isDead_[places.front()]) {
        places.pop_front();
    }
    if (places.empty()) {
        return false;
    }
    isSystemApp = core_.facts.processes[places.front()].system;
    return true;
}

int32_t Processes::KillProcess(const std::unordered_map<std::string, std::string>& processInfo) {
    const auto named = processInfo.find("pid");
    const std::string pid = named == processInfo.end() ? std::string() : named->second;
    const int32_t code = core_.Call("ResSchedClient.KillProcess", [&pid] {
        return nlohmann::ordered_json{{"pid", pid}};
    });
    if (code == 0) {
        const auto [first, last] = placeByPid_.equal_range(pid);
        for (auto it = first; it != last; ++it) {
            isDead_[it->second] = true;
            Report(core_.facts.processes[it->second], AppState::ENDED);
        }
        placeByPid_.erase(first, last);
    }
    return code;
}

void Processes::Replace(std::vector<Process> processes) {
    using Key = std::tuple<int32_t, int32_t, std::string>;
    const auto running = [this] {
        std::map<Key, const Process*> apps;
        for (size_t i = 0; i < core_.facts.processes.size(); ++i) {
            const Process& process = core_.facts.processes[i];
            if (!process.native && !isDead_[i]) {
                apps.emplace(Key(process.pid, process.uid, process.name), &process);
            }
        }
        return apps;
    };
    const std::map<Key, const Process*> had = running();
    const std::vector<Process> before = std::exchange(core_.facts.processes, std::move(processes));
    Index();
    const std::map<Key, const Process*> has = running();
    for (const auto& [key, process] : had) {
        if (has.count(key) == 0) {
            Report(*process, AppState::ENDED);
        }
    }
    for (const auto& [key, process] : has) {
        const auto earlier = had.find(key);
        if (earlier == had.end()) {
            Report(*process, AppState::STARTED);
        }
        if (process->foreground != (earlier != had.end() && earlier->second->foreground)) {
            Report(*process, process->foreground ? AppState::FOREGROUND : AppState::BACKGROUND);
        }
    }
}

void Processes::Index() {
    placesByUid_.clear();
    placeByPid_.clear();
    isDead_.assign(core_.facts.processes.size(), false);
    for (size_t i = 0; i < core_.facts.processes.size(); ++i) {
        const Process& process = core_.facts.processes[i];
        placesByUid_[process.uid].push_back(i);
        placeByPid_.emplace(std::to_string(process.pid), i);
    }
}

void Processes::Report(const Process& process, AppState state) {
    if (!observer_ || process.native) {
        return;
    }
    core_.time.Post(core_.time.NowMs(), [this, app = StateOf(process, state)] {
        if (observer_) {
            observer_(app);
        }
    });
}

int32_t BackgroundTasks::ContinuousTasks(std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>>& list) {
    list.clear();
    if (const int32_t code = core_.Fault("BackgroundTaskMgrHelper.GetContinuousTaskApps"); code != 0) {
        return code;
    }
    for (const ContinuousTask& task : core_.facts.continuousTasks) {
        list.push_back(std::make_shared<ContinuousTaskCallbackInfo>(task.type, task.uid, task.pid));
    }
    return 0;
}

void BackgroundTasks::Replace(std::vector<ContinuousTask> tasks) {
    using Key = std::tuple<uint32_t, int32_t, int32_t>;
    const auto keys = [](const std::vector<ContinuousTask>& list) {
        std::set<Key> set;
        for (const ContinuousTask& task : list) {
            set.emplace(task.type, task.uid, task.pid);
        }
        return set;
    };
    const std::set<Key> had = keys(core_.facts.continuousTasks);
    const std::set<Key> has = keys(tasks);
    core_.facts.continuousTasks = std::move(tasks);
    const auto report = [this](const Key& key, bool started) {
        const auto [type, uid, pid] = key;
        Report({type, uid, pid}, started);
    };
    for (const Key& key : had) {
        if (has.count(key) == 0) {
            report(key, false);
        }
    }
    for (const Key& key : has) {
        if (had.count(key) == 0) {
            report(key, true);
        }
    }
}

void BackgroundTasks::Report(const ContinuousTask& task, bool started) {
    if (!observer_) {
        return;
    }
    core_.time.Post(core_.time.NowMs(), [this, task, started] {
        if (observer_) {
            observer_(ContinuousTaskCallbackInfo(task.type, task.uid, task.pid), started);
        }
    });
}

}  // namespace TARN::Simulated
