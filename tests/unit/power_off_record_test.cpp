#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

#include "are.h"
#include "common_event_support.h"
#include "core_service_client.h"
#include "file_service.h"
#include "power_off_strategy.h"
#include "standby_constants.h"
#include "standby_datashare_helper.h"
#include "test_phone.h"
#include "time_service_client.h"
#include "user_sleep_power_off_strategy.h"

namespace TARN::DevStandbyMgr {
namespace {

using EventFwk::CommonEventSupport;
using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Tests::Are;
using Tests::TestPhone;

constexpr char kName[] = "power_off_record";
constexpr char kNothingOff[] = R"({"bluetooth_off":0,"cellular_data_off":0,"modem_off":0,"wifi_off":0})";

/// A phone with a service that decides nothing, in full power save, and the power-off state as after a start.
class PowerOffRecord : public ::testing::Test {
protected:
    PowerOffRecord() {
        StandbyConfig config;
        config.mode = HostMode::SCRIPTED;
        phone.StartService(config);
        phone.Change([](auto& change) {
            change.deviceMode = 603;
            change.simSlots = 1;
        });
        PowerOffStrategy::SetPowerOffState(false);
    }

    /// The record's text; nothing when there is none.
    std::optional<std::string> Text() {
        std::string text;
        return phone->Files().Load(std::string(Simulated::kServiceFolder) + "/" + kName, text) ? std::optional(text)
                                                                                               : std::nullopt;
    }

    /// What the record holds, as JSON without spaces.
    std::string Saved() { return nlohmann::json::parse(Text().value_or("")).dump(); }

    static void Hear(PowerOffStrategy& strategy, std::string_view action) {
        strategy.HandleEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT, std::string(action)));
    }

    TestPhone phone;
};

TEST_F(PowerOffRecord, HoldsFourIntegers) {
    const auto strategy = std::make_shared<PowerOffStrategy>();
    EXPECT_EQ(strategy->StartPowerOffStatus(), 0);
    EXPECT_EQ(Saved(), R"({"bluetooth_off":2,"cellular_data_off":0,"modem_off":0,"wifi_off":0})");
    Hear(*strategy, CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
    phone.Run(600'000);
    EXPECT_EQ(Saved(), R"({"bluetooth_off":2,"cellular_data_off":0,"modem_off":2,"wifi_off":2})");
    EXPECT_EQ(strategy->StopPowerOffStatus(), 0);
    EXPECT_EQ(Saved(), kNothingOff);
    phone->WriteFile(kName, R"({"cellular_data_off": 7, "more": 1})");
    EXPECT_EQ(strategy->ResetPowerOffStatus(), 0);
    EXPECT_EQ(Saved(), R"({"bluetooth_off":0,"cellular_data_off":7,"modem_off":0,"wifi_off":0})");
}

TEST_F(PowerOffRecord, ReadsIntegersAndSkipsEverythingElse) {
    const std::vector<std::string> all = {"EnableBle {} -> 0", "Enable {} -> 0",
                                          R"(SetRadioState {"slot":0,"on":true} -> 0)"};
    const std::vector<std::string> bluetooth = {all[0]};
    const struct {
        const char* text;
        std::vector<std::string> calls;
    } cases[] = {
        {R"({"wifi_off": 2, "modem_off": 2, "cellular_data_off": 2, "bluetooth_off": 2})", all},
        {R"({"wifi_off": 1, "modem_off": -1, "bluetooth_off": 3})", all},
        {R"({"bluetooth_off": 2})", bluetooth},
        {R"({"wifi_off": "2", "modem_off": 2.0, "bluetooth_off": 2})", bluetooth},
        {R"({"wifi_off": true, "modem_off": null, "bluetooth_off": 2})", bluetooth},
        {R"({"wifi_off": [2], "modem_off": {"modem_off": 2}, "bluetooth_off": 2})", bluetooth},
        {R"({"wifi_off": 4294967296, "modem_off": -4294967296, "bluetooth_off": 4294967298})", bluetooth},
        {R"({"wifi_off": 18446744073709551616, "bluetooth_off": 18446744073709551615})", bluetooth},
        {R"({"wifi_off": 9223372032559808512, "modem_off": -9223372036854775809, "bluetooth_off": 9223372036854775807})",
         bluetooth},
        {R"({"WIFI_OFF": 2, "wifi_off ": 2})", {}},
        {"{}", {}},
        {R"([{"wifi_off": 2}])", {}},
        {"2", {}},
        {"null", {}},
    };
    for (const auto& [text, calls] : cases) {
        phone->WriteFile(kName, text);
        PowerOffStrategy strategy;
        EXPECT_EQ(strategy.ResetPowerOffStatus(), 0) << text;
        EXPECT_THAT(phone.TakeCalls(), ElementsAreArray(calls)) << text;
    }
}

TEST_F(PowerOffRecord, AMemberThatIsNoIntegerKeepsWhatTheStrategyKnows) {
    PowerOffStrategy strategy;
    for (const char* text :
         {R"({"bluetooth_off": "0"})", R"({"bluetooth_off": 0.0})", "{}", R"({"bluetooth_off": 0})"}) {
        EXPECT_EQ(strategy.StartPowerOffStatus(), 0);
        phone.TakeCalls();
        phone->WriteFile(kName, text);
        EXPECT_EQ(strategy.StopPowerOffStatus(), 0);
        const bool isKnown = std::string(text) != R"({"bluetooth_off": 0})";
        EXPECT_EQ(phone.TakeCalls().size(), isKnown ? 1U : 0U) << text;
    }
}

TEST_F(PowerOffRecord, ThatCannotBeReadIsAFailureAndStaysAsItIs) {
    const auto expectFailure = [this](const std::string& what) {
        PowerOffStrategy strategy;
        UserSleepPowerOffStrategy userSleep;
        PowerOffStrategy::SetPowerOffState(true);
        EXPECT_EQ(strategy.ResetPowerOffStatus(), 980001002) << what;
        EXPECT_EQ(strategy.StopPowerOffStatus(), 980001002) << what;
        EXPECT_EQ(userSleep.StopPowerOffStatus(), 980001002) << what;
        EXPECT_TRUE(PowerOffStrategy::GetPowerOffState()) << what;
        EXPECT_THAT(phone.TakeCalls(), IsEmpty()) << what;
    };
    expectFailure("no file");
    EXPECT_EQ(Text(), std::nullopt);
    for (const char* text : {"", "garbage", R"({"wifi_off": 2)", R"({"wifi_off": 2} {})", "\xff"}) {
        phone->WriteFile(kName, text);
        expectFailure(text);
        EXPECT_EQ(Text(), text) << "it is not written over";
    }
    phone->WriteFile(kName, R"({"wifi_off": 2})");
    phone.Fail("JsonUtils.LoadJsonValueFromFile");
    expectFailure("the reading fails");
    phone.Heal("JsonUtils.LoadJsonValueFromFile");
    phone.Fail("JsonUtils.DumpJsonValueToFile");
    PowerOffStrategy::SetPowerOffState(false);
    phone.TakeLogs();
    PowerOffStrategy strategy;
    EXPECT_EQ(strategy.StartPowerOffStatus(), 0);
    EXPECT_THAT(phone.TakeLogs(), Contains("error dump power off record failed"));
    EXPECT_TRUE(PowerOffStrategy::GetPowerOffState());
    phone.Heal("JsonUtils.DumpJsonValueToFile");
    phone->WriteFile(kName, "{}");
    EXPECT_EQ(strategy.StopPowerOffStatus(), 0) << "a later stop makes up for it";
}

TEST_F(PowerOffRecord, TheStatusTellsWhyNothingWasDone) {
    const auto expectStatus = [this](auto&& strategy) {
        const auto setAirplaneMode = [this](const std::string& value) {
            const Simulated::FactsChange::Members<std::string> rows = {{"settings.telephony.airplanemode", value}};
            phone.Change([&rows](auto& change) { change.settings["SETTINGSDATA"] = rows; });
        };
        EXPECT_EQ(strategy.StopPowerOffStatus(), 980000911);
        setAirplaneMode("1");
        EXPECT_EQ(strategy.StartPowerOffStatus(), 980001003);
        EXPECT_FALSE(PowerOffStrategy::GetPowerOffState());
        setAirplaneMode("0");
        EXPECT_EQ(strategy.StartPowerOffStatus(), 0);
        EXPECT_EQ(strategy.StartPowerOffStatus(), 980000911);
        EXPECT_EQ(strategy.StopPowerOffStatus(), 0);
        EXPECT_FALSE(PowerOffStrategy::GetPowerOffState());
    };
    expectStatus(PowerOffStrategy());
    expectStatus(UserSleepPowerOffStrategy());
}

TEST_F(PowerOffRecord, ASettingThatCannotBeHadLeavesTheValueAlone) {
    for (const auto& [operation, status] : {std::pair{"SystemAbilityManager.GetSystemAbility", 980001004},
                                            {"DataShareHelper.Query", 980001005},
                                            {"DataShareResultSet.GoToFirstRow", 980001005}}) {
        phone.Fail(operation);
        Uri uri("datashare:///com.tarn.settingsdata/entry/settingsdata/SETTINGSDATA?Proxy=true&key=any");
        std::string value = "before";
        EXPECT_EQ(StandbyDataShareHelper(1914).Query(uri, "absent", value), status) << operation;
        EXPECT_EQ(value, "before");
        phone.Heal(operation);
    }
}

/// A time service that delivers a timer's callback when and on whatever thread the test likes.
class HandTimers : public MiscServices::TimeServiceClient {
public:
    int64_t GetWallTimeMs() override { return TestPhone::kStartMs; }
    int64_t GetBootTimeNs() override { return TestPhone::kBootNs; }
    uint64_t CreateTimer(const MiscServices::TimerOptions& /*options*/, Callback made) override {
        callback = std::move(made);
        return 1;
    }
    bool StartTimer(uint64_t /*timerId*/, uint64_t /*triggerTimeMs*/) override { return true; }
    bool StopTimer(uint64_t /*timerId*/) override { return true; }
    bool DestroyTimer(uint64_t /*timerId*/) override { return true; }
    int32_t AdjustTimer(bool /*isAdjust*/, uint32_t /*intervalSeconds*/) override { return 0; }
    int32_t SetTimerExemption(const std::unordered_set<std::string>& /*names*/, bool /*isExemption*/) override {
        return 0;
    }
    int32_t GetTimerBatching(MiscServices::TimerBatching& /*batching*/) override { return 1; }

    Callback callback;
};

/// A modem of two slots that any thread may switch, and that only counts.
class CountingModem : public Telephony::CoreServiceClient {
public:
    int32_t GetMaxSimCount() override { return 2; }
    std::optional<bool> IsRadioOn(int32_t /*slotId*/) override { return std::nullopt; }
    int32_t SetRadioState(int32_t /*slotId*/, bool /*isOn*/, const RadioCallback& /*callback*/) override {
        ++calls;
        return 0;
    }

    std::atomic<int> calls = 0;
};

/// A phone with such timers and such a modem and without Wi-Fi, watched by nobody.
class TwoThreadPhone : private Simulated::PhoneObserver, public Simulated::SimulatedPhone {
public:
    TwoThreadPhone() : SimulatedPhone(TestPhone::kStartMs, TestPhone::kBootNs, *this) {
        Simulated::FactsChange change;
        change.deviceMode = 603;
        change.isWifiPresent = false;
        Apply(change);
        Device::Install(this);
        StandbyConfig config;
        config.mode = HostMode::SCRIPTED;
        StandbyServiceImpl::Create(config);
    }
    ~TwoThreadPhone() override {
        DropPending();
        StandbyServiceImpl::Destroy();
        Device::Install(nullptr);
    }
    MiscServices::TimeServiceClient& Time() override { return timers; }

    Telephony::CoreServiceClient& Modem() override { return modem; }

    HandTimers timers;
    CountingModem modem;

private:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    void OnLog(const LogLine& /*line*/) override {}
    [[nodiscard]] bool WantsCall(std::string_view /*operation*/) const noexcept override { return false; }
    void OnCall(std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
};

TEST(PowerOffTimer, ItsCallbackMayRunOnAnotherThread) {
    TwoThreadPhone phone;
    PowerOffStrategy::SetPowerOffState(false);
    const auto strategy = std::make_shared<PowerOffStrategy>();
    const auto hear = [&strategy](std::string_view action) {
        strategy->HandleEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT, std::string(action)));
    };
    hear(CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
    std::thread timerThread([callback = phone.timers.callback] {
        for (int i = 0; i < 50; ++i) {
            callback();
        }
    });
    for (int i = 0; i < 50; ++i) {
        hear(CommonEventSupport::COMMON_EVENT_SCREEN_ON);
        hear(CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
        static_cast<void>(strategy->StartPowerOffStatus());
        strategy->HandleEvent(StandbyMessage(StandbyMessageType::DEVICE_STATE_CHANGED));
    }
    timerThread.join();
    phone.timers.callback();
    phone.modem.calls = 0;
    hear(CommonEventSupport::COMMON_EVENT_SCREEN_ON);
    EXPECT_EQ(phone.modem.calls, 2) << "what the timer switched off last comes back";
    phone.timers.callback();
    EXPECT_EQ(phone.modem.calls, 2) << "and stays while the screen is on";
    phone.timers.callback = nullptr;
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
