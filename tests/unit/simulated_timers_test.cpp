#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "test_phone.h"
#include "time_service_client.h"

namespace TARN::Simulated {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tests::TestPhone;

/// A phone with timers whose callbacks note when they fired.
class SimulatedTimers : public ::testing::Test {
protected:
    uint64_t Create(MiscServices::TimerOptions options = {}) {
        return phone->Time().CreateTimer(options, [this] { fired.push_back(phone.Now() - TestPhone::kStartMs); });
    }
    bool Start(uint64_t id, int64_t afterMs) {
        return phone->Time().StartTimer(id, static_cast<uint64_t>(phone.Now() + afterMs));
    }

    TestPhone phone;
    std::vector<int64_t> fired;
};

TEST_F(SimulatedTimers, ATimerFiresOnceAtItsTimeAndMayBeArmedAnew) {
    const uint64_t id = Create();
    EXPECT_EQ(id, 1U);
    phone.Run(50);
    EXPECT_TRUE(Start(id, 100));
    EXPECT_TRUE(Start(id, 200)) << "arming a running timer moves it";
    phone.Run(1000);
    EXPECT_TRUE(Start(id, -5)) << "a time that is over is now";
    phone.Run();
    EXPECT_THAT(fired, ElementsAre(250, 1050));
}

TEST_F(SimulatedTimers, StoppedAndDestroyedTimersDoNotFire) {
    const uint64_t stopped = Create();
    const uint64_t destroyed = Create();
    Start(stopped, 100);
    Start(destroyed, 100);
    EXPECT_TRUE(phone->Time().StopTimer(stopped));
    EXPECT_TRUE(phone->Time().StopTimer(stopped)) << "it is still known";
    EXPECT_TRUE(phone->Time().DestroyTimer(destroyed));
    EXPECT_FALSE(phone->Time().DestroyTimer(destroyed));
    EXPECT_FALSE(Start(destroyed, 100));
    EXPECT_FALSE(phone->Time().StopTimer(99));
    phone.Run(1000);
    EXPECT_THAT(fired, IsEmpty());
}

TEST_F(SimulatedTimers, ARepeatingTimerGoesOnUntilItIsStopped) {
    const uint64_t id = Create({.repeat = true, .intervalMs = 100});
    Start(id, 10);
    phone.Run(250);
    phone->Time().StopTimer(id);
    phone.Run(250);
    EXPECT_THAT(fired, ElementsAre(10, 110, 210));
}

TEST_F(SimulatedTimers, ACallbackMayDestroyItsOwnTimer) {
    uint64_t id = 0;
    int calls = 0;
    id = phone->Time().CreateTimer({.repeat = true, .intervalMs = 10}, [&, text = std::string(100, 'x')] {
        EXPECT_TRUE(phone->Time().DestroyTimer(id));
        EXPECT_EQ(text.size(), 100U) << "what the callback holds outlives it";
        ++calls;
    });
    Start(id, 10);
    phone.Run(100);
    EXPECT_EQ(calls, 1);
}

TEST_F(SimulatedTimers, IdsGoOnWhenAllTimersAreDropped) {
    Start(Create(), 100);
    phone->DropPending();
    phone.Run(1000);
    EXPECT_THAT(fired, IsEmpty());
    EXPECT_FALSE(Start(1, 100));
    EXPECT_EQ(Create(), 2U);
}

}  // namespace
}  // namespace TARN::Simulated
