#include "running_applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "are.h"
#include "test_phone.h"

namespace TARN::DevStandbyMgr {
namespace {

using ::testing::SizeIs;
using Tests::Are;
using Tests::TestPhone;

constexpr char kProcesses[] = "AppMgrHelper.GetAllRunningProcesses";

class RunningApplicationsTest : public ::testing::Test {
protected:
    void Run(const std::vector<Simulated::Process>& processes) {
        phone.Change([&](auto& change) { change.processes = processes; });
    }

    TestPhone phone;
    RunningApplications observed{true};
};

TEST_F(RunningApplicationsTest, AreAskedForWhenSomethingChangedAndAgainUntilTheyAreTold) {
    Run({{1, 10, "a", {"com.a"}}, {2, 10, "a:2", {}}, {3, 0, "native", {}, true}});
    phone.Fail(kProcesses);
    EXPECT_NE(observed.Update(), ERR_OK);
    EXPECT_NE(observed.Update(), ERR_OK) << "whoever asks next is not told that all is well";
    EXPECT_THAT(phone.TakeLogs(), SizeIs(2));
    phone.Heal(kProcesses);
    EXPECT_EQ(observed.Update(), ERR_OK);
    ASSERT_THAT(observed.ByUid(), SizeIs(1));
    EXPECT_EQ(observed.ByUid().at(10).name, "com.a");
    ASSERT_THAT(observed.ByUid().at(10).processes, SizeIs(2));
    EXPECT_EQ(observed.ByUid().at(10).processes[1].name, "a:2");
    phone.Fail(kProcesses);
    EXPECT_EQ(observed.Update(), ERR_OK) << "nothing changed";
    observed.MarkStale();
    EXPECT_NE(observed.Update(), ERR_OK);
    EXPECT_THAT(observed.ByUid(), SizeIs(1)) << "what was known stays";
    RunningApplications unobserved(false);
    EXPECT_NE(unobserved.Update(), ERR_OK);
    phone.Heal(kProcesses);
    EXPECT_EQ(unobserved.Update(), ERR_OK);
    phone.Fail(kProcesses);
    EXPECT_NE(unobserved.Update(), ERR_OK) << "every time";
}

TEST_F(RunningApplicationsTest, AreClassifiedOnceAndAnewWhenTheirFirstProcessIsAnother) {
    const auto isSystem = [this](int32_t pid, bool system) {
        Run({{pid, 10, "a", {}, false, system}});
        observed.MarkStale();
        EXPECT_EQ(observed.Update(), ERR_OK);
        return observed.ByUid().at(10).isSystem;
    };
    phone.Fail("BundleManagerHelper.CheckIsSystemAppByUid");
    EXPECT_EQ(isSystem(1, true), std::nullopt);
    EXPECT_FALSE(observed.AreAllClassified());
    EXPECT_EQ(isSystem(1, true), std::nullopt);
    EXPECT_THAT(phone.TakeLogs(), Are({"warn 1 applications could not be classified, they count as not the system's"}))
        << "told once";
    phone.Heal("BundleManagerHelper.CheckIsSystemAppByUid");
    EXPECT_EQ(isSystem(1, true), true);
    EXPECT_TRUE(observed.AreAllClassified());
    phone.Fail("BundleManagerHelper.CheckIsSystemAppByUid");
    EXPECT_EQ(isSystem(1, true), true) << "known";
    EXPECT_EQ(isSystem(2, true), std::nullopt);
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
