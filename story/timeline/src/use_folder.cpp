#include "use_folder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "phrases.h"

namespace TARN::Story {

namespace {

/// Fewer uses than these are told one by one.
constexpr int64_t kLeastUsesToFold = 2;

bool IsUse(const Event& event) {
    return event.use == Use::SCREEN_ON || event.use == Use::PLUGGED;
}

bool IsChange(const Event& event) {
    return IsUse(event) || event.use == Use::SCREEN_OFF || event.use == Use::UNPLUGGED;
}

/// How long the screen is lit in the first `length` events and until the one behind them.
int64_t LitMs(const std::vector<Event>& stretch, size_t length) {
    const auto first = std::find_if(stretch.begin(), stretch.end(), [](const Event& event) {
        return event.use == Use::SCREEN_ON || event.use == Use::SCREEN_OFF;
    });
    bool isOn = first != stretch.end() && first->use == Use::SCREEN_OFF;
    int64_t since = stretch.front().t;
    int64_t litMs = 0;
    for (size_t i = 0; i < length; ++i) {
        const Event& event = stretch[i];
        if (event.use == Use::SCREEN_ON && !isOn) {
            isOn = true;
            since = event.t;
        } else if (event.use == Use::SCREEN_OFF && isOn) {
            isOn = false;
            litMs += event.t - since;
        }
    }
    return isOn ? litMs + stretch[length].t - since : litMs;
}

/// The one line for `length` events.
Event Fold(const std::vector<Event>& stretch, size_t length) {
    const auto count = [&](Use use) {
        return static_cast<int64_t>(std::count_if(stretch.begin(),
                                                  stretch.begin() + static_cast<std::ptrdiff_t>(length),
                                                  [use](const Event& event) { return event.use == use; }));
    };
    const int64_t uses = count(Use::SCREEN_ON);
    const int64_t unlocks = count(Use::UNLOCKED);
    const int64_t charges = count(Use::PLUGGED);
    const std::string until = " until " + Clock(stretch[length].t);
    Event folded;
    folded.t = stretch.front().t;
    folded.subject = uses == 0 ? Subject::CHARGER : Subject::SCREEN;
    folded.text = uses == 0 ? "charging " + Times(charges) + until
                            : "on " + Times(uses) + until + ", lit for " + Duration(LitMs(stretch, length)) +
                                  " in all" + (unlocks > 0 ? ", unlocked " + Times(unlocks) : "") +
                                  (charges > 0 ? ", charging " + Times(charges) : "");
    return folded;
}

}  // namespace

void UseFolder::Add(Event event) {
    if (event.use == Use::NONE || isUnfolded_) {
        Finish();
        output_(event);
        return;
    }
    stretch_.push_back(std::move(event));
}

size_t UseFolder::FoldableLength() const {
    const auto last = std::find_if(stretch_.rbegin(), stretch_.rend(), IsChange);
    if (last == stretch_.rend()) {
        return 0;
    }
    const auto first =
        std::find_if(stretch_.begin(), stretch_.end(), [&](const Event& event) { return event.t == last->t; });
    const auto uses = std::count_if(stretch_.begin(), first, IsUse);
    return uses < kLeastUsesToFold ? 0 : static_cast<size_t>(first - stretch_.begin());
}

void UseFolder::Finish() {
    if (stretch_.empty()) {
        return;
    }
    const size_t folded = FoldableLength();
    if (folded > 0) {
        output_(Fold(stretch_, folded));
    }
    for (size_t i = folded; i < stretch_.size(); ++i) {
        output_(stretch_[i]);
    }
    stretch_.clear();
}

}  // namespace TARN::Story
