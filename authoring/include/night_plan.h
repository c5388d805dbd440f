#ifndef AUTHORING_NIGHT_PLAN_H
#define AUTHORING_NIGHT_PLAN_H

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "trace_writer.h"

namespace TARN::Authoring {

/// What a phone, or the world around it, is in for a while.
enum class While : uint8_t {
    SCREEN,    ///< the screen is lit
    CHARGER,   ///< it is plugged in
    CALL,      ///< somebody talks
    AIRPLANE,  ///< airplane mode
    AUDIO,     ///< music plays
    HEADSET,   ///< a device is connected over Bluetooth
    MOVING,    ///< it is in somebody's hand, or on its way
    COVERED,   ///< something lies before the proximity sensor
    WIFI_OFF,  ///< the user has Wi-Fi off
    SAVING,    ///< full power save
    NOTHING    ///< the others, counted
};

/// A night as it is thought out: stretches that may overlap, and what happens at moments, in any order. Writing puts it
/// in the order of time and says each change once.
class NightPlan {
public:
    /// Otherwise the phone lies still since a while before `start`, uncovered, unplugged and dark, its screen off.
    NightPlan(int64_t start, int64_t end) : start_(start), end_(end) {}

    /// Lasts from the one moment to the other. What lies outside of the night does not count.
    void During(While what, int64_t from, int64_t to);

    void Unlock(int64_t t) { Add({t, Kind::UNLOCK, While::NOTHING, 0, {}}); }
    void Light(int64_t t, int64_t lux) { Add({t, Kind::LIGHT, While::NOTHING, lux, {}}); }

    /// From `t` on the next alarm is that at `rings`.
    void Alarm(int64_t t, int64_t rings) { Add({t, Kind::ALARM, While::NOTHING, rings, {}}); }
    void NoAlarm(int64_t t) { Add({t, Kind::NO_ALARM, While::NOTHING, 0, {}}); }

    /// The applications that were killed meanwhile run again.
    void Relaunch(int64_t t) { Add({t, Kind::RELAUNCH, While::NOTHING, 0, {}}); }

    /// A comment before what happens at `t`.
    void Remark(int64_t t, std::string text) { Add({t, Kind::REMARK, While::NOTHING, 0, std::move(text)}); }

    /// How many stretches of each kind there are at a moment.
    using Depths = std::array<int, static_cast<size_t>(While::NOTHING) + 1>;

    /// Header and steps of a phone that is otherwise as `device` says.
    void Write(TraceWriter& writer, const Json& host, Json device);

private:
    enum class Kind : uint8_t { REMARK, BEGIN, UNLOCK, LIGHT, ALARM, NO_ALARM, RELAUNCH, END };

    struct Entry {
        int64_t t;
        Kind kind;
        While what;
        int64_t value;
        std::string text;
    };

    static void After(const Entry& entry, Depths& depths);
    static void Tell(TraceWriter& writer, const Entry& entry, const std::string& processes);
    void Add(Entry entry) { entries_.push_back(std::move(entry)); }

    int64_t start_;
    int64_t end_;
    std::vector<Entry> entries_;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_NIGHT_PLAN_H
