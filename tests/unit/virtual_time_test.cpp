#include "virtual_time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "are.h"
#include "constraint_manager_adapter.h"
#include "event_handler.h"
#include "listener_manager_adapter.h"
#include "net_policy_client.h"
#include "state_manager_adapter.h"
#include "test_phone.h"

namespace TARN::Simulated {
namespace {

using ::testing::IsEmpty;
using Tests::Are;

/// A clock at 100 whose work writes down its label and when it ran.
class VirtualTimeTest : public ::testing::Test {
protected:
    VirtualTime::Work Note(const std::string& label) {
        return [this, label] { ran.push_back(label + "@" + std::to_string(clock.NowMs())); };
    }

    std::vector<std::string> ran;
    VirtualTime clock{100};
};

TEST_F(VirtualTimeTest, WorkRunsByDueTimeAndAmongEqualsByArrival) {
    clock.Post(300, Note("c"));
    clock.Post(200, Note("a"));
    clock.Post(300, Note("d"));
    clock.Post(200, Note("b"));
    clock.RunThrough(1000);
    EXPECT_THAT(ran, Are({"a@200", "b@200", "c@300", "d@300"}));
    EXPECT_EQ(clock.NowMs(), 1000);
}

TEST_F(VirtualTimeTest, ALimitIsExcludedByRunBeforeAndIncludedByRunThrough) {
    clock.Post(199, Note("a"));
    clock.Post(200, Note("b"));
    clock.Post(201, Note("c"));
    clock.RunBefore(200);
    EXPECT_THAT(ran, Are({"a@199"}));
    EXPECT_EQ(clock.NowMs(), 200);
    clock.RunThrough(200);
    EXPECT_THAT(ran, Are({"a@199", "b@200"}));
    EXPECT_EQ(clock.Waiting(), 1U);
}

TEST_F(VirtualTimeTest, TimeNeverGoesBack) {
    clock.Post(-50, Note("past"));
    clock.Post(100, Note("now"));
    clock.RunBefore(100);
    EXPECT_THAT(ran, IsEmpty()) << "a due time in the past means now, and now is not before now";
    clock.RunThrough(100);
    EXPECT_THAT(ran, Are({"past@100", "now@100"}));
    clock.RunThrough(20);
    clock.RunBefore(30);
    EXPECT_EQ(clock.NowMs(), 100);
}

TEST_F(VirtualTimeTest, WorkMayQueueWorkForItsOwnInstantBehindWhatWaitsAlready) {
    clock.Post(200, [this] {
        Note("first")();
        clock.Post(200, Note("queued"));
        clock.Post(0, Note("queued for the past"));
    });
    clock.Post(200, Note("second"));
    clock.RunThrough(200);
    EXPECT_THAT(ran, Are({"first@200", "second@200", "queued@200", "queued for the past@200"}));
}

TEST_F(VirtualTimeTest, CancelledWorkDoesNotRunAndCannotBeCancelledTwice) {
    const auto dropped = clock.Post(200, Note("dropped"));
    const auto kept = clock.Post(200, Note("kept"));
    EXPECT_TRUE(clock.Cancel(dropped));
    EXPECT_FALSE(clock.Cancel(dropped));
    clock.RunThrough(200);
    EXPECT_THAT(ran, Are({"kept@200"}));
    EXPECT_FALSE(clock.Cancel(kept));
}

TEST_F(VirtualTimeTest, CancellingANameDropsAllOfThatNameAndNoOther) {
    clock.Post(200, Note("a"), "loop");
    clock.Post(150, Note("b"), "loop");
    clock.Post(200, Note("c"), "loo");
    clock.Post(200, Note("d"));
    const auto ticket = clock.Post(200, Note("e"), "loop");
    clock.CancelNamed("loop");
    clock.CancelNamed("nobody");
    clock.CancelNamed("");
    EXPECT_FALSE(clock.Cancel(ticket));
    clock.Post(200, Note("f"), "loop");
    clock.RunThrough(200);
    EXPECT_THAT(ran, Are({"c@200", "d@200", "f@200"}));
}

/// What the queue should do, in the plainest way: a list that is searched.
struct PlainQueue {
    struct Entry {
        int64_t dueMs;
        int label;
        std::string name;
        const void* owner;
    };

    void Run(int64_t ms, std::vector<int>& ran) {
        std::stable_sort(waiting.begin(), waiting.end(),
                         [](const Entry& a, const Entry& b) { return a.dueMs < b.dueMs; });
        while (!waiting.empty() && waiting.front().dueMs <= ms) {
            ran.push_back(waiting.front().label);
            waiting.erase(waiting.begin());
        }
    }

    template <class Predicate>
    void Drop(const Predicate& predicate) {
        waiting.erase(std::remove_if(waiting.begin(), waiting.end(), predicate), waiting.end());
    }

    std::vector<Entry> waiting;
};

TEST(VirtualTimeModel, RunsAndDropsAsAPlainListDoes) {
    std::mt19937 random(20'260'301);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    const std::array<std::string, 4> names = {"", "loop", "clean", "timer"};
    std::array<int, 3> owners{};
    VirtualTime clock{0};
    PlainQueue plain;
    std::vector<int> ran;
    std::vector<int> expected;
    std::vector<std::pair<VirtualTime::Ticket, int>> tickets;
    for (int label = 0; label < 20'000; ++label) {
        const std::string& name = names[static_cast<size_t>(below(4))];
        const void* owner = &owners[static_cast<size_t>(below(3))];
        switch (below(8)) {
            case 0:
                clock.CancelNamed(name, owner);
                plain.Drop([&](const auto& e) { return !name.empty() && e.name == name && e.owner == owner; });
                break;
            case 1: {
                if (tickets.empty()) {
                    break;
                }
                const auto& [ticket, of] = tickets[static_cast<size_t>(below(static_cast<int>(tickets.size())))];
                const size_t before = plain.waiting.size();
                plain.Drop([label = of](const auto& e) { return e.label == label; });
                EXPECT_EQ(clock.Cancel(ticket), plain.waiting.size() < before);
                break;
            }
            case 2:
                if (below(20) == 0) {
                    clock.CancelOwned(owner);
                    plain.Drop([&](const auto& e) { return e.owner == owner; });
                }
                break;
            case 3: {
                const int64_t until = clock.NowMs() + below(40);
                clock.RunThrough(until);
                plain.Run(until, expected);
                break;
            }
            default: {
                const int64_t dueMs = clock.NowMs() + below(100);
                tickets.emplace_back(clock.Post(
                                         dueMs, [&ran, label] { ran.push_back(label); }, name, owner),
                                     label);
                plain.waiting.push_back({dueMs, label, name, owner});
            }
        }
        ASSERT_EQ(clock.Waiting(), plain.waiting.size()) << label;
    }
    EXPECT_GT(ran.size(), 1000U);
    EXPECT_EQ(ran, expected);
}

TEST(SimulatedHandler, DropsItsOwnTasksAndNobodyElses) {
    Tests::TestPhone phone;
    const auto first = phone->CreateEventHandler();
    const auto second = phone->CreateEventHandler();
    std::vector<std::string> ran;
    const auto post = [&ran](AppExecFwk::EventHandler& handler, const std::string& label, const std::string& name) {
        handler.PostTask([&ran, label] { ran.push_back(label); }, name, 5);
    };
    post(*first, "first", "name");
    post(*second, "second", "name");
    first->RemoveTask("name");
    phone.Run(5);
    EXPECT_THAT(ran, Are({"second"})) << "a name is its handler's";
    post(*first, "named", "name");
    post(*first, "unnamed", {});
    post(*second, "other", "name");
    phone->NetPolicy().ObserveDeviceIdlePolicy([&ran](bool) { ran.emplace_back("observer"); });
    phone->NetPolicy().SetDeviceIdlePolicy(true);
    first->RemoveAllTasks();
    first->RemoveTask("name");
    phone.Run(5);
    EXPECT_THAT(ran, Are({"second", "observer", "other"}));
}

TEST_F(VirtualTimeTest, ClearDropsEverythingEvenFromWithinWork) {
    clock.Post(200, [this] { clock.Clear(); });
    clock.Post(200, Note("a"), "named");
    clock.Post(300, Note("b"));
    clock.RunThrough(400);
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(clock.Waiting(), 0U);
}

TEST_F(VirtualTimeTest, DroppedWorkMayPostWhileItIsDestroyed) {
    struct PostsAtItsEnd {
        explicit PostsAtItsEnd(VirtualTime& time) : clock(time) {}
        ~PostsAtItsEnd() {
            clock.Post(500, [] {});
        }
        VirtualTime& clock;
    };
    const auto post = [this] {
        clock.Post(
            200, [held = std::make_shared<PostsAtItsEnd>(clock)] {}, "named");
    };
    post();
    clock.CancelNamed("named");
    EXPECT_EQ(clock.Waiting(), 1U);
    post();
    clock.Clear();
    EXPECT_EQ(clock.Waiting(), 1U);
}

TEST_F(VirtualTimeTest, AnyThreadMayPostAndCancelWhileOneRunsTheWork) {
    constexpr int kThreads = 4;
    constexpr int kPosts = 500;
    std::atomic<int> posting{kThreads};
    int done = 0;  // touched by the running thread only
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, name = std::to_string(thread)] {
            for (int i = 0; i < kPosts; ++i) {
                clock.Post(clock.NowMs() + i % 3, [&done] { ++done; });
                clock.Post(
                    clock.NowMs() + 1'000'000'000, [&done] { done += 1'000'000; }, name);
                clock.CancelNamed(name);
            }
            --posting;
        });
    }
    while (posting > 0) {
        clock.RunThrough(clock.NowMs() + 1);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    clock.RunThrough(clock.NowMs() + 3);
    EXPECT_EQ(done, kThreads * kPosts);
    EXPECT_EQ(clock.Waiting(), 0U);
}

/// Counts the messages; nothing else.
class CountingStrategies : public DevStandbyMgr::IStrategyManagerAdapter {
public:
    explicit CountingStrategies(int& count) : count_(count) {}
    bool Init() override { return true; }
    bool UnInit() override { return true; }
    void HandleEvent(const DevStandbyMgr::StandbyMessage& message) override { count_ += message.eventId; }
    void ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) override {}
    void RegisterPolicy(const std::vector<std::string>& /*strategies*/) override {}

private:
    int& count_;
};

TEST(StandbyService, DispatchesFromAnyThreadAndDeliversOnOne) {
    constexpr int kThreads = 4;
    constexpr int kMessages = 300;
    Tests::TestPhone phone;
    auto& service = phone.StartService();
    int delivered = 0;
    service.RegisterPluginInner(new DevStandbyMgr::ConstraintManagerAdapter(),
                                new DevStandbyMgr::ListenerManagerAdapter(), new CountingStrategies(delivered),
                                new DevStandbyMgr::StateManagerAdapter());
    std::atomic<int> dispatching{kThreads};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < kMessages; ++i) {
                service.DispatchEvent(DevStandbyMgr::StandbyMessage(1, "COMMON_EVENT_NOBODY_KNOWS"));
            }
            --dispatching;
        });
    }
    while (dispatching > 0) {
        phone.Run(1);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    phone.Run();
    EXPECT_EQ(delivered, kThreads * kMessages);
}

}  // namespace
}  // namespace TARN::Simulated
