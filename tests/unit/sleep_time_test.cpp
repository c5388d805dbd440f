#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "are.h"
#include "file_service.h"
#include "sleep_shared_pref.h"
#include "test_phone.h"
#include "time_provider_ext.h"
#include "time_zone.h"

namespace TARN::DevStandbyMgr {
namespace {

using Tests::Are;
using Tests::TestPhone;

TEST(SleepTime, IsTheLocalTimeOfDayInWholeSeconds) {
    for (const char* row : {"UTC 1772366400000 12:00:00", "UTC 1772366399999 11:59:59", "UTC 1772409599999 23:59:59",
                            "UTC 1772409600000 00:00:00", "Asia/Kathmandu 1772366400000 17:45:00",
                            "America/St_Johns 1772366400000 08:30:00", "Pacific/Kiritimati 1772366400000 02:00:00",
                            // the clocks change
                            "Europe/Berlin 1774745999999 01:59:59", "Europe/Berlin 1774746000000 03:00:00",
                            "Europe/Berlin 1792889999999 02:59:59", "Europe/Berlin 1792890000000 02:00:00",
                            // before 1970, towards zero
                            "UTC -999 00:00:00", "UTC -1000 23:59:59", "UTC -1999 23:59:59", "UTC -2000 23:59:58",
                            "Asia/Kathmandu -1 05:30:00"}) {
        std::istringstream words(row);
        std::string zone;
        int64_t ms = 0;
        int32_t hour = 0;
        int32_t minute = 0;
        int32_t second = 0;
        char colon = 0;
        ASSERT_TRUE(words >> zone >> ms >> hour >> colon >> minute >> colon >> second) << row;
        Replay::TimeZone(zone).Use();
        EXPECT_EQ(TimeProviderExt::TimestampToDaySecond(ms), hour * 3600 + minute * 60 + second) << row;
        EXPECT_NEAR(TimeProviderExt::TimestampToDayHour(ms), hour + minute / 60.0 + second / 3600.0, 2e-6) << row;
    }
    Replay::TimeZone("UTC").Use();
    EXPECT_EQ(TimeProviderExt::TimestampToDayHour(1'772'350'200'999), 7.5F);
    EXPECT_LT(TimeProviderExt::TimestampToDayHour(1'772'409'599'999), 24.0F) << "the last second stays below midnight";
}

TEST(SleepTime, IsTheSameForWhoAsksAgainAndAgain) {
    constexpr int64_t kStepMs = 7'001;
    DayHourMemory memory;
    const auto compare = [&memory](const char* zone, int64_t fromMs, int64_t toMs) {
        Replay::TimeZone(zone).Use();
        for (int64_t ms = fromMs; ms <= toMs; ms += kStepMs) {
            ASSERT_EQ(memory.At(ms), TimeProviderExt::TimestampToDayHour(ms)) << zone << " at " << ms;
        }
    };
    compare("Europe/Berlin", 1'774'742'000'000, 1'774'750'000'000);  // the clocks go forward
    compare("Europe/Berlin", 1'792'886'000'000, 1'792'896'000'000);  // and back
    compare("Europe/Berlin", 1'774'742'000'000, 1'774'743'000'000);
    compare("CST6CDT,M3.2.0/2:13:07,M11.1.0", 1'772'957'000'000, 1'772'960'000'000);  // within a quarter
    compare("<+0053>-0:53:28", 1'772'320'000'000, 1'772'408'000'000);                 // midnight within one
    compare("UTC", -20'000'000, 20'000'000);
    for (const char* zone : {"UTC", "Asia/Kathmandu", "UTC", "Europe/Berlin", "America/Chicago", "Pacific/Auckland"}) {
        compare(zone, 1'782'000'000'000, 1'782'000'020'000);  // the zone changes, the quarter is the same
    }
    Replay::TimeZone("UTC").Use();
}

TEST(SleepTime, ClocksAreThoseOfTheTimeServiceEvenWhenItFails) {
    TestPhone phone;
    phone.Run(1500);
    EXPECT_EQ(TimeProviderExt::GetCurMsecTimestamp(), TestPhone::kStartMs + 1500);
    EXPECT_EQ(TimeProviderExt::GetBootTimeNs(), TestPhone::kBootNs + 1'500'000'000);
    phone.Fail("TimeServiceClient.GetWallTimeMs", -3);
    phone.Fail("TimeServiceClient.GetBootTimeNs", -4);
    EXPECT_EQ(TimeProviderExt::GetCurMsecTimestamp(), -3);
    EXPECT_EQ(TimeProviderExt::GetBootTimeNs(), -4);
}

class SleepPreferences : public ::testing::Test {
protected:
    static bool Get(bool defaultValue) {
        return SleepSharedPref::GetBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, defaultValue);
    }
    static void Put(bool value) { SleepSharedPref::UpdateBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, value); }
    static constexpr const char* kPath = "/data/service/el1/public/device_standby/sleep_shared_pref.xml";

    TestPhone phone;
};

TEST_F(SleepPreferences, AFlagIsInTheFileAndNowhereElse) {
    EXPECT_EQ(SleepSharedPref::IS_PROXIMITY_ERROR, "is_proximity_error");
    EXPECT_FALSE(Get(false)) << "there is no file yet";
    EXPECT_TRUE(Get(true));
    Put(true);
    EXPECT_TRUE(Get(false));
    EXPECT_FALSE(SleepSharedPref::GetBoolSettings("another", false)) << "other flags are not touched";
    Put(false);
    EXPECT_FALSE(Get(true));
    EXPECT_THAT(phone.TakeLogs(),
                Are({"info Get Bool Settings: 0", "info Get Bool Settings: 1", "info Get Bool Settings: 1",
                     "info Get Bool Settings: 0", "info Get Bool Settings: 0"}));

    ASSERT_TRUE(phone->Files().Exists(kPath)) << "written before anybody asks again";
    phone->Files().Remove(kPath);
    EXPECT_TRUE(Get(true)) << "what was read before is not kept";
    Put(false);
    phone->Files().Remove(kPath);
    EXPECT_TRUE(Get(true)) << "nor what was written";
}

TEST_F(SleepPreferences, AStoreThatDoesNotOpenIsFalseAndTakesNothing) {
    Put(true);
    phone.TakeLogs();
    phone.Fail("PreferencesHelper.GetPreferences", 15);
    EXPECT_FALSE(Get(true)) << "not the default";
    Put(false);
    EXPECT_THAT(phone.TakeLogs(), Are({"error pref is nullptr,  errCode: 15", "error pref is nullptr,  errCode: 15"}));
    phone.Heal("PreferencesHelper.GetPreferences");
    EXPECT_TRUE(Get(false));
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
