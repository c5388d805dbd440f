#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

#include "standby_constants.h"
#include "test_phone.h"
#include "time_zone.h"
#include "user_sleep_predict.h"

namespace TARN::DevStandbyMgr {
namespace {

using Tests::TestPhone;

/// A time of one UTC day: "07:30", "07:30:00" or "07:30:00.500".
int64_t At(std::string time) {
    Replay::TimeZone("UTC").Use();
    constexpr size_t kMinutes = 5;
    return Replay::TimeZone::ParseLocal("2026-03-02T" + time + (time.size() == kMinutes ? ":00" : ""));
}

SleepDataRecord Rest(int32_t still, int32_t dark, int32_t off) {
    SleepDataRecord record;
    record.mUserStationaryDuration = still;
    record.mLightDarkDuration = dark;
    record.mScrOffDuration = off;
    return record;
}

int32_t PredictAt(int64_t nowMs, const SleepDataRecord& cur, int64_t lastClockMs = -1) {
    const TestPhone phone(nowMs);
    UserSleepPredict predict(-1);
    predict.UpdateLastClockTime(lastClockMs);
    return predict.SleepBaselinePredict({}, cur);
}

const SleepDataRecord kDeepRest = Rest(20'000, 20'000, 20'000);

TEST(SleepBaseline, NobodySleepsFifteenMinutesAroundTheNextAlarm) {
    for (const char* now : {"03:00", "07:00", "23:00"}) {
        for (const auto& [distanceMs, verdict] :
             {std::pair{-900'000, 1}, {-899'999, 0}, {0, 0}, {899'999, 0}, {900'000, 1}}) {
            SleepDataRecord record = kDeepRest;
            record.mNextAlarmClockTriggerTime = At(now) + distanceMs;
            EXPECT_EQ(PredictAt(At(now), record), verdict) << now << " " << distanceMs;
        }
    }
    for (const int64_t alarm : {std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()}) {
        SleepDataRecord record = kDeepRest;
        record.mNextAlarmClockTriggerTime = alarm;
        EXPECT_EQ(PredictAt(At("03:00"), record), 1) << alarm;
    }
}

TEST(SleepBaseline, NobodySleepsInTheHourAfterTheRememberedAlarm) {
    const int64_t now = At("03:00");
    for (const auto& [sinceMs, verdict] :
         {std::pair{-1, 1}, {0, 1}, {1, 0}, {3'599'999, 0}, {3'600'000, 1}, {3'600'001, 1}}) {
        EXPECT_EQ(PredictAt(now, kDeepRest, now - sinceMs), verdict) << sinceMs;
    }
    EXPECT_EQ(PredictAt(now, kDeepRest, std::numeric_limits<int64_t>::max()), 1);
}

TEST(SleepBaseline, EachTimeOfDayHasItsRule) {
    // still, dark, off and the verdict
    for (const char* row :
         {"00:00 3601 0 0 1", "05:59:59.999 3601 0 0 1", "06:00 3601 0 0 0", "23:59:59.999 3601 0 0 0",
          // the morning
          "06:00 14401 0 3601 1", "11:59:59.999 14401 0 3601 1", "12:00 20000 20000 20000 0",
          "13:00 20000 20000 20000 0", "20:59:59.999 20000 20000 20000 0", "07:00 14401 9000 3600 0",
          "07:00 14400 1800 3601 0", "07:00 1801 1801 3601 1", "07:00 1800 1801 3601 0", "07:00 1801 1800 3601 0",
          // the evening
          "21:00 3000 3000 0 1", "21:00 2999 3000 0 0", "21:00 3000 2999 0 0", "22:30 2100 2100 0 1",
          "22:30 2099 2100 0 0", "22:30 2100 2099 0 0", "23:00 1800 1800 0 1", "23:00 1799 1799 0 0",
          "23:59:59 1200 1200 0 1", "23:59:59 1199 1200 0 0", "23:59:59 1200 1199 0 0"}) {
        std::istringstream words(row);
        std::string now;
        int32_t still = 0;
        int32_t dark = 0;
        int32_t off = 0;
        int32_t verdict = -1;
        ASSERT_TRUE(words >> now >> still >> dark >> off >> verdict) << row;
        EXPECT_EQ(PredictAt(At(now), Rest(still, dark, off)), verdict) << row;
    }
}

TEST(NightRule, OneRecordAloneTellsSleep) {
    // light, proximity, still, dark, off and the verdict
    for (const char* row :
         {"50.01 0 7200 20000 20000 0", "50.01 0 7201 0 0 1", "50.01 0 -1 20000 20000 0", "50 5 3601 0 0 1",
          "50 5 3600 1200 20000 0", "50 5 3600 1201 0 1", "50 5 1201 1201 0 1", "50 5 1200 20000 20000 0",
          "0.01 0.01 1800 0 0 1", "0.01 0.01 1799 0 20000 0", "0.011 0.01 1800 0 20000 0", "0.01 0.011 1800 0 20000 0",
          "-1 -1 1800 0 0 1", "50 5 -1 1800 1800 1", "50 5 -1 1799 1800 0", "50 5 -1 1800 1799 0", "50 5 0 1800 1800 1",
          "50 5 1 1800 1800 0"}) {
        std::istringstream words(row);
        SleepDataRecord cur;
        bool isAsleep = false;
        ASSERT_TRUE(words >> cur.mLight >> cur.mProximity >> cur.mUserStationaryDuration >> cur.mLightDarkDuration >>
                    cur.mScrOffDuration >> isAsleep)
            << row;
        EXPECT_EQ(UserSleepPredict(-1).IsSleepBaselineDurZeroToSixClock({}, cur), isAsleep) << row;
    }
}

TEST(NightRule, ASleeperSleepsOnThroughWhatDoesNotWake) {
    struct Case {
        const char* what;
        int32_t lastResult = 1;
        float lastLight = 59;
        float light = 60;
        int32_t dark = 0;
        int32_t off = 10'800;
        int32_t still = 5000;
        int32_t screenOns = 0;
        int64_t unlock = 77;
        bool isAsleep = true;
    };
    for (const Case& c : {Case{.what = "a long stay"},
                          {.what = "judged awake before", .lastResult = 0, .isAsleep = false},
                          {.what = "overruled before", .lastResult = -2, .isAsleep = false},
                          {.what = "nothing before", .lastResult = -1, .isAsleep = false},
                          {.what = "a short stay", .dark = 1000, .off = 10'799, .isAsleep = false},
                          {.what = "a short stay in a growing dark", .dark = 1001, .off = 10'799},
                          {.what = "the light jumps", .lastLight = 10, .dark = 1000, .isAsleep = false},
                          {.what = "the light jumps in a growing dark", .lastLight = 10, .dark = 1001},
                          {.what = "the light jumps by less", .lastLight = 10.01F},
                          {.what = "the light does not double", .lastLight = 50, .light = 100},
                          {.what = "the light doubles", .lastLight = 49.98F, .light = 100, .isAsleep = false},
                          {.what = "unlocked since", .unlock = 78, .isAsleep = false},
                          {.what = "lit up once", .screenOns = 1},
                          {.what = "lit up twice", .screenOns = 2, .isAsleep = false},
                          {.what = "hardly still", .still = 1},
                          {.what = "moved", .still = 0, .isAsleep = false},
                          {.what = "stillness unknown", .still = -1, .isAsleep = false},
                          {.what = "lit up twice and still for two hours", .still = 7201, .screenOns = 2}}) {
        SleepDataRecord last;
        last.mBaselineResult = c.lastResult;
        last.mLight = c.lastLight;
        last.mLightDarkDuration = 1000;
        last.mUnlockTimestamp = 77;
        last.mScrOnCount = 3;
        SleepDataRecord cur = Rest(c.still, c.dark, c.off);
        cur.mLight = c.light;
        cur.mUnlockTimestamp = c.unlock;
        cur.mScrOnCount = last.mScrOnCount + c.screenOns;
        EXPECT_EQ(UserSleepPredict(-1).IsSleepBaselineDurZeroToSixClock(last, cur), c.isAsleep) << c.what;
    }
}

TEST(WakeUp, IsTheNextEarlyAlarmOrTheUsualTimeWithTheMinutesOfTheCollectionOnTop) {
    constexpr int64_t kDayMs = 86'400'000;
    struct Case {
        const char* what;
        int32_t mode;
        int64_t collected;
        int64_t alarm;
        int64_t wakeUp;
    };
    const int64_t evening = At("23:40");
    const int64_t night = At("01:20");
    for (const Case& c : {Case{"no alarm, phone", 0, night, -1, At("06:35")},
                          {"no alarm, tablet", 1, night, -1, At("08:35")},
                          {"no alarm, other phone", 2, night, -1, At("06:35")},
                          {"no alarm, watch", 3, night, -1, At("06:35")},
                          {"across midnight", 0, evening, -1, At("06:55") + kDayMs},
                          {"the seconds are carried too", 0, At("01:20:30.250"), -1, At("06:35:30.250")},
                          {"noon is of this day", 0, At("12:00"), -1, At("06:15")},
                          {"a second after noon is not", 0, At("12:00:01"), -1, At("06:15:01") + kDayMs},
                          {"an alarm", 0, night, At("07:00"), At("07:20")},
                          {"an alarm, tablet", 1, night, At("07:00"), At("07:20")},
                          {"an alarm tomorrow", 0, evening, At("07:00") + kDayMs, At("07:40") + kDayMs},
                          {"the last early alarm", 0, night, At("08:59:59.999"), At("09:19:59")},
                          {"too late in the morning", 0, night, At("09:00"), At("06:35")},
                          {"nine hours ahead", 0, At("22:00"), At("07:00") + kDayMs, At("06:15") + kDayMs},
                          {"just within nine hours", 0, At("22:00"), At("07:00") + kDayMs - 1, At("06:59:59") + kDayMs},
                          {"this instant", 0, night, night, At("01:40")},
                          {"past", 0, night, night - 1, At("06:35")},
                          {"in the evening", 0, At("20:00"), At("21:00"), At("06:15") + kDayMs},
                          {"zero", 0, 0, 0, 22'500'000}}) {
        STANDBT_MODE = c.mode;
        SleepDataRecord record;
        record.mTimestamp = c.collected;
        record.mNextAlarmClockTriggerTime = c.alarm;
        EXPECT_EQ(UserSleepPredict(-1).WakeupPredict(record), c.wakeUp) << c.what;
    }
    STANDBT_MODE = 0;
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
