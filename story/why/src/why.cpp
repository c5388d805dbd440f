#include "why.h"

#include <algorithm>

#include "app_answers.h"
#include "causes.h"
#include "phrases.h"
#include "topics.h"

namespace TARN::Story {

namespace {

constexpr int64_t kDayMs = 24L * 3600 * 1000;

/// Of refusals that came to something else, so many are told, and how long ago they may be; the rest is history.
constexpr size_t kMostRefusals = 3;
constexpr int64_t kHistoryMs = 12L * 3600 * 1000;

/// The stretch of a lane's intervals that ends with `last` and in which it was the same, its number apart. How far
/// timers are stretched is more than a number.
const Interval* Beginning(const Lane& lane, const Interval* last, LaneId id) {
    const Interval* const earliest = lane.Intervals().data();
    while (last != earliest && (last - 1)->value == last->value && id != LaneId::TIMERS) {
        --last;
    }
    return last;
}

/// Fills in how a lane stands. Returns the event that made it so; kNoEvent for what was so at the start.
uint32_t AddState(SubjectAnswer& answer, const Night& night, int64_t t, LaneId id) {
    const Lane& lane = night.At(id);
    const Interval* now = lane.At(t);
    answer.state = now == nullptr ? kNotKnown : now->value;
    if (now == nullptr) {
        return kNoEvent;
    }
    answer.number = now->number;
    const Interval* first = Beginning(lane, now, id);
    if (first->from > night.start || first->event != kNoEvent) {
        answer.since = first->from;
    }
    if (now->event != first->event) {
        answer.adjustment = WithCauses(night, now->event);
    }
    return first->event;
}

/// Whether an event says that the subject was looked at and left, or that a try failed.
bool IsRefusal(const Event& event) {
    return event.outcome == Outcome::FAILED || event.outcome == Outcome::KEPT;
}

/// Why nothing will change the subject: what would is not there.
std::string Lacking(const Night& night, About about) {
    struct Owner {
        About about;
        const char* strategy;
    };
    constexpr std::array kOwners = {Owner{About::NETWORK, "NETWORK"}, Owner{About::FREEZE, "FREEZE"},
                                    Owner{About::LOCKS, "RUNNING_LOCK"}, Owner{About::TIMERS, "TIMER"}};
    const auto isThere = [&night](const char* name) {
        return std::find(night.strategies.begin(), night.strategies.end(), name) != night.strategies.end();
    };
    if (about == About::STATE || about == About::SCREEN) {
        return {};
    }
    if (night.strategies.empty()) {
        return "no strategies are configured, so the plugin does nothing";
    }
    if (about == About::BLUETOOTH && !night.isPowerOffAlive) {
        return "the power-off strategy is off, so Bluetooth goes off only when the user falls asleep";
    }
    if ((about == About::WIFI || about == About::MODEM) && !night.isPowerOffAlive) {
        return "the power-off strategy is off";
    }
    if (about == About::CLEAN && !isThere("SLEEP_CLEAN") && !isThere("POWER_SAVE_CLEAN")) {
        return "neither SLEEP_CLEAN nor POWER_SAVE_CLEAN is configured";
    }
    const auto* owner =
        std::find_if(kOwners.begin(), kOwners.end(), [about](const Owner& one) { return one.about == about; });
    return owner == kOwners.end() || isThere(owner->strategy) ? ""
                                                              : std::string(owner->strategy) + " is not configured";
}

/// Whether two texts say the same but for their numbers.
bool AreAlike(std::string_view a, std::string_view b) {
    constexpr std::string_view kDigits = "0123456789";
    while (a != b) {
        const size_t toNumber = std::min(a.find_first_of(kDigits), a.size());
        if (toNumber != std::min(b.find_first_of(kDigits), b.size()) ||
            a.substr(0, toNumber) != b.substr(0, toNumber) || toNumber == a.size() || toNumber == b.size()) {
            return false;
        }
        a.remove_prefix(std::min(a.find_first_not_of(kDigits, toNumber), a.size()));
        b.remove_prefix(std::min(b.find_first_not_of(kDigits, toNumber), b.size()));
    }
    return true;
}

/// Adds what was refused between the change and `t`.
void AddRefusals(SubjectAnswer& answer, const Night& night, int64_t t, const Topic& topic, uint32_t change) {
    const auto end = std::upper_bound(night.events.begin(), night.events.end(), t,
                                      [](int64_t time, const Event& event) { return time < event.t; });
    const size_t first = change == kNoEvent ? 0 : change + 1;
    bool isNextKnown = false;
    for (auto i = static_cast<size_t>(end - night.events.begin()); i > first; --i) {
        const Event& event = night.events[i - 1];
        if (event.subject != topic.subject) {
            continue;
        }
        if (!isNextKnown && !event.next.empty()) {
            isNextKnown = true;
            answer.next = event.nextBy > t ? event.next : "";
        }
        if (!IsRefusal(event)) {
            continue;
        }
        const auto alike =
            std::find_if(answer.refusals.begin(), answer.refusals.end(), [&event](const Refusal& refusal) {
                return AreAlike(Because(refusal.told.event.text, refusal.told.event.reason),
                                Because(event.text, event.reason));
            });
        const size_t told = answer.refusals.size();
        if (alike != answer.refusals.end()) {
            alike->first = event.t;
            ++alike->times;
        } else if (told == 0 || (told < kMostRefusals && t - event.t < kHistoryMs)) {
            answer.refusals.push_back({*WithCauses(night, static_cast<uint32_t>(i - 1)), event.t, 1});
        }
    }
    std::reverse(answer.refusals.begin(), answer.refusals.end());
    if (!isNextKnown && answer.change && answer.change->event.nextBy > t) {
        answer.next = answer.change->event.next;
    }
}

/// The last event of a subject without a state that did something.
uint32_t LastDone(const Night& night, int64_t t, Subject subject) {
    const Event* last = night.LastBefore(t, subject, [](const Event& event) { return event.outcome == Outcome::DONE; });
    return last == nullptr ? kNoEvent : static_cast<uint32_t>(last - night.events.data());
}

SubjectAnswer AnswerOf(const Night& night, int64_t t, const Topic& topic) {
    SubjectAnswer answer;
    answer.about = topic.about;
    answer.lacking = Lacking(night, topic.about);
    const uint32_t change = topic.lane ? AddState(answer, night, t, *topic.lane) : LastDone(night, t, topic.subject);
    answer.change = WithCauses(night, change);
    if (topic.about == About::STATE) {
        if (const Interval* phase = night.At(LaneId::PHASE).At(t); phase != nullptr && phase->number >= 0) {
            answer.phase = {phase->value, phase->number, phase->from};
        }
    }
    if (topic.about == About::SLEEP) {
        const auto after = std::upper_bound(night.readings.begin(), night.readings.end(), t,
                                            [](int64_t time, const SleepReading& reading) { return time < reading.t; });
        answer.lastLook = after == night.readings.begin() ? std::nullopt : std::optional(std::prev(after)->t);
    }
    AddRefusals(answer, night, t, topic, change);
    if (topic.about == About::CLEAN && answer.change) {
        answer.who = NamesOf(night, change, *topic.aspect, topic.aspectValue);
    } else if (topic.aspect && answer.number > 0) {
        answer.who = NamesWith(night, t, *topic.aspect, topic.aspectValue);
    }
    return answer;
}

}  // namespace

WhyAnswer Ask(const Night& night, int64_t t, const WhyQuestion& question) {
    WhyAnswer answer;
    answer.t = t;
    answer.areDatesSaid = std::max(night.end, t) - night.start > kDayMs;  // one that is still read has no end yet
    if (!question.app.empty()) {
        answer.apps = AskForApps(night, t, question.app);
        return answer;
    }
    answer.isBrief = !question.about;
    for (size_t i = 0; i < kAbouts; ++i) {
        const auto about = static_cast<About>(i);
        if (!question.about || *question.about == about) {
            answer.subjects.push_back(AnswerOf(night, t, TopicOf(about)));
        }
    }
    return answer;
}

}  // namespace TARN::Story
