#ifndef STORY_USE_FOLDER_H
#define STORY_USE_FOLDER_H

#include <functional>
#include <vector>

#include "event.h"

namespace TARN::Story {

/// Folds stretches in which the phone is merely used, the screen going on and off and the charger in and out,
/// into one line each, so that a day reads as easily as a night. The last such change before anything else
/// happens stays.
class UseFolder {
public:
    using Output = std::function<void(const Event&)>;

    UseFolder(bool isUnfolded, Output output) : isUnfolded_(isUnfolded), output_(std::move(output)) {}

    void Add(Event event);

    /// Hands on what is still held back.
    void Finish();

private:
    [[nodiscard]] size_t FoldableLength() const;

    bool isUnfolded_;
    Output output_;
    std::vector<Event> stretch_;
};

}  // namespace TARN::Story

#endif  // STORY_USE_FOLDER_H
