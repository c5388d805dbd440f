#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "common_event_support.h"
#include "condition_watch.h"
#include "open_phone_plugin.h"
#include "standby_constants.h"
#include "test_phone.h"
#include "time_provider.h"
#include "time_zone.h"

namespace TARN::DevStandbyMgr {
namespace {

using ::testing::IsEmpty;
using Tests::Are;
using Tests::TestPhone;

/// A phone under a host with a policy of its own; what the strategies heard, by local time.
class PolicyTest : public ::testing::Test {
protected:
    explicit PolicyTest(const char* zone = "UTC", const char* start = "2026-03-01T12:00:00")
        : phone((Replay::TimeZone(zone).Use(), Replay::TimeZone::ParseLocal(start))) {
        config.strategies.clear();
    }
    ~PolicyTest() override { phone->DropPending(); }

    void Start() {
        service = &phone.StartService(config);
        OnPluginRegister();
        service->ObserveDelivery([this](const StandbyMessage& message) {
            const auto note = [&](const char* kind, std::string_view key) {
                heard.push_back(Replay::TimeZone::Format(phone.Now(), "%H:%M:%S ") + kind +
                                std::to_string(message.Params().GetIntParam(key, -1)));
            };
            if (message.eventId == StandbyMessageType::STATE_TRANSIT) {
                note("state ", CURRENT_STATE);
            } else if (message.eventId == StandbyMessageType::PHASE_TRANSIT) {
                note("phase ", CURRENT_PHASE);
            } else if (message.eventId == StandbyMessageType::RES_CTRL_CONDITION_CHANGED) {
                note("condition ", RES_CTRL_CONDITION);
            }
        });
        service->Init();
    }

    void ScreenOff() {
        phone->Broadcast(AAFwk::Want().SetAction(std::string(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF)));
    }

    StandbyConfig config;
    TestPhone phone;
    StandbyServiceImpl* service = nullptr;
    std::vector<std::string> heard;
};

constexpr int64_t kHourMs = 3'600'000;

TEST_F(PolicyTest, TheNumbersAreTheConfigurations) {
    config.policy = {1, 2, 3, 4, {7, 20}, 5, 0, 0};
    Start();
    ScreenOff();
    phone.Run(40'000);
    EXPECT_THAT(heard,
                Are({"12:00:00 state 1", "12:00:01 state 2", "12:00:03 state 4", "12:00:03 phase 0", "12:00:06 phase 1",
                     "12:00:09 phase 2", "12:00:10 state 3", "12:00:14 state 4", "12:00:14 phase 2", "12:00:17 phase 3",
                     "12:00:34 state 3", "12:00:38 state 4", "12:00:38 phase 3"}))
        << "a maintenance that comes between two phases holds the next one up";
}

TEST_F(PolicyTest, AMaintenanceThatIsDueWithAPhaseComesFirst) {
    config.policy.phaseEverySeconds = 1800;
    Start();
    ScreenOff();
    phone.Run(100 * 60'000);
    EXPECT_THAT(heard, Are({"12:00:00 state 1", "12:05:00 state 2", "12:35:00 state 4", "12:35:00 phase 0",
                            "13:05:00 phase 1", "13:35:00 state 3", "13:40:00 state 4", "13:40:00 phase 1"}));
}

TEST_F(PolicyTest, ABlockedStateIsKeptUntilItIsUnblocked) {
    config.policy.napAfterSeconds = 60;
    Start();
    ScreenOff();
    phone.Run();
    service->GetStateManager()->BlockCurrentState();
    EXPECT_NE(service->GetStateManager()->TransitToState(StandbyState::WORKING), 0U);
    phone.Run(kHourMs);
    EXPECT_THAT(heard, Are({"12:00:00 state 1"}));
    service->GetStateManager()->UnblockCurrentState();
    phone.Run(60'000);
    EXPECT_THAT(heard, Are({"12:00:00 state 1", "13:01:00 state 2"}));
    EXPECT_EQ(service->GetStateManager()->GetPreState(), 1U);
    EXPECT_EQ(service->GetStateManager()->GetScreenOffTimeStamp(), phone.Now() - kHourMs - 60'000);
}

TEST_F(PolicyTest, WhatWasMissedWhileBlockedTakesEffectAfterwards) {
    config.policy.napAfterSeconds = 60;
    Start();
    const auto state = service->GetStateManager();
    const auto broadcast = [this](std::string_view action) {
        phone->Broadcast(AAFwk::Want().SetAction(std::string(action)));
        phone.Run();
    };
    ScreenOff();
    phone.Run(kHourMs);
    ASSERT_EQ(state->GetCurState(), 4U);
    heard.clear();
    state->BlockCurrentState();
    broadcast(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_ON);
    EXPECT_THAT(heard, IsEmpty());
    state->UnblockCurrentState();
    phone.Run();
    EXPECT_THAT(heard, Are({"13:00:00 state 0"})) << "the screen is lit";

    state->BlockCurrentState();
    ScreenOff();
    phone.Run(kHourMs);
    state->UnblockCurrentState();
    phone.Run(60'000);
    EXPECT_THAT(heard, Are({"13:00:00 state 0", "14:00:00 state 1", "14:01:00 state 2"})) << "its screen went off";

    heard.clear();
    state->BlockCurrentState();
    state->BlockCurrentState();
    phone.Change([](auto& change) { change.movement = Simulated::Movement{2, 0}; });
    phone.Run();
    phone.Change([](auto& change) { change.movement = Simulated::Movement{1, 0}; });
    state->UnblockCurrentState();
    state->UnblockCurrentState();
    phone.Run(60'000);
    EXPECT_THAT(heard, Are({"14:01:00 state 1", "14:02:00 state 2"})) << "it was moved";

    heard.clear();
    state->BlockCurrentState();
    broadcast(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_ON);
    broadcast(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
    state->UnblockCurrentState();
    phone.Run();
    EXPECT_THAT(heard, Are({"14:02:00 state 1"})) << "it was used";
}

TEST_F(PolicyTest, AServiceThatIsInitialisedAgainBeginsAnew) {
    Start();
    ScreenOff();
    phone.Run(10 * 60'000);
    ASSERT_EQ(service->GetStateManager()->GetCurState(), 2U);
    service->GetStateManager()->BlockCurrentState();
    EXPECT_NE(service->GetStateManager()->TransitToState(StandbyState::DARK), 0U);
    service->UnInit();
    heard.clear();
    service->DispatchEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT,
                                          std::string(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_ON)));
    phone.Run(kHourMs);
    EXPECT_THAT(heard, IsEmpty()) << "what is still queued moves nothing";
    service->Init();
    phone.Run(35 * 60'000);
    service->GetStateManager()->BlockCurrentState();
    service->GetStateManager()->UnblockCurrentState();
    phone.Run();
    EXPECT_THAT(heard, Are({"13:10:00 state 1", "13:15:00 state 2", "13:45:00 state 4", "13:45:00 phase 0"}));
}

TEST_F(PolicyTest, AListenerThatCouldNotBeUnsubscribedSaysNothingTwice) {
    Start();
    phone.Fail("CommonEventManager.UnSubscribeCommonEvent");
    service->UnInit();
    phone.Heal("CommonEventManager.UnSubscribeCommonEvent");
    service->Init();
    int screens = 0;
    service->ObserveDelivery([&screens](const StandbyMessage& message) {
        screens += message.eventId == StandbyMessageType::COMMON_EVENT ? 1 : 0;
    });
    ScreenOff();
    phone.Run();
    EXPECT_EQ(screens, 1);
}

TEST_F(PolicyTest, AStoppedServiceTriesNothingAgainAndStaysInItsState) {
    phone.Fail("CommonEventManager.SubscribeCommonEvent");
    Start();
    phone.Heal("CommonEventManager.SubscribeCommonEvent");
    service->UnInit();
    int refreshes = 0;
    service->ObserveDelivery([&refreshes](const StandbyMessage& message) {
        refreshes += message.eventId == StandbyMessageType::HOST_REFRESH ? 1 : 0;
    });
    service->DispatchEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT,
                                          std::string(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF)));
    phone.Run(kHourMs);
    EXPECT_EQ(refreshes, 0);
    EXPECT_EQ(service->GetStateManager()->GetCurState(), 0U) << "what is still queued moves nothing";
}

TEST_F(PolicyTest, AnotherTimeZoneIsAnotherNight) {
    Start();
    Replay::TimeZone("Pacific/Auckland").Use();
    phone.Run();
    EXPECT_THAT(heard, IsEmpty());
    phone->Broadcast(AAFwk::Want().SetAction("COMMON_EVENT_TIMEZONE_CHANGED"));
    phone.Run(8 * kHourMs);
    EXPECT_THAT(heard, Are({"01:00:00 condition 2", "07:00:00 condition 1"}));
    service->UnInit();
    phone->Broadcast(AAFwk::Want().SetAction("COMMON_EVENT_TIMEZONE_CHANGED"));
    Replay::TimeZone("UTC").Use();
    phone.Run(24 * kHourMs);
    service->GetConditionWatch().OnClockChanged();
    phone.Run(24 * kHourMs);
    EXPECT_EQ(heard.size(), 2U) << "a stopped service watches nothing";
}

TEST_F(PolicyTest, TheConditionOfALaterTimeIsKnownAhead) {
    Start();
    EXPECT_EQ(TimeProvider::GetCondition(), 1U);
    EXPECT_EQ(TimeProvider::GetCondition(10 * kHourMs), 2U);
    EXPECT_EQ(TimeProvider::GetCondition(10 * kHourMs - 1), 1U);
    EXPECT_EQ(TimeProvider::GetCondition(19 * kHourMs - 1), 2U);
    EXPECT_EQ(TimeProvider::GetCondition(19 * kHourMs), 1U);
    phone.Fail("TimeProvider.GetCondition", 9);
    EXPECT_EQ(TimeProvider::GetCondition(), 9U);
}

TEST_F(PolicyTest, ANightWithinOneDayIsThatLong) {
    config.policy.nightStartHour = 13;
    config.policy.nightEndHour = 15;
    Start();
    phone.Run(24 * kHourMs);
    EXPECT_THAT(heard, Are({"13:00:00 condition 2", "15:00:00 condition 1"}));
}

TEST_F(PolicyTest, NightHoursThatAreEqualMeanNoNight) {
    config.policy.nightStartHour = config.policy.nightEndHour = 15;
    Start();
    phone.Run(48 * kHourMs);
    EXPECT_THAT(heard, IsEmpty());
}

class SpringPolicyTest : public PolicyTest {
protected:
    SpringPolicyTest() : PolicyTest("Europe/Berlin", "2026-03-28T20:00:00") {}
};

TEST_F(SpringPolicyTest, ANightThatBeginsInTheHourLeftOutBeginsAtItsEnd) {
    config.policy.nightStartHour = 2;
    config.policy.nightEndHour = 5;
    Start();
    phone.Run(12 * kHourMs);
    EXPECT_THAT(heard, Are({"03:00:00 condition 2", "05:00:00 condition 1"}));
}

class AutumnPolicyTest : public PolicyTest {
protected:
    AutumnPolicyTest() : PolicyTest("Europe/Berlin", "2026-10-24T20:00:00") {}
};

TEST_F(AutumnPolicyTest, ANightThatEndsInTheHourThatHappensTwiceEndsOnce) {
    config.policy.nightEndHour = 2;
    Start();
    phone.Run(9 * kHourMs);
    EXPECT_THAT(heard, Are({"22:00:00 condition 2", "02:00:00 condition 1"}));
    EXPECT_EQ(TimeProvider::GetCondition(-4 * kHourMs), 2U);
}

TEST_F(AutumnPolicyTest, TheConditionIsThatOfTheClockAtEveryMinute) {
    config.policy.nightStartHour = 3;
    config.policy.nightEndHour = 2;
    Start();
    uint32_t condition = TimeProvider::GetCondition();
    for (int minute = 0; minute < 10 * 60; ++minute) {
        phone.Run(60'000);
        if (!heard.empty()) {
            condition = static_cast<uint32_t>(heard.back().back() - '0');
        }
        ASSERT_EQ(condition, TimeProvider::GetCondition()) << Replay::TimeZone::Format(phone.Now(), "%H:%M %Z");
    }
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
