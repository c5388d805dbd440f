#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "night_script.h"
#include "test_phone.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kTimeServiceUp[] = "COMMON_EVENT_TIMER_SA_ABILITY";
constexpr char kUserSleep[] = "COMMON_EVENT_USER_SLEEP_STATE_CHANGED";
constexpr char kAsleep[] = R"({"isSleep": true})";
constexpr char kAwake[] = R"({"isSleep": false})";
constexpr char kRefused[] = "info timer_strategy_ext: is charging or screen on, do not exec unified";

Night TimerNight() {
    Night night;
    night.Strategies(R"(["TIMER"])");
    night.Host("res_ctrl", R"({"TIMER_ADJUST": [{"allow": false, "names": ["no"]},
        {"allow": true, "names": ["com.b", "com.a", "com.b"]}, {"allow": true, "names": ["late"]}]})");
    return night;
}

/// What the strategy logged, and what it told the time service.
Record::Texts Deeds(const Record& record) {
    return record.Of({"timer_strategy_ext", "TimeServiceClient.AdjustTimer", "TimeServiceClient.SetTimerExemption"});
}

std::string Adjust(bool isOn, int64_t seconds) {
    return std::string(R"(TimeServiceClient.AdjustTimer {"adjust":)") + (isOn ? "true" : "false") + R"(,"interval":)" +
           std::to_string(seconds) + "} -> 0";
}

std::string Exempt(const std::string& names, bool isExempt) {
    return R"(call TimeServiceClient.SetTimerExemption {"names":[)" + names +
           (isExempt ? R"(],"exempt":true} -> 0)" : R"(],"exempt":false} -> 0)");
}

/// One thing that happens, and what it leads to in each of the eight states of the phone.
struct Happening {
    int32_t eventId;
    const char* action;
    const char* want;
    /// Batching by so many seconds, "off", "refused", or "-" for nothing. Screen on, then off; within each
    /// unplugged, then charging; within each awake, then asleep.
    std::array<const char*, 8> outcomes;
};

constexpr Happening kHappenings[] = {
    {1, "COMMON_EVENT_SCREEN_ON", "{}", {"off", "off", "off", "off", "off", "off", "off", "off"}},
    {1, "COMMON_EVENT_SCREEN_OFF", "{}", {"300", "600", "refused", "refused", "300", "600", "refused", "refused"}},
    {1, kUserSleep, kAsleep, {"refused", "refused", "refused", "refused", "600", "600", "refused", "refused"}},
    {1, kUserSleep, kAwake, {"-", "-", "-", "-", "300", "300", "refused", "refused"}},
    {1, kUserSleep, "{}", {"-", "-", "-", "-", "300", "300", "refused", "refused"}},
    {1, "COMMON_EVENT_CHARGING", "{}", {"off", "off", "off", "off", "off", "off", "off", "off"}},
    {1, "COMMON_EVENT_DISCHARGING", "{}", {"-", "-", "-", "-", "300", "300", "300", "300"}},
    {1, "COMMON_EVENT_SCREEN_ON_", "{}", {"-", "-", "-", "-", "-", "-", "-", "-"}},
    {2, "COMMON_EVENT_SCREEN_OFF", "{}", {"-", "-", "-", "-", "-", "-", "-", "-"}},
    {11, "", kAsleep, {"-", "-", "-", "-", "-", "-", "-", "-"}},
    {14, "", nullptr, {"refused", "refused", "refused", "refused", "300", "600", "refused", "refused"}},
};

TEST(TimerStrategy, BatchesByTheTableInEveryStateAndAKeepAliveReplacesEveryInterval) {
    // the keep-alive that the host reports, and the interval that it puts in place of every other
    const std::pair<const char*, int64_t> keepAlives[] = {
        {"{}", 0},
        {R"({"MESSAGE_ENABLE": true, "MESSAGE_INTERVAL": 120})", 120},
        {R"({"MESSAGE_ENABLE": true, "MESSAGE_INTERVAL": -5})", 4294967291},
        {R"({"MESSAGE_ENABLE": true})", 0},
        {R"({"MESSAGE_ENABLE": false, "MESSAGE_INTERVAL": 120})", 0},
    };
    for (const auto& [keepAlive, seconds] : keepAlives) {
        for (const Happening& happening : kHappenings) {
            const char* want = happening.want == nullptr ? keepAlive : happening.want;
            Night night = TimerNight().Message(14, keepAlive);
            for (int state = 0; state < 8; ++state) {
                night.AdvanceTo("22:0" + std::to_string(state));
                night.System((state & 4) != 0 ? "COMMON_EVENT_SCREEN_OFF" : "COMMON_EVENT_SCREEN_ON");
                night.System((state & 2) != 0 ? "COMMON_EVENT_CHARGING" : "COMMON_EVENT_DISCHARGING");
                night.System(kUserSleep, (state & 1) != 0 ? kAsleep : kAwake);
                night.AdvanceMs(30'000).Message(happening.eventId, want, happening.action);
            }
            const Record record = night.PlayUntil("22:10");
            for (size_t state = 0; state < happening.outcomes.size(); ++state) {
                SCOPED_TRACE(std::string(happening.action) + want + keepAlive + std::to_string(state));
                const Record moment = record.At("22:0" + std::to_string(state) + ":30");
                const std::string outcome = happening.outcomes[state];
                Record::Texts told;
                if (outcome == "off") {
                    told = {Adjust(false, seconds)};
                } else if (outcome != "-" && outcome != "refused") {
                    told = {Adjust(true, seconds != 0 ? seconds : std::stol(outcome))};
                }
                EXPECT_EQ(moment.Calls("TimeServiceClient"), told);
                EXPECT_THAT(Deeds(moment), Contains(kRefused).Times(outcome == "refused" ? 1 : 0));
            }
        }
    }
}

TEST(TimerStrategy, ExemptsForOneKindOfResourceWhomTheListDoesNotName) {
    const std::tuple<int32_t, std::string, bool, bool> cases[] = {
        {4, "com.x", true, true},  {5, "com.x", false, true}, {-1, "com.x", true, true},  {2, "com.x", true, false},
        {8, "com.x", true, false}, {4, "com.a", true, false}, {4, "com.b", false, false}, {4, "late", true, true},
        {4, "no", false, true},    {4, "COM.A", true, true},
    };
    for (const auto& [type, bundle, isGranted, isTold] : cases) {
        Night night = TimerNight().AdvanceTo("22:00");
        night.Message(13, R"({"BG_TASK_TYPE": )" + std::to_string(type) + R"(, "BG_TASK_BUNDLE_NAME": ")" + bundle +
                              R"(", "BG_TASK_RESOURCE_STATUS": )" + (isGranted ? "true}" : "false}"));
        const Record::Texts told = {Exempt('"' + bundle + '"', isGranted)};
        EXPECT_EQ(Deeds(night.PlayUntil("22:01").At("22:00")), isTold ? told : Record::Texts{}) << type << bundle;
    }
    Night bare = TimerNight().AdvanceTo("22:00").MessageWithoutWant(13).Message(13, R"({"BG_TASK_TYPE": 4})");
    EXPECT_THAT(Deeds(bare.PlayUntil("22:01").At("22:00")), Are({Exempt(R"("")", false)}));
}

TEST(TimerStrategy, ATimeServiceThatComesUpIsToldTheFirstAllowingListOnly) {
    for (const auto& [config, names, isMissing] :
         {std::tuple{R"({"TIMER_ADJUST": [{"allow": false, "names": ["no"]}, {"allow": true, "names": ["b", "a", "b"]},
                                          {"allow": true, "names": ["late"]}]})",
                     R"("a","b")", false},
          {R"({"TIMER_ADJUST": [{"allow": true, "names": []}, {"allow": true, "names": ["late"]}]})", "", false},
          {R"({"TIMER_ADJUST": [{"allow": false, "names": ["no"]}]})", "", false},
          {R"({"SLEEP_CLEAN": [{"allow": true, "names": ["other"]}]})", "", true}}) {
        Night night = TimerNight().Host("res_ctrl", config).AdvanceTo("22:00").System(kTimeServiceUp);
        const Record record = night.PlayUntil("22:01");
        EXPECT_THAT(record.LogsOf("timer_strategy_ext"), Contains("error tagList is null").Times(isMissing ? 1 : 0));
        EXPECT_THAT(Deeds(record.At("22:00")), Are({Exempt(names, true)}));
    }
}

TEST(TimerStrategy, AStopForgetsTheListAndNothingElse) {
    TestPhone phone;
    DevStandbyMgr::StandbyConfig config;
    config.mode = DevStandbyMgr::HostMode::SCRIPTED;
    config.strategies = {"TIMER"};
    config.resCtrl["TIMER_ADJUST"] =
        std::make_shared<std::vector<DevStandbyMgr::ResCtrlItem>>(1, DevStandbyMgr::ResCtrlItem{true, {"com.a"}});
    auto& service = phone.StartService(config);
    std::string error;
    ASSERT_TRUE(service.LoadPlugin(PluginPath(), error)) << error;
    const auto told = [&phone] {
        Record::Texts calls = phone.TakeCalls();
        std::erase_if(calls,
                      [](const auto& call) { return !call.starts_with("Adj") && !call.starts_with("SetTimer"); });
        return calls;
    };
    const auto tell = [&](int32_t id, const std::string& action, AAFwk::Want want = {}) {
        service.DispatchEvent(DevStandbyMgr::StandbyMessage(id, action, std::move(want)));
        phone.Run();
        return told();
    };
    service.Init();
    tell(1, "COMMON_EVENT_SCREEN_OFF");
    tell(1, kUserSleep, AAFwk::Want().SetParam("isSleep", true));
    tell(1, "COMMON_EVENT_CHARGING");
    service.UnInit();
    EXPECT_THAT(told(), IsEmpty()) << "what was granted stays";
    phone.Fail("StandbyConfigManager.GetResCtrlConfig");
    service.Init();
    EXPECT_THAT(tell(1, kTimeServiceUp), Are({R"(SetTimerExemption {"names":[],"exempt":true} -> 0)"}));
    EXPECT_THAT(tell(14, ""), IsEmpty()) << "it charges still";
    EXPECT_THAT(tell(1, "COMMON_EVENT_DISCHARGING"), Are({HasSubstr("300")})) << "the screen is off";
    EXPECT_THAT(tell(14, ""), Are({HasSubstr("600")})) << "the user is asleep";
    tell(14, "", AAFwk::Want().SetParam("MESSAGE_ENABLE", true).SetParam("MESSAGE_INTERVAL", 90));
    service.UnInit();
    phone.Heal("StandbyConfigManager.GetResCtrlConfig");
    service.Init();
    EXPECT_THAT(tell(1, "COMMON_EVENT_SCREEN_ON"), Are({R"(AdjustTimer {"adjust":false,"interval":90} -> 0)"}));
    EXPECT_THAT(tell(1, kTimeServiceUp), Are({R"(SetTimerExemption {"names":["com.a"],"exempt":true} -> 0)"}));
    service.UnInit();
    phone->DropPending();
    service.UnloadPlugin();
}

}  // namespace
}  // namespace TARN::Tests
