#ifndef STORY_FIGURES_H
#define STORY_FIGURES_H

#include <cstdint>
#include <string>
#include <vector>

#include "night.h"

namespace TARN::Story {

/// What a night amounted to: sums of the true intervals of its lanes, milliseconds, and counts. A radio that the user
/// has off is not counted.
struct Figures {
    int64_t asleepMs = 0;
    int64_t bluetoothOffMs = 0;
    int64_t wifiOffMs = 0;
    int64_t modemOffMs = 0;  ///< any SIM slot
    int64_t firewallMs = 0;
    int64_t frozenMs = 0;  ///< any native
    int64_t mostFrozen = 0;
    int64_t locksMs = 0;  ///< running locks of any process proxied
    int64_t mostProxied = 0;
    int64_t stretchedMs = 0;
    int64_t stretchedLongMs = 0;  ///< ... to the length of the sleeping user
    int64_t kills = 0;
    std::vector<std::string> killed;  ///< the names of those killed, each once, sorted
};

[[nodiscard]] Figures Measure(const Night& night);

/// The intervals of a lane that count for its figure, neighbours joined; of a night that was kept.
[[nodiscard]] std::vector<Interval> Counted(const Night& night, LaneId lane);

[[nodiscard]] int64_t TotalMs(const std::vector<Interval>& intervals) noexcept;

}  // namespace TARN::Story

#endif  // STORY_FIGURES_H
