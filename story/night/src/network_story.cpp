#include "network_story.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "exemption_flag.h"
#include "phrases.h"

namespace TARN::Story {

namespace {

constexpr size_t kFewNames = 3;

struct PushNews {
    std::string_view key;
    bool value;
    std::string_view text;
};

constexpr std::array kPushNews = {
    PushNews{"ctrl_network_status", true, "push clients told: the network is under control"},
    PushNews{"ctrl_network_status", false, "push clients told: wifi is gone"},
    PushNews{"restore_network_status", true, "push clients told: the network is free again"},
};

}  // namespace

std::string NetworkStory::WhoGetsThrough() const {
    if (trusted_.empty()) {
        return "on: no app reaches the network";
    }
    std::string text = "on: only " + Count(static_cast<int64_t>(trusted_.size()), "app") +
                       (trusted_.size() == 1 ? " reaches" : " reach") + " the network";
    if (trusted_.size() > kFewNames) {
        return text;
    }
    std::vector<std::string> names;
    std::transform(trusted_.begin(), trusted_.end(), std::back_inserter(names),
                   [this](int64_t uid) { return phone_.NameOfUid(uid); });
    return text + " (" + Names(names) + ")";
}

NetworkStory::Change& NetworkStory::ThisChange() {
    if (change_.instant != scribe_.Instant()) {
        change_ = {scribe_.Instant(), scribe_.Write(Subject::FIREWALL, Outcome::DONE, {}), isOn_, trusted_, {}, {}};
    }
    return change_;
}

/// What follows is done by what is going on now, and no longer by what began the change.
void NetworkStory::GoOn() {
    change_.event = scribe_.Renew(change_.event);
    change_.reason = scribe_.WhyInWords();
}

void NetworkStory::SetPolicy(bool isOn, const Json& result) {
    Change& change = ThisChange();
    if (IsFailure(result)) {
        change.failed += (change.failed.empty() ? "" : ", ") + std::string("switching ") + (isOn ? "on" : "off") +
                         " failed" + FailureCode(result);
    } else if (isOn_ != isOn) {
        isOn_ = isOn;
        GoOn();
    }
    Retell();
}

void NetworkStory::SetTrusted(const Json& uids, bool isAdded, const Json& result) {
    Change& change = ThisChange();
    if (IsFailure(result)) {
        change.failed += (change.failed.empty() ? "" : ", ") +
                         ("the list of apps that get through could not be changed" + FailureCode(result));
        Retell();
        return;
    }
    const std::set<int64_t> before = trusted_;
    for (const Json& entry : uids) {
        const auto uid = entry.get<int64_t>();
        if (isAdded) {
            trusted_.insert(uid);
        } else {
            trusted_.erase(uid);
        }
        phone_.TellUid(uid, Aspect::FIREWALL, isAdded ? "on the trust list" : "not on the trust list",
                       WhyMoved(uid, isAdded), change.event);
    }
    if (trusted_ != before) {
        GoOn();
    }
    Retell();
}

std::string NetworkStory::WhyOf(int64_t uid) const {
    const auto verdict = verdicts_.find(uid);
    return verdict == verdicts_.end() ? std::string() : verdict->second.why;
}

/// Why an application comes onto the list or leaves it: how the host sees it, unless it goes with the whole list.
std::string NetworkStory::WhyMoved(int64_t uid, bool isAdded) const {
    const auto verdict = verdicts_.find(uid);
    if (verdict != verdicts_.end() && verdict->second.isExempt == isAdded) {
        return verdict->second.why;
    }
    return isAdded || phone_.IsRunning(uid) ? scribe_.WhyInWords() : "it does not run any more";
}

/// What became of the firewall in this instant, said anew with each piece.
void NetworkStory::Retell() {
    Event& event = scribe_.At(change_.event);
    event.text.clear();
    event.reason.clear();
    event.values.clear();
    event.outcome = Outcome::DONE;
    event.isRepeat = false;
    if (isOn_ && !change_.wasOn) {
        event.text = WhoGetsThrough();
        event.reason = change_.reason;
    } else if (!isOn_ && change_.wasOn) {
        event.text = "off";
        event.reason = change_.reason;
    } else if (isOn_) {
        TellDifference(change_, event);
    }
    if (!change_.failed.empty()) {
        if (event.isRepeat) {  // that nothing changed is no news beside what failed
            event.text.clear();
            event.isRepeat = false;
        }
        event.text += (event.text.empty() ? "" : "; ") + change_.failed;
        event.outcome = Outcome::FAILED;
        TellNext(event);
    }
    scribe_.Set(LaneId::FIREWALL, isOn_ ? "on" : "off", isOn_ ? static_cast<int64_t>(trusted_.size()) : 0,
                change_.event);
}

void NetworkStory::TellNext(Event& event) const {
    if (retryAfterMs_) {
        event.next = "tried again within " + Duration(*retryAfterMs_);
        event.nextBy = scribe_.Now() + *retryAfterMs_;
    }
}

void NetworkStory::TellDifference(const Change& change, Event& event) const {
    std::vector<std::string> let;
    std::vector<std::string> shut;
    std::set<std::string> reasons;
    const auto add = [&](std::vector<std::string>& names, int64_t uid) {
        names.push_back(phone_.NameOfUid(uid));
        reasons.insert(WhyOf(uid));
        event.values.push_back({names.back(), WhyOf(uid).empty() ? std::string(kNotKnown) : WhyOf(uid)});
    };
    for (const int64_t uid : trusted_) {
        if (change.before.count(uid) == 0) {
            add(let, uid);
        }
    }
    for (const int64_t uid : change.before) {
        if (trusted_.count(uid) == 0 && phone_.IsRunning(uid)) {  // one that ended loses nothing
            add(shut, uid);
        }
    }
    for (const auto& [names, verb] : {std::pair(&let, "lets "), std::pair(&shut, "shuts out ")}) {
        if (!names->empty()) {
            event.text += (event.text.empty() ? "" : ", ") + (verb + Names(*names)) + (names == &let ? " through" : "");
        }
    }
    if (event.text.empty()) {
        event.text = trusted_ == change.before ? "made sure that it is on" : "";
        event.outcome = Outcome::NOTED;
        event.isRepeat = true;
    } else if (reasons.size() == 1) {
        event.reason = *reasons.begin();
    } else {
        event.reason = change.reason;
    }
}

void NetworkStory::OnReason(const DevStandbyMgr::FirewallReason& reason) {
    if (!reason.failedQuestion.empty()) {
        const Scribe::Id id = scribe_.WriteNew(Subject::FIREWALL, Outcome::FAILED,
                                               "left as it is: " + reason.failedQuestion + " cannot be read");
        TellNext(scribe_.At(id));
        return;
    }
    std::map<int64_t, Verdict> before;
    before.swap(verdicts_);
    for (const DevStandbyMgr::AppVerdict& app : reason.apps) {
        std::string why = DevStandbyMgr::DescribeExemption(app.exemptionFlags);
        if (!reason.isDeepStandby) {
            why += ", by the rule of the sleeping user";
        }
        const auto earlier = before.find(app.uid);
        if (!app.isExempt && trusted_.count(app.uid) == 0 && (earlier == before.end() || earlier->second.why != why)) {
            phone_.TellUid(app.uid, Aspect::FIREWALL, "not on the trust list", why, kNoEvent);
        }
        verdicts_.emplace(app.uid, Verdict{std::move(why), app.isExempt});
    }
}

void NetworkStory::TellPushClients(const Json& want, const Json& result) {
    for (const PushNews& news : kPushNews) {
        if (!want.contains(news.key) || want[std::string(news.key)] != news.value) {
            continue;
        }
        if (IsFailure(result)) {
            scribe_.Write(Subject::PUSH, Outcome::FAILED, std::string(news.text) + ", which failed",
                          scribe_.WhyInWords());
        } else {
            // At the start the network is given back every time, whether or not it was held.
            const Scribe::Id id =
                scribe_.Write(Subject::PUSH, Outcome::DONE, std::string(news.text), scribe_.WhyInWords());
            scribe_.At(id).isRepeat = scribe_.Why() == Cause::START;
        }
    }
}

}  // namespace TARN::Story
