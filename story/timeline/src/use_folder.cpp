#include "use_folder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "clock_change.h"
#include "phrases.h"

namespace TARN::Story {

namespace {

constexpr int64_t kMinuteMs = 60'000;
/// Fewer uses than these are told one by one.
constexpr int64_t kLeastUsesToFold = 2;

using Stretch = std::vector<Event>;

bool IsChange(Use use) {
    return use == Use::SCREEN_ON || use == Use::SCREEN_OFF || use == Use::PLUGGED || use == Use::UNPLUGGED;
}

/// The first event of the instant at which screen or charger change for the last time; 0 for none.
size_t LastChange(const Stretch& stretch) {
    const auto last =
        std::find_if(stretch.rbegin(), stretch.rend(), [](const Event& event) { return IsChange(event.use); });
    if (last == stretch.rend()) {
        return 0;
    }
    const auto first =
        std::find_if(stretch.begin(), stretch.end(), [&](const Event& event) { return event.t == last->t; });
    return static_cast<size_t>(first - stretch.begin());
}

/// What happened in a part of a stretch.
struct Tally {
    int64_t from = 0;
    int64_t to = 0;
    bool isLitFirst = false;  ///< the screen was on when it began
    int64_t screenOns = 0;
    int64_t unlocks = 0;
    int64_t pluggings = 0;
    int64_t litMs = 0;
    std::optional<int64_t> chargedUntil;  ///< when a charger went that had been there before
};

/// The first event before `end` with which a use begins or goes on; `now` becomes what is so before it.
size_t FirstUse(const Stretch& stretch, size_t end, InUse& now) {
    for (size_t i = 0; i < end; ++i) {
        InUse then = now;
        const bool isNew = then.Take(stretch[i].use);
        if ((isNew && stretch[i].use != Use::UNPLUGGED) || stretch[i].use == Use::UNLOCKED) {
            return i;
        }
        now = then;
    }
    return end;
}

Tally TallyOf(const Stretch& stretch, size_t first, size_t end, InUse now) {
    Tally tally;
    tally.from = stretch[first].t;
    tally.to = stretch[end].t;
    tally.isLitFirst = now.isLit.value_or(stretch[first].use == Use::SCREEN_OFF);
    int64_t litSince = tally.from;
    bool wasChargerSeen = false;
    for (size_t i = first; i < end; ++i) {
        const Event& event = stretch[i];
        tally.unlocks += event.use == Use::UNLOCKED ? 1 : 0;
        if (!now.Take(event.use)) {
            continue;
        }
        if (event.use == Use::SCREEN_ON) {
            ++tally.screenOns;
            litSince = event.t;
        } else if (event.use == Use::SCREEN_OFF) {
            tally.litMs += event.t - litSince;
        } else {
            const bool isPlugged = event.use == Use::PLUGGED;
            tally.pluggings += isPlugged ? 1 : 0;
            if (!isPlugged && !wasChargerSeen) {
                tally.chargedUntil = event.t;
            }
            wasChargerSeen = true;
        }
    }
    tally.litMs += now.isLit.value_or(false) ? tally.to - litSince : 0;
    return tally;
}

std::string Until(const Tally& tally) {
    return tally.to - tally.from < kMinuteMs ? " within a minute" : " until " + Clock(tally.to);
}

std::string Charging(const Tally& tally) {
    const std::string times = tally.pluggings == 0 ? "" : Times(tally.pluggings);
    if (!tally.chargedUntil) {
        return times.empty() ? "" : ", charging " + times;
    }
    return ", charging until " + Clock(*tally.chargedUntil) + (times.empty() ? "" : " and " + times + " more");
}

Event Fold(const Tally& tally) {
    Event folded;
    folded.t = tally.from;
    if (tally.screenOns == 0) {
        folded.subject = Subject::CHARGER;
        folded.text = "charging " + Times(tally.pluggings) + Until(tally);
        return folded;
    }
    folded.subject = Subject::SCREEN;
    folded.text = (tally.isLitFirst ? "off and on again " : "on ") + Times(tally.screenOns) + Until(tally) +
                  ", lit for " + Duration(tally.litMs) + " in all" +
                  (tally.unlocks > 0 ? ", unlocked " + Times(tally.unlocks) : "") + Charging(tally);
    return folded;
}

}  // namespace

bool InUse::Take(Use use) {
    if (!IsChange(use)) {
        return false;
    }
    const bool isScreen = use == Use::SCREEN_ON || use == Use::SCREEN_OFF;
    const bool isOn = use == Use::SCREEN_ON || use == Use::PLUGGED;
    return std::exchange(isScreen ? isLit : isPlugged, isOn) != isOn;
}

void UseFolder::Add(Event event) {
    if (event.use == Use::NONE || isUnfolded_) {
        Finish();
        output_(event);
        return;
    }
    if (!stretch_.empty() && !AreOfOneDay(stretch_.back().t, event.t)) {
        Finish();
    }
    stretch_.push_back(std::move(event));
}

void UseFolder::HandOn(size_t from, size_t to) {
    for (size_t i = from; i < to; ++i) {
        output_(stretch_[i]);
    }
}

void UseFolder::Finish() {
    if (stretch_.empty()) {
        return;
    }
    const size_t end = LastChange(stretch_);
    InUse now = before_;
    const size_t first = FirstUse(stretch_, end, now);
    const Tally tally = TallyOf(stretch_, first, end, now);
    if (tally.screenOns >= kLeastUsesToFold || tally.pluggings >= kLeastUsesToFold) {
        HandOn(0, first);
        output_(Fold(tally));
        HandOn(end, stretch_.size());
    } else {
        HandOn(0, stretch_.size());
    }
    for (const Event& event : stretch_) {
        before_.Take(event.use);
    }
    stretch_.clear();
}

}  // namespace TARN::Story
