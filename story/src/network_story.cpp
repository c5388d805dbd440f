#include "network_story.h"

#include <algorithm>
#include <array>
#include <iterator>

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

void NetworkStory::SetPolicy(bool isOn, const Json& result) {
    if (IsFailure(result)) {
        teller_.Tell(Subject::FIREWALL,
                     std::string("switching ") + (isOn ? "on" : "off") + " failed" + FailureCode(result),
                     Tone::FAILURE);
        return;
    }
    const bool wasOn = night_.firewall.IsSo();
    night_.firewall.Set(teller_.Now(), isOn);
    policyEntry_ = nullptr;
    if (isOn && wasOn) {
        teller_.TellNew(Subject::FIREWALL, "made sure that it is on");
    } else if (isOn) {
        policyEntry_ = &teller_.Tell(Subject::FIREWALL, WhoGetsThrough());
        policyInstant_ = teller_.Instant();
    } else if (wasOn) {
        teller_.Tell(Subject::FIREWALL, Because("off", Reason(teller_.Why())));
    }
}

void NetworkStory::SetTrusted(const Json& uids, bool isAdded, const Json& result) {
    if (IsFailure(result)) {
        teller_.Tell(Subject::FIREWALL, "the list of apps that get through could not be changed" + FailureCode(result),
                     Tone::FAILURE);
        return;
    }
    if (change_.instant != teller_.Instant()) {
        change_ = {teller_.Instant(), nullptr, trusted_};
    }
    for (const Json& uid : uids) {
        if (isAdded) {
            trusted_.insert(uid.get<int64_t>());
        } else {
            trusted_.erase(uid.get<int64_t>());
        }
    }
    if (policyEntry_ != nullptr && policyInstant_ == teller_.Instant()) {
        policyEntry_->text = WhoGetsThrough();
    } else if (night_.firewall.IsSo()) {
        TellChange();
    }
}

void NetworkStory::TellChange() {
    std::vector<std::string> let;
    std::vector<std::string> shut;
    for (const int64_t uid : trusted_) {
        if (change_.before.count(uid) == 0) {
            let.push_back(phone_.NameOfUid(uid));
        }
    }
    for (const int64_t uid : change_.before) {
        if (trusted_.count(uid) == 0 && phone_.IsRunning(uid)) {  // one that ended loses nothing
            shut.push_back(phone_.NameOfUid(uid));
        }
    }
    std::string text;
    for (const auto& [names, verb] : {std::pair(&let, "lets "), std::pair(&shut, "shuts out ")}) {
        if (!names->empty()) {
            text += (text.empty() ? "" : ", ") + (verb + Names(*names)) + (names == &let ? " through" : "");
        }
    }
    if (change_.entry == nullptr && !text.empty()) {
        change_.entry = &teller_.Tell(Subject::FIREWALL, {});
    }
    if (change_.entry != nullptr) {
        // Taken off the list and put back in one go: nothing to tell.
        change_.entry->text = text;
    }
}

void NetworkStory::TellPushClients(const Json& want, const Json& result) {
    for (const PushNews& news : kPushNews) {
        if (!want.contains(news.key) || want[std::string(news.key)] != news.value) {
            continue;
        }
        if (IsFailure(result)) {
            teller_.Tell(Subject::PUSH, std::string(news.text) + ", which failed", Tone::FAILURE);
        } else if (teller_.Why() != Cause::START) {
            // At the start the network is given back every time, whether or not it was held.
            teller_.Tell(Subject::PUSH, std::string(news.text));
        }
    }
}

}  // namespace TARN::Story
