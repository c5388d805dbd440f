#ifndef STORY_SCRIBE_H
#define STORY_SCRIBE_H

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "cause.h"
#include "night.h"
#include "phrases.h"

namespace TARN::Story {

/// Writes a night down, an instant at a time: the events of one instant may still be changed until time goes on, so
/// that a story of several pieces becomes one event, told with its outcome.
class Scribe {
public:
    /// An event by its place in the night; provisional until its instant is settled.
    using Id = uint32_t;

    Scribe(Night& night, NightView* view, bool isKept);

    /// Whether what is written is kept; otherwise it is shown and counted only.
    [[nodiscard]] bool IsKept() const noexcept { return isKept_; }

    /// Time goes on: what was written of the instant before is settled, and nothing is a cause any more.
    void MoveTo(int64_t t);

    /// Settles the instant: one event a subject, with its outcome.
    void Settle();

    [[nodiscard]] int64_t Now() const noexcept { return now_; }

    /// Which instant it is, counted; a group of pieces belongs to one.
    [[nodiscard]] uint64_t Instant() const noexcept { return instant_; }

    /// What is going on is set off by `cause`, told by the event `event`.
    void SetCause(Cause cause, Id event = kNoEvent);
    /// ... and its reason has words of its own.
    void SetCause(Cause cause, std::string reason, Id event);
    [[nodiscard]] Cause Why() const noexcept { return cause_; }
    [[nodiscard]] const std::string& WhyInWords() const noexcept { return reason_; }

    /// An event of this instant, set off by what is going on. One whose text is empty in the end is not kept.
    Id Write(Subject subject, Outcome outcome, std::string text, std::string reason = {});

    /// The same, but it is a repeat where it says what the last event of the subject said.
    Id WriteNew(Subject subject, Outcome outcome, std::string text, std::string reason = {});

    /// An event that was written in this instant.
    [[nodiscard]] Event& At(Id id) { return pending_[id - settled_]; }

    /// An event of this instant goes on, set off by what is going on now: it stands behind what was written since.
    /// Answers its new place.
    Id Renew(Id id);

    /// Whether anything was written of the subject in this instant.
    [[nodiscard]] bool HasWritten(Subject subject) const;
    /// Whether just this was.
    [[nodiscard]] bool HasWritten(Subject subject, std::string_view text) const;

    /// What was written of the subject in this instant is told better by what comes now.
    void Drop(Subject subject);

    /// The last event of a subject that is settled and no repeat; kNoEvent for none.
    [[nodiscard]] Id Last(Subject subject) const noexcept { return lastEvent_[static_cast<size_t>(subject)]; }

    /// A lane changes now, by the event `event`.
    void Set(LaneId lane, std::string_view value, int64_t number = 0, Id event = kNoEvent);

    /// What a lane says now, what was written in this instant included; kNotKnown before anything was.
    [[nodiscard]] std::string_view Value(LaneId lane) const;

    /// An aspect of an application changes now, or is looked at.
    void Tell(uint32_t app, Aspect aspect, std::string value, std::string reason, Id event = kNoEvent);

    /// A reading of the sleep detector, whose verdict `event` tells.
    void Add(SleepReading reading, Id event);

    [[nodiscard]] Night& Of() noexcept { return night_; }

private:
    struct LaneChange {
        LaneId lane;
        std::string value;
        int64_t number;
        Id event;
    };

    void Join();
    void JoinScreen();
    void Count(const Event& event);
    void Count(const AppEvent& event);

    Night& night_;
    NightView* view_;
    bool isKept_;
    Id settled_ = 0;  ///< how many events are settled
    std::vector<Event> pending_;
    std::vector<LaneChange> laneChanges_;
    std::vector<AppEvent> appEvents_;
    std::vector<SleepReading> readings_;
    std::array<std::string, kSubjects> lastText_;
    std::array<Id, kSubjects> lastEvent_ = MakeNone();
    int64_t now_ = 0;
    uint64_t instant_ = 0;
    Cause cause_ = Cause::NONE;
    std::string reason_;
    Id causeEvent_ = kNoEvent;

    static constexpr std::array<Id, kSubjects> MakeNone() {
        std::array<Id, kSubjects> none{};
        none.fill(kNoEvent);
        return none;
    }
};

}  // namespace TARN::Story

#endif  // STORY_SCRIBE_H
