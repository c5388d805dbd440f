#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>

#include "ability_manager_client.h"
#include "app_mgr_client.h"
#include "are.h"
#include "battery_srv_client.h"
#include "bluetooth_host.h"
#include "bundle_mgr_client.h"
#include "common_event_manager.h"
#include "core_service_client.h"
#include "datashare_helper.h"
#include "file_service.h"
#include "movement_client.h"
#include "net_policy_client.h"
#include "os_account_manager.h"
#include "parameters.h"
#include "power_mgr_client.h"
#include "res_sched_client.h"
#include "sensor_agent.h"
#include "system_ability_manager_client.h"
#include "test_phone.h"
#include "time_service_client.h"
#include "wifi_device.h"

namespace TARN::Simulated {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tests::Are;
using Tests::TestPhone;

TEST(SimulatedPhone, AFailingOperationAnswersInItsOwnKindAndChangesNothing) {
    TestPhone phone;
    for (const char* operation :
         {"BluetoothHost.DisableBt", "BluetoothHost.GetBtState", "BatterySrvClient.GetPluggedType",
          "CoreServiceClient.GetMaxSimCount", "TimeServiceClient.GetWallTimeMs", "WifiDevice.GetInstance",
          "WifiDevice.Disable", "AppMgrHelper.GetAllRunningProcesses",
          "SystemAbilityManagerClient.GetSystemAbilityManager", "OsAccountManager.QueryActiveOsAccountIds",
          "TimedTask.CreateTimer", "MovementClient.GetMovementData", "system.GetStringParameter",
          "NetPolicyClient.SetDeviceIdlePolicy"}) {
        phone.Fail(operation, 17);
    }
    EXPECT_EQ(phone->Bluetooth().DisableBt(), 17) << "a status";
    EXPECT_EQ(phone->Facts().bluetoothState, 1);
    EXPECT_EQ(phone->NetPolicy().SetDeviceIdlePolicy(true), 17);
    EXPECT_EQ(phone->Bluetooth().GetBtState(), 17) << "a number";
    EXPECT_EQ(phone->Battery().GetPluggedType(), 17);
    EXPECT_EQ(phone->Modem().GetMaxSimCount(), 17);
    EXPECT_EQ(phone->Time().GetWallTimeMs(), 17);
    std::vector<AppExecFwk::RunningProcessInfo> processes;
    EXPECT_FALSE(phone->Apps().GetAllRunningProcesses(processes)) << "a bool";
    EXPECT_EQ(phone->Wifi(0, 0), nullptr) << "a pointer";
    EXPECT_EQ(phone->SystemAbilities().GetSystemAbilityManager(), nullptr);
    EXPECT_EQ(phone->Time().CreateTimer({}, nullptr), 0U);
    EXPECT_EQ(phone->Movement().GetMovementData(Msdp::MovementType::TYPE_STILL).value,
              Msdp::MovementValue::VALUE_INVALID);
    std::vector<int> accounts = {5};
    EXPECT_EQ(AccountSA::OsAccountManager::QueryActiveOsAccountIds(accounts), 17);
    EXPECT_THAT(accounts, ElementsAre(5));
    std::string value;
    EXPECT_EQ(system::GetStringParameter("const.global.locale", value, "none"), 17);
    EXPECT_EQ(value, "none");
    EXPECT_THAT(phone.TakeCalls(),
                Are({"DisableBt {} -> 17", R"(SetDeviceIdlePolicy {"enable":true} -> 17)",
                     R"(CreateTimer {"repeat":false,"interval":0,"exact":false,"idle":false} -> 0)"}))
        << "questions are not written";

    phone.Heal("BluetoothHost.DisableBt");
    phone.Heal("BluetoothHost.GetBtState");
    EXPECT_EQ(phone->Bluetooth().DisableBt(), 0);
    EXPECT_EQ(phone->Bluetooth().GetBtState(), 3);
    EXPECT_EQ(phone->Bluetooth().EnableBle(), 0);
    EXPECT_EQ(phone->Bluetooth().GetBtState(), 1);
}

TEST(SimulatedPhone, SetsAreShownSortedAndListsInTheCallersOrder) {
    TestPhone phone;
    phone->NetPolicy().SetDeviceIdleTrustlist({30, 4, 200}, true);
    phone->Time().SetTimerExemption({"b", "a", "c"}, false);
    phone->Power().ProxyRunningLocks(true, {{9, 1}, {2, 3}});
    EXPECT_THAT(phone.TakeCalls(), Are({R"(SetDeviceIdleTrustlist {"uids":[4,30,200],"added":true} -> 0)",
                                        R"(SetTimerExemption {"names":["a","b","c"],"exempt":false} -> 0)",
                                        R"(ProxyRunningLocks {"proxied":true,"processes":[[9,1],[2,3]]} -> 0)"}));
}

std::vector<std::string> g_readings;

void NoteReading(SensorEvent* event) {
    const float value = event->sensorTypeId == SENSOR_TYPE_ID_AMBIENT_LIGHT
                            ? reinterpret_cast<AmbientLightData*>(event->data)->intensity
                            : reinterpret_cast<ProximityData*>(event->data)->distance;
    g_readings.push_back(std::to_string(event->sensorTypeId) + ":" + std::to_string(static_cast<int>(value)) + "@" +
                         std::to_string(event->timestamp));
}

TEST(SimulatedSensors, ReportWhenActivatedAndAtEveryChangeWhileActive) {
    TestPhone phone;
    g_readings.clear();
    SensorUser user{};
    user.callback = NoteReading;
    const auto light = [&phone](std::optional<float> lux) {
        phone.Change([lux](auto& change) { change.light = std::optional(lux); });
    };
    light(3.0F);
    EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_PROXIMITY, &user), 0);
    EXPECT_EQ(ActivateSensor(SENSOR_TYPE_ID_PROXIMITY, &user), 0);
    light(4.0F);
    EXPECT_THAT(g_readings, IsEmpty()) << "light is not active, proximity has nothing to report";
    phone.Run(7);
    EXPECT_EQ(ActivateSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    light(std::nullopt);
    light(5.0F);
    phone.Change([](auto& change) { change.proximity = std::optional<float>(1.0F); });
    EXPECT_EQ(DeactivateSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    light(6.0F);
    EXPECT_EQ(UnsubscribeSensor(SENSOR_TYPE_ID_PROXIMITY, &user), 0);
    phone.Change([](auto& change) { change.proximity = std::optional<float>(2.0F); });
    EXPECT_THAT(g_readings, Are({"5:4@60007000000", "5:5@60007000000", "12:1@60007000000"}));
}

TEST(SimulatedSensors, ARefusedSubscriptionReportsNothingAndCannotBeUndone) {
    TestPhone phone;
    g_readings.clear();
    SensorUser user{};
    user.callback = NoteReading;
    phone.Change([](auto& change) { change.light = std::optional<float>(3.0F); });
    phone.Fail("SensorAgent.SubscribeSensor", 14500101);
    EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 14500101);
    phone.Heal("SensorAgent.SubscribeSensor");
    ActivateSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user);
    EXPECT_EQ(UnsubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 14500101);
    EXPECT_THAT(g_readings, IsEmpty());
}

TEST(SimulatedSensors, ARefusalLeavesAnEarlierSubscriptionAsItIs) {
    TestPhone phone;
    g_readings.clear();
    SensorUser user{};
    user.callback = NoteReading;
    const auto refuse = [&] {
        phone.Fail("SensorAgent.SubscribeSensor", 14500101);
        EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 14500101);
        phone.Heal("SensorAgent.SubscribeSensor");
    };
    EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    ActivateSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user);
    refuse();
    phone.Change([](auto& change) { change.light = std::optional<float>(3.0F); });
    EXPECT_EQ(g_readings.size(), 1U);
    EXPECT_EQ(UnsubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    refuse();
    EXPECT_EQ(SubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0);
    EXPECT_EQ(UnsubscribeSensor(SENSOR_TYPE_ID_AMBIENT_LIGHT, &user), 0) << "a refusal is made up for";
}

TEST(SimulatedSensors, TheListIsTheFactsOwn) {
    TestPhone phone;
    phone.Change([](auto& change) { change.sensors = std::vector<int32_t>{12}; });
    SensorInfo* infos = nullptr;
    int32_t count = 0;
    EXPECT_EQ(GetAllSensors(&infos, &count), 0);
    ASSERT_EQ(count, 1) << "a sensor vanished";
    EXPECT_EQ(infos[0].sensorTypeId, 12);
    phone.Fail("SensorAgent.GetAllSensors", 3);
    EXPECT_EQ(GetAllSensors(&infos, &count), 3);
}

/// One settings value as a client reads it; what failed, in angle brackets.
std::string Setting(const std::string& table, const std::string& keyword) {
    const auto manager = SystemAbilityManagerClient::GetInstance().GetSystemAbilityManager();
    const auto helper = DataShare::DataShareHelper::Creator(manager == nullptr ? nullptr : manager->GetSystemAbility(1),
                                                            "datashare:///settings", "");
    if (helper == nullptr) {
        return "<no helper>";
    }
    Uri uri("datashare:///com.example/entry/settingsdata/" + table + "?Proxy=true&key=" + keyword);
    std::vector<std::string> columns;
    const auto rows =
        helper->Query(uri, DataShare::DataSharePredicates().EqualTo("KEYWORD", keyword), columns, nullptr);
    if (rows == nullptr || rows->GoToFirstRow() != 0) {
        return rows == nullptr ? "<no rows>" : "<no row>";
    }
    int column = -1;
    std::string value;
    const bool isRead = rows->GetColumnIndex("VALUE", column) == 0 && rows->GetString(column, value) == 0;
    rows->Close();
    return isRead && rows->GoToFirstRow() != 0 ? value : "<unread>";
}

TEST(SimulatedSettings, RowsMergeAndNullRemoves) {
    TestPhone phone;
    const auto set = [&phone](const std::string& table, FactsChange::Members<std::string> rows) {
        phone.Change([&](auto& change) { change.settings[table] = std::move(rows); });
    };
    EXPECT_EQ(Setting("NOBODY_NAMED_IT", "a"), "<no row>");
    set("SETTINGSDATA", {{"a", "1"}, {"b", "2"}});
    set("USER_SETTINGSDATA_SECURE_100", {{"a", std::string("3\0'\"", 4)}});
    set("SETTINGSDATA", {{"b", "5"}, {"c", ""}});
    EXPECT_EQ(Setting("SETTINGSDATA", "a"), "1");
    EXPECT_EQ(Setting("SETTINGSDATA", "b"), "5");
    EXPECT_EQ(Setting("SETTINGSDATA", "c"), "");
    EXPECT_EQ(Setting("USER_SETTINGSDATA_SECURE_100", "a"), std::string("3\0'\"", 4));
    set("SETTINGSDATA", {{"a", std::nullopt}});
    EXPECT_EQ(Setting("SETTINGSDATA", "a"), "<no row>");
    EXPECT_EQ(Setting("SETTINGSDATA", "b"), "5");
    phone.Change([](auto& change) { change.settings["SETTINGSDATA"] = std::nullopt; });
    EXPECT_EQ(Setting("SETTINGSDATA", "b"), "<no row>");
    EXPECT_NE(Setting("USER_SETTINGSDATA_SECURE_100", "a"), "<no row>");
}

TEST(SimulatedSettings, EachStepOfAReadMayFail) {
    for (const auto& [operation, answer] :
         {std::pair{"SystemAbilityManagerClient.GetSystemAbilityManager", "<no helper>"},
          {"SystemAbilityManager.GetSystemAbility", "<no helper>"},
          {"DataShareHelper.Creator", "<no helper>"},
          {"DataShareHelper.Query", "<no rows>"},
          {"DataShareResultSet.GoToFirstRow", "<no row>"},
          {"DataShareResultSet.GetColumnIndex", "<unread>"},
          {"DataShareResultSet.GetString", "<unread>"}}) {
        TestPhone phone;
        phone.Change([](auto& change) {
            change.settings["SETTINGSDATA"] = FactsChange::Members<std::string>{{"a", "1"}};
        });
        phone.Fail(operation);
        EXPECT_EQ(Setting("SETTINGSDATA", "a"), answer) << operation;
    }
}

Process App(int32_t pid, int32_t uid, const std::string& name, bool isSystem = false, bool isForeground = false) {
    return {pid, uid, name, {name}, false, isSystem, isForeground};
}

TEST(SimulatedProcesses, AreKilledByPidAllOfThatPid) {
    TestPhone phone;
    phone.Change([](auto& change) {
        change.processes = {App(1, 10, "a"), App(2, 10, "b"), Process{1, 0, "native", {}, true},
                            App(-1, 11, "c", true)};
    });
    std::vector<std::string> ended;
    phone->Apps().ObserveStates([&ended](const AppExecFwk::AppStateData& app) {
        ended.push_back(app.bundleName + (app.state == AppExecFwk::AppState::ENDED ? " ended" : ""));
    });
    EXPECT_EQ(phone->ResourceScheduler().KillProcess({{"pid", "1"}}), 0);
    phone.Run();
    EXPECT_THAT(ended, Are({"a ended"}));
    EXPECT_EQ(phone->ResourceScheduler().KillProcess({{"pid", "01"}}), 0);
    EXPECT_EQ(phone->ResourceScheduler().KillProcess({{"name", "b"}}), 0);
    phone.Fail("ResSchedClient.KillProcess", 4);
    EXPECT_EQ(phone->ResourceScheduler().KillProcess({{"pid", "2"}}), 4);
    std::vector<AppExecFwk::RunningProcessInfo> apps;
    std::list<AppExecFwk::SystemProcessInfo> natives;
    EXPECT_TRUE(phone->Apps().GetAllRunningProcesses(apps));
    EXPECT_TRUE(phone->Abilities().GetRunningSystemProcess(natives));
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].pid_, 2);
    EXPECT_EQ(apps[1].pid_, -1);
    EXPECT_TRUE(natives.empty());
    bool isSystem = true;
    EXPECT_TRUE(phone->Bundles().CheckIsSystemAppByUid(10, isSystem));
    EXPECT_FALSE(isSystem) << "an uid is what its first process is";
    EXPECT_FALSE(phone->Bundles().CheckIsSystemAppByUid(12, isSystem)) << "nobody's";
    EXPECT_THAT(phone.TakeCalls(), Are({R"(KillProcess {"pid":"1"} -> 0)", R"(KillProcess {"pid":"01"} -> 0)",
                                        R"(KillProcess {"pid":""} -> 0)", R"(KillProcess {"pid":"2"} -> 4)"}));
}

/// Notes what it receives and does as it is told then.
class Receiver : public EventFwk::CommonEventSubscriber {
public:
    explicit Receiver(const char* action) : CommonEventSubscriber(Info(action)) {}
    void OnReceiveEvent(const EventFwk::CommonEventData& data) override {
        received.push_back(data.GetWant().GetAction());
        if (onReceive) {
            onReceive();
        }
    }

    std::vector<std::string> received;
    std::function<void()> onReceive;

private:
    static EventFwk::CommonEventSubscribeInfo Info(const char* action) {
        EventFwk::MatchingSkills skills;
        skills.AddEvent(action);
        return EventFwk::CommonEventSubscribeInfo(std::move(skills));
    }
};

TEST(SimulatedBroadcasts, ReachThoseWhoAreSubscribedByThen) {
    using EventFwk::CommonEventManager;
    TestPhone phone;
    const auto first = std::make_shared<Receiver>("A");
    const auto second = std::make_shared<Receiver>("A");
    const auto third = std::make_shared<Receiver>("B");
    first->onReceive = [&] { CommonEventManager::UnSubscribeCommonEvent(first); };
    EXPECT_TRUE(CommonEventManager::SubscribeCommonEvent(first));
    phone->Broadcast(AAFwk::Want().SetAction("A"));
    EXPECT_TRUE(CommonEventManager::SubscribeCommonEvent(second));
    EXPECT_TRUE(CommonEventManager::SubscribeCommonEvent(third));
    EXPECT_THAT(first->received, IsEmpty()) << "a delivery is work of its own";
    phone.Run();
    EXPECT_TRUE(CommonEventManager::PublishCommonEvent(EventFwk::CommonEventData(AAFwk::Want().SetAction("A"))));
    phone.Run();
    EXPECT_THAT(first->received, Are({"A"}));
    EXPECT_THAT(second->received, Are({"A", "A"}));
    EXPECT_THAT(third->received, IsEmpty());
}

TEST(SimulatedPhone, TellsMovementInBootNanoseconds) {
    TestPhone phone;
    phone.Change([](auto& change) { change.movement = Movement{1, TestPhone::kStartMs - 5000}; });
    const auto data = phone->Movement().GetMovementData(Msdp::MovementType::TYPE_STILL);
    EXPECT_EQ(data.value, Msdp::MovementValue::VALUE_ENTER);
    EXPECT_EQ(data.timestamp, TestPhone::kBootNs - 5'000'000'000);
    phone.Run(250);
    EXPECT_EQ(phone->Time().GetBootTimeNs(), TestPhone::kBootNs + 250'000'000);
}

TEST(SimulatedPhone, ItsFilesAreItsOwn) {
    const std::string path = std::string(kServiceFolder) + "/power_off_record";
    std::string text = "untouched";
    TestPhone phone;
    EXPECT_FALSE(phone->Files().Load(path, text));
    EXPECT_EQ(text, "untouched");
    phone->WriteFile("power_off_record", "{}");
    EXPECT_TRUE(phone->Files().Exists(path));
    EXPECT_TRUE(phone->Files().Load(path, text));
    EXPECT_EQ(text, "{}");
    EXPECT_TRUE(phone->Files().Replace(path, "{1}"));
    EXPECT_TRUE(phone->Files().Load(path, text));
    EXPECT_EQ(text, "{1}");
    {
        TestPhone other;
        EXPECT_FALSE(other->Files().Exists(path));
    }
    phone->WriteFile("power_off_record", std::nullopt);
    EXPECT_FALSE(phone->Files().Exists(path));
}

}  // namespace
}  // namespace TARN::Simulated
