#ifndef STORY_NETWORK_STORY_H
#define STORY_NETWORK_STORY_H

#include <cstdint>
#include <set>
#include <vector>

#include "call_result.h"
#include "night_summary.h"
#include "phone_picture.h"
#include "teller.h"

namespace TARN::Story {

/// Tells who reaches the network, and what push clients are told of it.
class NetworkStory {
public:
    NetworkStory(Teller& teller, NightSummary& night, const PhonePicture& phone)
        : teller_(teller), night_(night), phone_(phone) {}

    /// The device-idle policy, the firewall, goes on or off.
    void SetPolicy(bool isOn, const Json& result);

    /// Applications come onto the list of those that the firewall lets through, or leave it.
    void SetTrusted(const Json& uids, bool isAdded, const Json& result);

    /// Push clients are told of control over the network.
    void TellPushClients(const Json& want, const Json& result);

private:
    [[nodiscard]] std::string WhoGetsThrough() const;
    void TellChange();

    struct ChangeGroup {
        uint64_t instant = 0;
        Entry* entry = nullptr;
        std::set<int64_t> before;
    };

    Teller& teller_;
    NightSummary& night_;
    const PhonePicture& phone_;
    std::set<int64_t> trusted_;
    Entry* policyEntry_ = nullptr;
    uint64_t policyInstant_ = 0;
    ChangeGroup change_;
};

}  // namespace TARN::Story

#endif  // STORY_NETWORK_STORY_H
