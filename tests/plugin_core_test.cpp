#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app_mgr_proxy.h"
#include "are.h"
#include "night_script.h"
#include "suspend_manager_proxy.h"
#include "test_phone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kUnlocked[] = "COMMON_EVENT_SCREEN_UNLOCKED";
constexpr char kSubscribed[] =
    R"(CommonEventManager.SubscribeCommonEvent {"actions":["COMMON_EVENT_SCREEN_UNLOCKED","COMMON_EVENT_USER_SLEEP_STATE_CHANGED"]} -> )";

bool IsLoaded() {
    void* handle = ::dlopen(PluginPath(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        ::dlclose(handle);
    }
    return handle != nullptr;
}

TEST(PluginLibrary, RegistersItsProxiesAtLoadAndIsGoneOnceUnloaded) {
    TestPhone phone;
    auto& service = phone.StartService();
    const auto isTaken = [&phone](const std::string& descriptor) {
        const bool isFree = phone->Brokers().Register(descriptor, nullptr);
        if (isFree) {
            phone->Brokers().Unregister(descriptor);
        }
        return !isFree;
    };
    const std::string appManager = AppExecFwk::AppMgrProxy::GetDescriptor();
    const std::string suspendManager = SuspendManager::SuspendManagerProxy::GetDescriptor();
    for (int i = 0; i < 3; ++i) {
        std::string error;
        ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
        EXPECT_TRUE(IsLoaded());
        EXPECT_TRUE(isTaken(appManager));
        EXPECT_TRUE(isTaken(suspendManager));
        service.Init();
        phone.Run(1000);
        if (i > 0) {
            service.UnInit();  // the first time it crashes
        }
        phone->DropPending();
        service.UnloadPlugin();
        EXPECT_FALSE(IsLoaded()) << "something of the library is still held";
        EXPECT_FALSE(isTaken(appManager));
        EXPECT_FALSE(isTaken(suspendManager));
    }
}

TEST(StrategyList, NamesAreTakenInOrderExactlyAndAsOftenAsTheyStand) {
    const auto created = [](const char* names) {
        std::vector<std::string> ours;
        for (const std::string& line : Night().Strategies(names).Play().LogsOf("phone_strategy_manager_adapter_ext")) {
            ours.push_back(line);
        }
        return ours;
    };
    const std::string freeze = "info phone strategy manager init FREEZE";
    EXPECT_THAT(created(R"(["FREEZE"])"), Are({freeze}));
    EXPECT_THAT(created(R"(["FREEZE", "FREEZE"])"), Are({freeze, freeze}));
    EXPECT_THAT(created(R"(["freeze", "FREEZE ", "FROST", ""])"), IsEmpty()) << "unknown names are skipped silently";
    EXPECT_THAT(created(R"(["FROST", "FREEZE"])"), Are({freeze}));
    EXPECT_THAT(created("[]"), Are({"info strategies is disabled"}));
}

TEST(StrategyList, AnEmptyListSwitchesEveryStrategyOffAndTheRunGoesOn) {
    const Record record = Night()
                              .Strategies("[]")
                              .AdvanceTo("22:00")
                              .GoToDeepSleep()
                              .Broadcast(kUnlocked)
                              .Dump(R"(["DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"])")
                              .PlayUntil("23:00");
    EXPECT_THAT(record.LogsOf("standby_service_impl"), Are({"warn the plugin's strategy manager did not initialise"}));
    EXPECT_THAT(record.Deliveries(), Are({HasSubstr("2 {"), HasSubstr("3 {"), HasSubstr("1 COMMON_EVENT")}));
    EXPECT_THAT(record.At("22:00").Of({""}),
                Each(::testing::AnyOf(HasSubstr("deliver"), HasSubstr("dump \"\""), HasSubstr("receive common event"))))
        << "not even the strategies without a name live";
}

TEST(Listener, IsThereForEveryDeviceKindButTheLast) {
    for (const int32_t mode : {0, 1, 2, -1}) {
        const Record record =
            Night().Host("standby_mode", std::to_string(mode)).AdvanceTo("22:00").Broadcast(kUnlocked).Play();
        EXPECT_THAT(record.Calls("CommonEventManager"),
                    Are({std::string(kSubscribed) + "true", "CommonEventManager.UnSubscribeCommonEvent {} -> true"}))
            << mode;
        EXPECT_THAT(record.Deliveries({1}), Are({"1 COMMON_EVENT_SCREEN_UNLOCKED null"}));
    }
    for (const int32_t mode : {3, 4}) {
        const Record record =
            Night().Host("standby_mode", std::to_string(mode)).AdvanceTo("22:00").Broadcast(kUnlocked).Play();
        EXPECT_THAT(record.Calls("CommonEventManager"), IsEmpty()) << mode;
        EXPECT_THAT(record.Deliveries({1}), IsEmpty());
        EXPECT_THAT(record.LogsOf("listener_manager_adapter_ext"),
                    Are({"debug listener manager plugin initialization failed"}));
        EXPECT_THAT(record.LogsOf("standby_service_impl"),
                    Are({"warn the plugin's listener manager did not initialise"}));
    }
    EXPECT_THAT(
        Night().Automatic().Host("standby_mode", "3").AdvanceTo("22:00").ScreenOff().PlayUntil("22:01").Deliveries({1}),
        Are({"1 COMMON_EVENT_SCREEN_OFF {}"}))
        << "the host's own listeners are there all the same";
}

TEST(Listener, ARefusedUnsubscriptionIsLoggedAndNobodyListensAfterTheRestart) {
    const Record record = Night()
                              .Device("fail", R"({"CommonEventManager.UnSubscribeCommonEvent": 5})")
                              .Restart()
                              .AdvanceTo("22:00")
                              .Broadcast(kUnlocked)
                              .PlayUntil("22:01");
    EXPECT_THAT(record.At("21:00").LogsOf("common_event_listener_ext"),
                Are({"error UnsubscribeCommonEvent occur exception"}));
    EXPECT_THAT(record.Deliveries({1}), Are({"1 COMMON_EVENT_SCREEN_UNLOCKED null"}));
}

TEST(Messages, OfAnyIdentifierAndWithoutAWantReachTheStrategiesUnchanged) {
    Night night;
    night.Strategies(R"(["FREEZE"])").AdvanceTo("22:00");
    for (const int32_t id : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 100, 101, 2147483647, -2147483647}) {
        night.MessageWithoutWant(id, id == 1 ? "COMMON_EVENT_NOBODY_KNOWS" : "")
            .Message(id, R"({"a": 1, "b": 1.0, "c": "d"})");
    }
    const Record record = night.PlayUntil("22:01");
    EXPECT_THAT(record.At("22:00").Deliveries({7}), Are({"7 null", R"(7 {"a":1,"b":1.0,"c":"d"})"}));
    EXPECT_THAT(record.At("22:00").Deliveries({1}), Contains("1 COMMON_EVENT_NOBODY_KNOWS null"));
    EXPECT_THAT(record.At("22:00").Deliveries(), ::testing::SizeIs(::testing::Ge(38)));
    EXPECT_THAT(record.LogsOf("freeze_strategy"),
                Contains(HasSubstr("HandleEvent, eventId is")).Times(static_cast<int>(record.Deliveries().size())));
    EXPECT_THAT(record.At("22:00").Calls("SuspendManagerClient"), IsEmpty());
}

}  // namespace
}  // namespace TARN::Tests
