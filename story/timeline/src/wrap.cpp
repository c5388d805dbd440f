#include "wrap.h"

namespace TARN::Story {

namespace {

constexpr std::string_view kPauses = ",;:";

/// Whether the byte begins a character of UTF-8.
bool IsStart(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// How many bytes the first `width` characters take.
size_t BytesOf(std::string_view text, size_t width) {
    size_t i = 0;
    while (i < text.size() && (width > 0 || !IsStart(text[i]))) {
        width -= IsStart(text[i]) ? 1 : 0;
        ++i;
    }
    return i;
}

/// The place of the space at which a line that does not fit is broken; npos for none.
size_t PlaceToBreak(std::string_view text, size_t width) {
    const size_t fitting = BytesOf(text, width);
    if (fitting == text.size()) {
        return std::string_view::npos;
    }
    const size_t last = text.rfind(' ', fitting);
    if (last == std::string_view::npos || last == 0) {
        return text.find(' ', fitting);
    }
    for (size_t space = last; space != std::string_view::npos && space > fitting / 2;
         space = text.rfind(' ', space - 1)) {
        if (kPauses.find(text[space - 1]) != std::string_view::npos) {
            return space;
        }
    }
    return last;
}

}  // namespace

std::vector<std::string_view> Wrap(std::string_view text, size_t width, size_t hang) {
    std::vector<std::string_view> lines;
    while (width > hang) {
        const size_t space = PlaceToBreak(text, lines.empty() ? width : width - hang);
        if (space == std::string_view::npos) {
            break;
        }
        lines.push_back(text.substr(0, space));
        text.remove_prefix(space + 1);
    }
    lines.push_back(text);
    return lines;
}

}  // namespace TARN::Story
