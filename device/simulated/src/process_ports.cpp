#include "process_ports.h"

#include <algorithm>
#include <charconv>
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

void PlacesByNumber::Assign(const std::vector<int32_t>& numbers) {
    first_.clear();
    next_.resize(numbers.size());
    for (size_t place = numbers.size(); place-- > 0;) {
        const auto [first, isOnly] = first_.try_emplace(numbers[place], kNone);
        next_[place] = std::exchange(first->second, place);
    }
}

size_t PlacesByNumber::First(int32_t number) const {
    const auto first = first_.find(number);
    return first == first_.end() ? kNone : first->second;
}

void PlacesByNumber::BeginAt(int32_t number, size_t place) {
    if (const auto first = first_.find(number); first != first_.end()) {
        first->second = place;
    }
}

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
    if (core_.Fault("BundleManagerHelper.CheckIsSystemAppByUid") != 0) {
        return false;
    }
    const size_t first = byUid_.First(uid);
    size_t place = first;
    while (place != PlacesByNumber::kNone && isDead_[place]) {
        place = byUid_.Next(place);
    }
    if (place != first) {
        byUid_.BeginAt(uid, place);  // the dead are not asked about again
    }
    if (place == PlacesByNumber::kNone) {
        return false;
    }
    isSystemApp = core_.facts.processes[place].system;
    return true;
}

int32_t Processes::KillProcess(const std::unordered_map<std::string, std::string>& processInfo) {
    const auto named = processInfo.find("pid");
    const std::string pid = named == processInfo.end() ? std::string() : named->second;
    const int32_t code = core_.Call("ResSchedClient.KillProcess", [&pid] {
        return nlohmann::ordered_json{{"pid", pid}};
    });
    if (code == 0) {
        int32_t number = 0;
        std::from_chars(pid.data(), pid.data() + pid.size(), number);
        if (pid != std::to_string(number)) {
            return code;  // nobody's
        }
        for (size_t place = byPid_.First(number); place != PlacesByNumber::kNone; place = byPid_.Next(place)) {
            isDead_[place] = true;
            Report(core_.facts.processes[place], AppState::ENDED);
        }
        byPid_.BeginAt(number, PlacesByNumber::kNone);
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
    const std::vector<Process>& processes = core_.facts.processes;
    isDead_.assign(processes.size(), false);
    std::vector<int32_t> numbers(processes.size());
    std::transform(processes.begin(), processes.end(), numbers.begin(), [](const Process& one) { return one.uid; });
    byUid_.Assign(numbers);
    std::transform(processes.begin(), processes.end(), numbers.begin(), [](const Process& one) { return one.pid; });
    byPid_.Assign(numbers);
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
