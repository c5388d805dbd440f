#include "scribe.h"

#include <algorithm>
#include <utility>

namespace TARN::Story {

namespace {

/// What the host and the plugin bring about, as against what they are told.
bool IsTheirs(Subject subject) {
    switch (subject) {
        case Subject::SLEEP:
        case Subject::FREEZE:
        case Subject::LOCK:
        case Subject::CLEAN:
        case Subject::BLUETOOTH:
        case Subject::WIFI:
        case Subject::MODEM:
        case Subject::FIREWALL:
        case Subject::PUSH:
        case Subject::TIMER:
            return true;
        default:
            return false;
    }
}

/// Whether an event changed the subject, or tried to.
bool IsEffect(const Event& event) {
    return event.outcome == Outcome::DONE || event.outcome == Outcome::FAILED;
}

}  // namespace

Scribe::Scribe(Night& night, NightView* view, bool isKept) : night_(night), view_(view), isKept_(isKept) {
    for (size_t lane = 0; !isKept && lane < kLanes; ++lane) {
        const auto id = static_cast<LaneId>(lane);
        if (id != LaneId::SLEEP) {
            night_.At(id).CountOnly(id);
        }
    }
}

void Scribe::MoveTo(int64_t t) {
    if (t != now_) {
        Settle();
        now_ = t;
    }
}

/// One event a subject: what was left alone says nothing beside what was done, and pieces are told in one breath.
void Scribe::Join() {
    std::array<Event*, kSubjects> first{};
    for (Event& event : pending_) {
        if (event.text.empty() || event.outcome == Outcome::HAPPENED || !IsTheirs(event.subject)) {
            continue;
        }
        Event*& earlier = first[static_cast<size_t>(event.subject)];
        if (earlier == nullptr || earlier->isRepeat) {
            earlier = &event;
        } else if (event.isRepeat) {
            continue;
        } else if (!IsEffect(event) && (IsEffect(*earlier) || event.text == earlier->text)) {
            event.isRepeat = true;
        } else if (!IsEffect(*earlier)) {
            earlier->isRepeat = true;
            earlier = &event;
        } else {
            if (!earlier->reason.empty() && earlier->reason != event.reason) {
                earlier->text += ": " + earlier->reason;
            }
            event.text = earlier->text + "; " + event.text;
            event.outcome = earlier->outcome == Outcome::FAILED ? Outcome::FAILED : event.outcome;
            event.values.insert(event.values.begin(), earlier->values.begin(), earlier->values.end());
            earlier->text.clear();
            earlier = &event;
        }
    }
}

/// A screen that goes on and off in one instant is one happening, and no use of the phone.
void Scribe::JoinScreen() {
    std::vector<Event*> flips;
    for (Event& event : pending_) {
        if (event.use == Use::SCREEN_ON || event.use == Use::SCREEN_OFF) {
            flips.push_back(&event);
        }
    }
    const bool isBothWays =
        std::any_of(flips.begin(), flips.end(), [&](const Event* event) { return event->use != flips.front()->use; });
    if (!isBothWays) {
        return;
    }
    Event& first = *flips.front();
    first.use = Use::NONE;
    for (size_t i = 1; i < flips.size(); ++i) {
        first.text += (i + 1 < flips.size() ? ", " : ", and ") + flips[i]->text;
        flips[i]->text.clear();
    }
    first.text += " at once";
}

void Scribe::Settle() {
    JoinScreen();
    Join();
    const Id base = settled_;
    std::vector<Id> settled(pending_.size(), kNoEvent);
    Id next = base;
    for (size_t i = 0; i < pending_.size(); ++i) {
        if (!pending_[i].text.empty()) {
            settled[i] = next++;
        }
    }
    // A piece that was joined to another of its subject points to that one.
    std::array<Id, kSubjects> joined = MakeNone();
    for (size_t i = pending_.size(); i-- > 0;) {
        Id& whole = joined[static_cast<size_t>(pending_[i].subject)];
        if (settled[i] == kNoEvent) {
            settled[i] = whole;
        }
        whole = settled[i];
    }
    joined = MakeNone();
    for (size_t i = 0; i < pending_.size(); ++i) {
        Id& whole = joined[static_cast<size_t>(pending_[i].subject)];
        settled[i] = settled[i] == kNoEvent ? whole : settled[i];
        whole = settled[i];
    }
    const auto final = [&](Id id) { return id == kNoEvent || id < base ? id : settled[id - base]; };
    for (const LaneChange& change : laneChanges_) {
        night_.At(change.lane).Set(now_, change.value, change.number, final(change.event));
    }
    for (AppEvent& event : appEvents_) {
        event.event = final(event.event);
        Count(event);
        if (isKept_) {
            night_.appEvents.push_back(std::move(event));
        }
    }
    for (SleepReading& reading : readings_) {
        reading.event = final(reading.event);
        if (isKept_) {
            night_.readings.push_back(reading);
        }
    }
    for (Event& event : pending_) {
        if (event.text.empty()) {
            continue;
        }
        event.cause = final(event.cause);
        const Id index = settled_++;
        if (event.cause == index) {
            event.cause = kNoEvent;
        }
        if (!event.isRepeat) {
            lastEvent_[static_cast<size_t>(event.subject)] = index;
        }
        Count(event);
        if (view_ != nullptr) {
            view_->OnEvent(night_, event);
        }
        if (isKept_) {
            night_.events.push_back(std::move(event));
        }
    }
    pending_.clear();
    laneChanges_.clear();
    appEvents_.clear();
    readings_.clear();
    ++instant_;
    SetCause(Cause::NONE);
}

/// What failed and came again, and warnings that have no words of their own: told once in a timeline, counted here.
void Scribe::Count(const Event& event) {
    if (event.isRepeat && (event.subject == Subject::WARNING || event.outcome == Outcome::FAILED)) {
        ++night_.again[event.text];
    }
}

void Scribe::Count(const AppEvent& event) {
    if (event.aspect == Aspect::CLEAN && event.value == "killed") {
        ++night_.kills;
        night_.killed.insert(event.app);
    }
}

void Scribe::SetCause(Cause cause, Id event) {
    SetCause(cause, std::string(Reason(cause)), event);
}

void Scribe::SetCause(Cause cause, std::string reason, Id event) {
    cause_ = cause;
    reason_ = std::move(reason);
    causeEvent_ = event;
}

Scribe::Id Scribe::Write(Subject subject, Outcome outcome, std::string text, std::string reason) {
    lastText_[static_cast<size_t>(subject)] = text;
    Event& event = pending_.emplace_back();
    event.t = now_;
    event.subject = subject;
    event.outcome = outcome;
    event.cause = causeEvent_;
    event.text = std::move(text);
    event.reason = std::move(reason);
    return settled_ + static_cast<Id>(pending_.size()) - 1;
}

Scribe::Id Scribe::WriteNew(Subject subject, Outcome outcome, std::string text, std::string reason) {
    const bool isRepeat = lastText_[static_cast<size_t>(subject)] == text;
    const Id id = Write(subject, outcome, std::move(text), std::move(reason));
    At(id).isRepeat = isRepeat;
    return id;
}

Scribe::Id Scribe::Renew(Id id) {
    Event event = At(id);
    At(id).text.clear();
    event.cause = causeEvent_;
    pending_.push_back(std::move(event));
    return settled_ + static_cast<Id>(pending_.size()) - 1;
}

bool Scribe::HasWritten(Subject subject) const {
    return std::any_of(pending_.begin(), pending_.end(),
                       [subject](const Event& event) { return event.subject == subject; });
}

bool Scribe::HasWritten(Subject subject, std::string_view text) const {
    return std::any_of(pending_.begin(), pending_.end(),
                       [subject, text](const Event& event) { return event.subject == subject && event.text == text; });
}

void Scribe::Drop(Subject subject) {
    for (Event& event : pending_) {
        if (event.subject == subject) {
            event.text.clear();
        }
    }
}

void Scribe::Set(LaneId lane, std::string_view value, int64_t number, Id event) {
    laneChanges_.push_back({lane, std::string(value), number, event});
}

std::string_view Scribe::Value(LaneId lane) const {
    const auto change = std::find_if(laneChanges_.rbegin(), laneChanges_.rend(),
                                     [lane](const LaneChange& one) { return one.lane == lane; });
    if (change != laneChanges_.rend()) {
        return change->value;
    }
    const Interval* now = night_.At(lane).Now();
    return now == nullptr ? kNotKnown : std::string_view(now->value);
}

void Scribe::Tell(uint32_t app, Aspect aspect, std::string value, std::string reason, Id event) {
    appEvents_.push_back({now_, app, aspect, std::move(value), std::move(reason), event});
}

void Scribe::Add(SleepReading reading, Id event) {
    reading.event = event;
    readings_.push_back(reading);
}

}  // namespace TARN::Story
