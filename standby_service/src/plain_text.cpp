#include "plain_text.h"

#include <algorithm>
#include <array>

#include "json_fields.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr size_t kPieceBytes = 4096;
constexpr size_t kMegabyte = size_t{1024} * 1024;

[[noreturn]] void RefuseLength(const std::string& what, size_t mostBytes, const std::string& expected) {
    const size_t megabytes = mostBytes / kMegabyte;
    Refuse("", what + " of more than " + (megabytes == 1 ? "a megabyte" : std::to_string(megabytes) + " megabytes"),
           expected);
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

/// Whether a control character of two bytes begins there.
bool IsControlPair(std::string_view text) {
    return text.size() > 1 && text[0] == '\xc2' && static_cast<unsigned char>(text[1]) >= 0x80 &&
           static_cast<unsigned char>(text[1]) <= 0x9f;
}

}  // namespace

bool ReadLine(std::istream& input, std::string& line, const std::string& expected, size_t mostBytes) {
    line.clear();
    for (std::array<char, kPieceBytes> piece;;) {
        input.getline(piece.data(), piece.size());
        const auto read = static_cast<size_t>(input.gcount());
        if (input.good()) {
            line.append(piece.data(), read - 1);
            return true;
        }
        line.append(piece.data(), read);
        if (input.eof() || input.bad()) {
            return !line.empty();
        }
        if (line.size() > mostBytes) {
            RefuseLength("a line", mostBytes, expected);
        }
        input.clear();
    }
}

std::string ReadWhole(std::istream& input, const std::string& expected, size_t mostBytes) {
    std::string text;
    for (std::array<char, kPieceBytes> piece; input.good();) {
        input.read(piece.data(), piece.size());
        text.append(piece.data(), static_cast<size_t>(input.gcount()));
        if (text.size() > mostBytes) {
            RefuseLength("a file", mostBytes, expected);
        }
    }
    return text;
}

std::string Tame(std::string_view text) {
    std::string tame;
    tame.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isPair = IsControlPair(text.substr(i));
        tame += isPair || IsControl(text[i]) ? '?' : text[i];
        i += isPair ? 1 : 0;
    }
    return tame;
}

}  // namespace TARN::DevStandbyMgr
