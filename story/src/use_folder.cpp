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

bool IsUse(const Entry& entry) {
    return entry.use == Use::SCREEN_ON || entry.use == Use::PLUGGED;
}

bool IsChange(const Entry& entry) {
    return IsUse(entry) || entry.use == Use::SCREEN_OFF || entry.use == Use::UNPLUGGED;
}

/// How long the screen is lit in the first `length` entries and until the one behind them.
int64_t LitMs(const std::vector<Entry>& stretch, size_t length) {
    const auto first = std::find_if(stretch.begin(), stretch.end(), [](const Entry& entry) {
        return entry.use == Use::SCREEN_ON || entry.use == Use::SCREEN_OFF;
    });
    bool isOn = first != stretch.end() && first->use == Use::SCREEN_OFF;
    int64_t since = stretch.front().t;
    int64_t litMs = 0;
    for (size_t i = 0; i < length; ++i) {
        const Entry& entry = stretch[i];
        if (entry.use == Use::SCREEN_ON && !isOn) {
            isOn = true;
            since = entry.t;
        } else if (entry.use == Use::SCREEN_OFF && isOn) {
            isOn = false;
            litMs += entry.t - since;
        }
    }
    return isOn ? litMs + stretch[length].t - since : litMs;
}

/// The one line for `length` entries.
Entry Fold(const std::vector<Entry>& stretch, size_t length) {
    const auto count = [&](Use use) {
        return static_cast<int64_t>(std::count_if(stretch.begin(),
                                                  stretch.begin() + static_cast<std::ptrdiff_t>(length),
                                                  [use](const Entry& entry) { return entry.use == use; }));
    };
    const int64_t uses = count(Use::SCREEN_ON);
    const int64_t unlocks = count(Use::UNLOCKED);
    const int64_t charges = count(Use::PLUGGED);
    const std::string until = " until " + Clock(stretch[length].t);
    if (uses == 0) {
        return {stretch.front().t, Subject::CHARGER, "charging " + Times(charges) + until};
    }
    return {stretch.front().t, Subject::SCREEN,
            "on " + Times(uses) + until + ", lit for " + Duration(LitMs(stretch, length)) + " in all" +
                (unlocks > 0 ? ", unlocked " + Times(unlocks) : "") +
                (charges > 0 ? ", charging " + Times(charges) : "")};
}

}  // namespace

void UseFolder::Add(Entry entry) {
    if (entry.use == Use::NONE || isUnfolded_) {
        Finish();
        output_(entry);
        return;
    }
    stretch_.push_back(std::move(entry));
}

size_t UseFolder::FoldableLength() const {
    const auto last = std::find_if(stretch_.rbegin(), stretch_.rend(), IsChange);
    if (last == stretch_.rend()) {
        return 0;
    }
    const auto first =
        std::find_if(stretch_.begin(), stretch_.end(), [&](const Entry& entry) { return entry.t == last->t; });
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
