#ifndef STANDBY_SERVICE_RUNNING_APPLICATIONS_H
#define STANDBY_SERVICE_RUNNING_APPLICATIONS_H

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

/// One running application: everything that runs under its uid.
struct RunningApplication {
    struct Process {
        int32_t pid = -1;
        std::string name;  ///< by which allow lists and restrict sets know it
    };

    std::string name;                ///< its first process's
    std::optional<bool> isSystem;    ///< whether it belongs to the system, if that is known
    std::vector<Process> processes;  ///< in the application manager's order
    std::set<uint32_t> taskTypes;    ///< of its continuous tasks
    bool isForeground = false;       ///< the user looks at one of its processes
};

/// What is true of the running applications, as the phone answered last. Whoever holds applications back derives from
/// this who may go on; nothing is patched by events, they only say that it is time to ask again.
///
/// A question that is not answered is logged and leaves what was known. Handler's thread, but for MarkStale.
class RunningApplications {
public:
    /// `isObserved`: changes are reported through MarkStale, so that nothing is asked twice. Otherwise every update
    /// asks.
    explicit RunningApplications(bool isObserved) : isObserved_(isObserved) {}

    /// Something changed. Any thread.
    void MarkStale() noexcept;

    /// Asks who runs, and of newcomers whether they belong to the system. ERR_RUNNING_PROCESSES_UNAVAILABLE when that
    /// is not answered.
    ErrCode Update();

    /// Asks for continuous tasks and the foreground, after an update. False when one of them was not answered.
    bool UpdateUse();

    /// Whether of every running application it is known if it belongs to the system; else it is time to try again
    /// later.
    [[nodiscard]] bool AreAllClassified() const noexcept { return unclassified_ == 0; }

    /// Whether the phone ever told its continuous tasks and its foreground.
    [[nodiscard]] bool IsUseKnown() const noexcept { return areTasksKnown_ && isForegroundKnown_; }

    /// What could not be found out the last time it was asked, bits of Question.
    [[nodiscard]] uint8_t Unanswered() const noexcept { return unanswered_; }

    [[nodiscard]] const std::map<int32_t, RunningApplication>& ByUid() const noexcept { return byUid_; }

private:
    bool UpdateTasks();
    bool UpdateForeground();
    void NoteAnswer(uint8_t question, bool isAnswered) noexcept;
    [[nodiscard]] bool IsDue(std::atomic<bool>& isStale) const;

    const bool isObserved_;
    std::atomic<bool> isStale_ = true;
    std::atomic<bool> isUseStale_ = true;
    std::map<int32_t, RunningApplication> byUid_;
    std::map<int32_t, std::set<uint32_t>> taskTypes_;  ///< by uid, of applications that do not run too
    std::set<int32_t> foregroundUids_;
    size_t unclassified_ = 0;  ///< applications
    uint8_t unanswered_ = 0;
    bool areTasksKnown_ = false;
    bool isForegroundKnown_ = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_RUNNING_APPLICATIONS_H
