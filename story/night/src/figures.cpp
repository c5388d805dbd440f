#include "figures.h"

#include <algorithm>
#include <set>

namespace TARN::Story {

namespace {

constexpr int64_t kLongStretchS = 600;

/// The most that a lane counted at a time.
int64_t Most(const Night& night, LaneId lane) {
    int64_t most = 0;
    for (const Interval& interval : night.At(lane).Intervals()) {
        most = std::max(most, interval.number);
    }
    return most;
}

}  // namespace

bool Counts(LaneId lane, const Interval& interval) noexcept {
    switch (lane) {
        case LaneId::SLEEP:
            return interval.value == "asleep";
        case LaneId::FIREWALL:
            return interval.value == "on";
        case LaneId::BLUETOOTH:
        case LaneId::WIFI:
        case LaneId::MODEM:
        case LaneId::FROZEN:
        case LaneId::LOCKS:
        case LaneId::TIMERS:
            return interval.number > 0;
        default:
            return false;
    }
}

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
    const auto total = [&night](LaneId lane) { return TotalMs(Counted(night, lane)); };
    Figures figures;
    std::set<std::string> killed;
    figures.asleepMs = total(LaneId::SLEEP);
    figures.bluetoothOffMs = total(LaneId::BLUETOOTH);
    figures.wifiOffMs = total(LaneId::WIFI);
    figures.modemOffMs = total(LaneId::MODEM);
    figures.firewallMs = total(LaneId::FIREWALL);
    figures.frozenMs = total(LaneId::FROZEN);
    figures.locksMs = total(LaneId::LOCKS);
    figures.stretchedMs = total(LaneId::TIMERS);
    figures.mostFrozen = Most(night, LaneId::FROZEN);
    figures.mostProxied = Most(night, LaneId::LOCKS);
    for (const Interval& interval : night.At(LaneId::TIMERS).Intervals()) {
        figures.stretchedLongMs += interval.number == kLongStretchS ? interval.to - interval.from : 0;
    }
    for (const AppEvent& event : night.appEvents) {
        if (event.aspect == Aspect::CLEAN && event.value == "killed") {
            ++figures.kills;
            killed.insert(night.apps[event.app].name);
        }
    }
    figures.killed.assign(killed.begin(), killed.end());
    return figures;
}

}  // namespace TARN::Story
