#ifndef STORY_LANE_H
#define STORY_LANE_H

#include <cstdint>
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

/// The intervals of one lane: in order, without gaps, from the night's start to its end. Changes of one instant leave
/// one interval, that of the last; an empty one is never kept.
class Lane {
public:
    /// From `t` on, which is not before the latest change. Nothing happens if it is so already.
    void Set(int64_t t, std::string_view value, int64_t number = 0, uint32_t event = kNoEvent);

    /// The night is over.
    void End(int64_t t);

    [[nodiscard]] const std::vector<Interval>& Intervals() const noexcept { return intervals_; }

    /// What holds at `t`, after all that happened at that millisecond; null before the start and without intervals. The
    /// last interval holds also at the end.
    [[nodiscard]] const Interval* At(int64_t t) const noexcept;

    /// What holds now, at the latest change; null before the first.
    [[nodiscard]] const Interval* Now() const noexcept { return intervals_.empty() ? nullptr : &intervals_.back(); }

private:
    std::vector<Interval> intervals_;
};

}  // namespace TARN::Story

#endif  // STORY_LANE_H
