#ifndef STORY_TELLER_H
#define STORY_TELLER_H

#include <array>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "cause.h"
#include "phrases.h"
#include "timeline_entry.h"

namespace TARN::Story {

/// Collects what is told of one instant, so that a story of several pieces shares a line, and hands it on
/// when time goes on. An entry may be changed until then.
class Teller {
public:
    using Output = std::function<void(Entry)>;

    explicit Teller(Output output) : output_(std::move(output)) {}

    /// Time goes on: what was told of the instant before is handed on, and nothing is a cause any more.
    void MoveTo(int64_t t);

    /// Hands on what was told of the last instant.
    void Finish();

    [[nodiscard]] int64_t Now() const noexcept { return now_; }

    /// Which instant it is, counted; a group of pieces belongs to one.
    [[nodiscard]] uint64_t Instant() const noexcept { return instant_; }

    [[nodiscard]] Cause Why() const noexcept { return cause_; }
    void SetCause(Cause cause) noexcept { cause_ = cause; }

    /// An entry whose text is empty in the end is not told.
    Entry& Tell(Subject subject, std::string text, Tone tone = Tone::PLAIN, Use use = Use::NONE);

    /// Whether anything was told of the subject in this instant.
    [[nodiscard]] bool HasTold(Subject subject) const;

    /// Tells unless the same was the last thing told of the subject.
    void TellNew(Subject subject, std::string text, Tone tone = Tone::PLAIN);

private:
    Output output_;
    std::deque<Entry> entries_;
    std::array<std::string, static_cast<size_t>(Subject::ERROR) + 1> last_;
    int64_t now_ = 0;
    uint64_t instant_ = 0;
    Cause cause_ = Cause::NONE;
};

}  // namespace TARN::Story

#endif  // STORY_TELLER_H
