#ifndef STORY_PROCESS_STORY_H
#define STORY_PROCESS_STORY_H

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "call_result.h"
#include "host_reason.h"
#include "phone_picture.h"
#include "scribe.h"
#include "standby_config.h"

namespace TARN::Story {

/// Tells which processes are frozen, killed, or have their running locks held back, and which are spared and why.
class ProcessStory {
public:
    ProcessStory(Scribe& scribe, const PhonePicture& phone) : scribe_(scribe), phone_(phone) {}

    /// What the lists say from which the plugin takes names.
    void OnConfig(const DevStandbyMgr::StandbyConfig& config) { config_ = &config; }
    void OnFacts(const Replay::SetStep& step);
    void OnCondition(uint32_t condition) { condition_ = condition; }
    void OnRestart() { kills_ = {}; }

    /// A list of natives is frozen or thawed; one result for each.
    void OperateNatives(const Json& processes, const Json& results);

    /// Whoever runs no more holds no locks and is not frozen.
    void ForgetEnded(Scribe::Id event);

    /// One application is killed; those of one instant share an event, which is the answer.
    Scribe::Id Kill(int32_t pid, const Json& result);

    /// A clean runs; who is still there in the end was spared.
    void BeginClean(bool isSparingUsed);

    /// A clean passes over an application for its continuous task.
    void Spare(int32_t uid);

    /// Running locks are proxied or given back; those of one instant share an event.
    void ProxyLocks(bool isProxied, const Json& pairs, const Json& result);

    /// The host says whose running locks count, and why.
    void OnReason(const DevStandbyMgr::RunningLockReason& reason);

    /// The instant is over.
    void Settle();

private:
    struct KillGroup {
        uint64_t instant = UINT64_MAX;
        Scribe::Id event = kNoEvent;
        bool isSparingUsed = true;  ///< those in the foreground or with a continuous task are spared
        std::vector<std::string> killed;
        std::vector<std::string> failed;
        std::set<int32_t> busyUids;
    };

    /// What is frozen, or proxied, changes in one instant: one event.
    template <class Member>
    struct Group {
        uint64_t instant = UINT64_MAX;
        Scribe::Id event = kNoEvent;
        std::set<Member> before;
        std::vector<std::string> failed;
        std::string failure;
        std::string reason;                   ///< of what was last done
        std::map<Member, std::string> why{};  ///< of each that was changed
    };
    using Native = std::pair<int32_t, std::string>;  ///< pid and name
    using Holder = std::pair<int32_t, int32_t>;      ///< uid and pid

    KillGroup& Kills();
    void SetFrozenLane(Scribe::Id event);
    void SetLocksLane(Scribe::Id event);
    void RetellFrozen();
    void RetellLocks();
    [[nodiscard]] std::string WhyOf(const Holder& holder, bool isProxied) const;
    struct Moved {
        bool isProxied;
        std::string why;
        std::vector<Holder> holders;
    };
    [[nodiscard]] std::vector<Moved> MovedLocks() const;
    void TellSpared();
    void TellNotFrozen(const Json& processes) const;
    [[nodiscard]] std::string NameOf(const Holder& holder) const;
    [[nodiscard]] bool IsNative(const Holder& holder) const;
    [[nodiscard]] std::string WhoHolds(const std::vector<Holder>& holders) const;

    Scribe& scribe_;
    const PhonePicture& phone_;
    const DevStandbyMgr::StandbyConfig* config_ = nullptr;
    uint32_t condition_ = 0;  ///< 0 not known
    std::set<std::string> exemptFromFreezing_;
    std::set<Native> frozen_;
    std::set<Holder> proxied_;
    struct Verdict {
        std::string why;
        bool isExempt = false;
    };
    std::map<Holder, Verdict> verdicts_;  ///< how the host sees them
    KillGroup kills_;
    Group<Native> freezing_;
    Group<Holder> proxying_;
};

}  // namespace TARN::Story

#endif  // STORY_PROCESS_STORY_H
