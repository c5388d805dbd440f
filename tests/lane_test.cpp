#include "lane.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace {

using namespace TARN::Story;

/// What a lane's intervals amount to, put together from all of them at the end.
struct Sum {
    int64_t times = 0;
    int64_t lasting = 0;
    int64_t totalMs = 0;
    int64_t longestMs = 0;
    std::vector<std::pair<int64_t, int64_t>> listed;
};

Sum SumOf(const Lane& lane, LaneId id) {
    std::vector<std::pair<int64_t, int64_t>> stretches;
    for (const Interval& one : lane.Intervals()) {
        if (!Counts(id, one)) {
            continue;
        }
        if (!stretches.empty() && stretches.back().second == one.from) {
            stretches.back().second = one.to;
        } else {
            stretches.emplace_back(one.from, one.to);
        }
    }
    Sum sum;
    sum.times = static_cast<int64_t>(stretches.size());
    for (const auto& [from, to] : stretches) {
        sum.lasting += from < to ? 1 : 0;
        sum.totalMs += to - from;
        sum.longestMs = std::max(sum.longestMs, to - from);
        if (from < to) {
            sum.listed.emplace_back(from, to);
        }
    }
    if (sum.listed.size() > LaneTally::kMostListed) {
        sum.listed.clear();
    }
    return sum;
}

TEST(Lane, WhatIsCountedOnTheWayIsWhatAllOfItAmountsTo) {
    constexpr int kLanesTried = 2000;
    std::minstd_rand chance(7);
    const auto below = [&chance](uint32_t end) { return static_cast<int64_t>(chance() % end); };
    for (int i = 0; i < kLanesTried; ++i) {
        Lane kept;
        Lane counted;
        counted.CountOnly(LaneId::TIMERS);
        int64_t t = 0;
        const int64_t changes = below(24);
        for (int64_t change = 0; change < changes; ++change) {
            t += below(3);  // several of one instant among them
            const int64_t number = below(3) * 300;
            for (Lane* lane : {&kept, &counted}) {
                lane->Set(t, number > 0 ? "stretched" : "normal", number);
            }
            ASSERT_EQ(counted.Now()->number, kept.Now()->number);
            ASSERT_LE(counted.Intervals().size(), 2U) << "nothing else is kept";
        }
        t += below(2);
        kept.End(t);
        counted.End(t);
        const Sum sum = SumOf(kept, LaneId::TIMERS);
        for (const Lane* lane : {&kept, &counted}) {
            const LaneTally tally = lane->Tally(LaneId::TIMERS);
            ASSERT_EQ(tally.Times(), sum.times);
            ASSERT_EQ(tally.LastingTimes(), sum.lasting);
            ASSERT_EQ(tally.TotalMs(), sum.totalMs);
            ASSERT_EQ(tally.LongestMs(), sum.longestMs);
            std::vector<std::pair<int64_t, int64_t>> listed;
            for (const Interval& one : tally.Listed()) {
                listed.emplace_back(one.from, one.to);
            }
            ASSERT_THAT(listed, testing::ElementsAreArray(sum.listed));
        }
    }
}

}  // namespace
