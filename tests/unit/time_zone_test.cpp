#include "time_zone.h"

#include <array>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

namespace {

using TARN::Replay::TimeZone;

constexpr char kAll[] = "%F %T %z %Z %j %u";

std::string OfLibc(int64_t seconds) {
    const std::time_t time = seconds;
    std::tm local{};
    localtime_r(&time, &local);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), kAll, &local)};
}

TEST(TimeZone, ShowsWhatLibcShowsInAnyOrderAndAfterEveryChangeOfTheZone) {
    constexpr int64_t kSpring = 1'774'746'000;  // Europe's clocks go forward
    constexpr int64_t kYear = 31'557'600;
    constexpr int64_t kStep = 97;
    for (const char* name : {"Europe/Berlin", "Australia/Lord_Howe", "Asia/Kathmandu", "Africa/Monrovia", "UTC",
                             "Europe/London", "<-03>3:17:30", "AAA-1BBB,J88/1:10,J88/1:40"}) {
        TimeZone(name).Use();
        for (const int64_t around : {kSpring, kSpring + kYear / 2, int64_t{63'594'000}, int64_t{0}, -kYear * 60}) {
            for (int64_t t = around - 20'000; t < around + 20'000; t += kStep) {
                ASSERT_EQ(TimeZone::Format(t * 1000, kAll), OfLibc(t)) << name << " " << t;
            }
            ASSERT_EQ(TimeZone::Format(around * 1000 - 1, kAll), OfLibc(around - 1)) << name;
        }
    }
}

TEST(TimeZone, ADayIsThatOfTheLocalCalendar) {
    TimeZone("Europe/Berlin").Use();
    const int64_t midnight = TimeZone::ParseLocal("2026-03-29T00:00:00");
    EXPECT_FALSE(TimeZone::IsSameDay(midnight - 1, midnight));
    EXPECT_TRUE(TimeZone::IsSameDay(midnight, midnight + 23L * 3'600'000 - 1)) << "a day of 23 hours";
    EXPECT_FALSE(TimeZone::IsSameDay(midnight, midnight + 23L * 3'600'000));
    EXPECT_FALSE(TimeZone::IsSameDay(midnight, TimeZone::ParseLocal("2027-03-29T00:00:00")));
}

}  // namespace
