#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

#include "common_event_manager.h"
#include "device_state_cache.h"
#include "night_script.h"
#include "standby_service_impl.h"
#include "test_phone.h"
#include "threaded_phone.h"

namespace TARN::Tests {
namespace {

using DevStandbyMgr::StandbyMessage;
using DevStandbyMgr::StandbyServiceImpl;

#if defined(__SANITIZE_THREAD__)
constexpr std::chrono::seconds kStress(10);
#else
constexpr std::chrono::seconds kStress(1);
#endif

/// A message that somebody knows, with parameters that often make it act.
StandbyMessage AnyMessage(std::mt19937& random) {
    constexpr int32_t kIds[] = {1, 2, 3, 4, 5, 6, 8, 10, 11, 12, 13, 14, 100, 101};
    const auto upTo = [&random](uint32_t most) { return static_cast<int32_t>(random() % (most + 1)); };
    AAFwk::Want want;
    want.SetParam("PREVIOUS_STATE", upTo(4)).SetParam("CURRENT_STATE", upTo(4)).SetParam("CURRENT_PHASE", upTo(3));
    want.SetParam("RES_CTRL_CONDITION", upTo(2)).SetParam("SCR_OFF_HALF_HOUR_STATUS", upTo(1) != 0);
    want.SetParam("isSleep", upTo(1) != 0).SetParam("typeId", upTo(8)).SetParam("started", upTo(1) != 0);
    want.SetParam("allowType", 1 << upTo(6)).SetParam("name", std::string("native")).SetParam("added", upTo(1) != 0);
    return StandbyMessage(kIds[random() % std::size(kIds)], {}, std::move(want));
}

/// Broadcasts and messages from threads of their own, while the service starts, stops, crashes and ends.
class Stress {
public:
    void Run() {
        phone_.OnHandler([this] { Prepare(); });
        std::thread publisher([this] { Publish(); });
        std::thread sender([this] { Send(); });
        const auto end = std::chrono::steady_clock::now() + kStress;
        const auto patience = end + std::chrono::seconds(60);  // a busy machine does less in its time
        while (std::chrono::steady_clock::now() < end || (!IsEnough() && std::chrono::steady_clock::now() < patience)) {
            phone_.OnHandler([this] { LiveOn(); });
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        isOver_ = true;
        publisher.join();
        sender.join();
        phone_.OnHandler([] {
            StandbyServiceImpl::GetInstance()->UnInit();
            StandbyServiceImpl::Destroy();
        });
    }

    /// Whether each thread had its share in it.
    [[nodiscard]] bool IsEnough() const {
        return lives_ > 10 && deliveries_ > 100 && phone_.timerCallbacks > 10 && phone_.readings > 100 &&
               phone_.broadcasts > 100 && phone_.logLines > 1000;
    }

private:
    void Prepare() {
        Simulated::FactsChange facts;
        facts.deviceMode = 603;
        facts.processes = std::vector<Simulated::Process>{{1, 1, "native", {}, true}, {2, 2, "app", {}, false}};
        phone_.Apply(facts);
        Begin();
    }

    void Begin() {
        DevStandbyMgr::StandbyConfig config;
        config.params["recover_netlimit_time"] = 1;
        config.persistAllow["FREEZE"] = {{1, {"native"}}, {2, {"native"}}};
        config.policy = {60, 120, 60, 60, {300}, 120, 22, 7, 30};
        const auto service = StandbyServiceImpl::Create(config);
        service->ObserveDelivery([this](const StandbyMessage&) { ++deliveries_; });
        Load(*service);
    }

    void Load(StandbyServiceImpl& service) {
        std::string error;
        ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
        service.Init();
        ++lives_;
    }

    /// A little of the phone's life; every fifth ends the service's in one way or another.
    void LiveOn() {
        phone_.CatchUp();
        Simulated::FactsChange facts;
        facts.continuousTasks = std::vector<Simulated::ContinuousTask>(random_() % 2, {2, 2, 2});
        facts.movement = Simulated::Movement{random_() % 4 == 0 ? 2 : 1, 0};
        phone_.Apply(facts);
        const auto service = StandbyServiceImpl::GetInstance();
        service->GetDeviceStateCache()->SetDeviceState(1, random_() % 2 == 0);
        service->SetAllowList(1, random_() % 2 == 0 ? std::vector<std::string>{"app"} : std::vector<std::string>());
        std::string dump;
        service->ShellDump({"DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"}, dump);
        switch (random_() % 20) {
            case 0:  // stopped and initialised again
                service->UnInit();
                service->Init();
                break;
            case 1:  // stopped and loaded again
                service->UnInit();
                service->UnloadPlugin();
                Load(*service);
                break;
            case 2:  // crashed
                Load(*service);
                break;
            case 3:  // ended
                StandbyServiceImpl::Destroy();
                Begin();
                break;
            default:
                break;
        }
    }

    void Publish() {
        constexpr const char* kActions[] = {"COMMON_EVENT_SCREEN_OFF",
                                            "COMMON_EVENT_SCREEN_OFF",
                                            "COMMON_EVENT_SCREEN_ON",
                                            "COMMON_EVENT_CHARGING",
                                            "COMMON_EVENT_DISCHARGING",
                                            "COMMON_EVENT_SCREEN_UNLOCKED",
                                            "COMMON_EVENT_TIME_CHANGED",
                                            "COMMON_EVENT_POWER_SAVE_MODE_CHANGED",
                                            "COMMON_EVENT_USER_SLEEP_STATE_CHANGED"};
        std::mt19937 random(1);
        while (!isOver_) {
            const std::string action = kActions[random() % std::size(kActions)];
            EventFwk::CommonEventManager::PublishCommonEvent(
                EventFwk::CommonEventData(AAFwk::Want().SetAction(action).SetParam("isSleep", random() % 2 == 0)));
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 10000));
        }
    }

    void Send() {
        std::mt19937 random(2);
        while (!isOver_) {
            if (const auto service = StandbyServiceImpl::GetInstance()) {
                service->DispatchEvent(AnyMessage(random));
                service->Refresh();
            }
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
        }
    }

    ThreadedPhone phone_;
    std::mt19937 random_{3};
    std::atomic<bool> isOver_ = false;
    std::atomic<int> lives_ = 0;
    std::atomic<int> deliveries_ = 0;
};

TEST(LoadPlugin, OverALoadedOneBeginsWithNothingOfIt) {
    TestPhone phone;
    auto& service = phone.StartService();
    const auto dump = [&] {
        std::string text;
        service.ShellDump({}, text);
        return text;
    };
    std::string error;
    ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
    service.Init();
    service.DispatchEvent(StandbyMessage(DevStandbyMgr::StandbyMessageType::USER_SLEEP_STATE_CHANGED, {},
                                         AAFwk::Want().SetParam("isSleep", true)));
    phone.Run();
    EXPECT_EQ(dump(), "userSleepState: 1\n");
    ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
    service.Init();
    EXPECT_EQ(dump(), "userSleepState: 0\n");
    EXPECT_FALSE(service.LoadPlugin("/nowhere.so", error));
    EXPECT_EQ(dump(), "") << "none is loaded then";
}

TEST(Threads, ServiceAndPluginLiveWithThoseOfARealPhone) {
    Stress stress;
    stress.Run();
    EXPECT_TRUE(stress.IsEnough());
}

}  // namespace
}  // namespace TARN::Tests
