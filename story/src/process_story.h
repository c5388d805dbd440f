#ifndef STORY_PROCESS_STORY_H
#define STORY_PROCESS_STORY_H

#include <string>
#include <vector>

#include "call_result.h"
#include "night_summary.h"
#include "phone_picture.h"
#include "teller.h"

namespace TARN::Story {

/// Tells which processes are frozen, killed, or have their running locks held back.
class ProcessStory {
public:
    ProcessStory(Teller& teller, NightSummary& night, const PhonePicture& phone)
        : teller_(teller), night_(night), phone_(phone) {}

    /// A list of natives is frozen or thawed; one result for each.
    void OperateNatives(const Json& processes, const Json& results);

    /// One application is killed; those of one instant share a line.
    void Kill(int32_t pid, const Json& result);

    /// A clean passes over an application, for its continuous task.
    void Spare(int32_t uid);

    /// Running locks are proxied or given back; those of one instant share a line.
    void ProxyLocks(bool isProxied, const Json& pairs, const Json& result);

private:
    struct KillGroup {
        uint64_t instant = 0;
        Entry* entry = nullptr;
        std::vector<std::string> killed;
        std::vector<std::string> failed;
        std::vector<std::string> spared;
    };

    struct LockGroup {
        uint64_t instant = 0;
        bool isProxied = false;
        Entry* entry = nullptr;
        std::vector<std::string> natives;
        std::vector<std::string> apps;
    };

    KillGroup& Kills();

    Teller& teller_;
    NightSummary& night_;
    const PhonePicture& phone_;
    KillGroup kills_;
    LockGroup locks_;
};

}  // namespace TARN::Story

#endif  // STORY_PROCESS_STORY_H
