#include "causes.h"

namespace TARN::Story {

std::optional<Told> WithCauses(const Night& night, uint32_t event) {
    if (event >= night.events.size()) {
        return std::nullopt;
    }
    Told told{night.events[event], {}};
    // A cause comes before its effect, so this ends.
    for (uint32_t at = event, cause = told.event.cause; cause < at; at = cause, cause = night.events[at].cause) {
        told.causes.push_back(night.events[cause]);
    }
    return told;
}

}  // namespace TARN::Story
