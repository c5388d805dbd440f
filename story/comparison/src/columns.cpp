#include "columns.h"

#include <algorithm>

#include "phrases.h"

namespace TARN::Story {

std::string Padded(std::string text, size_t width) {
    const auto length = static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
    return text.append(width - std::min(width, length), ' ');
}

std::string FigureText(int64_t value, bool isDuration) {
    constexpr int64_t kMsPerSecond = 1000;
    if (value == 0) {
        return "–";
    }
    return !isDuration ? std::to_string(value) : value < kMsPerSecond ? "< 1 s" : Duration(value);
}

}  // namespace TARN::Story
