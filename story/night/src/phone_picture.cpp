#include "phone_picture.h"

#include <algorithm>
#include <set>

namespace TARN::Story {

uint32_t PhonePicture::PlaceOf(const Simulated::Process& process) {
    std::vector<App>& apps = scribe_.Of().apps;
    const auto [place, isNew] =
        apps_.emplace(std::tuple(process.pid, process.uid, process.name), static_cast<uint32_t>(apps.size()));
    if (isNew) {
        apps.push_back({process.pid, process.uid, process.name, process.bundles, process.native});
    }
    return place->second;
}

void PhonePicture::Apply(const Replay::SetStep& step) {
    if (!step.phone.processes) {
        return;
    }
    std::set<uint32_t> before;
    for (const Running& one : running_) {
        if (!one.isKilled) {
            before.insert(one.app);
        }
    }
    running_.clear();
    byPid_.clear();
    byUid_.clear();
    firstOfUid_.clear();
    for (const Simulated::Process& process : *step.phone.processes) {
        const uint32_t app = PlaceOf(process);
        if (before.erase(app) == 0) {
            scribe_.Tell(app, Aspect::RUNNING, "running", {});
        }
        byPid_.emplace(process.pid, running_.size());
        byUid_.emplace(process.uid, running_.size());
        firstOfUid_.emplace(process.uid, running_.size());
        running_.push_back({app, process});
    }
    for (const uint32_t app : before) {
        scribe_.Tell(app, Aspect::RUNNING, "ended", {});
    }
}

void PhonePicture::Mention(const std::string& name, int32_t uid) {
    std::vector<App>& apps = scribe_.Of().apps;
    const bool isKnown = std::any_of(apps.begin(), apps.end(), [&](const App& app) {
        return name.empty()
                   ? app.uid == uid
                   : app.name == name || std::find(app.bundles.begin(), app.bundles.end(), name) != app.bundles.end();
    });
    if (!isKnown) {
        apps.push_back({-1, uid, name.empty() ? "uid " + std::to_string(uid) : name, {}, false, true});
    }
}

void PhonePicture::Kill(int32_t pid) {
    const auto found = byPid_.find(pid);
    if (found != byPid_.end() && !running_[found->second].isKilled) {
        running_[found->second].isKilled = true;
        scribe_.Tell(running_[found->second].app, Aspect::RUNNING, "killed", {});
    }
}

const PhonePicture::Running* PhonePicture::FindPid(int32_t pid) const {
    const auto found = byPid_.find(pid);
    return found == byPid_.end() ? nullptr : &running_[found->second];
}

bool PhonePicture::IsRunning(int64_t uid) const {
    const auto [first, last] = byUid_.equal_range(uid);
    return std::any_of(first, last, [this](const auto& entry) {
        const Running& one = running_[entry.second];
        return !one.process.native && !one.isKilled;
    });
}

std::string PhonePicture::NameOfPid(int32_t pid) const {
    const Running* one = FindPid(pid);
    return one == nullptr ? "pid " + std::to_string(pid) : one->process.name;
}

std::string PhonePicture::NameOfUid(int64_t uid) const {
    const auto found = firstOfUid_.find(uid);
    if (found == firstOfUid_.end()) {
        return "uid " + std::to_string(uid);
    }
    const Simulated::Process& process = running_[found->second].process;
    return process.bundles.empty() ? process.name : process.bundles.front();
}

const PhonePicture::Running* PhonePicture::Find(int32_t first, int32_t second) const {
    const Running* one = FindPid(first);
    if (one != nullptr && one->process.uid == second) {
        return one;
    }
    const Running* swapped = FindPid(second);
    return swapped != nullptr && swapped->process.uid == first ? swapped : one;
}

void PhonePicture::TellUid(int64_t uid, Aspect aspect, std::string_view value, const std::string& reason,
                           Scribe::Id event) const {
    const auto [first, last] = byUid_.equal_range(uid);
    for (auto entry = first; entry != last; ++entry) {
        if (!running_[entry->second].process.native) {
            scribe_.Tell(running_[entry->second].app, aspect, std::string(value), reason, event);
        }
    }
}

void PhonePicture::TellName(std::string_view name, Aspect aspect, std::string_view value, const std::string& reason,
                            Scribe::Id event) const {
    const std::vector<App>& apps = scribe_.Of().apps;
    for (uint32_t place = 0; place < apps.size(); ++place) {
        if (apps[place].isNameOnly && apps[place].name == name) {
            scribe_.Tell(place, aspect, std::string(value), reason, event);
        }
    }
    for (const Running& one : running_) {
        const std::vector<std::string>& bundles = one.process.bundles;
        if (one.process.name == name || std::find(bundles.begin(), bundles.end(), name) != bundles.end()) {
            scribe_.Tell(one.app, aspect, std::string(value), reason, event);
        }
    }
}

}  // namespace TARN::Story
