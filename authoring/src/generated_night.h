#ifndef AUTHORING_GENERATED_NIGHT_H
#define AUTHORING_GENERATED_NIGHT_H

#include <cstdint>
#include <string>

#include "local_clock.h"
#include "night_plan.h"
#include "person.h"

namespace TARN::Authoring {

/// Where somebody is on one evening.
struct Whereabouts {
    std::string_view zone;    ///< empty: at home
    int64_t hoursAhead = 0;   ///< of home, about
    int64_t nightsThere = 0;  ///< 0: the first night
    bool isUnderWay = false;  ///< on a bus or in a plane, all night
};

/// `day` counts from the generation's first. Trips follow from the seed, too.
[[nodiscard]] Whereabouts WhereIs(uint64_t seed, uint64_t number, const Person& person, uint64_t day);

/// One person's night. `title` tells whose it is; `date` is the evening's, in days since the epoch; the clock shows the
/// time of where the person is.
void WriteGeneratedNight(uint64_t seed, const Person& person, const Whereabouts& where, int64_t date,
                         const std::string& title, LocalClock& clock, std::ostream& output);

}  // namespace TARN::Authoring

#endif  // AUTHORING_GENERATED_NIGHT_H
