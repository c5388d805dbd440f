#ifndef STORY_PHONE_PICTURE_H
#define STORY_PHONE_PICTURE_H

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "trace.h"

namespace TARN::Story {

/// What the trace has told of the phone so far, as far as a timeline names it.
class PhonePicture {
public:
    void Apply(const Replay::SetStep& step);

    /// A process was killed.
    void Kill(int32_t pid) { killed_.insert(pid); }

    /// Whether an application runs under the uid, as far as the trace and the kills tell.
    [[nodiscard]] bool IsRunning(int64_t uid) const;

    /// A process's name, "pid 412" for one that the trace never named.
    [[nodiscard]] std::string NameOfPid(int32_t pid) const;

    /// The application behind a uid, "uid 10012" where no process shows it.
    [[nodiscard]] std::string NameOfUid(int64_t uid) const;

    /// The process of a pair that holds a pid and a uid in either order; null for none.
    [[nodiscard]] const Simulated::Process* Find(int32_t first, int32_t second) const;

private:
    [[nodiscard]] const Simulated::Process* FindPid(int32_t pid) const;

    std::vector<Simulated::Process> processes_;
    std::unordered_map<int32_t, size_t> byPid_;
    std::unordered_map<int64_t, size_t> byUid_;
    std::set<int32_t> killed_;  ///< pids, since the trace named the processes
};

}  // namespace TARN::Story

#endif  // STORY_PHONE_PICTURE_H
