#ifndef STORY_NETWORK_STORY_H
#define STORY_NETWORK_STORY_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "call_result.h"
#include "host_reason.h"
#include "phone_picture.h"
#include "scribe.h"
#include "standby_config.h"

namespace TARN::Story {

/// Tells who reaches the network and why, and what push clients are told of it.
class NetworkStory {
public:
    NetworkStory(Scribe& scribe, const PhonePicture& phone) : scribe_(scribe), phone_(phone) {}

    /// After how long the host tries again what was refused.
    void OnConfig(const DevStandbyMgr::StandbyConfig& config) {
        if (config.mode == DevStandbyMgr::HostMode::AUTOMATIC) {
            retryAfterMs_ = config.policy.retryAfterSeconds * 1000;
        }
    }

    /// The device-idle policy, the firewall, goes on or off.
    void SetPolicy(bool isOn, const Json& result);

    /// Applications come onto the list of those that the firewall lets through, or leave it.
    void SetTrusted(const Json& uids, bool isAdded, const Json& result);

    /// The host says whom it lets through, and why.
    void OnReason(const DevStandbyMgr::FirewallReason& reason);

    /// Push clients are told of control over the network.
    void TellPushClients(const Json& want, const Json& result);

private:
    /// All that happens to the firewall in one instant: one event.
    struct Change {
        uint64_t instant = UINT64_MAX;
        Scribe::Id event = kNoEvent;
        bool wasOn = false;
        std::set<int64_t> before;
        std::string reason;  ///< of what was last done to it
        std::string failed;
    };

    Change& ThisChange();
    void GoOn();
    void Retell();
    [[nodiscard]] std::string WhoGetsThrough() const;
    void TellNext(Event& event) const;
    void TellDifference(const Change& change, Event& event) const;
    [[nodiscard]] std::string WhyOf(int64_t uid) const;
    [[nodiscard]] std::string WhyMoved(int64_t uid, bool isAdded) const;

    Scribe& scribe_;
    const PhonePicture& phone_;
    bool isOn_ = false;
    std::set<int64_t> trusted_;
    struct Verdict {
        std::string why;
        bool isExempt = false;
    };
    std::map<int64_t, Verdict> verdicts_;  ///< by uid: how the host sees it
    Change change_;
    std::optional<int64_t> retryAfterMs_;  ///< nothing: what was refused is not tried again
};

}  // namespace TARN::Story

#endif  // STORY_NETWORK_STORY_H
