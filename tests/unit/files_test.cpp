#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "file_util.h"
#include "folder_files.h"
#include "json_fields.h"
#include "json_utils.h"
#include "preferences_helper.h"
#include "standby_config.h"
#include "test_phone.h"

namespace TARN::Tests {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A fresh folder that goes with this object.
class OwnFolder {
public:
    OwnFolder() : path_(::testing::TempDir() + "standby-files-XXXXXX") {
        if (::mkdtemp(path_.data()) == nullptr) {
            throw std::runtime_error("no folder " + path_);
        }
    }
    ~OwnFolder() { fs::remove_all(path_); }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};

/// A phone and the folder of its files.
class Files : public ::testing::Test {
protected:
    [[nodiscard]] fs::path Under(const std::string& path) { return folder.Path() + path; }

    void Write(const std::string& path, const std::string& text) {
        fs::create_directories(Under(path).parent_path());
        std::ofstream(Under(path)) << text;
    }

    std::string Read(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(Under(path)).rdbuf();
        return text.str();
    }

    OwnFolder folder;
    FileUtil::FolderFiles files{folder.Path()};
    TestPhone phone{TestPhone::kStartMs, &files};
};

TEST_F(Files, AReplacedFileHoldsTheNewContentAndNothingIsLeftBeside) {
    EXPECT_TRUE(FileUtil::ReplaceFile("/new/folder/record", "one"));
    EXPECT_TRUE(FileUtil::ReplaceFile("/new/folder/record", std::string(100'000, 'x')));
    EXPECT_EQ(Read("/new/folder/record").size(), 100'000U);
    EXPECT_TRUE(FileUtil::ReplaceFile("/new/folder/record", ""));
    EXPECT_EQ(Read("/new/folder/record"), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(Under("/new/folder")), {}), 1);
}

TEST_F(Files, AFailedReplacementLeavesTheOldFileWholeAndNothingBeside) {
    Write("/blocked/record", "old");
    fs::create_directories(Under("/blocked/record.tmp"));
    EXPECT_FALSE(FileUtil::ReplaceFile("/blocked/record", "new")) << "the new bytes have no place";
    EXPECT_EQ(Read("/blocked/record"), "old");

    Write("/folder/record/inside", "old");
    EXPECT_FALSE(FileUtil::ReplaceFile("/folder/record", "new")) << "a folder is in its place";
    EXPECT_EQ(Read("/folder/record/inside"), "old");
    EXPECT_FALSE(fs::exists(Under("/folder/record.tmp")));

    Write("/file", "old");
    EXPECT_FALSE(FileUtil::ReplaceFile("/file/record", "new")) << "its folder is a file";
    EXPECT_EQ(Read("/file"), "old");

    fs::create_directory_symlink("/proc", Under("/unwritable"));
    EXPECT_FALSE(FileUtil::ReplaceFile("/unwritable/record", "new")) << "nobody may write there";
}

TEST_F(Files, ALeftTemporaryOfACrashDoesNoHarm) {
    Write("/folder/record", "old");
    Write("/folder/record.tmp", "half of somethi");
    EXPECT_TRUE(FileUtil::ReplaceFile("/folder/record", "new"));
    EXPECT_EQ(Read("/folder/record"), "new");
    EXPECT_FALSE(fs::exists(Under("/folder/record.tmp")));
}

TEST_F(Files, OnlyARegularFileIsRead) {
    std::string content = "untouched";
    fs::create_directories(Under("/folder"));
    EXPECT_FALSE(FileUtil::LoadFile("/absent", content));
    EXPECT_FALSE(FileUtil::LoadFile("/folder", content));
    EXPECT_EQ(content, "untouched");
    Write("/file", std::string("a\0b", 3));
    EXPECT_TRUE(FileUtil::LoadFile("/file", content));
    EXPECT_EQ(content, std::string("a\0b", 3));
}

TEST_F(Files, JsonThatCannotBeReadLeavesTheValue) {
    nlohmann::json value = 5;
    for (const char* text : {"", "{", "{} {}", "\xff"}) {
        Write("/record", text);
        EXPECT_FALSE(DevStandbyMgr::JsonUtils::LoadJsonValueFromFile(value, "/record")) << text;
    }
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(DevStandbyMgr::JsonUtils::DumpJsonValueToFile({{"a", "\xff"}}, "/record"));
    EXPECT_TRUE(DevStandbyMgr::JsonUtils::LoadJsonValueFromFile(value, "/record"));
    EXPECT_TRUE(value.contains("a"));
    phone.Fail("JsonUtils.LoadJsonValueFromFile");
    phone.Fail("JsonUtils.DumpJsonValueToFile");
    EXPECT_FALSE(DevStandbyMgr::JsonUtils::LoadJsonValueFromFile(value, "/record"));
    EXPECT_FALSE(DevStandbyMgr::JsonUtils::DumpJsonValueToFile(5, "/record"));
    EXPECT_THAT(Read("/record"), HasSubstr("a"));
}

/// The preferences file of the tests, opened anew.
class PreferencesFile : public Files {
protected:
    static constexpr char kPath[] = "/data/pref.xml";
    static constexpr char kKey[] = "is_proximity_error";

    std::shared_ptr<NativePreferences::Preferences> Open() {
        NativePreferences::PreferencesHelper::RemovePreferencesFromCache(kPath);
        return NativePreferences::PreferencesHelper::GetPreferences(kPath, error);
    }

    int error = 0;
};

TEST_F(PreferencesFile, WhatWasFlushedIsThereAgainAndWhatWasNotIsNot) {
    EXPECT_TRUE(Open()->GetBool(kKey, true)) << "an absent file is an empty store";
    auto preferences = Open();
    EXPECT_EQ(preferences->PutBool(kKey, true), 0);
    EXPECT_TRUE(preferences->GetBool(kKey, false));
    EXPECT_FALSE(Open()->GetBool(kKey, false)) << "nothing was flushed";
    preferences = Open();
    preferences->PutBool(kKey, true);
    preferences->PutBool("<&\">", false);
    EXPECT_EQ(preferences->FlushSync(), 0);
    EXPECT_TRUE(Open()->GetBool(kKey, false));
    EXPECT_FALSE(Open()->GetBool("<&\">", true));
}

TEST_F(PreferencesFile, ATornOrForeignFileIsAnEmptyStoreThatCanBeWritten) {
    for (const char* text : {"", "<preferences><bool key=\"is_prox", "{\"json\": 1}", "<other/>",
                             "<preferences><bool key=\"is_proximity_error\" value=\"perhaps\"/></preferences>",
                             "<preferences><bool key=\"is_proximity_error\"/></preferences>"}) {
        Write(kPath, text);
        auto preferences = Open();
        ASSERT_NE(preferences, nullptr) << text;
        EXPECT_FALSE(preferences->GetBool(kKey, false));
        EXPECT_TRUE(preferences->GetBool(kKey, true));
        preferences->PutBool(kKey, true);
        EXPECT_EQ(preferences->FlushSync(), 0);
        EXPECT_TRUE(Open()->GetBool(kKey, false)) << text;
    }
}

TEST_F(PreferencesFile, AFolderInItsPlaceCannotBeOpenedAndFaultsAreAnswered) {
    fs::create_directories(Under(kPath));
    EXPECT_EQ(Open(), nullptr);
    EXPECT_NE(error, 0);
    fs::remove(Under(kPath));
    const auto preferences = Open();
    ASSERT_NE(preferences, nullptr);
    EXPECT_EQ(error, 0);
    fs::create_directories(Under(kPath));
    EXPECT_NE(preferences->FlushSync(), 0);
    phone.Fail("PreferencesHelper.GetPreferences", 8);
    phone.Fail("Preferences.FlushSync", 9);
    EXPECT_EQ(preferences->FlushSync(), 9);
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(error, 8);
}

TEST_F(Files, AConfigurationFileChangesOnlyWhatItNames) {
    Write("/config.json", R"(// a site's own numbers
        {"mode": "scripted", "params": {"a": 7}, "policy": {"nap_after_s": 1, "maintenance_after_s": [5], "night_end_hour": 0}})");
    DevStandbyMgr::StandbyConfig config;
    DevStandbyMgr::StandbyConfigFile(Under("/config.json")).LayOver(config);
    EXPECT_EQ(config.mode, DevStandbyMgr::HostMode::SCRIPTED);
    EXPECT_EQ(config.params.at("a"), 7);
    EXPECT_EQ(config.strategies.size(), 7U);
    EXPECT_TRUE(config.halfHourSwitches.at("poweroff"));
    EXPECT_EQ(config.policy.napAfterSeconds, 1);
    EXPECT_EQ(config.policy.sleepAfterSeconds, 1800);
    EXPECT_THAT(config.policy.maintenanceAfterSeconds, ::testing::ElementsAre(5));
    EXPECT_EQ(config.policy.nightStartHour, 22);
    EXPECT_EQ(config.policy.nightEndHour, 0);
}

TEST_F(Files, ABadConfigurationFileIsRefusedInOneLine) {
    for (const auto& [text, wrong] : {std::pair{"{", "not JSON"},
                                      {"[]", "an object"},
                                      {R"({"colour": 1})", "unknown key \"colour\""},
                                      {R"({"mode": "manual"})", "mode: \"manual\""},
                                      {R"({"strategies": "FREEZE"})", "strategies: \"FREEZE\""},
                                      {R"({"params": {"a": 1.5}})", "params.a: 1.5"},
                                      {R"({"params": {"a": 4294967296}})", "params.a: 4294967296"},
                                      {R"({"half_hour_switches": {"poweroff": 1}})", "half_hour_switches.poweroff: 1"},
                                      {R"({"persist_allow": {"FREEZE": {"one": []}}})", "key \"one\""},
                                      {R"({"res_ctrl": {"X": [{"allow": true}]}})", "res_ctrl.X[0]: no \"names\""},
                                      {R"({"policy": {"nap_after_s": 0}})", "policy.nap_after_s: 0"},
                                      {R"({"policy": {"night_end_hour": 24}})", "policy.night_end_hour: 24"},
                                      {R"({"policy": {"maintenance_after_s": []}})", "policy.maintenance_after_s: []"},
                                      {R"({"policy": {"nap_after": 1}})", "policy: unknown key \"nap_after\""}}) {
        Write("/config.json", text);
        try {
            const DevStandbyMgr::StandbyConfigFile file(Under("/config.json"));
            ADD_FAILURE() << "accepted " << text;
        } catch (const DevStandbyMgr::InputError& error) {
            EXPECT_THAT(error.what(), StartsWith(Under("/config.json").string() + ": "));
            EXPECT_THAT(error.what(), HasSubstr(wrong));
            EXPECT_THAT(error.what(), HasSubstr("; expected "));
            EXPECT_THAT(error.what(), ::testing::Not(HasSubstr("\n")));
        }
    }
    EXPECT_THROW(DevStandbyMgr::StandbyConfigFile("/nowhere/config.json"), DevStandbyMgr::InputError);
    EXPECT_THROW(const DevStandbyMgr::StandbyConfigFile file(folder.Path()), DevStandbyMgr::InputError);
}

}  // namespace
}  // namespace TARN::Tests
