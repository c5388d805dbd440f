#include "lane.h"

#include <algorithm>
#include <array>

namespace TARN::Story {

namespace {
constexpr std::array<std::string_view, kLanes> kNames = {"screen", "charger",   "condition", "state", "phase",
                                                         "sleep",  "bluetooth", "wifi",      "modem", "firewall",
                                                         "frozen", "locks",     "timers"};
}

std::string_view NameOf(LaneId lane) noexcept {
    return kNames[static_cast<size_t>(lane)];
}

bool Counts(LaneId lane, const Interval& interval) noexcept {
    switch (lane) {
        case LaneId::SLEEP:
            return interval.value == "asleep";
        case LaneId::FIREWALL:
            return interval.value == "on";
        case LaneId::BLUETOOTH:
        case LaneId::WIFI:
        case LaneId::MODEM:
        case LaneId::FROZEN:
        case LaneId::LOCKS:
        case LaneId::TIMERS:
            return interval.number > 0;
        default:
            return false;
    }
}

void LaneTally::Add(const Interval& interval) {
    constexpr int64_t kLongStretchS = 600;
    const int64_t length = interval.to - interval.from;
    most_ = std::max(most_, interval.number);
    at600Ms_ += interval.number == kLongStretchS ? length : 0;
    if (!Counts(lane_, interval)) {
        isOpen_ = false;
        return;
    }
    if (isOpen_) {
        open_.to = interval.to;
    } else {
        open_ = interval;
        ++times_;
    }
    isOpen_ = true;
    totalMs_ += length;
    longestMs_ = std::max(longestMs_, open_.to - open_.from);
    if (!first_.empty() && first_.back().from == open_.from) {
        first_.back().to = open_.to;
    } else if (first_.size() < kMostListed && open_.from < open_.to) {
        first_.push_back(open_);
    }
}

std::vector<Interval> LaneTally::Listed() const {
    return static_cast<size_t>(LastingTimes()) <= kMostListed ? first_ : std::vector<Interval>();
}

void Lane::Set(int64_t t, std::string_view value, int64_t number, uint32_t event) {
    const auto is = [&](const Interval& interval) { return interval.value == value && interval.number == number; };
    if (!intervals_.empty() && is(intervals_.back())) {
        return;
    }
    if (!intervals_.empty() && intervals_.back().from == t) {
        intervals_.pop_back();  // it did not last
        if (!intervals_.empty() && is(intervals_.back())) {
            intervals_.back().to = t;
            return;
        }
    }
    if (!intervals_.empty()) {
        intervals_.back().to = t;
    }
    intervals_.push_back({t, t, std::string(value), number, event});
    constexpr size_t kPresent = 2;  // the last one may still be taken back, and the one before goes on then
    while (past_ && intervals_.size() > kPresent) {
        past_->Add(intervals_.front());
        intervals_.erase(intervals_.begin());
    }
}

LaneTally Lane::Tally(LaneId lane) const {
    LaneTally tally = past_.value_or(LaneTally(lane));
    std::for_each(intervals_.begin(), intervals_.end(), [&tally](const Interval& one) { tally.Add(one); });
    return tally;
}

void Lane::End(int64_t t) {
    if (!intervals_.empty()) {
        intervals_.back().to = t;
    }
}

const Interval* Lane::At(int64_t t) const noexcept {
    const auto next = std::upper_bound(intervals_.begin(), intervals_.end(), t,
                                       [](int64_t time, const Interval& interval) { return time < interval.from; });
    return next == intervals_.begin() ? nullptr : &*(next - 1);
}

}  // namespace TARN::Story
