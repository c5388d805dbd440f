#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

constexpr char kHalfHour[] = R"({"SCR_OFF_HALF_HOUR_STATUS": true})";

/// Bluetooth is to go off at 22:00; the settings say `value` of airplane mode, a JSON text or null.
Record BedtimeWithAirplaneMode(const std::string& value, const std::string& failing = {}) {
    Night night;
    night.Device("condition", "2")
        .Device("settings", R"({"SETTINGSDATA": {"airplane_mode": "1", "settings.telephony.airplanemode": )" + value +
                                R"(}, "USER_SETTINGSDATA_SECURE_100": {"settings.telephony.airplanemode": "1"}})");
    if (!failing.empty()) {
        night.Fail(failing);
    }
    return night.AdvanceTo("22:00").Message(6, kHalfHour).PlayUntil("22:10").At("22:00");
}

TEST(AirplaneMode, IsOnForTheTextOneAlone) {
    const Record on = BedtimeWithAirplaneMode(R"("1")");
    EXPECT_THAT(on.Calls("BluetoothHost"), IsEmpty());
    EXPECT_EQ(on.LogsOf("power_off_strategy").back(), "warn current is airplane mode, do not need process");
    for (const char* value : {"0", "", "1 ", " 1", "01", "11", "true"}) {
        const Record off = BedtimeWithAirplaneMode('"' + std::string(value) + '"');
        EXPECT_THAT(off.Calls("BluetoothHost"), Are({"BluetoothHost.DisableBt {} -> 0"})) << value;
        EXPECT_THAT(off.LogsOf("power_off_strategy"), Contains("info airplaneMode is " + std::string(value)));
    }
}

TEST(AirplaneMode, CountsAsOffWhenTheSettingsFail) {
    const std::string created = "info CreateDataShareHelper creator. systemAbilityId:1914";
    const std::string noManager = "error CreateDataShareHelper GetSystemAbilityManager failed.";
    const std::string noService = "error CreateDataShareHelper GetSystemAbility Service failed.";
    const std::string noHelper = "error StandbyDataShareHelper query error, dataShareHelper_ is nullptr";
    const std::string noResult = "error StandbyDataShareHelper query error, result is null";
    const std::string noRow = "error StandbyDataShareHelper query failed,go to first row error";
    const std::string answered = "info StandbyDataShareHelper query success,value[";
    const std::string key = "settings.telephony.airplanemode";
    const struct {
        const char* operation;
        const char* value;
        Record::Texts lines;
    } cases[] = {
        {"SystemAbilityManagerClient.GetSystemAbilityManager", R"("1")", {noManager, noHelper}},
        {"SystemAbilityManager.GetSystemAbility", R"("1")", {noService, noHelper}},
        {"DataShareHelper.Creator", R"("1")", {created, noHelper}},
        {"DataShareHelper.Query", R"("1")", {created, noResult}},
        {"DataShareResultSet.GoToFirstRow", R"("1")", {created, noRow}},
        {"", "null", {created, noRow}},
        {"DataShareResultSet.GetString", R"("1")", {created, answered + "]"}},
        {"DataShareResultSet.GetColumnIndex", R"("1")", {created, answered + key + "]"}},
    };
    for (const auto& [operation, value, lines] : cases) {
        const Record record = BedtimeWithAirplaneMode(value, operation);
        EXPECT_THAT(record.LogsOf("standby_datashare_helper"), ::testing::ElementsAreArray(lines)) << operation;
        const bool isAnswered = lines.back().starts_with(answered);
        EXPECT_THAT(record.LogsOf("power_off_strategy"),
                    Contains("error query airplaneMode failed").Times(isAnswered ? 0 : 1));
        EXPECT_THAT(record.Calls("BluetoothHost"), Are({"BluetoothHost.DisableBt {} -> 0"})) << operation;
    }
}

constexpr char kControl[] =
    R"(CommonEventManager.PublishCommonEvent {"action":"COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK",)"
    R"("want":{"ctrl_network_status":true},"permissions":[]} -> true)";
constexpr char kRestore[] =
    R"(CommonEventManager.PublishCommonEvent {"action":"COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK",)"
    R"("want":{"restore_network_status":true},"permissions":[]} -> true)";

/// A phone whose only named strategy is the one that tells of network control, at 22:00.
Night Pushing() {
    return Night().Strategies(R"(["PUSH"])").AdvanceTo("22:00");
}

Record::Texts Published(const Record& record) {
    return record.Calls("CommonEventManager.Publish");
}

TEST(Push, FollowsThePolicyOfAnAutomaticPhone) {
    const std::string change = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";
    Night night = Pushing().Automatic().Broadcast(change, R"({"isSleep": true})").AdvanceTo("22:10").Broadcast(change);
    const Record record = night.PlayUntil("22:20");
    EXPECT_THAT(Published(record.At("22:00")), Are({kControl}));
    EXPECT_THAT(Published(record.At("22:10")), Are({kRestore}));
}

}  // namespace
}  // namespace TARN::Tests
