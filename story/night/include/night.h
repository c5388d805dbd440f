#ifndef STORY_NIGHT_H
#define STORY_NIGHT_H

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "event.h"
#include "lane.h"
#include "record_sink.h"

namespace TARN::Story {

/// One reading of a curve; it holds until the next. Nothing: the sensor reports nothing, or it is not known.
struct Sample {
    int64_t t = 0;
    std::optional<float> value;
};

/// What the sleep detector collected of the phone's surroundings, and what it made of it. Durations in seconds, times
/// in milliseconds, -1 unknown.
struct SleepReading {
    int64_t t = -1;
    int64_t stillS = -1;
    int64_t darkS = -1;
    int64_t screenOffS = -1;
    int64_t alarm = -1;
    float light = -1.0F;        ///< lux
    bool isAsleep = false;      ///< the verdict
    uint32_t event = kNoEvent;  ///< that tells the verdict
};

/// A process that the trace named: an application's or a native. Or only a name.
struct App {
    int32_t pid = -1;
    int32_t uid = -1;
    std::string name;
    std::vector<std::string> bundles;
    bool isNative = false;
    bool isNameOnly = false;  ///< a list or a task of the trace names it, and no process so far
};

/// What can be asked of an application.
enum class Aspect : uint8_t {
    RUNNING,     ///< "running", "ended", "killed"
    FROZEN,      ///< "frozen", "thawed", "not frozen"
    CLEAN,       ///< "killed", "spared", "could not be killed"
    EXEMPT,      ///< "exempt", "not exempt": the allow lists, by message
    FIREWALL,    ///< "let through", "shut out": the trust list
    LOCKS,       ///< "proxied", "count"
    STRETCHING,  ///< "exempt", "not exempt"
};
inline constexpr size_t kAspects = static_cast<size_t>(Aspect::STRETCHING) + 1;
[[nodiscard]] std::string_view NameOf(Aspect aspect) noexcept;

/// An aspect of an application changed, or was looked at.
struct AppEvent {
    int64_t t = 0;
    uint32_t app = 0;  ///< its place in Night::apps
    Aspect aspect = Aspect::RUNNING;
    std::string value;
    std::string reason;
    uint32_t event = kNoEvent;  ///< the event that tells of it; kNoEvent for none of its own
};

/// A fact of the beginning, for the head of a page: "alarm", "Mon 07:30".
struct HeadFact {
    std::string name;
    std::string text;
};

/// What a record says of one run, made to be asked. It never guesses: what the record does not say is "not known".
struct Night {
    std::string name;  ///< where the trace was read from
    std::string timezone;
    int64_t start = 0;  ///< wall clock, milliseconds
    int64_t end = 0;
    bool isScripted = false;
    std::vector<std::string> strategies;  ///< as configured
    bool isPowerOffAlive = false;  ///< the strategy of long screen-offs and deep standby, which is configured otherwise
    std::vector<HeadFact> head;    ///< host, what a configuration changed, the phone at the start

    std::vector<Event> events;  ///< in order of time
    std::array<Lane, kLanes> lanes;
    std::vector<Sample> light;      ///< lux, as the phone's sensor has it
    std::vector<Sample> proximity;  ///< distance, as the phone's sensor has it
    std::vector<Sample> stillness;  ///< 1 still, 0 moving, as the movement service says
    std::vector<SleepReading> readings;
    std::vector<App> apps;
    std::vector<AppEvent> appEvents;  ///< in order of time
    Replay::Summary record;           ///< how many messages, calls and log lines

    // What is counted while it is read, since it may be that nothing else of it is kept.
    std::map<std::string, int64_t> again;  ///< what failed, or was warned of, by its text: how often more than once
    int64_t kills = 0;
    std::set<uint32_t> killed;  ///< places in `apps`

    [[nodiscard]] const Lane& At(LaneId lane) const { return lanes[static_cast<size_t>(lane)]; }
    [[nodiscard]] Lane& At(LaneId lane) { return lanes[static_cast<size_t>(lane)]; }

    /// The last event of a subject up to and including `t` for which `fits` holds; null for none.
    template <class Fits>
    [[nodiscard]] const Event* LastBefore(int64_t t, Subject subject, Fits fits) const;
};

/// What looks at a night while it is read: a timeline need not wait for the end.
class NightView {
public:
    virtual ~NightView() = default;

    /// The head is known.
    virtual void OnHead(const Night& night) = 0;
    /// An event is settled: nothing of it changes any more. In order.
    virtual void OnEvent(const Night& night, const Event& event) = 0;
    /// The night is whole.
    virtual void OnEnd(const Night& night) = 0;
};

template <class Fits>
const Event* Night::LastBefore(int64_t t, Subject subject, Fits fits) const {
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        if (event->t <= t && event->subject == subject && fits(*event)) {
            return &*event;
        }
    }
    return nullptr;
}

}  // namespace TARN::Story

#endif  // STORY_NIGHT_H
