#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <utility>

#include "event_handler.h"

namespace TARN {
namespace {

using AppExecFwk::Task;

TEST(Task, HoldsAndReleasesWhatItsCallableHolds) {
    const auto count = std::make_shared<int>(0);
    const auto small = [count] { ++*count; };
    const auto large = [count, room = std::array<int64_t, 16>{}] { *count += 10 + static_cast<int>(room.back()); };
    for (const bool isLarge : {false, true}) {
        *count = 0;
        Task task = isLarge ? Task(large) : Task(small);
        const int64_t held = count.use_count();
        task();
        Task moved = std::move(task);
        EXPECT_FALSE(task) << "what was moved runs nothing";
        moved();
        EXPECT_EQ(*count, isLarge ? 20 : 2);
        EXPECT_EQ(count.use_count(), held) << "moving copies nothing";
        task = std::move(moved);
        task = Task([] {});
        EXPECT_EQ(count.use_count(), held - 1) << "what is replaced is gone";
        EXPECT_TRUE(task);
    }
    EXPECT_FALSE(Task());
}

TEST(Task, TakesWhatCanOnlyBeMoved) {
    int sum = 0;
    Task task([number = std::make_unique<int>(7), &sum]() mutable { sum += (*number)++; });
    task();
    task();
    EXPECT_EQ(sum, 15);
}

}  // namespace
}  // namespace TARN
