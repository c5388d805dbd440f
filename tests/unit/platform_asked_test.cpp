#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "are.h"
#include "datashare_helper.h"
#include "freeze_strategy.h"
#include "iremote_object.h"
#include "isystem_ability_manager.h"
#include "phone_sleep_data_collecter.h"
#include "sensor_service.h"
#include "sleep_clean_strategy.h"
#include "standby_constants.h"
#include "suspend_manager_client.h"
#include "system_ability_manager_client.h"
#include "test_phone.h"
#include "time_zone.h"
#include "user_sleep_power_off_strategy.h"
#include "wifi_device.h"

namespace TARN::DevStandbyMgr {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using Tests::Are;
using Tests::TestPhone;

/// A simulated phone that writes down how its settings, sensors and suspend manager were asked, word for word, and
/// answers as the test says.
class AttentivePhone : private Simulated::PhoneObserver,
                       public Simulated::SimulatedPhone,
                       private SystemAbilityManagerClient,
                       private ISystemAbilityManager,
                       private DataShare::DataShareService,
                       private Sensors::SensorService,
                       private SuspendManager::SuspendManagerClient {
public:
    AttentivePhone() : SimulatedPhone(TestPhone::kStartMs, TestPhone::kBootNs, *this) { Device::Install(this); }

    ~AttentivePhone() override {
        DropPending();
        StandbyServiceImpl::Destroy();
        Device::Install(nullptr);
    }

    /// The value of every setting; without it no row is found.
    std::optional<std::string> setting;
    std::vector<std::string> asked;
    std::vector<std::string> logs;

private:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnLog(const LogLine& line) override { logs.emplace_back(line.text); }
    void OnCall(std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}

    SystemAbilityManagerClient& SystemAbilities() override { return *this; }
    DataShare::DataShareService& Settings() override { return *this; }
    Sensors::SensorService& Sensors() override { return *this; }
    SuspendManager::SuspendManagerClient& Suspend() override { return *this; }
    std::shared_ptr<Wifi::WifiDevice> Wifi(int32_t systemAbilityId, int32_t instance) override {
        asked.push_back("wifi " + std::to_string(systemAbilityId) + " " + std::to_string(instance));
        return SimulatedPhone::Wifi(systemAbilityId, instance);
    }

    std::shared_ptr<ISystemAbilityManager> GetSystemAbilityManager() override {
        return {std::shared_ptr<void>(), static_cast<ISystemAbilityManager*>(this)};
    }
    std::shared_ptr<IRemoteObject> GetSystemAbility(int32_t systemAbilityId) override {
        asked.push_back("ability " + std::to_string(systemAbilityId));
        return std::make_shared<IRemoteObject>();
    }

    class Rows : public DataShare::DataShareResultSet {
    public:
        explicit Rows(AttentivePhone& phone) : phone_(phone) {}
        int GoToFirstRow() override { return phone_.setting ? 0 : 1; }
        int GetColumnIndex(const std::string& columnName, int& columnIndex) override {
            phone_.asked.push_back("column " + columnName + " from " + std::to_string(columnIndex));
            columnIndex = kColumn;
            return 0;
        }
        int GetString(int columnIndex, std::string& value) override {
            value = columnIndex == kColumn ? *phone_.setting : "another column";
            return 0;
        }
        int Close() override {
            phone_.asked.emplace_back("close");
            return 0;
        }

    private:
        static constexpr int kColumn = 3;
        AttentivePhone& phone_;
    };

    class Helper : public DataShare::DataShareHelper {
    public:
        explicit Helper(AttentivePhone& phone) : phone_(phone) {}
        std::shared_ptr<DataShare::DataShareResultSet> Query(Uri& uri, const DataShare::DataSharePredicates& predicates,
                                                             std::vector<std::string>& columns,
                                                             DataShare::DatashareBusinessError* error) override {
            phone_.asked.push_back("query " + uri.ToString());
            for (const auto& [column, value] : predicates.Equalities()) {
                phone_.asked.push_back(column + " = " + value);
            }
            EXPECT_THAT(columns, IsEmpty()) << "all columns";
            EXPECT_EQ(error, nullptr);
            return std::make_shared<Rows>(phone_);
        }

    private:
        AttentivePhone& phone_;
    };

    std::shared_ptr<DataShare::DataShareHelper> Connect(const std::shared_ptr<IRemoteObject>& remote,
                                                        const std::string& uri, const std::string& extUri) override {
        EXPECT_NE(remote, nullptr);
        asked.push_back("connect " + uri + " extension \"" + extUri + "\"");
        return std::make_shared<Helper>(*this);
    }

    int32_t GetAll(SensorInfo** sensorInfos, int32_t* count) override {
        *sensorInfos = sensors_;
        *count = 2;
        return 0;
    }
    int32_t Subscribe(int32_t /*sensorTypeId*/, const SensorUser* /*user*/) override { return 0; }
    int32_t SetBatch(int32_t sensorTypeId, const SensorUser* /*user*/, int64_t samplingIntervalNs,
                     int64_t reportIntervalNs) override {
        asked.push_back("batch " + std::to_string(sensorTypeId) + " " + std::to_string(samplingIntervalNs) + " " +
                        std::to_string(reportIntervalNs));
        return 0;
    }
    int32_t Activate(int32_t /*sensorTypeId*/, const SensorUser* /*user*/) override { return 0; }
    int32_t Deactivate(int32_t /*sensorTypeId*/, const SensorUser* /*user*/) override { return 0; }
    int32_t Unsubscribe(int32_t /*sensorTypeId*/, const SensorUser* /*user*/) override { return 0; }

    std::vector<int32_t> OperateNativeProcesses(const std::vector<SuspendManager::NativeProcessInfo>&) override {
        return {};
    }
    int32_t GetFrozenProcesses(std::vector<SuspendManager::NativeProcessInfo>& /*processes*/) override { return 1; }

    SensorInfo sensors_[2] = {{{}, 1, SENSOR_TYPE_ID_AMBIENT_LIGHT}, {{}, 2, SENSOR_TYPE_ID_PROXIMITY}};
};

StandbyMessage UserSleep(bool isSleep) {
    return StandbyMessage(StandbyMessageType::COMMON_EVENT, "COMMON_EVENT_USER_SLEEP_STATE_CHANGED",
                          AAFwk::Want().SetParam("isSleep", isSleep));
}

constexpr int64_t kCheckPeriodMs = 120'000;

TEST(SettingsAreAsked, OnceForTheirKeyAndClosedOnceWhetherOrNotTheyAreThere) {
    struct Reader {
        const char* query;
        const char* key;
        void (*read)(AttentivePhone&);
    };
    const Reader readers[] = {
        {"SETTINGSDATA?Proxy=true&key=airplane_mode", "settings.telephony.airplanemode",
         [](AttentivePhone&) {
             PowerOffStrategy::SetPowerOffState(false);  // it is the process's, and so other tests' too
             static_cast<void>(std::make_shared<UserSleepPowerOffStrategy>()->StartPowerOffStatus());
         }},
        {"SETTINGSDATA?Proxy=true&key=nearestAlarmingTime", "nearestAlarmingTime",
         [](AttentivePhone& phone) {
             std::make_shared<PhoneSleepDataCollecter>()->CollectSleepData(false);
             phone.asked.clear();
             phone.Clock().RunThrough(TestPhone::kStartMs + 1000);
         }},
        {"USER_SETTINGSDATA_SECURE_100?Proxy=true&key=user_setup_complete", "user_setup_complete",
         [](AttentivePhone& phone) {
             Simulated::FactsChange change;
             change.parameters["const.global.locale"] = "zh-Hans-CN";
             phone.Apply(change);
             const auto strategy = std::make_shared<SleepCleanStrategy>();
             strategy->OnCreated();
             strategy->HandleEvent(UserSleep(true));
             phone.Clock().RunThrough(TestPhone::kStartMs + kCheckPeriodMs);
         }},
    };
    for (const auto& [query, key, read] : readers) {
        for (const bool isThere : {true, false}) {
            AttentivePhone phone;
            StandbyServiceImpl::Create({});
            phone.setting = isThere ? std::optional<std::string>("1") : std::nullopt;
            read(phone);
            std::vector<std::string> expected = {
                "ability 1914", R"(connect datashare:///com.tarn.settingsdata?Proxy=true extension "")",
                std::string("query datashare:///com.tarn.settingsdata/entry/settingsdata/") + query,
                std::string("KEYWORD = ") + key};
            if (isThere) {
                expected.emplace_back("column VALUE from 0");
                EXPECT_THAT(phone.logs, Contains("StandbyDataShareHelper query success,value[1]")) << key;
            }
            expected.emplace_back("close");
            EXPECT_EQ(phone.asked, expected) << isThere;
        }
    }
}

TEST(SensorsAreAsked, ForTheServicesRates) {
    AttentivePhone phone;
    StandbyServiceImpl::Create({});
    std::make_shared<WatchSleepDataCollecter>()->CollectSleepData(false);
    const std::string rates = " " + std::to_string(SENSOR_SAMPLING_RATE) + " " + std::to_string(SENSOR_REPORTING_RATE);
    EXPECT_EQ(phone.asked, (std::vector<std::string>{"batch 5" + rates, "batch 12" + rates}));
}

TEST(WifiIsAsked, OfItsServicesFirstInstance) {
    AttentivePhone phone;
    StandbyServiceImpl::Create({});
    phone.WriteFile("power_off_record", R"({"wifi_off": 2})");
    EXPECT_EQ(std::make_shared<PowerOffStrategy>()->ResetPowerOffStatus(), 0);
    EXPECT_EQ(phone.asked, (std::vector<std::string>{"wifi 1120 0"}));
}

TEST(UserSleepPowerOffStatus, ItsFirewallBeginsAndEndsWithIt) {
    const std::string policyOff = R"(SetDeviceIdlePolicy {"enable":false} -> 0)";
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    phone.StartService(config);
    const auto strategy = std::make_shared<UserSleepPowerOffStrategy>();
    strategy->OnCreated();
    EXPECT_THAT(phone.TakeCalls(), Contains(policyOff)) << "whatever a service of before left";
    strategy->HandleEvent(
        StandbyMessage(StandbyMessageType::USER_SLEEP_STATE_CHANGED, {}, AAFwk::Want().SetParam("isSleep", true)));
    EXPECT_THAT(phone.TakeCalls(), Contains(R"(SetDeviceIdlePolicy {"enable":true} -> 0)"));
    strategy->OnDestroy();
    EXPECT_THAT(phone.TakeCalls(), Contains(policyOff));
}

TEST(DayCheck, ComesAgainAfterTenMinutesAndStartsNoSecondSnapshotMeanwhile) {
    constexpr int64_t kNoonMs = 1'772'366'400'000;
    Replay::TimeZone("UTC").Use();
    TestPhone phone(kNoonMs);
    phone.StartService();
    const auto collecter = std::make_shared<WatchSleepDataCollecter>();
    const auto snapshots = [&phone] {
        const std::vector<std::string> logs = phone.TakeLogs();
        return std::count(logs.begin(), logs.end(), "info StartSensor");
    };
    collecter->SetUnlockTimestamp(kNoonMs);
    collecter->DayCollection();  // the screen is on
    collecter->SetScrOffStartTimestamp(kNoonMs - 900'000);
    phone.Run(599'999);
    EXPECT_EQ(snapshots(), 0);
    phone.Run(1);
    EXPECT_EQ(snapshots(), 1);
    collecter->DayCollection();
    EXPECT_EQ(snapshots(), 0) << "the first is not over";
}

TEST(FreezeStrategyStatus, NoAnswerOfTheSuspendManagerIsAFailure) {
    AttentivePhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    config.persistAllow["FREEZE"][1] = {"storage"};
    StandbyServiceImpl::Create(config);
    Simulated::FactsChange change;
    change.processes = {Simulated::Process{11, 0, "storage", {}, true}};
    phone.Apply(change);
    FreezeStrategy strategy;
    static_cast<void>(strategy.StartFreeze(StandbyMessage(
        StandbyMessageType::PHASE_TRANSIT, {}, AAFwk::Want().SetParam(CURRENT_STATE, 4).SetParam(CURRENT_PHASE, 1))));
    EXPECT_EQ(phone.logs.back(), "Freeze, list size is 1, Freeze successd list is 0");
    static_cast<void>(strategy.UpdateAllowedList(
        StandbyMessage(StandbyMessageType::ALLOW_LIST_CHANGED, {},
                       AAFwk::Want().SetParam("allowType", 64).SetParam("name", "storage"))));
    EXPECT_EQ(phone.logs.back(), "Freeze nativeProcess storage, freezed is failed");
}

TEST(SleepCleanStatus, AStoppedStrategyForgetsItsListAndFindsNoHandler) {
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    config.resCtrl["SLEEP_CLEAN"] = std::make_shared<std::vector<ResCtrlItem>>(1, ResCtrlItem{false, {"com.listed"}});
    phone.StartService(config);
    phone.Change([](auto& change) {
        change.parameters["const.global.locale"] = "zh-Hans-CN";
        change.settings["USER_SETTINGSDATA_SECURE_100"] =
            Simulated::FactsChange::Members<std::string>{{"user_setup_complete", "1"}};
        change.processes = {Simulated::Process{32, 11, "listed", {"com.listed"}, false, true}};
    });
    const auto strategy = std::make_shared<SleepCleanStrategy>();
    strategy->OnCreated();
    strategy->HandleEvent(UserSleep(true));
    strategy->OnDestroy();
    phone.TakeLogs();
    // the check that waits cannot be taken back, and finds nobody asleep once the strategy is there again
    strategy->HandleEvent(UserSleep(true));
    strategy->HandleEvent(UserSleep(false));
    EXPECT_THAT(phone.TakeLogs(), Are({"debug enter SleepCleanStrategy HandleEvent, eventId is 1",
                                       "info COMMON_EVENT_USER_SLEEP_STATE_CHANGED, sleep: 1", "error handler is null",
                                       "debug enter SleepCleanStrategy HandleEvent, eventId is 1",
                                       "info COMMON_EVENT_USER_SLEEP_STATE_CHANGED, sleep: 0",
                                       "info sleepClean stop monitor", "error handler is null"}));
    phone.Fail("StandbyConfigManager.GetResCtrlConfig");
    strategy->OnCreated();
    phone.TakeLogs();
    phone.Run(kCheckPeriodMs);
    EXPECT_THAT(phone.TakeLogs(), Are({"info run sleepClean start", "debug not brush clean because not sleep"}));
    strategy->HandleEvent(UserSleep(true));
    phone.Run(kCheckPeriodMs);
    EXPECT_THAT(phone.TakeLogs(), Contains("info brush clean when sleepclean"));
    EXPECT_THAT(phone.TakeCalls(), IsEmpty()) << "the listed application was of the old list";
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
