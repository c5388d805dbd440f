#include "phone_picture.h"

#include <algorithm>

namespace TARN::Story {

void PhonePicture::Apply(const Replay::SetStep& step) {
    if (!step.phone.processes) {
        return;
    }
    processes_ = *step.phone.processes;
    byPid_.clear();
    byUid_.clear();
    killed_.clear();
    for (size_t i = 0; i < processes_.size(); ++i) {
        byPid_.emplace(processes_[i].pid, i);
        byUid_.emplace(processes_[i].uid, i);
    }
}

const Simulated::Process* PhonePicture::FindPid(int32_t pid) const {
    const auto found = byPid_.find(pid);
    return found == byPid_.end() ? nullptr : &processes_[found->second];
}

bool PhonePicture::IsRunning(int64_t uid) const {
    return std::any_of(processes_.begin(), processes_.end(), [this, uid](const Simulated::Process& process) {
        return process.uid == uid && !process.native && killed_.count(process.pid) == 0;
    });
}

std::string PhonePicture::NameOfPid(int32_t pid) const {
    const Simulated::Process* process = FindPid(pid);
    return process == nullptr ? "pid " + std::to_string(pid) : process->name;
}

std::string PhonePicture::NameOfUid(int64_t uid) const {
    const auto found = byUid_.find(uid);
    if (found == byUid_.end()) {
        return "uid " + std::to_string(uid);
    }
    const Simulated::Process& process = processes_[found->second];
    return process.bundles.empty() ? process.name : process.bundles.front();
}

const Simulated::Process* PhonePicture::Find(int32_t first, int32_t second) const {
    const Simulated::Process* process = FindPid(first);
    if (process != nullptr && process->uid == second) {
        return process;
    }
    const Simulated::Process* swapped = FindPid(second);
    return swapped != nullptr && swapped->uid == first ? swapped : process;
}

}  // namespace TARN::Story
