#ifndef STORY_USE_FOLDER_H
#define STORY_USE_FOLDER_H

#include <functional>
#include <optional>
#include <vector>

#include "event.h"

namespace TARN::Story {

/// What is known of screen and charger.
struct InUse {
    std::optional<bool> isLit;  ///< nothing: no event has told
    std::optional<bool> isPlugged;

    /// Takes an event in; whether it changed anything.
    bool Take(Use use);
};

/// Folds stretches in which the phone is merely used, the screen going on and off and the charger in and out, into
/// one line each, so that a day reads as easily as a night. A fold begins with the first such change and ends with
/// the day at the latest, or when the clock is changed. The last change before that, or before anything else
/// happens, stays.
class UseFolder {
public:
    using Output = std::function<void(const Event&)>;

    UseFolder(bool isUnfolded, Output output) : isUnfolded_(isUnfolded), output_(std::move(output)) {}

    void Add(Event event);

    /// Hands on what is still held back.
    void Finish();

private:
    void HandOn(size_t from, size_t to);

    bool isUnfolded_;
    Output output_;
    std::vector<Event> stretch_;
    InUse before_;  ///< the stretch
};

}  // namespace TARN::Story

#endif  // STORY_USE_FOLDER_H
