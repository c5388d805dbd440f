#include "use_folder.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "phrases.h"

namespace TARN::Replay {

namespace {

/// Fewer uses than these are told one by one.
constexpr int64_t kLeastUsesToFold = 2;

bool IsScreenChange(const Entry& entry) {
    return entry.use == Use::SCREEN_ON || entry.use == Use::SCREEN_OFF;
}

/// The one line for `length` entries.
Entry Fold(const std::vector<Entry>& stretch, size_t length) {
    int64_t uses = 0;
    int64_t unlocks = 0;
    int64_t litMs = 0;
    int64_t onSince = stretch.front().t;
    bool isOn = stretch.front().use != Use::SCREEN_ON;
    for (size_t i = 0; i < length; ++i) {
        const Entry& entry = stretch[i];
        if (entry.use == Use::SCREEN_ON) {
            ++uses;
            onSince = isOn ? onSince : entry.t;
            isOn = true;
        } else if (entry.use == Use::SCREEN_OFF && isOn) {
            litMs += entry.t - onSince;
            isOn = false;
        }
        unlocks += entry.use == Use::UNLOCKED ? 1 : 0;
    }
    std::string text = "on " + Count(uses, "time") + " until " + Clock(stretch[length - 1].t) + ", lit for " +
                       Duration(litMs) + " in all";
    if (unlocks > 0) {
        text += ", unlocked " + Count(unlocks, "time");
    }
    return {stretch.front().t, Subject::SCREEN, std::move(text)};
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
    const auto last = std::find_if(stretch_.rbegin(), stretch_.rend(), IsScreenChange);
    if (last == stretch_.rend()) {
        return 0;
    }
    const auto first =
        std::find_if(stretch_.begin(), stretch_.end(), [&](const Entry& entry) { return entry.t == last->t; });
    const auto uses =
        std::count_if(stretch_.begin(), first, [](const Entry& entry) { return entry.use == Use::SCREEN_ON; });
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

}  // namespace TARN::Replay
