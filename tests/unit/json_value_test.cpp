#include "json_value.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "json_fields.h"

namespace {

using namespace TARN;
using namespace TARN::DevStandbyMgr;
using Json = nlohmann::json;

/// What one way of reading makes of a text: its value written again, or nothing.
std::string ReadText(JsonDocument& document, const std::string& text, JsonComments comments) {
    try {
        return ToJson(document.Read(text, "JSON", comments)).dump(-1, ' ', true);
    } catch (const InputError&) {
        return "refused";
    }
}

const std::vector<std::string> kTexts = {
    R"({"t": 1, "set": {"light": 12.5, "accounts": [100, -0, 9223372036854775807, -9223372036854775808]}})",
    R"([null, true, false, 1e3, -1.5E-7, 0.1, 123456789012345678901.0, "", "a\"\\\/\b\f\n\r\tb"])",
    "[\"\\u00e4\\ud83d\\ude00\\u0000z\", \"\xc3\xa4\xf0\x9f\x98\x80\"]",
    R"({"a": {}, "b": [], "c": [[{"d": [{}]}]], "": 1})",
    R"({"bb": 1, "a": 2, "b": 3, "ab": 4})",
    R"(["\ud83d", "x"])",
    R"(["\ude00"])",
    R"(["\ud83d\u0041"])",
    "[\"\xff\"]",
    "[\"\xc0\x80\"]",
    "[\"\xed\xa0\x80\"]",
    "[\"\x01\"]",
    R"({"a": 1, "a": 1})",
    R"({"a": 1, "\u0061": 1})",
    "\xEF\xBB\xBF[1]",
    "[1e400]",
    "[-1e-400]",
    "[01]",
    "[1.]",
    "[+1]",
    "[1,]",
    "[1] 2",
    "  7  ",
    "\"only\"",
    "",
    "{",
    "[1 2]",
    "nul",
};

TEST(JsonDocument, TheFastParserReadsWhatTheExactOneReads) {
    constexpr int kChangedTexts = 20'000;
    std::minstd_rand chance(1);
    const std::string bytes = "{}[]\",:\\u0123456789dDeE+-.tfn \t\n\x7f\x80\xbf\xc3\xed\xf0";
    JsonDocument fast;
    JsonDocument exact;
    int read = 0;
    for (int i = 0; i < kChangedTexts; ++i) {
        std::string text = kTexts[static_cast<size_t>(i) % kTexts.size()];
        for (size_t changes = static_cast<size_t>(i) / kTexts.size() % 4; changes > 0 && !text.empty(); --changes) {
            text[chance() % text.size()] = bytes[chance() % bytes.size()];
        }
        if (text.find('/') != std::string::npos || text.find("00000000") != std::string::npos) {
            continue;  // a comment for one of the two
        }
        const std::string value = ReadText(exact, text, JsonComments::SKIPPED);
        const std::string quick = ReadText(fast, text, JsonComments::REFUSED);
        const bool hasLargeInteger = quick == "refused" && value.find("e+") != std::string::npos;
        ASSERT_TRUE(quick == value || hasLargeInteger) << text << "\n" << quick << "\n" << value;
        read += quick != "refused" ? 1 : 0;
    }
    EXPECT_GT(read, kChangedTexts / 10);
}

TEST(JsonDocument, IntegersBeyondTheTypeAndEndlessDepthAreRefused) {
    JsonDocument document;
    for (const char* text : {"[9223372036854775808]", "[-9223372036854775809]", "{\"a\": 99999999999999999999}"}) {
        EXPECT_EQ(ReadText(document, text, JsonComments::REFUSED), "refused") << text;
    }
    for (const JsonComments comments : {JsonComments::REFUSED, JsonComments::SKIPPED}) {
        for (const auto& [depth, isRead] : {std::pair{500, true}, {600, false}, {200'000, false}}) {
            const std::string text =
                std::string(static_cast<size_t>(depth), '[') + "1" + std::string(static_cast<size_t>(depth), ']');
            EXPECT_EQ(ReadText(document, text, comments) == "refused", !isRead) << depth;
        }
    }
    EXPECT_EQ(ReadText(document, "[1]", JsonComments::REFUSED), "[1]") << "and the next text is read";
}

TEST(JsonFields, MembersAreFoundAndAllOthersRefused) {
    JsonDocument document;
    const auto complaint = [&](const std::string& text) -> std::string {
        try {
            JsonFields fields(document.Read(text, "JSON"), "set");
            EXPECT_EQ(fields.Find("light")->Float(), 1.5);
            EXPECT_EQ(fields.Find("lights"), nullptr);
            fields.Finish();
        } catch (const InputError& error) {
            return error.what();
        }
        return {};
    };
    EXPECT_EQ(complaint(R"({"light": 1.5})"), "");
    EXPECT_EQ(complaint(R"({"light": 1.5, "z": 1, "ligh": 1})"),
              "set: unknown key \"ligh\"; expected one of light, lights");
}

}  // namespace
