#include "trace_events.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "event_writer.h"
#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using Json = nlohmann::ordered_json;
using Replay::TimeZone;

constexpr int64_t kUsPerMs = 1000;
constexpr int64_t kPhone = 1;           ///< the process of the lanes, the curves and what happened
constexpr int64_t kFirstAspect = 2;     ///< then one for each aspect of the applications
constexpr int64_t kFirstLane = 1;       ///< a thread for each lane
constexpr int64_t kFirstSubject = 101;  ///< and for each subject that is no lane's
/// What a curve shows where the sensor says nothing.
constexpr double kNoReading = -1.0;

/// The lane that shows what events of a subject change; nothing where none does.
std::optional<LaneId> LaneOf(Subject subject) {
    switch (subject) {
        case Subject::SCREEN:
            return LaneId::SCREEN;
        case Subject::CHARGER:
            return LaneId::CHARGER;
        case Subject::NIGHT:
            return LaneId::CONDITION;
        case Subject::STATE:
            return LaneId::STATE;
        case Subject::SLEEP:
            return LaneId::SLEEP;
        case Subject::BLUETOOTH:
            return LaneId::BLUETOOTH;
        case Subject::WIFI:
            return LaneId::WIFI;
        case Subject::MODEM:
            return LaneId::MODEM;
        case Subject::FIREWALL:
            return LaneId::FIREWALL;
        case Subject::FREEZE:
            return LaneId::FROZEN;
        case Subject::LOCK:
            return LaneId::LOCKS;
        case Subject::TIMER:
            return LaneId::TIMERS;
        default:
            return std::nullopt;
    }
}

/// What a lane's number is called; empty where it says nothing that the value does not say.
std::string_view NumberName(LaneId lane) {
    switch (lane) {
        case LaneId::BLUETOOTH:
        case LaneId::WIFI:
            return "off by the plugin";
        case LaneId::MODEM:
            return "slots off by the plugin";
        case LaneId::FIREWALL:
            return "trust list";
        case LaneId::FROZEN:
            return "frozen natives";
        case LaneId::LOCKS:
            return "proxied processes";
        case LaneId::TIMERS:
            return "stretched to seconds";
        default:
            return {};
    }
}
constexpr std::array kCountedLanes = {LaneId::FROZEN, LaneId::FIREWALL, LaneId::LOCKS, LaneId::TIMERS};

/// The value of an application's aspect that lasts and is shown as a stretch of time.
struct LastingAspect {
    Aspect aspect;
    std::string_view value;
    std::string_view title;
};
constexpr std::array kLastingAspects = {
    LastingAspect{Aspect::FROZEN, "frozen", "frozen"},
    LastingAspect{Aspect::LOCKS, "proxied", "running locks proxied"},
    LastingAspect{Aspect::FIREWALL, "let through", "on the trust list"},
    LastingAspect{Aspect::RUNNING, "killed", "killed"},
    LastingAspect{Aspect::EXEMPT, "exempt", "exempt from limits"},
    LastingAspect{Aspect::STRETCHING, "exempt", "timers exempt from stretching"},
};

std::string DayAndTime(int64_t t) {
    return TimeZone::Format(t, "%a %-d %b %H:%M:%S");
}

Track TrackOf(LaneId lane) {
    return {kPhone, kFirstLane + static_cast<int64_t>(lane)};
}

Track TrackOf(Subject subject) {
    const auto lane = LaneOf(subject);
    return lane ? TrackOf(*lane) : Track{kPhone, kFirstSubject + static_cast<int64_t>(subject)};
}

class Writer {
public:
    Writer(const Night& night, std::ostream& output) : night_(night), out_(output) {}

    void Write() {
        PlaceEvents();
        out_.NameProcess(kPhone, "phone: " + night_.name);
        WriteLanes();
        WriteEvents();
        WriteFlows();
        WriteCurve("light (lux)", night_.light);
        WriteCurve("proximity", night_.proximity);
        WriteCurve("still", night_.stillness);
        WriteApps();
        out_.Finish(Facts());
    }

private:
    /// Where an event lies on its track.
    struct Place {
        int64_t us = 0;
        bool isShown = false;   ///< a slice of its lane begins with it
        bool isInFlow = false;  ///< it is the cause of another, or has one
    };

    [[nodiscard]] int64_t Us(int64_t t) const { return std::max<int64_t>(t - night_.start, 0) * kUsPerMs; }

    /// What is due at the end still happens, so the last millisecond is part of the night.
    [[nodiscard]] int64_t EndUs() const { return Us(night_.end) + kUsPerMs; }

    /// Events of one millisecond follow each other by a microsecond, so that their order shows.
    void PlaceEvents() {
        places_.resize(night_.events.size());
        int64_t inInstant = 0;
        for (size_t i = 0; i < places_.size(); ++i) {
            inInstant = i > 0 && night_.events[i - 1].t == night_.events[i].t ? inInstant + 1 : 0;
            places_[i].us = Us(night_.events[i].t) + std::min(inInstant, kUsPerMs - 1);
        }
        for (size_t lane = 0; lane < kLanes; ++lane) {
            for (const Interval& interval : night_.lanes[lane].Intervals()) {
                if (interval.event < places_.size() &&
                    LaneOf(night_.events[interval.event].subject) == static_cast<LaneId>(lane)) {
                    places_[interval.event].isShown = true;
                }
            }
        }
        for (size_t i = 0; i < places_.size(); ++i) {
            if (HasFlow(i)) {
                places_[i].isInFlow = places_[night_.events[i].cause].isInFlow = true;
            }
        }
    }

    /// The slice of its lane that an event lies in; null where it has no lane, or the lane says nothing.
    [[nodiscard]] const Interval* SliceOf(const Event& event) const {
        const auto lane = LaneOf(event.subject);
        return lane ? night_.At(*lane).At(event.t) : nullptr;
    }

    /// Whether an arrow can lead to an event: each end lies in a slice, and not both in the same.
    [[nodiscard]] bool HasFlow(size_t i) const {
        const uint32_t cause = night_.events[i].cause;
        if (cause >= i || IsCrowded(cause) || IsCrowded(i)) {
            return false;
        }
        const auto isHeld = [this](const Event& event) { return !LaneOf(event.subject) || SliceOf(event) != nullptr; };
        const Event& from = night_.events[cause];
        const Event& to = night_.events[i];
        return isHeld(from) && isHeld(to) && (SliceOf(from) == nullptr || SliceOf(from) != SliceOf(to));
    }

    /// Whether an instant holds more events than there are places for; those share the last.
    [[nodiscard]] bool IsCrowded(size_t i) const { return places_[i].us - Us(night_.events[i].t) == kUsPerMs - 1; }

    [[nodiscard]] Json Args(int64_t t, const Event& event) const {
        Json args = {{"time", DayAndTime(t)}, {"told", Because(event.text, event.reason)}};
        args["outcome"] = NameOf(event.outcome);
        if (!event.reason.empty()) {
            args["reason"] = event.reason;
        }
        for (const Value& value : event.values) {
            args["values"][value.name] = value.text;
        }
        if (!event.next.empty()) {
            args["next"] = event.next;
        }
        if (event.cause < night_.events.size()) {
            const Event& cause = night_.events[event.cause];
            args["because"] = DayAndTime(cause.t) + " " + std::string(NameOf(cause.subject)) + " " + cause.text;
        }
        return args;
    }

    void WriteLanes() {
        for (size_t i = 0; i < kLanes; ++i) {
            const auto lane = static_cast<LaneId>(i);
            const auto& intervals = night_.At(lane).Intervals();
            out_.NameThread(TrackOf(lane), NameOf(lane));
            for (const Interval& interval : intervals) {
                if (interval.value.empty()) {
                    continue;
                }
                const int64_t endUs = &interval == &intervals.back() ? EndUs() : Us(interval.to);
                Json args = interval.event < night_.events.size() ? Args(interval.from, night_.events[interval.event])
                                                                  : Json{{"time", DayAndTime(interval.from)}};
                args["until"] = DayAndTime(interval.to);
                if (!NumberName(lane).empty()) {
                    args[NumberName(lane)] = interval.number;
                }
                out_.Slice(TrackOf(lane), Us(interval.from), endUs - Us(interval.from), interval.value, NameOf(lane),
                           std::move(args));
            }
        }
        for (const LaneId lane : kCountedLanes) {
            for (const Interval& interval : night_.At(lane).Intervals()) {
                out_.Counter(kPhone, Us(interval.from), NumberName(lane),
                             interval.value == kNotKnown ? kNoReading : static_cast<double>(interval.number));
            }
        }
    }

    /// The subject's track; one that is no lane's gets its name with the first that lies on it.
    Track NamedTrackOf(Subject subject) {
        if (!std::exchange(isNamed_[static_cast<size_t>(subject)], true) && !LaneOf(subject)) {
            out_.NameThread(TrackOf(subject), NameOf(subject));
        }
        return TrackOf(subject);
    }

    /// What begins a slice of its lane is shown by it. All else is an instant, on the lane where it belongs to one; and
    /// what an arrow leads from or to without a lane is a slice of its own, as short as can be.
    void WriteEvents() {
        for (size_t i = 0; i < places_.size(); ++i) {
            const Event& event = night_.events[i];
            const Track track = NamedTrackOf(event.subject);
            if (places_[i].isShown) {
                continue;
            }
            const std::string name = Because(event.text, event.reason);
            if (places_[i].isInFlow && !LaneOf(event.subject)) {
                out_.Slice(track, places_[i].us, 1, name, NameOf(event.outcome), Args(event.t, event));
            } else {
                out_.Instant(track, places_[i].us, name, NameOf(event.outcome), Args(event.t, event));
            }
        }
    }

    void WriteFlows() {
        for (size_t i = 0; i < places_.size(); ++i) {
            if (HasFlow(i)) {
                const uint32_t cause = night_.events[i].cause;
                out_.Flow(i, TrackOf(night_.events[cause].subject), places_[cause].us,
                          TrackOf(night_.events[i].subject), places_[i].us);
            }
        }
    }

    void WriteCurve(std::string_view name, const std::vector<Sample>& samples) {
        for (const Sample& sample : samples) {
            const float value = sample.value ? std::clamp(*sample.value, -FLT_MAX, FLT_MAX) : 0.0F;
            out_.Counter(kPhone, Us(sample.t), name, sample.value ? static_cast<double>(value) : kNoReading);
        }
    }

    [[nodiscard]] std::string TitleOf(const App& app) const {
        return app.pid >= 0 ? app.name + " (" + std::to_string(app.pid) + ")" : app.name;
    }

    void WriteApps() {
        WriteSpared();
        for (size_t i = 0; i < kLastingAspects.size(); ++i) {
            WriteAspect(kLastingAspects[i], kFirstAspect + static_cast<int64_t>(i));
        }
    }

    /// Whom a clean passed over or could not kill.
    void WriteSpared() {
        for (const AppEvent& event : night_.appEvents) {
            if (event.aspect == Aspect::CLEAN && event.value != "killed") {
                out_.Instant(NamedTrackOf(Subject::CLEAN), Us(event.t),
                             Because(event.value + " " + TitleOf(night_.apps[event.app]), event.reason),
                             NameOf(event.aspect), {{"time", DayAndTime(event.t)}, {"reason", event.reason}});
            }
        }
    }

    void WriteAspect(const LastingAspect& lasting, int64_t process) {
        const std::string_view category = NameOf(lasting.aspect);
        std::vector<bool> isOpen(night_.apps.size());
        bool isNamed = false;
        const auto id = [process](uint32_t app) { return static_cast<uint64_t>(process) << 32U | app; };
        for (const AppEvent& event : night_.appEvents) {
            const bool begins = event.value == lasting.value;
            if (event.aspect != lasting.aspect || begins == isOpen[event.app]) {
                continue;
            }
            if (!std::exchange(isNamed, true)) {
                out_.NameProcess(process, lasting.title);
            }
            isOpen[event.app] = begins;
            const std::string title = TitleOf(night_.apps[event.app]);
            if (begins) {
                Json args = {{"time", DayAndTime(event.t)}};
                if (!event.reason.empty()) {
                    args["reason"] = event.reason;
                }
                if (event.event < night_.events.size()) {
                    const Event& told = night_.events[event.event];
                    args["told"] = Because(told.text, told.reason);
                }
                out_.Begin(process, Us(event.t), id(event.app), title, category, std::move(args));
            } else {
                out_.End(process, Us(event.t), id(event.app), title, category);
            }
        }
        for (uint32_t app = 0; app < isOpen.size(); ++app) {
            if (isOpen[app]) {
                out_.End(process, EndUs(), id(app), TitleOf(night_.apps[app]), category);
            }
        }
    }

    [[nodiscard]] Json Facts() const {
        Json facts = {{"trace", night_.name},
                      {"timezone", night_.timezone},
                      {"start", night_.start},
                      {"start_local", TimeZone::Format(night_.start, "%FT%T%z")},
                      {"end_local", TimeZone::Format(night_.end, "%FT%T%z")},
                      {"strategies", night_.strategies}};
        for (const HeadFact& fact : night_.head) {
            facts["facts"][fact.name] = fact.text;
        }
        facts["record"] = {
            {"messages", night_.record.messages}, {"calls", night_.record.calls}, {"log lines", night_.record.logs}};
        return facts;
    }

    const Night& night_;
    EventWriter out_;
    std::vector<Place> places_;
    std::array<bool, kSubjects> isNamed_{};
};

}  // namespace

void WriteTraceEvents(const Night& night, std::ostream& output) {
    Writer(night, output).Write();
}

}  // namespace TARN::Story
