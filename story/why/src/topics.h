#ifndef STORY_TOPICS_H
#define STORY_TOPICS_H

#include <optional>
#include <string_view>

#include "why.h"

namespace TARN::Story {

/// What can be asked about, and where the night keeps it.
struct Topic {
    About about;
    std::string_view word;
    std::optional<LaneId> lane;  ///< nothing: it has no state, only events
    Subject subject;             ///< of its events
    std::string_view it = "it";  ///< what a sentence calls it
    std::optional<Aspect> aspect = std::nullopt;
    std::string_view aspectValue = {};  ///< of the applications and natives that it concerns
};

[[nodiscard]] const Topic& TopicOf(About about) noexcept;

}  // namespace TARN::Story

#endif  // STORY_TOPICS_H
