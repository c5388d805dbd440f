#ifndef STORY_TOPICS_H
#define STORY_TOPICS_H

#include <optional>
#include <string>
#include <string_view>

#include "why.h"

namespace TARN::Story {

/// What can be asked about, and where the night keeps it.
struct Topic {
    About about;
    std::string_view word;
    std::optional<LaneId> lane;  ///< nothing: it has no state, only events
    Subject subject;             ///< of its events
    std::string_view name;       ///< as a sentence begins with it: "Bluetooth is"
    std::string_view tried;      ///< what a refusal refused: "Asked to go off"; empty where its text says it
};

[[nodiscard]] const Topic& TopicOf(About about) noexcept;

}  // namespace TARN::Story

#endif  // STORY_TOPICS_H
