#include "idle_firewall.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "local_time.h"
#include "net_policy_client.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

std::shared_ptr<NetManagerStandard::NetPolicyClient> Client() {
    return DelayedSingleton<NetManagerStandard::NetPolicyClient>::GetInstance();
}

std::vector<uint32_t> Difference(const std::set<uint32_t>& from, const std::set<uint32_t>& without) {
    std::vector<uint32_t> rest;
    std::set_difference(from.begin(), from.end(), without.begin(), without.end(), std::back_inserter(rest));
    return rest;
}

}  // namespace

ErrCode IdleFirewall::Switch(bool enable) {
    const int32_t status = Client()->SetDeviceIdlePolicy(enable);
    if (status != ERR_OK) {
        STANDBYSERVICE_LOGW("the device-idle policy was refused, err code is %{public}d", status);
        return status;
    }
    if (std::exchange(policy_, enable) != enable) {
        switchedMs_ = NowMs();
    }
    return ERR_OK;
}

/// False, and what is believed of the list stays, when the device does not tell.
bool IdleFirewall::LookAtList() {
    std::vector<uint32_t> uids;
    const int32_t status = Client()->GetDeviceIdleTrustlist(uids);
    isListKnown_ = status == ERR_OK;
    if (isListKnown_) {
        trusted_ = {uids.begin(), uids.end()};
    } else {
        STANDBYSERVICE_LOGW("the trust list could not be read, err code is %{public}d", status);
    }
    return isListKnown_;
}

bool IdleFirewall::Bring(const std::set<uint32_t>& wanted, std::optional<bool> isSaid, const Tell& tell) {
    const bool isKnown = LookAtList();
    const std::vector<uint32_t> added = Difference(wanted, isKnown ? trusted_ : std::set<uint32_t>());
    const std::vector<uint32_t> removed = Difference(trusted_, wanted);
    if (!added.empty() || isSaid == true) {
        tell(added, true);
    }
    if (!removed.empty() || isSaid == false) {
        tell(removed, false);
    }
    if (isKnown && added.empty() && removed.empty()) {
        return true;
    }
    if (isKnown && LookAtList()) {
        return trusted_ == wanted;
    }
    trusted_.insert(wanted.begin(), wanted.end());  // whoever may be on it, to be taken off some day
    return false;
}

bool IdleFirewall::Empty(const std::function<std::set<uint32_t>()>& suspects) {
    if (!LookAtList()) {
        trusted_.merge(suspects());
    }
    if (!trusted_.empty()) {
        const int32_t status = Client()->SetDeviceIdleTrustlist({trusted_.begin(), trusted_.end()}, false);
        if (status != ERR_OK) {
            STANDBYSERVICE_LOGW("the trust list could not be emptied, err code is %{public}d", status);
            return false;
        }
        trusted_.clear();
    }
    return isListKnown_;
}

std::string IdleFirewall::Describe(bool isWanted) const {
    std::string text = IsOn() ? "on" : IsOff() ? "off" : "not known";
    text += switchedMs_ == 0 ? "" : " since " + LocalTimeText(switchedMs_);
    if (policy_ != isWanted) {
        text += isWanted ? ", to go on as soon as it can" : ", to go off as soon as it can";
    }
    return text + (isListKnown_ ? "" : "; the device did not confirm its trust list");
}

}  // namespace TARN::DevStandbyMgr
