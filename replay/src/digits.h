#ifndef REPLAY_DIGITS_H
#define REPLAY_DIGITS_H

#include <cstdint>
#include <string_view>

namespace TARN::Replay {

[[nodiscard]] inline bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// Whether a text is as a picture of it, in which `d` stands for a digit: "dd:dd".
[[nodiscard]] inline bool Matches(std::string_view text, std::string_view picture) noexcept {
    if (text.size() != picture.size()) {
        return false;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (picture[i] == 'd' ? !IsDigit(text[i]) : text[i] != picture[i]) {
            return false;
        }
    }
    return true;
}

/// The number that up to 18 digits are; 0 where there is none.
[[nodiscard]] inline int64_t NumberOf(std::string_view digits) noexcept {
    int64_t number = 0;
    for (const char digit : digits) {
        number = number * 10 + (digit - '0');
    }
    return number;
}

}  // namespace TARN::Replay

#endif  // REPLAY_DIGITS_H
