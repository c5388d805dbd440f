#include "figures.h"

#include <algorithm>
#include <set>

namespace TARN::Story {

std::vector<Interval> Counted(const Night& night, LaneId lane) {
    std::vector<Interval> counted;
    for (const Interval& interval : night.At(lane).Intervals()) {
        if (!Counts(lane, interval)) {
            continue;
        }
        if (!counted.empty() && counted.back().to == interval.from) {
            counted.back().to = interval.to;  // only the number changed
        } else {
            counted.push_back(interval);
        }
    }
    return counted;
}

int64_t TotalMs(const std::vector<Interval>& intervals) noexcept {
    int64_t total = 0;
    for (const Interval& interval : intervals) {
        total += interval.to - interval.from;
    }
    return total;
}

Figures Measure(const Night& night) {
    const auto tally = [&night](LaneId lane) { return night.At(lane).Tally(lane); };
    const LaneTally frozen = tally(LaneId::FROZEN);
    const LaneTally locks = tally(LaneId::LOCKS);
    const LaneTally timers = tally(LaneId::TIMERS);
    Figures figures;
    figures.asleepMs = tally(LaneId::SLEEP).TotalMs();
    figures.bluetoothOffMs = tally(LaneId::BLUETOOTH).TotalMs();
    figures.wifiOffMs = tally(LaneId::WIFI).TotalMs();
    figures.modemOffMs = tally(LaneId::MODEM).TotalMs();
    figures.firewallMs = tally(LaneId::FIREWALL).TotalMs();
    figures.frozenMs = frozen.TotalMs();
    figures.mostFrozen = frozen.Most();
    figures.locksMs = locks.TotalMs();
    figures.mostProxied = locks.Most();
    figures.stretchedMs = timers.TotalMs();
    figures.stretchedLongMs = timers.At600Ms();
    figures.kills = night.kills;
    std::set<std::string> killed;
    for (const uint32_t app : night.killed) {
        killed.insert(night.apps[app].name);
    }
    figures.killed.assign(killed.begin(), killed.end());
    return figures;
}

}  // namespace TARN::Story
