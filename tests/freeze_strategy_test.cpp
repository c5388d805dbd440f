#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "are.h"
#include "night_script.h"

namespace TARN::Tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Both conditions configure processes; "storage" runs twice, "ghost" has no pid, "absent" does not run.
Night FreezingNight() {
    Night night;
    night.Strategies(R"(["FREEZE"])");
    night.Host("persist_allow",
               R"({"FREEZE": {"1": ["storage", "camera", "ghost", "absent"], "2": ["nfc", "camera"]}})");
    night.Device("processes",
                 R"([{"pid": 11, "name": "storage", "native": true}, {"pid": -1, "name": "ghost", "native": true},
        {"pid": 12, "name": "storage", "native": true}, {"pid": 21, "name": "camera", "native": true},
        {"pid": 31, "name": "nfc", "native": true}, {"pid": 41, "name": "absent"}])");
    return night;
}

/// What the suspend manager was told: `freeze camera:21 storage:11 -> [0,0]`.
Record::Texts Commands(const Record& record) {
    Record::Texts texts;
    for (const std::string& call : record.Calls("SuspendManagerClient.OperateNativeProcesses")) {
        const size_t from = call.find('{');
        const size_t to = call.rfind(" -> ");
        std::string verb;
        std::string names;
        const nlohmann::json arguments = nlohmann::json::parse(call.substr(from, to - from));
        for (const auto& process : arguments.at("processes")) {
            const std::string wanted = process.at("freeze").get<bool>() ? "freeze" : "thaw";
            verb = verb.empty() || verb == wanted ? wanted : "mixed";
            names += " " + process.at("name").get<std::string>() + ":" + process.at("pid").dump();
        }
        texts.push_back(verb + names + call.substr(to));
    }
    return texts;
}

Night& LoseExemption(Night& night, const std::string& name, int32_t allowType = 64) {
    return night.Message(
        5, R"({"allowType": )" + std::to_string(allowType) + R"(, "name": ")" + name + R"(", "added": false})");
}

TEST(FreezeStrategy, OnlySleepInItsFirstDeepPhaseFreezes) {
    for (const auto& [state, phase] : {std::pair{3, 1}, {4, 0}, {4, 2}, {4, 3}, {0, 1}, {1, 4}}) {
        const Record record = FreezingNight().EnterPhase(state, phase).Play();
        EXPECT_THAT(Commands(record), IsEmpty()) << state << " " << phase;
        EXPECT_THAT(record.LogsOf("freeze_strategy"),
                    Contains("debug current state is not SLEEP or current phase is not APP_RES_DEEP!"));
    }
    EXPECT_THAT(Commands(FreezingNight().MessageWithoutWant(3).MessageWithoutWant(2).Play()), IsEmpty());
}

TEST(FreezeStrategy, LeavingSleepThawsOnce) {
    for (const int32_t state : {0, 1, 2, 5}) {
        const Record record =
            FreezingNight().GoToDeepSleep().AdvanceTo("22:00").GoFromTo(4, state).GoFromTo(4, state).Play();
        EXPECT_THAT(Commands(record.At("22:00")), Are({"thaw camera:21 storage:11 -> [0,0]"})) << state;
        EXPECT_THAT(
            record.At("22:00").LogsOf("freeze_strategy"),
            Are({HasSubstr("eventId is 2"), "info Thaw, list size is 2, Thaw successd list is 2",
                 HasSubstr("eventId is 2"), "debug now is thaw, do not need to StopFreeze", HasSubstr("OnDestroy")}));
    }
}

TEST(FreezeStrategy, AGroupThatWasLeftIsNotThawedAgain) {
    const Record record =
        FreezingNight().GoToDeepSleep().AdvanceTo("22:00").WakeUp().AdvanceTo("23:00").ChangeCondition(2).Play();
    EXPECT_THAT(Commands(record.At("23:00")), Are({"freeze camera:21 nfc:31 -> [0,0]"}));
}

TEST(FreezeStrategy, OtherTransitionsWhileFrozenThawNothing) {
    for (const auto& [previous, current] : {std::pair{4, 4}, {2, 4}, {3, 3}, {1, 0}, {3, 0}}) {
        const Record record = FreezingNight().GoToDeepSleep().AdvanceTo("22:00").GoFromTo(previous, current).Play();
        EXPECT_THAT(Commands(record.At("22:00")), IsEmpty()) << previous << " " << current;
        EXPECT_THAT(
            record.LogsOf("freeze_strategy"),
            Contains("debug previous_state is same as current_state or previous_state not equal to SLEEP state!"));
    }
}

TEST(FreezeStrategy, AConditionChangeThawsAndFreezesAnewInAnyState) {
    const Record frozen =
        FreezingNight().GoToDeepSleep().AdvanceTo("22:00").ChangeCondition(2).AdvanceTo("23:00").WakeUp().Play();
    EXPECT_THAT(Commands(frozen.At("22:00")),
                Are({"thaw camera:21 storage:11 -> [0,0]", "freeze camera:21 nfc:31 -> [0,0]"}));
    EXPECT_THAT(frozen.At("22:00").LogsOf("freeze_strategy"),
                Contains("info FREEZE UpdateResourceConfig by restrict action"));
    EXPECT_THAT(Commands(frozen.At("23:00")), Are({"thaw camera:21 nfc:31 -> [0,0]"}));

    const Record awake = FreezingNight().ChangeCondition(2).AdvanceTo("22:00").WakeUp().Play();
    EXPECT_THAT(awake.At("21:00").LogsOf("freeze_strategy"), Contains("debug FreezedNativeProcess size is 0"));
    EXPECT_THAT(Commands(awake), Are({"freeze camera:21 nfc:31 -> [0,0]"})) << "and nothing thaws it";
}

TEST(FreezeStrategy, AFailedCalculationFreezesNothingAndMayBeTriedAgain) {
    for (const auto& [operation, line] :
         {std::pair{"StandbyServiceImpl.GetAllowList", "debug GetAllowList failed!"},
          std::pair{"AbilityManagerHelper.GetRunningSystemProcess", "error connect to app ability service failed"}}) {
        const Record record = FreezingNight()
                                  .Fail(operation)
                                  .GoToDeepSleep()
                                  .GoFromTo(3, 4)
                                  .AdvanceTo("22:00")
                                  .Heal(operation)
                                  .EnterPhase(4, 1)
                                  .AdvanceTo("23:00")
                                  .Fail(operation)
                                  .ChangeCondition(2)
                                  .GoFromTo(3, 4)
                                  .WakeUp()
                                  .Play();
        EXPECT_THAT(Commands(record.At("21:00")), IsEmpty()) << operation;
        EXPECT_THAT(record.At("21:00").LogsOf("freeze_strategy"), Contains(line).Times(2));
        EXPECT_THAT(Commands(record.At("22:00")), Are({"freeze camera:21 storage:11 -> [0,0]"}));
        EXPECT_THAT(Commands(record.At("23:00")), Are({"thaw camera:21 storage:11 -> [0,0]"}))
            << "the condition change thaws before it calculates, and leaves nothing to thaw";
    }
}

TEST(FreezeStrategy, AFailedCalculationAfterMaintenanceKeepsTheGroup) {
    const Record record = FreezingNight()
                              .GoToDeepSleep()
                              .GoFromTo(4, 3)
                              .AdvanceTo("22:00")
                              .Fail("AbilityManagerHelper.GetRunningSystemProcess")
                              .GoFromTo(3, 4)
                              .WakeUp()
                              .Play();
    EXPECT_THAT(Commands(record.At("22:00")), Are({"thaw camera:21 storage:11 -> [0,0]"}));
}

TEST(FreezeStrategy, RefusedFreezesAreCountedAndThawedAllTheSame) {
    Night night = FreezingNight().Fail("SuspendManagerClient.OperateNativeProcesses", 7).GoToDeepSleep();
    const Record record = LoseExemption(night, "storage").AdvanceTo("22:00").WakeUp().Play();
    EXPECT_THAT(Commands(record), Are({"freeze camera:21 storage:11 -> [7,7]", "freeze storage:11 -> [7]",
                                       "thaw camera:21 storage:11 storage:11 -> [7,7,7]"}));
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains("info Freeze, list size is 2, Freeze successd list is 0"));
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains("debug Freeze nativeProcess storage, freezed is failed"));
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains("info Thaw, list size is 3, Thaw successd list is 0"));
}

TEST(FreezeStrategy, ANameListedTwiceHearsEverythingTwice) {
    const Record record = FreezingNight().Strategies(R"(["FREEZE", "FREEZE"])").GoToDeepSleep().Play();
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains(HasSubstr("eventId is 3")).Times(2));
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains(HasSubstr("is now OnCreated")).Times(2));
    EXPECT_THAT(record.LogsOf("freeze_strategy"), Contains(HasSubstr("now is doze"))) << "it is one object";
    EXPECT_THAT(Commands(record), Are({"freeze camera:21 storage:11 -> [0,0]"}));
}

TEST(FreezeStrategy, MessagesOfOthersAreOnlyNoted) {
    Night night = FreezingNight().GoToDeepSleep().AdvanceTo("22:00");
    for (const int32_t id : {0, 1, 6, 7, 8, 9, 10, 11, 12, 13, 14, 100, 101, -1, 2147483647}) {
        night.Message(id, "{}", id == 1 ? "COMMON_EVENT_NOBODY_KNOWS" : "");
    }
    const Record record = night.PlayUntil("22:01");
    EXPECT_THAT(Commands(record.At("22:00")), IsEmpty());
    EXPECT_THAT(record.At("22:00").LogsOf("freeze_strategy"), ::testing::SizeIs(15));
    EXPECT_THAT(record.At("22:00").LogsOf("freeze_strategy"),
                ::testing::Each(HasSubstr("debug enter FreezeStrategy HandleEvent")));
}

}  // namespace
}  // namespace TARN::Tests
