#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "common_event_listener_ext.h"
#include "common_event_manager.h"
#include "freeze_strategy.h"
#include "listener_manager_adapter_ext.h"
#include "open_phone_plugin.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "test_phone.h"

namespace TARN::DevStandbyMgr {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Tests::Are;
using Tests::TestPhone;

StandbyMessage Transition(int32_t previous, int32_t current) {
    AAFwk::Want want;
    want.SetParam(PREVIOUS_STATE, previous).SetParam(CURRENT_STATE, current);
    return StandbyMessage(StandbyMessageType::STATE_TRANSIT, {}, std::move(want));
}

StandbyMessage Phase(int32_t state, int32_t phase) {
    AAFwk::Want want;
    want.SetParam(CURRENT_STATE, state).SetParam(CURRENT_PHASE, phase);
    return StandbyMessage(StandbyMessageType::PHASE_TRANSIT, {}, std::move(want));
}

StandbyMessage AllowListChange(int32_t allowType, const char* name, bool added) {
    AAFwk::Want want;
    want.SetParam("allowType", allowType).SetParam("name", name).SetParam("added", added);
    return StandbyMessage(StandbyMessageType::ALLOW_LIST_CHANGED, {}, std::move(want));
}

TEST(FreezeStrategyStatus, TellsWhyNothingWasDone) {
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    config.persistAllow["FREEZE"][1] = {"storage", "ghost"};
    phone.StartService(config);
    phone.Change([](auto& change) { change.processes = {Simulated::Process{11, 0, "storage", {}, true}}; });
    FreezeStrategy strategy;
    EXPECT_EQ(strategy.OnCreated(), 0);
    EXPECT_EQ(strategy.StopFreeze(Transition(4, 0)), 980000911);
    EXPECT_EQ(strategy.StartFreeze(Phase(3, 1)), 980000909);
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 2)), 980000909);
    phone.Fail("AbilityManagerHelper.GetRunningSystemProcess");
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 980000402);
    EXPECT_EQ(strategy.StopFreeze(Transition(3, 4)), 980000402);
    EXPECT_NE(strategy.UpdateResourceConfig(Phase(0, 0)), 0);
    phone.Heal("AbilityManagerHelper.GetRunningSystemProcess");
    phone.Fail("StandbyServiceImpl.GetAllowList", 5);
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 5);
    phone.Heal("StandbyServiceImpl.GetAllowList");
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 0);
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 980000911);
    EXPECT_EQ(strategy.StopFreeze(Transition(4, 4)), 980000910);
    EXPECT_EQ(strategy.StopFreeze(Transition(2, 0)), 980000910);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(1, "storage", false)), 980000913);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "storage", true)), 0);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "other", false)), 0);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "ghost", false)), 980000912);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "storage", false)), 0);
    phone.Fail("AbilityManagerHelper.GetRunningSystemProcess");
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "storage", false)), 980000402);
    EXPECT_EQ(strategy.StopFreeze(Transition(4, 3)), 0);
    EXPECT_EQ(strategy.StopFreeze(Transition(4, 0)), 0);
    EXPECT_EQ(strategy.OnDestroy(), 0);
}

TEST(FreezeStrategyStatus, ADestroyedStrategyStaysInDozeAndForgetsItsGroup) {
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    config.persistAllow["FREEZE"][1] = {"storage"};
    phone.StartService(config);
    phone.Change([](auto& change) { change.processes = {Simulated::Process{11, 0, "storage", {}, true}}; });
    FreezeStrategy strategy;
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 0);
    phone.TakeCalls();
    strategy.OnDestroy();
    EXPECT_EQ(strategy.OnCreated(), 0);
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 980000911);
    EXPECT_EQ(strategy.UpdateAllowedList(AllowListChange(64, "storage", false)), 0) << "no name is configured any more";
    EXPECT_EQ(strategy.StopFreeze(Transition(4, 0)), 0);
    EXPECT_THAT(phone.TakeCalls(), IsEmpty()) << "there is no group to thaw";
    EXPECT_EQ(strategy.StartFreeze(Phase(4, 1)), 0);
}

TEST(PluginEntry, RegisteringTwiceHandsOverTwoIndependentSetsOfAdapters) {
    TestPhone phone;
    auto& service = phone.StartService();
    EXPECT_TRUE(OnPluginRegister());
    const auto firstState = service.GetStateManager();
    const auto firstConstraint = service.GetConstraintManager();
    EXPECT_TRUE(OnPluginRegister());
    EXPECT_NE(service.GetStateManager(), firstState);
    EXPECT_NE(service.GetConstraintManager(), firstConstraint);
    EXPECT_THAT(phone.TakeLogs(), Are({"info plugin register succeed", "info plugin register succeed"}));
    service.Init();
    EXPECT_EQ(service.GetStateManager()->TransitToState(StandbyState::DARK), 0U);
    EXPECT_EQ(firstState->GetCurState(), static_cast<uint32_t>(StandbyState::WORKING));
    service.UnInit();
    phone->DropPending();
}

TEST(CommonEventListener, TellsThatItWasRefused) {
    TestPhone phone;
    phone.StartService();
    EventFwk::MatchingSkills skills;
    skills.AddEvent("COMMON_EVENT_SCREEN_UNLOCKED");
    const auto listener = std::make_shared<CommonEventListenerExt>(EventFwk::CommonEventSubscribeInfo(skills));
    phone.Fail("CommonEventManager.SubscribeCommonEvent");
    EXPECT_EQ(listener->StartListener(), 980000915);
    EXPECT_EQ(listener->StopListener(), 980000916) << "there is nothing to undo";
    phone.Heal("CommonEventManager.SubscribeCommonEvent");
    EXPECT_EQ(listener->StartListener(), 0);
    phone.Fail("CommonEventManager.UnSubscribeCommonEvent");
    EXPECT_EQ(listener->StopListener(), 980000916);
    phone.Heal("CommonEventManager.UnSubscribeCommonEvent");
    EXPECT_EQ(listener->StopListener(), 0);
    EXPECT_THAT(phone.TakeLogs(),
                Are({"error SubscribeCommonEvent occur exception", "error UnsubscribeCommonEvent occur exception",
                     "error UnsubscribeCommonEvent occur exception"}));
}

TEST(ListenerManager, SwallowsARefusalAndDoesNothingAfterUnInit) {
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    phone.StartService(config);
    phone.Fail("CommonEventManager.SubscribeCommonEvent");
    ListenerManagerAdapterExt manager;
    EXPECT_TRUE(manager.Init());
    EXPECT_THAT(phone.TakeCalls(), IsEmpty()) << "Init does not subscribe";
    EXPECT_EQ(manager.StartListener(), 0);
    EXPECT_EQ(manager.StopListener(), 0);
    EXPECT_TRUE(manager.UnInit());
    EXPECT_EQ(phone.TakeCalls().size(), 3U);
    EXPECT_EQ(manager.StartListener(), 0);
    EXPECT_THAT(phone.TakeCalls(), IsEmpty());
}

TEST(CommonEventListener, DropsAnActionThatDiffersInOneLetterOrInLength) {
    TestPhone phone;
    auto& service = phone.StartService();
    OnPluginRegister();
    int delivered = 0;
    service.ObserveDelivery([&delivered](const StandbyMessage&) { ++delivered; });
    const auto listener =
        std::make_shared<CommonEventListenerExt>(EventFwk::CommonEventSubscribeInfo(EventFwk::MatchingSkills()));
    phone.TakeLogs();
    for (const char* action : {"COMMON_EVENT_SCREEN_UNLOCKEd", "COMMON_EVENT_SCREEN_UNLOCKED_",
                               "COMMON_EVENT_SCREEN_UNLOCKE", "COMMON_EVENT_USER_SLEEP_STATE_CHANGE", ""}) {
        listener->OnReceiveEvent(EventFwk::CommonEventData(AAFwk::Want().SetAction(action)));
        phone.Run();
        EXPECT_THAT(phone.TakeLogs(), Are({std::string("debug receive common event ") + action}));
    }
    EXPECT_EQ(delivered, 0);
    listener->OnReceiveEvent(EventFwk::CommonEventData(AAFwk::Want().SetAction("COMMON_EVENT_SCREEN_UNLOCKED")));
    phone.Run();
    EXPECT_EQ(delivered, 1);
}

TEST(Log, ALineCarriesWhereItStandsAndFormatsEveryKindOfArgument) {
    TestPhone phone;
    bool isSeen = false;
    phone.onLine = [&isSeen](const LogLine& line) {
        isSeen = true;
        EXPECT_EQ(line.domain, 0xD001718U);
        EXPECT_STREQ(line.tag, "StandbyService");
        EXPECT_STREQ(line.file, "plugin_objects_test.cpp");
        EXPECT_STREQ(line.function, "TestBody");
        EXPECT_GT(line.line, 0);
    };
    STANDBYSERVICE_LOGW("%{public}d %{public}u %{public}ld %{public}lu %{public}f %{public}s %{public}d.", -1,
                        4294967295U, INT64_MIN, UINT64_MAX, 0.5, "text", true);
    EXPECT_TRUE(isSeen);
    EXPECT_THAT(phone.TakeLogs(),
                Are({"warn -1 4294967295 -9223372036854775808 18446744073709551615 0.500000 text 1."}));
}

TEST(Log, ArgumentsOfAnUnwantedLevelAreNotEvaluated) {
    int evaluated = 0;
    const auto count = [&evaluated] { return ++evaluated; };
    STANDBYSERVICE_LOGE("%{public}d", count());  // no device is installed
    EXPECT_EQ(evaluated, 0);
    TestPhone phone;
    phone.lowestLevel = LogLevel::WARN;
    STANDBYSERVICE_LOGD("%{public}d", count());
    STANDBYSERVICE_LOGI("%{public}d", count());
    EXPECT_EQ(evaluated, 0);
    STANDBYSERVICE_LOGW("%{public}d", count());
    STANDBYSERVICE_LOGE("%{public}d", count());
    EXPECT_THAT(phone.TakeLogs(), Are({"warn 1", "error 2"}));
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
