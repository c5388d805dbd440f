#include <gmock/gmock.h>

#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "json_fields.h"
#include "plain_text.h"

namespace TARN::DevStandbyMgr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> LinesOf(std::istream& input, size_t mostBytes) {
    std::vector<std::string> lines;
    for (std::string line; ReadLine(input, line, "lines", mostBytes);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(PlainText, LinesOfEveryLengthAroundABufferComeWhole) {
    for (const size_t length : {0U, 1U, 4094U, 4095U, 4096U, 4097U, 8190U, 8191U, 12288U}) {
        const std::string line(length, 'x');
        std::istringstream input(line + "\n\n" + line + "y");
        EXPECT_THAT(LinesOf(input, kLongestLine), ElementsAre(line, "", line + "y")) << length;
    }
}

TEST(PlainText, ALineThatIsTooLongIsRefusedWithAndWithoutItsEnd) {
    constexpr size_t kMegabyte = size_t{1024} * 1024;
    for (const char* end : {"", "\n", "more\n"}) {
        std::istringstream input(std::string(kMegabyte, 'x') + end);
        std::string line;
        const std::string refusal = [&]() -> std::string {
            try {
                return ReadLine(input, line, "lines", kMegabyte) ? "read" : "at its end";
            } catch (const InputError& error) {
                return error.what();
            }
        }();
        const bool isTooLong = std::string(end) == "more\n";
        EXPECT_THAT(refusal, HasSubstr(isTooLong ? "a line of more than a megabyte" : "read")) << end;
    }
}

/// A disk that fails after a few bytes.
class TornDisk : public std::streambuf {
protected:
    int_type underflow() override {
        if (isRead_) {
            throw std::runtime_error("the disk");
        }
        isRead_ = true;
        setg(text_.data(), text_.data(), text_.data() + text_.size());
        return traits_type::to_int_type(text_.front());
    }

private:
    std::string text_ = "whole\ntor";
    bool isRead_ = false;
};

TEST(PlainText, HalfALineOfATornDiskIsNoLine) {
    TornDisk disk;
    std::istream input(&disk);
    EXPECT_THAT(LinesOf(input, kLongestLine), ElementsAre("whole"));
    EXPECT_TRUE(input.bad());
}

TEST(PlainText, ControlCharactersDoNotReachTheTerminal) {
    EXPECT_EQ(Tame("caf\xc3\xa9\x1b[2J\x7f\n\xc2\x9b"
                   "31m\xc2\xa0\xc2"),
              "caf\xc3\xa9?[2J???31m\xc2\xa0\xc2");
}

}  // namespace
}  // namespace TARN::DevStandbyMgr
