#ifndef STORY_LANE_H
#define STORY_LANE_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "event.h"

namespace TARN::Story {

/// What a phone is in exactly one way at a time.
enum class LaneId : uint8_t {
    SCREEN,     ///< "on", "off"
    CHARGER,    ///< "plugged", "unplugged"
    CONDITION,  ///< "day", "night", "condition 3"
    STATE,      ///< "WORKING", "DARK", "NAP", "SLEEP", "MAINTENANCE"; number: the state
    PHASE,      ///< "LIGHT", "APP_RES_DEEP", "SYS_RES_DEEP", "DEEP", "" outside SLEEP; number: the phase, -1 for none
    SLEEP,      ///< "asleep", "awake", of the user
    BLUETOOTH,  ///< "on", "off"; number: 1 where it is the plugin that has it off, else 0
    WIFI,       ///< "on", "off", "absent"; number as above
    MODEM,      ///< "on", "off", "partly off"; number: SIM slots that the plugin has off
    FIREWALL,   ///< "on", "off"; number: applications on the trust list
    FROZEN,     ///< "frozen", "none"; number: native processes
    LOCKS,      ///< "proxied", "none"; number: processes whose running locks do not count
    TIMERS,     ///< "stretched", "normal"; number: seconds to which they are stretched, 0 for normal
};
inline constexpr size_t kLanes = static_cast<size_t>(LaneId::TIMERS) + 1;

/// A lane's name as people read it and programs write it: "bluetooth".
[[nodiscard]] std::string_view NameOf(LaneId lane) noexcept;

/// What every lane says of a time of which the record does not tell.
inline constexpr std::string_view kNotKnown = "not known";

/// A stretch of time in which a lane did not change. Half open: it holds at `from`, not at `to`.
struct Interval {
    int64_t from = 0;
    int64_t to = 0;
    std::string value;
    int64_t number = 0;
    uint32_t event = kNoEvent;  ///< what began it; kNoEvent for what was so at the start
};

/// Whether an interval of a lane counts for the lane's figure: asleep, switched off by the plugin, firewall on, frozen,
/// proxied, stretched. None does of a lane that has no figure.
[[nodiscard]] bool Counts(LaneId lane, const Interval& interval) noexcept;

/// What the intervals of a lane that count amount to. Neighbours of which only the number differs are one stretch.
class LaneTally {
public:
    /// More stretches than these are told as a number.
    static constexpr size_t kMostListed = 4;

    explicit LaneTally(LaneId lane = LaneId::SCREEN) noexcept : lane_(lane) {}

    /// The next interval; nothing of it changes any more.
    void Add(const Interval& interval);

    /// All stretches, and those that have a length; one that the end of a night begins has none.
    [[nodiscard]] int64_t Times() const noexcept { return times_; }
    [[nodiscard]] int64_t LastingTimes() const noexcept { return times_ - (isOpen_ && open_.from == open_.to ? 1 : 0); }
    [[nodiscard]] int64_t TotalMs() const noexcept { return totalMs_; }
    [[nodiscard]] int64_t LongestMs() const noexcept { return longestMs_; }
    [[nodiscard]] int64_t Most() const noexcept { return most_; }        ///< the greatest number
    [[nodiscard]] int64_t At600Ms() const noexcept { return at600Ms_; }  ///< in which the number was 600

    /// The stretches that have a length, where they are no more than kMostListed.
    [[nodiscard]] std::vector<Interval> Listed() const;

private:
    LaneId lane_;
    int64_t times_ = 0;
    int64_t totalMs_ = 0;
    int64_t longestMs_ = 0;
    int64_t most_ = 0;
    int64_t at600Ms_ = 0;
    bool isOpen_ = false;  ///< the next interval goes on with the last stretch
    Interval open_;
    std::vector<Interval> first_;
};

/// The intervals of one lane: in order, without gaps, from the night's start to its end. Changes of one instant leave
/// one interval, that of the last; an empty one is never kept.
class Lane {
public:
    /// From `t` on, which is not before the latest change. Nothing happens if it is so already.
    void Set(int64_t t, std::string_view value, int64_t number = 0, uint32_t event = kNoEvent);

    /// From now on what is past is counted for a lane's tally and not kept: Intervals and At know the present only.
    void CountOnly(LaneId lane) { past_.emplace(lane); }

    /// The night is over.
    void End(int64_t t);

    /// What it amounts to, as the lane `lane`.
    [[nodiscard]] LaneTally Tally(LaneId lane) const;

    [[nodiscard]] const std::vector<Interval>& Intervals() const noexcept { return intervals_; }

    /// What holds at `t`, after all that happened at that millisecond; null before the start and without intervals. The
    /// last interval holds also at the end.
    [[nodiscard]] const Interval* At(int64_t t) const noexcept;

    /// What holds now, at the latest change; null before the first.
    [[nodiscard]] const Interval* Now() const noexcept { return intervals_.empty() ? nullptr : &intervals_.back(); }

private:
    std::vector<Interval> intervals_;
    std::optional<LaneTally> past_;  ///< of what is not kept
};

}  // namespace TARN::Story

#endif  // STORY_LANE_H
