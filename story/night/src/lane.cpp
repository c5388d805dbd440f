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
