#include "plugin_texts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace TARN::Story {
namespace {

namespace fs = std::filesystem;

/// What each source file may log at one of the levels, "DIWE" for all: the format strings of its log calls, pieces
/// joined.
std::map<std::string, std::vector<std::string>> LoggedTexts(const std::string& levels) {
    std::map<std::string, std::vector<std::string>> texts;
    const std::regex call("(?:STANDBYSERVICE|RADIO_LEDGER)_LOG[" + levels + R"(]\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+))");
    const std::regex piece(R"re("((?:[^"\\]|\\.)*)")re");
    for (const char* const room :
         {"standby_service", "strategy_adapter", "message_listener", "state_adapter", "device/ledger"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(HOST_FOLDER).parent_path() / room)) {
            if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") {
                continue;
            }
            std::ostringstream source;
            source << std::ifstream(entry.path()).rdbuf();
            const std::string code = source.str();
            for (std::sregex_iterator at(code.begin(), code.end(), call), end; at != end; ++at) {
                const std::string pieces = (*at)[1];
                std::string text;
                for (std::sregex_iterator one(pieces.begin(), pieces.end(), piece); one != end; ++one) {
                    text += (*one)[1];
                }
                texts[entry.path().stem()].push_back(text);
            }
        }
    }
    return texts;
}

/// Whether a line made from the format can begin with `text`: they agree but for the first value of the format.
bool CanBegin(const std::string& format, std::string_view text) {
    const std::string fixed = format.substr(0, format.find('%'));
    if (fixed.starts_with(text)) {
        return true;
    }
    if (fixed.size() == format.size() || !text.starts_with(fixed)) {
        return false;
    }
    const std::string behind = format.substr(format.find_first_of("dsu", format.find('}')) + 1);
    const size_t value = text.find(behind.substr(0, std::string(" could").size()));
    return !fixed.empty() || (value != text.npos && behind.starts_with(text.substr(value)));
}

TEST(PluginTexts, EachIsLoggedByItsFileAndIsTheOneFound) {
    const auto logged = LoggedTexts("DIWE");
    for (const PluginText& entry : PluginTexts()) {
        const auto file = logged.find(std::string(entry.file));
        EXPECT_THAT(file == logged.end() ? std::vector<std::string>() : file->second,
                    testing::Contains(
                        testing::Truly([&entry](const std::string& format) { return CanBegin(format, entry.text); })))
            << entry.file << " does not log \"" << entry.text << "\" any more";
        EXPECT_EQ(FindPluginText(entry.file, entry.text), &entry) << entry.text << " is hidden by an entry before it";
    }
    EXPECT_EQ(FindPluginText("power_off_strategy", "a line that nobody logs"), nullptr);
    EXPECT_EQ(FindPluginText("nobody", "do not need enable wifi"), nullptr);
}

TEST(PluginTexts, EveryWarningAndErrorHasWordsOrCannotComeAbout) {
    const std::set<std::string> kNeverOnAPhone = {
        "sleep_clean_strategy: handler is null",
        "time_provider_ext: localtime_r failed, can not get valid local time",
    };
    std::set<std::string> wordless;
    for (const auto& [file, formats] : LoggedTexts("WE")) {
        for (const std::string& format : formats) {
            const bool hasWords = std::any_of(PluginTexts().begin(), PluginTexts().end(),
                                              [&format, &source = file](const PluginText& one) {
                                                  return one.file == source && CanBegin(format, one.text);
                                              });
            if (!hasWords) {
                wordless.insert(file + ": " + format);
            }
        }
    }
    EXPECT_EQ(wordless, kNeverOnAPhone);
}

}  // namespace
}  // namespace TARN::Story
