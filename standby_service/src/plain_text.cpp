#include "plain_text.h"

#include <algorithm>
#include <array>

#include "json_fields.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr size_t kPieceBytes = 4096;
constexpr size_t kMegabyte = size_t{1024} * 1024;

[[noreturn]] void RefuseLength(const std::string& what, size_t mostBytes, std::string_view expected,
                               const std::string& where = {}) {
    const size_t megabytes = mostBytes / kMegabyte;
    Refuse(where, what + " of more than " + (megabytes == 1 ? "a megabyte" : std::to_string(megabytes) + " megabytes"),
           expected);
}

}  // namespace

bool ReadLine(std::istream& input, std::string& line, const char* expected, size_t mostBytes) {
    line.clear();
    for (std::array<char, kPieceBytes> piece;;) {
        input.getline(piece.data(), piece.size());
        const auto read = static_cast<size_t>(input.gcount());
        const bool isWhole = input.good();
        line.append(piece.data(), isWhole ? read - 1 : read);
        if (line.size() > mostBytes) {
            RefuseLength("a line", mostBytes, expected);
        }
        if (isWhole || input.eof()) {
            return isWhole || !line.empty();
        }
        if (input.bad()) {
            return false;
        }
        input.clear();
    }
}

std::string ReadWhole(std::istream& input, const std::string& name, const std::string& expected, size_t mostBytes) {
    std::string text;
    for (std::array<char, kPieceBytes> piece; input.good();) {
        input.read(piece.data(), piece.size());
        text.append(piece.data(), static_cast<size_t>(input.gcount()));
        if (text.size() > mostBytes) {
            RefuseLength("a file", mostBytes, expected, name);
        }
    }
    return text;
}

size_t ControlAt(std::string_view text) noexcept {
    if (text.empty()) {
        return 0;
    }
    if (static_cast<unsigned char>(text[0]) < ' ' || text[0] == '\x7f') {
        return 1;
    }
    const bool isPair = text.size() > 1 && text[0] == '\xc2' && static_cast<unsigned char>(text[1]) >= 0x80 &&
                        static_cast<unsigned char>(text[1]) <= 0x9f;
    return isPair ? 2 : 0;
}

std::string Tame(std::string_view text) {
    std::string tame;
    tame.reserve(text.size());
    while (!text.empty()) {
        const size_t control = ControlAt(text);
        tame += control > 0 ? '?' : text.front();
        text.remove_prefix(std::max<size_t>(control, 1));
    }
    return tame;
}

}  // namespace TARN::DevStandbyMgr
