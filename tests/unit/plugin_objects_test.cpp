#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "are.h"
#include "background_task_mgr_helper.h"
#include "common_event_listener_ext.h"
#include "common_event_manager.h"
#include "freeze_strategy.h"
#include "listener_manager_adapter_ext.h"
#include "open_phone_plugin.h"
#include "phone_sleep_data_collecter.h"
#include "power_save_clean_strategy.h"
#include "running_applications.h"
#include "sleep_clean_strategy.h"
#include "sleep_detection_strategy.h"
#include "sleep_shared_pref.h"
#include "standby_constants.h"
#include "standby_service_log.h"
#include "test_phone.h"
#include "time_zone.h"
#include "timer_strategy_ext.h"
#include "user_sleep_power_off_strategy.h"

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

StandbyMessage Collected(int64_t timeMs) {
    constexpr int32_t kLongSeconds = 10'000;
    AAFwk::Want want;
    want.SetParam("mUserStationaryDuration", kLongSeconds).SetParam("mLightDarkDuration", kLongSeconds);
    want.SetParam("mTimestamp", timeMs);
    return StandbyMessage(StandbyMessageType::SLEEP_COLLECT_FINISHED, {}, std::move(want));
}

StandbyMessage PowerSaveMode() {
    return StandbyMessage(StandbyMessageType::COMMON_EVENT, "COMMON_EVENT_POWER_SAVE_MODE_CHANGED");
}

TEST(Log, ALineOfThePluginBearsTheFunctionThatItTellsOf) {
    Replay::TimeZone("UTC").Use();
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    phone.StartService(config);
    phone.Change([](auto& change) {
        change.deviceMode = 603;
        change.processes = {Simulated::Process{32, 11, "app", {}}};
    });
    std::vector<std::string> lines;
    phone.onLine = [&lines](const LogLine& line) {
        const std::string_view text = line.text.substr(0, line.text.find_first_of(":,"));
        lines.push_back(std::string(line.file) + " " + line.function + " " + std::string(text));
    };
    const auto wrote = [&lines](const char* line) { EXPECT_THAT(std::exchange(lines, {}), Contains(line)); };
    SleepCleanStrategy().OnCreated();
    wrote("sleep_clean_strategy.cpp InitConfigList tagList is null");
    const auto clean = std::make_shared<PowerSaveCleanStrategy>();
    clean->OnCreated();
    wrote("power_save_clean_strategy.cpp InitConfigList tagList is null");
    phone.Fail("AppMgrHelper.GetAllRunningProcesses");
    clean->HandleEvent(PowerSaveMode());
    wrote("power_save_clean_strategy.cpp CleanProcess get all running processes failed");
    phone.Heal("AppMgrHelper.GetAllRunningProcesses");
    clean->HandleEvent(PowerSaveMode());
    wrote("power_save_clean_strategy.cpp KillProcessByPid kill process pid");
    phone.Fail("AbilityManagerHelper.GetRunningSystemProcess");
    EXPECT_NE(FreezeStrategy().StartFreeze(Phase(4, 1)), 0);
    wrote("freeze_strategy.cpp CreateFreezeInfo connect to app ability service failed");
    phone.Fail("PreferencesHelper.GetPreferences");
    EXPECT_FALSE(SleepSharedPref::GetBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, true));
    wrote("sleep_shared_pref.cpp GetBoolSettings pref is nullptr");
    SleepSharedPref::UpdateBoolSettings(SleepSharedPref::IS_PROXIMITY_ERROR, true);
    wrote("sleep_shared_pref.cpp UpdateBoolSettings pref is nullptr");

    std::make_shared<PhoneSleepDataCollecter>()->CollectSleepData(true);
    phone.Run(1000);
    wrote("sleep_data_collecter.cpp FinishDayCollect calculation proximity error state is -1.000000");
    const auto detection = std::make_shared<SleepDetectionStrategy>();
    detection->OnCreated();
    detection->HandleEvent(Collected(phone.Now()));
    wrote("sleep_detection_strategy.cpp HandleEventFinishCollect collected data");
    detection->HandleEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT, "COMMON_EVENT_SCREEN_ON"));
    wrote("sleep_detection_strategy.cpp HandleScrOnAction exit slp");
    detection->HandleEvent(Collected(0));
    wrote(
        "sleep_detection_strategy.cpp HandleEventFinishCollect standby stopped because the time is near or later than "
        "alarm.");
    detection->HandleEvent(Collected(phone.Now()));
    detection->HandleEvent(StandbyMessage(StandbyMessageType::BG_TASK_STATUS_CHANGED, {},
                                          AAFwk::Want().SetParam("typeId", 2).SetParam("started", true)));
    detection->HandleEvent(Collected(phone.Now()));
    wrote("sleep_detection_strategy.cpp HandleEventFinishCollect exit slp");
}

TEST(Configuration, AMissingManagerCountsAsNothingConfigured) {
    TestPhone phone;
    StandbyConfig config;
    config.mode = HostMode::SCRIPTED;
    config.params["recover_netlimit_time"] = 30;
    phone.StartService(config);
    phone.Fail("StandbyConfigManager.GetInstance");
    EXPECT_EQ(SleepCleanStrategy().OnCreated(), 0);
    EXPECT_EQ(PowerSaveCleanStrategy().OnCreated(), 0);
    EXPECT_EQ(TimerStrategyExt().OnCreated(), 0);
    std::vector<std::string> logs = phone.TakeLogs();
    EXPECT_EQ(std::count(logs.begin(), logs.end(), "error tagList is null"), 3);
    UserSleepPowerOffStrategy strategy;
    phone.Heal("StandbyConfigManager.GetInstance");
    const auto sleep = [&strategy](bool isSleep) {
        strategy.HandleEvent(StandbyMessage(StandbyMessageType::USER_SLEEP_STATE_CHANGED, {},
                                            AAFwk::Want().SetParam("isSleep", isSleep)));
    };
    sleep(true);
    strategy.HandleEvent(Transition(0, 1));
    EXPECT_THAT(phone.TakeLogs(), Contains("debug user is sleep recover netlimit, triggerTime: 5000"));
    sleep(false);
}

/// A phone whose list of continuous tasks has a hole before its one task, and a log.
class HoleyPhone : private Simulated::PhoneObserver,
                   private BackgroundTaskMgr::BackgroundTaskMgrHelper,
                   public Simulated::SimulatedPhone {
public:
    HoleyPhone() : SimulatedPhone(TestPhone::kStartMs, TestPhone::kBootNs, *this) {
        Device::Install(this);
        StandbyServiceImpl::Create({});
    }
    ~HoleyPhone() override {
        DropPending();
        StandbyServiceImpl::Destroy();
        Device::Install(nullptr);
    }
    BackgroundTaskMgr::BackgroundTaskMgrHelper& BackgroundTasks() override { return *this; }

    std::vector<std::string> killed;

private:
    int32_t ContinuousTasks(
        std::vector<std::shared_ptr<BackgroundTaskMgr::ContinuousTaskCallbackInfo>>& list) override {
        list = {nullptr, std::make_shared<BackgroundTaskMgr::ContinuousTaskCallbackInfo>(2, 11, 32)};
        return 0;
    }
    void Observe(ContinuousTaskObserver /*observer*/) override {}
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    void OnLog(const LogLine& /*line*/) override {}
    void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& /*result*/) override {
        if (operation == "ResSchedClient.KillProcess") {
            killed.push_back(arguments.dump());
        }
    }
};

TEST(PowerSaveClean, SkipsAHoleInTheListOfContinuousTasks) {
    HoleyPhone phone;
    Simulated::FactsChange change;
    change.deviceMode = 603;
    change.processes = {Simulated::Process{32, 11, "player", {}}, Simulated::Process{33, 12, "idle", {}}};
    phone.Apply(change);
    const auto strategy = std::make_shared<PowerSaveCleanStrategy>();
    strategy->OnCreated();
    strategy->HandleEvent(PowerSaveMode());
    EXPECT_THAT(phone.killed, Are({HasSubstr("33")}));
}

TEST(RunningApplications, SkipAHoleInTheListOfContinuousTasks) {
    HoleyPhone phone;
    Simulated::FactsChange change;
    change.processes = {Simulated::Process{32, 11, "player", {}}, Simulated::Process{33, 12, "idle", {}}};
    phone.Apply(change);
    RunningApplications applications(true);
    EXPECT_EQ(applications.Update(), 0);
    EXPECT_FALSE(applications.IsUseKnown());
    EXPECT_TRUE(applications.UpdateUse());
    EXPECT_TRUE(applications.IsUseKnown());
    EXPECT_THAT(applications.ByUid().at(11).taskTypes, ::testing::ElementsAre(2U));
    EXPECT_THAT(applications.ByUid().at(12).taskTypes, IsEmpty());
}

TEST(SensorReading, IsTakenFromAnyAddressButOnlyWhole) {
    struct Readings : PhoneSleepDataCollecter {
        using PhoneSleepDataCollecter::currentAmbientLightData_;
        using PhoneSleepDataCollecter::currentProximityData_;
    };
    alignas(float) std::array<uint8_t, 16> bytes{};
    uint8_t* unaligned = bytes.data() + 1;
    const auto send = [unaligned](void (*callback)(SensorEvent*), float value, uint32_t length) {
        std::memcpy(unaligned, &value, sizeof(value));
        SensorEvent event{};
        event.data = unaligned;
        event.dataLen = length;
        callback(&event);
    };
    send(SleepDataCollecter::AmbientLightCallback, 42.5F, 12);
    send(SleepDataCollecter::AmbientLightCallback, 1.0F, 11);
    EXPECT_EQ(Readings::currentAmbientLightData_, 42.5F);
    send(SleepDataCollecter::ProximityCallback, 5.5F, 4);
    send(SleepDataCollecter::ProximityCallback, 1.0F, 3);
    EXPECT_EQ(Readings::currentProximityData_, 5.5F);
    SensorEvent empty{};
    empty.dataLen = 12;
    for (auto* callback : {SleepDataCollecter::AmbientLightCallback, SleepDataCollecter::ProximityCallback}) {
        callback(&empty);
        callback(nullptr);
    }
    EXPECT_EQ(Readings::currentAmbientLightData_, 42.5F);
    EXPECT_EQ(Readings::currentProximityData_, 5.5F);
}

TEST(Log, ArgumentsOfAnUnwantedLevelAreNotEvaluated) {
    int evaluated = 0;
    const auto count = [&evaluated] { return ++evaluated; };
    STANDBYSERVICE_LOGE("%{public}d", count());  // no device is installed
    EXPECT_EQ(evaluated, 0);
    TestPhone phone;
    phone.WantLogs(LogLevel::WARN);
    STANDBYSERVICE_LOGD("%{public}d", count());
    STANDBYSERVICE_LOGI("%{public}d", count());
    EXPECT_EQ(evaluated, 0);
    STANDBYSERVICE_LOGW("%{public}d", count());
    STANDBYSERVICE_LOGE("%{public}d", count());
    EXPECT_THAT(phone.TakeLogs(), Are({"warn 1", "error 2"}));
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
