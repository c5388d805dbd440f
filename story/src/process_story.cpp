#include "process_story.h"

namespace TARN::Story {

namespace {

/// Up to so many names, a line tells them.
constexpr size_t kFewNames = 3;

int64_t Size(const std::vector<std::string>& names) {
    return static_cast<int64_t>(names.size());
}

/// Why the clean runs: what asked for it, else the task that waits after a screen-off.
std::string_view CleanReason(Cause cause) {
    return cause == Cause::NONE ? "power-save mode, screen off" : Reason(cause);
}

}  // namespace

void ProcessStory::OperateNatives(const Json& processes, const Json& results) {
    std::vector<std::string> done;
    std::vector<std::string> failed;
    bool isFreeze = false;
    for (size_t i = 0; i < processes.size(); ++i) {
        const Json& process = processes[i];
        const bool isDone = results.is_array() && i < results.size() && !IsFailure(results[i]);
        isFreeze = process.value("freeze", false);
        (isDone ? done : failed).push_back(process.value("name", ""));
        if (isDone) {
            night_.Freeze(teller_.Now(), process.value("pid", -1), isFreeze);
        }
    }
    const std::string verb = isFreeze ? "froze " : "thawed ";
    const std::string_view reason = Reason(teller_.Why());
    if (failed.empty()) {
        const std::string what = done.size() <= kFewNames ? Names(done) : Count(Size(done), "native process");
        teller_.Tell(Subject::FREEZE, Because(verb + what, reason));
        return;
    }
    teller_.Tell(Subject::FREEZE,
                 Because(verb + std::to_string(done.size()) + " of " + Count(Size(done) + Size(failed), "process") +
                             ", " + std::to_string(failed.size()) + " failed (" + Names(failed) + ")",
                         reason),
                 Tone::FAILURE);
}

ProcessStory::KillGroup& ProcessStory::Kills() {
    if (kills_.instant != teller_.Instant()) {
        kills_ = {};
        kills_.instant = teller_.Instant();
    }
    return kills_;
}

void ProcessStory::Spare(int32_t uid) {
    Kills().spared.push_back(phone_.NameOfUid(uid));
}

void ProcessStory::Kill(int32_t pid, const Json& result) {
    KillGroup& group = Kills();
    if (group.entry == nullptr) {
        group.entry = &teller_.Tell(Subject::CLEAN, {});
    }
    std::string name = phone_.NameOfPid(pid);
    if (IsFailure(result)) {
        group.failed.push_back(std::move(name));
        group.entry->tone = Tone::FAILURE;
    } else {
        night_.killed.push_back(name);
        group.killed.push_back(std::move(name));
    }
    std::string text = group.killed.empty()
                           ? "killed nothing"
                           : "killed " + Count(Size(group.killed), "app") + " (" + Names(group.killed) + ")";
    if (!group.failed.empty()) {
        text += ", could not kill " + Names(group.failed);
    }
    if (!group.spared.empty()) {
        text += ", spared " + Names(group.spared);
    }
    group.entry->text = Because(std::move(text), CleanReason(teller_.Why()));
}

void ProcessStory::ProxyLocks(bool isProxied, const Json& pairs, const Json& result) {
    if (pairs.empty()) {
        return;
    }
    if (locks_.instant != teller_.Instant() || locks_.isProxied != isProxied || locks_.entry == nullptr) {
        locks_ = {teller_.Instant(), isProxied, &teller_.Tell(Subject::LOCK, {}), {}, {}};
    }
    for (const Json& pair : pairs) {
        const int32_t first = pair.at(0).get<int32_t>();
        const Simulated::Process* process = phone_.Find(first, pair.at(1).get<int32_t>());
        const bool isNative = process != nullptr && process->native;
        (isNative ? locks_.natives : locks_.apps)
            .push_back(process == nullptr ? phone_.NameOfPid(first) : process->name);
    }
    std::string who;
    for (const auto& [names, noun] : {std::pair(&locks_.natives, "native"), std::pair(&locks_.apps, "app")}) {
        if (!names->empty()) {
            who += (who.empty() ? "" : " and ") + Count(Size(*names), noun);
            who += names->size() <= kFewNames ? " (" + Names(*names) + ")" : "";
        }
    }
    locks_.entry->text = "running locks of " + who + (isProxied ? " proxied" : " released");
    if (IsFailure(result)) {
        locks_.entry->text += ", which failed" + FailureCode(result);
        locks_.entry->tone = Tone::FAILURE;
    }
}

}  // namespace TARN::Story
