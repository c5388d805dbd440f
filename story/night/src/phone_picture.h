#ifndef STORY_PHONE_PICTURE_H
#define STORY_PHONE_PICTURE_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "scribe.h"
#include "trace.h"

namespace TARN::Story {

/// What the trace has told of the phone's processes so far, by the names of which it is told.
class PhonePicture {
public:
    explicit PhonePicture(Scribe& scribe) : scribe_(scribe) {}

    void Apply(const Replay::SetStep& step);

    /// The trace named somebody, by a name or a uid, of whom no process needs to be known.
    void Mention(const std::string& name, int32_t uid);

    /// A process was killed.
    void Kill(int32_t pid);

    /// One process that runs, as the trace named it.
    struct Running {
        uint32_t app = 0;  ///< its place in Night::apps
        Simulated::Process process;
        bool isKilled = false;
    };
    [[nodiscard]] const std::vector<Running>& All() const noexcept { return running_; }

    /// Whether an application runs under the uid, as far as the trace and the kills tell.
    [[nodiscard]] bool IsRunning(int64_t uid) const;

    /// A process's name, "pid 412" for one that the trace never named.
    [[nodiscard]] std::string NameOfPid(int32_t pid) const;

    /// The application behind a uid, "uid 10012" where no process shows it.
    [[nodiscard]] std::string NameOfUid(int64_t uid) const;

    /// The process of a pair that holds a pid and a uid in either order; null for none.
    [[nodiscard]] const Running* Find(int32_t first, int32_t second) const;

    /// The process of a pid; null for none.
    [[nodiscard]] const Running* FindPid(int32_t pid) const;

    /// Tells an aspect of every application of a uid that runs.
    void TellUid(int64_t uid, Aspect aspect, std::string_view value, const std::string& reason, Scribe::Id event) const;

    /// Tells an aspect of every process of a name, or with a bundle of it.
    void TellName(std::string_view name, Aspect aspect, std::string_view value, const std::string& reason,
                  Scribe::Id event) const;

private:
    uint32_t PlaceOf(const Simulated::Process& process);

    Scribe& scribe_;
    std::vector<Running> running_;
    std::unordered_map<int32_t, size_t> byPid_;
    std::unordered_multimap<int64_t, size_t> byUid_;
    std::unordered_map<int64_t, size_t> firstOfUid_;
    std::map<std::tuple<int32_t, int32_t, std::string>, uint32_t> apps_;
};

}  // namespace TARN::Story

#endif  // STORY_PHONE_PICTURE_H
