#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "are.h"
#include "sleep_shared_pref.h"
#include "test_phone.h"
#include "time_provider_ext.h"
#include "time_zone.h"

namespace TARN::DevStandbyMgr {
namespace {

using Tests::Are;
using Tests::TestPhone;

TEST(SleepTime, IsTheLocalTimeOfDayInWholeSeconds) {
    constexpr int64_t kNoon = 1'772'366'400'000;  // 2026-03-01T12:00:00Z
    constexpr int64_t kSpring = 1'774'746'000'000;
    constexpr int64_t kAutumn = 1'792'890'000'000;
    struct Case {
        const char* zone;
        int64_t ms;
        int32_t hour, minute, second;
    };
    for (const Case& c : {
             Case{"UTC", kNoon, 12, 0, 0},
             {"UTC", kNoon - 1, 11, 59, 59},
             {"UTC", kNoon - 16'200'000, 7, 30, 0},
             {"UTC", kNoon + 43'199'999, 23, 59, 59},
             {"UTC", kNoon + 43'200'000, 0, 0, 0},
             {"Asia/Kathmandu", kNoon, 17, 45, 0},
             {"America/St_Johns", kNoon, 8, 30, 0},
             {"Pacific/Kiritimati", kNoon, 2, 0, 0},
             {"Europe/Berlin", kSpring - 1, 1, 59, 59},
             {"Europe/Berlin", kSpring, 3, 0, 0},
             {"Europe/Berlin", kAutumn - 1, 2, 59, 59},
             {"Europe/Berlin", kAutumn, 2, 0, 0},
             {"UTC", 0, 0, 0, 0},
             {"UTC", -999, 0, 0, 0},
             {"UTC", -1000, 23, 59, 59},
             {"UTC", -1999, 23, 59, 59},
             {"UTC", -2000, 23, 59, 58},
             {"Asia/Kathmandu", -1, 5, 30, 0},
         }) {
        Replay::TimeZone(c.zone).Use();
        EXPECT_EQ(TimeProviderExt::TimestampToDaySecond(c.ms), c.hour * 3600 + c.minute * 60 + c.second)
            << c.zone << " " << c.ms;
        EXPECT_NEAR(TimeProviderExt::TimestampToDayHour(c.ms), c.hour + c.minute / 60.0 + c.second / 3600.0, 2e-6)
            << c.zone << " " << c.ms;
    }
    Replay::TimeZone("UTC").Use();
    EXPECT_EQ(TimeProviderExt::TimestampToDayHour(kNoon + 34'200'000), 21.5F);
    EXPECT_LT(TimeProviderExt::TimestampToDayHour(kNoon + 43'199'999), 24.0F) << "the last second stays below midnight";
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
    EXPECT_THAT(phone.TakeLogs(), Are({"info Get Bool Settings: 0", "info Get Bool Settings: 1",
                                       "info Get Bool Settings: 1", "info Get Bool Settings: 0",
                                       "info Get Bool Settings: 0"}));

    ASSERT_TRUE(std::filesystem::remove(phone->FileRoot() + kPath)) << "written before anybody asks again";
    EXPECT_TRUE(Get(true)) << "what was read before is not kept";
}

TEST_F(SleepPreferences, AStoreThatDoesNotOpenIsFalseAndTakesNothing) {
    Put(true);
    phone.TakeLogs();
    phone.Fail("PreferencesHelper.GetPreferences", 15);
    EXPECT_FALSE(Get(true)) << "not the default";
    Put(false);
    EXPECT_THAT(phone.TakeLogs(),
                Are({"error pref is nullptr,  errCode: 15", "error pref is nullptr,  errCode: 15"}));
    phone.Heal("PreferencesHelper.GetPreferences");
    EXPECT_TRUE(Get(false));
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
