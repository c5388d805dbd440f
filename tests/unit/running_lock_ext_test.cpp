#include "running_lock_strategy_ext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "are.h"
#include "standby_constants.h"
#include "test_phone.h"

namespace TARN::DevStandbyMgr {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Tests::Are;
using Tests::TestPhone;

/// The strategy on a phone with the native process abc, pid 523 and uid 1000, that is in the restrict set.
class RunningLockExt : public ::testing::Test {
protected:
    class Strategy : public RunningLockStrategyExt {
    public:
        using RunningLockStrategyExt::isProxied_;
    };

    RunningLockExt() {
        Serve(HostMode::SCRIPTED);
        SetNatives({{523, 1000, "abc", {}, true}});
    }

    void Serve(HostMode mode) {
        StandbyConfig config;
        config.mode = mode;
        phone.StartService(config).SetRestrictSet(AllowType::RUNNING_LOCK, {"abc"});
    }

    void SetNatives(const std::vector<Simulated::Process>& processes) {
        phone.Change([&](auto& change) { change.processes = processes; });
    }

    /// What the power manager was told of since it was last asked: `true [[523,1000]]`.
    std::vector<std::string> Locks() {
        std::vector<std::string> locks;
        for (const std::string& call : phone.TakeCalls()) {
            const bool isProxied = call.find(R"({"proxied":true,)") != std::string::npos;
            const size_t list = call.find('[');
            locks.push_back((isProxied ? "true " : "false ") + call.substr(list, call.find('}') - list));
        }
        return locks;
    }

    std::vector<std::string> Proxy() {
        Locks();
        strategy.ProxyAppAndProcess(true);
        return Locks();
    }

    std::string Dump(const std::vector<std::string>& words = {"DUMP_DETAIL_INFO", "DUMP_STRATGY_DETAIL"}) {
        std::string text = "before";
        strategy.ShellDump(words, text);
        return text;
    }

    TestPhone phone;
    Strategy strategy;
};

constexpr char kHead[] = "before\nproxied native process info: \n";

TEST_F(RunningLockExt, DumpsItsEntriesForExactlyTwoWords) {
    EXPECT_EQ(Dump(), kHead);
    EXPECT_EQ(strategy.InitNativeProcInfo(), 0);
    EXPECT_THAT(phone.TakeLogs(), Are({"info running native processes size is 1",
                                       "info running lock restrict native process list, size is 1"}));
    EXPECT_EQ(Dump(), std::string(kHead) + "key: 1000_abc name: abc uid: 1000 pid: 523 exemption flag: 80\n");
    EXPECT_EQ(Dump({}) + Dump({"DUMP_DETAIL_INFO"}) + Dump({"DUMP_DETAIL_INFO", "-ST"}), "beforebeforebefore");
    EXPECT_EQ(Dump({"-ST", "DUMP_STRATGY_DETAIL"}), "before");
}

TEST_F(RunningLockExt, TheBitsDecideWhoIsProxied) {
    const std::set<int> proxied = {0, 64, 64 | 16, 64 | 1, 64 | 16 | 3, 128 | 64};
    for (const int flag :
         {0, 1, 16, 32, 32 | 16, 64, 64 | 1, 64 | 16, 64 | 16 | 3, 64 | 32, 64 | 32 | 16, 128, 128 | 64}) {
        strategy.InitNativeProcInfo();
        strategy.isProxied_ = true;
        Locks();
        strategy.RemoveExemptionFlag(1000, "abc", 255);
        EXPECT_THAT(Locks(), Are({"true [[1000,523]]"})) << "no bit at all";
        strategy.AddExemptionFlag(1000, "abc", static_cast<uint8_t>(flag));
        EXPECT_THAT(Locks(), Are({"false [[1000,523]]"})) << "restored because it was proxied, uid first";
        EXPECT_EQ(!Proxy().empty(), proxied.count(flag) != 0) << flag;
        EXPECT_THAT(Dump(), HasSubstr("exemption flag: " + std::to_string(flag) + "\n"));
    }
}

TEST_F(RunningLockExt, AnExemptionIsAddedOnlyInForceAndRemovedAlways) {
    strategy.InitNativeProcInfo();
    strategy.AddExemptionFlag(1000, "abc", 32);
    EXPECT_THAT(Proxy(), Are({"true [[523,1000]]"}));
    strategy.isProxied_ = true;
    strategy.AddExemptionFlag(1000, "abc", 32);
    EXPECT_THAT(Locks(), Are({"false [[1000,523]]"}));
    strategy.AddExemptionFlag(1000, "abc", 1);
    strategy.isProxied_ = false;
    strategy.RemoveExemptionFlag(1000, "abc", 2);
    EXPECT_THAT(Locks(), IsEmpty()) << "neither restored twice nor proxied while it is exempt";
    EXPECT_THAT(Dump(), HasSubstr("flag: 113\n"));
    strategy.RemoveExemptionFlag(1000, "abc", 32);
    EXPECT_THAT(Locks(), Are({"true [[1000,523]]"}));
    strategy.isProxied_ = true;
    strategy.AddExemptionFlag(1001, "abc", 32);
    strategy.RemoveExemptionFlag(1000, "ab", 64);
    EXPECT_THAT(Locks(), IsEmpty()) << "nobody knows them";
}

TEST_F(RunningLockExt, TheApplicationsTooAreLeftAloneWhileNotInForce) {
    Serve(HostMode::AUTOMATIC);
    SetNatives({{21, 3, "app", {}, false}});
    AAFwk::Want deep;
    deep.SetParam(CURRENT_STATE, StandbyState::SLEEP).SetParam(CURRENT_PHASE, StandbyPhase::SYS_RES_DEEP);
    strategy.HandleEvent(StandbyMessage(StandbyMessageType::PHASE_TRANSIT, {}, deep));
    EXPECT_THAT(Locks(), Are({"true [[21,3]]"}));
    strategy.isProxied_ = false;
    strategy.AddExemptionFlag(3, "app", 32);
    EXPECT_THAT(Proxy(), IsEmpty()) << "it is held back still";
    strategy.isProxied_ = true;
    strategy.AddExemptionFlag(3, "app", 32);
    EXPECT_THAT(Locks(), Are({"false [[21,3]]"}));
    strategy.isProxied_ = false;
    strategy.RemoveExemptionFlag(3, "app", 32);
    EXPECT_THAT(Proxy(), Are({"true [[21,3]]"})) << "the removal reached them";
    strategy.ClearProxyRecord();
    EXPECT_THAT(Proxy(), IsEmpty());
}

TEST_F(RunningLockExt, AnUpdateResetsBitsKeepsTheEndedAndFailsWhole) {
    strategy.InitNativeProcInfo();
    strategy.isProxied_ = true;
    strategy.AddExemptionFlag(1000, "abc", 32);
    SetNatives({{524, 1000, "abc", {}, true}, {525, 1001, "abc", {}, true}, {526, 1002, "new", {}, true}});
    EXPECT_EQ(strategy.InitNativeProcInfo(), 0);
    for (const char* line : {"key: 1000_abc name: abc uid: 1000 pid: 524 exemption flag: 80\n",
                             "key: 1001_abc name: abc uid: 1001 pid: 525 exemption flag: 80\n",
                             "key: 1002_new name: new uid: 1002 pid: 526 exemption flag: 16\n"}) {
        EXPECT_THAT(Dump(), HasSubstr(line));
    }
    SetNatives({{600, 1001, "abc", {}, true}});
    phone.Fail("AbilityManagerHelper.GetRunningSystemProcess");
    phone.TakeLogs();
    const std::string before = Dump();
    EXPECT_EQ(strategy.InitNativeProcInfo(), 980001001);
    EXPECT_THAT(phone.TakeLogs(), Are({"error connect to app ability service failed"}));
    EXPECT_EQ(Dump(), before);
    phone.Heal("AbilityManagerHelper.GetRunningSystemProcess");
    strategy.InitNativeProcInfo();
    EXPECT_THAT(Dump(),
                AllOf(HasSubstr("pid: 524"), HasSubstr("pid: 526"), HasSubstr("pid: 600"), Not(HasSubstr("525"))));
    EXPECT_THAT(Proxy(), Are({AllOf(HasSubstr("[524,1000]"), HasSubstr("[600,1001]"))}));
    strategy.ClearProxyRecord();
    EXPECT_EQ(Dump(), kHead);
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
