#ifndef STORY_CAUSES_H
#define STORY_CAUSES_H

#include <optional>

#include "why.h"

namespace TARN::Story {

/// An event of the night and what led to it; nothing for kNoEvent.
[[nodiscard]] std::optional<Told> WithCauses(const Night& night, uint32_t event);

}  // namespace TARN::Story

#endif  // STORY_CAUSES_H
