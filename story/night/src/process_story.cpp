#include "process_story.h"

#include <algorithm>
#include <iterator>

#include "exemption_flag.h"
#include "plugin_texts.h"
#include "standby_constants.h"

namespace TARN::Story {

namespace {

/// Up to so many names, an event tells them.
constexpr size_t kFewNames = 3;

template <class T>
int64_t Size(const T& some) {
    return static_cast<int64_t>(some.size());
}

/// Why the clean runs: what asked for it, else the task that waits after a screen-off.
std::string CleanReason(const Scribe& scribe) {
    return scribe.Why() == Cause::NONE ? "power-save mode, screen off" : scribe.WhyInWords();
}

template <class T>
std::vector<T> Without(const std::set<T>& some, const std::set<T>& others) {
    std::vector<T> rest;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(rest));
    return rest;
}

template <class T>
std::vector<T> InBoth(const std::set<T>& some, const std::set<T>& others) {
    std::vector<T> both;
    std::set_intersection(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(both));
    return both;
}

std::string Natives(const std::vector<std::pair<int32_t, std::string>>& natives) {
    if (natives.size() > kFewNames) {
        return Count(Size(natives), "native process");
    }
    std::vector<std::string> names;
    for (const auto& [pid, name] : natives) {
        names.push_back(name);
    }
    return Names(names);
}

}  // namespace

void ProcessStory::OnFacts(const Replay::SetStep& step) {
    const auto list = step.host.allowList.find(DevStandbyMgr::AllowType::FREEZE);
    if (list != step.host.allowList.end()) {
        exemptFromFreezing_ = {list->second.begin(), list->second.end()};
    }
}

void ProcessStory::OperateNatives(const Json& processes, const Json& results) {
    if (freezing_.instant != scribe_.Instant()) {
        freezing_ = {scribe_.Instant(), scribe_.Write(Subject::FREEZE, Outcome::DONE, {}), frozen_, {}, {}, {}};
    }
    const std::set<Native> before = frozen_;
    bool isFreeze = false;
    for (size_t i = 0; i < processes.size(); ++i) {
        const Json& process = processes[i];
        const int32_t pid = process.value("pid", -1);
        std::string name = process.value("name", "");
        isFreeze = process.value("freeze", false);
        const bool isDone = results.is_array() && i < results.size() && !IsFailure(results[i]);
        const PhonePicture::Running* running = phone_.FindPid(pid);
        if (running != nullptr) {
            const std::string code =
                isDone || !results.is_array() || i >= results.size() ? "" : FailureCode(results[i]);
            scribe_.Tell(running->app, Aspect::FROZEN,
                         !isDone    ? (isFreeze ? "could not be frozen" : "could not be thawed")
                         : isFreeze ? "frozen"
                                    : "thawed",
                         scribe_.WhyInWords() + code, freezing_.event);
        }
        if (!isDone) {
            freezing_.failed.push_back(std::move(name));
            freezing_.failure = isFreeze ? " could not be frozen" : " could not be thawed";
        } else if (isFreeze) {
            frozen_.emplace(pid, std::move(name));
        } else {
            frozen_.erase({pid, std::move(name)});
        }
    }
    if (isFreeze && processes.size() > 1) {
        TellNotFrozen(processes);
    }
    if (frozen_ != before || freezing_.reason.empty()) {
        freezing_.event = scribe_.Renew(freezing_.event);
        freezing_.reason = scribe_.WhyInWords();
    }
    RetellFrozen();
}

/// The natives that a freeze passes over, and what the lists say of them.
void ProcessStory::TellNotFrozen(const Json& processes) const {
    std::set<std::string> handled;
    for (const Json& process : processes) {
        handled.insert(process.value("name", ""));
    }
    const std::set<std::string>* listed = nullptr;
    if (config_ != nullptr) {
        const auto lists = config_->persistAllow.find("FREEZE");
        if (lists != config_->persistAllow.end()) {
            const auto list = lists->second.find(condition_);
            listed = list == lists->second.end() ? nullptr : &list->second;
        }
    }
    for (const PhonePicture::Running& one : phone_.All()) {
        const std::string& name = one.process.name;
        if (!one.process.native || handled.count(name) != 0) {
            continue;
        }
        std::string why;
        if (exemptFromFreezing_.count(name) != 0) {
            why = "it is exempt from freezing";
        } else if (condition_ != 0 && (listed == nullptr || listed->count(name) == 0)) {
            why = "it is not in the list of FREEZE for condition " + std::to_string(condition_);
        }
        scribe_.Tell(one.app, Aspect::FROZEN, "not frozen", std::move(why), freezing_.event);
    }
}

/// What became of the natives in this instant, said anew with each piece.
void ProcessStory::RetellFrozen() {
    const std::vector<Native> froze = Without(frozen_, freezing_.before);
    const std::vector<Native> thawed = Without(freezing_.before, frozen_);
    const std::vector<Native> stayed = InBoth(frozen_, freezing_.before);
    Event& event = scribe_.At(freezing_.event);
    event.text.clear();
    event.reason = freezing_.reason;
    event.outcome = Outcome::DONE;
    event.isRepeat = false;
    const auto add = [&event](const std::string& text) { event.text += (event.text.empty() ? "" : ", ") + text; };
    if (!froze.empty()) {
        add("froze " + Natives(froze));
    }
    if (!thawed.empty()) {
        add("thawed " + Natives(thawed));
    }
    if (!event.text.empty() && !stayed.empty()) {
        add(std::to_string(stayed.size()) + " stay" + (stayed.size() == 1 ? "s" : "") + " frozen");
    }
    if (!freezing_.failed.empty()) {
        add(Names(freezing_.failed) + freezing_.failure);
        event.outcome = Outcome::FAILED;
    }
    if (event.text.empty()) {
        event.text = frozen_.empty() ? "nothing was frozen" : "made sure that " + Natives(stayed) + " stay frozen";
        event.outcome = Outcome::NOTED;
        event.isRepeat = true;
    }
    SetFrozenLane(freezing_.event);
}

ProcessStory::KillGroup& ProcessStory::Kills() {
    if (kills_.instant != scribe_.Instant()) {
        kills_ = {};
        kills_.instant = scribe_.Instant();
    }
    return kills_;
}

void ProcessStory::BeginClean(bool isSparingUsed) {
    Kills().isSparingUsed = isSparingUsed;
}

void ProcessStory::Spare(int32_t uid) {
    Kills().busyUids.insert(uid);
}

Scribe::Id ProcessStory::Kill(int32_t pid, const Json& result) {
    KillGroup& group = Kills();
    if (group.event == kNoEvent) {
        group.event = scribe_.Write(Subject::CLEAN, Outcome::DONE, {}, CleanReason(scribe_));
    }
    std::string name = phone_.NameOfPid(pid);
    if (const PhonePicture::Running* running = phone_.FindPid(pid)) {
        scribe_.Tell(running->app, Aspect::CLEAN, IsFailure(result) ? "could not be killed" : "killed",
                     CleanReason(scribe_) + (IsFailure(result) ? FailureCode(result) : ""), group.event);
    }
    (IsFailure(result) ? group.failed : group.killed).push_back(std::move(name));
    return group.event;
}

void ProcessStory::ForgetEnded(Scribe::Id event) {
    const auto isGone = [this](int32_t pid) {
        const PhonePicture::Running* running = phone_.FindPid(pid);
        return running == nullptr || running->isKilled;
    };
    const auto proxied = std::erase_if(proxied_, [&](const Holder& holder) { return isGone(holder.second); });
    const auto frozen = std::erase_if(frozen_, [&](const Native& native) { return isGone(native.first); });
    if (proxied != 0) {
        SetLocksLane(event != kNoEvent ? event
                                       : scribe_.Write(Subject::LOCK, Outcome::HAPPENED,
                                                       Count(static_cast<int64_t>(proxied), "process") +
                                                           " whose running locks were proxied ended"));
    }
    if (frozen != 0) {
        SetFrozenLane(event != kNoEvent
                          ? event
                          : scribe_.Write(Subject::FREEZE, Outcome::HAPPENED,
                                          Count(static_cast<int64_t>(frozen), "frozen native process") + " ended"));
    }
}

void ProcessStory::SetFrozenLane(Scribe::Id event) {
    scribe_.Set(LaneId::FROZEN, frozen_.empty() ? "none" : "frozen", Size(frozen_), event);
}

void ProcessStory::SetLocksLane(Scribe::Id event) {
    scribe_.Set(LaneId::LOCKS, proxied_.empty() ? "none" : "proxied", Size(proxied_), event);
}

void ProcessStory::Settle() {
    if (kills_.instant == scribe_.Instant() && kills_.event != kNoEvent) {
        TellSpared();
    }
}

void ProcessStory::TellSpared() {
    std::vector<std::string> spared;
    for (const PhonePicture::Running& one : phone_.All()) {
        if (one.process.native || one.isKilled) {
            continue;
        }
        const bool isBusy = kills_.busyUids.count(one.process.uid) != 0;
        const std::string why = kills_.isSparingUsed && one.process.foreground ? "it is in the foreground"
                                : isBusy                                       ? "it has a continuous task"
                                : one.process.system                           ? "it is the system's"
                                                                               : "";
        if (isBusy) {
            spared.push_back(phone_.NameOfUid(one.process.uid));
        }
        scribe_.Tell(one.app, Aspect::CLEAN, "spared", why, kills_.event);
    }
    Event& event = scribe_.At(kills_.event);
    event.text = kills_.killed.empty()
                     ? "killed nothing"
                     : "killed " + Count(Size(kills_.killed), "app") + " (" + Names(kills_.killed) + ")";
    if (!kills_.failed.empty()) {
        event.text += ", could not kill " + Names(kills_.failed);
        event.outcome = Outcome::FAILED;
    }
    if (!spared.empty()) {
        event.text += ", spared " + Names(spared);
    }
}

std::string ProcessStory::NameOf(const Holder& holder) const {
    const PhonePicture::Running* running = phone_.Find(holder.first, holder.second);
    return running == nullptr ? phone_.NameOfPid(holder.second) : running->process.name;
}

bool ProcessStory::IsNative(const Holder& holder) const {
    const PhonePicture::Running* running = phone_.Find(holder.first, holder.second);
    return running != nullptr && running->process.native;
}

std::string ProcessStory::WhoHolds(const std::vector<Holder>& holders) const {
    std::vector<std::string> natives;
    std::vector<std::string> apps;
    for (const Holder& holder : holders) {
        (IsNative(holder) ? natives : apps).push_back(NameOf(holder));
    }
    std::string who;
    for (const auto& [names, noun] : {std::pair(&natives, "native"), std::pair(&apps, "app")}) {
        if (!names->empty()) {
            who += (who.empty() ? "" : " and ") + Count(Size(*names), noun);
            who += holders.size() <= kFewNames ? " (" + Names(*names) + ")" : "";
        }
    }
    return who;
}

void ProcessStory::ProxyLocks(bool isProxied, const Json& pairs, const Json& result) {
    if (pairs.empty()) {
        return;
    }
    if (proxying_.instant != scribe_.Instant()) {
        proxying_ = {scribe_.Instant(), scribe_.Write(Subject::LOCK, Outcome::DONE, {}), proxied_, {}, {}, {}, {}};
    }
    const std::set<Holder> before = proxied_;
    for (const Json& pair : pairs) {
        const int32_t first = pair.at(0).get<int32_t>();
        const int32_t second = pair.at(1).get<int32_t>();
        const PhonePicture::Running* running = phone_.Find(first, second);
        // which of the two is the pid differs between the calls; a process that is known tells
        const Holder holder = running == nullptr ? Holder(std::minmax(first, second))
                                                 : Holder{running->process.uid, running->process.pid};
        if (IsFailure(result)) {
            proxying_.failed.push_back(NameOf(holder));
            proxying_.failure =
                std::string(isProxied ? " could not be proxied" : " could not be released") + FailureCode(result);
        } else if (isProxied) {
            proxied_.insert(holder);
        } else {
            proxied_.erase(holder);
        }
        std::string why = WhyOf(holder, isProxied);
        proxying_.why[holder] = scribe_.WhyInWords().empty() ? why : scribe_.WhyInWords();
        if (running != nullptr) {
            scribe_.Tell(running->app, Aspect::LOCKS,
                         IsFailure(result) ? proxying_.failure.substr(1)
                         : isProxied       ? "proxied"
                                           : "counted",
                         std::move(why), proxying_.event);
        }
    }
    if (proxied_ != before || proxying_.reason.empty()) {
        proxying_.event = scribe_.Renew(proxying_.event);
        proxying_.reason = scribe_.WhyInWords();
    }
    RetellLocks();
}

/// How the host sees the process, where it was moved for that; else what is going on.
std::string ProcessStory::WhyOf(const Holder& holder, bool isProxied) const {
    const auto verdict = verdicts_.find(holder);
    const bool isItsOwn = verdict != verdicts_.end() && verdict->second.isExempt != isProxied;
    return isItsOwn ? verdict->second.why : scribe_.WhyInWords();
}

/// Those that were moved in this instant, each reason with whom it moved.
std::vector<ProcessStory::Moved> ProcessStory::MovedLocks() const {
    std::vector<Moved> moved;
    const auto add = [&](const std::vector<Holder>& holders, bool isProxied) {
        for (const Holder& holder : holders) {
            const std::string& why = proxying_.why.at(holder);
            const auto same = std::find_if(moved.begin(), moved.end(), [&](const Moved& one) {
                return one.isProxied == isProxied && one.why == why;
            });
            (same == moved.end() ? moved.emplace_back(Moved{isProxied, why, {}}) : *same).holders.push_back(holder);
        }
    };
    add(Without(proxied_, proxying_.before), true);
    add(Without(proxying_.before, proxied_), false);
    for (Moved& one : moved) {
        if (one.holders.size() > 1 && one.why == DevStandbyMgr::DescribeExemption(0)) {
            one.why = "nothing exempts them";
        }
    }
    return moved;
}

void ProcessStory::RetellLocks() {
    const std::vector<Moved> moved = MovedLocks();
    const bool isOneReason =
        std::all_of(moved.begin(), moved.end(), [&](const Moved& one) { return one.why == moved.front().why; });
    Event& event = scribe_.At(proxying_.event);
    event.text.clear();
    event.reason = !moved.empty() && isOneReason ? moved.front().why : moved.empty() ? proxying_.reason : "";
    event.outcome = Outcome::DONE;
    event.isRepeat = false;
    const auto add = [&](const std::string& text) {
        event.text += (event.text.empty() ? "" : isOneReason ? ", " : "; ") + text;
    };
    for (const Moved& one : moved) {
        const std::string text = (event.text.empty() ? "running locks of " : "those of ") + WhoHolds(one.holders) +
                                 (one.isProxied ? " proxied" : " released");
        add(isOneReason ? text : Because(text, one.why));
    }
    if (!proxying_.failed.empty()) {
        add("running locks of " + Names(proxying_.failed) + proxying_.failure);
        event.outcome = Outcome::FAILED;
    }
    if (event.text.empty()) {
        event.text = "running locks as they were";
        event.outcome = Outcome::NOTED;
        event.isRepeat = true;
    }
    SetLocksLane(proxying_.event);
}

void ProcessStory::OnReason(const DevStandbyMgr::RunningLockReason& reason) {
    if (!reason.failedQuestion.empty()) {
        const bool areNatives =
            reason.failedQuestion == DevStandbyMgr::DescribeQuestions(DevStandbyMgr::Question::NATIVES);
        const std::string text =
            areNatives ? std::string(kNativesLeftOut)
                       : "running locks are left as they are: " + reason.failedQuestion + " cannot be read";
        if (!scribe_.HasWritten(Subject::LOCK, text)) {
            scribe_.WriteNew(Subject::LOCK, Outcome::FAILED, text);
        }
        return;
    }
    std::map<Holder, Verdict> before;
    before.swap(verdicts_);
    for (const DevStandbyMgr::AppVerdict& app : reason.apps) {
        const Holder holder{app.uid, app.pid};
        std::string why = DevStandbyMgr::DescribeExemption(app.exemptionFlags);
        const auto earlier = before.find(holder);
        const PhonePicture::Running* running = phone_.Find(app.uid, app.pid);
        if (app.isExempt && running != nullptr && proxied_.count(holder) == 0 &&
            (earlier == before.end() || earlier->second.why != why)) {
            scribe_.Tell(running->app, Aspect::LOCKS, "counted", why);
        }
        verdicts_.emplace(holder, Verdict{std::move(why), app.isExempt});
    }
}

}  // namespace TARN::Story
