#include "nearest_name.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

namespace TARN::DevStandbyMgr {

namespace {

/// Longer text is no name that somebody got wrong.
constexpr size_t kLongest = 80;
/// Fewer letters are a part of everything.
constexpr size_t kLeastPart = 3;

/// How many letters have to be put in, left out or changed to make one of the other.
size_t Distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row[b.size()];
}

std::string InSmallLetters(std::string_view name) {
    std::string small(name);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return small;
}

}  // namespace

std::string_view NearestName(std::span<const std::string_view> known, std::string_view name) {
    std::string_view nearest;
    if (name.empty() || name.size() > kLongest) {
        return nearest;
    }
    const std::string written = InSmallLetters(name);
    size_t least = std::numeric_limits<size_t>::max();
    for (const std::string_view one : known) {
        const std::string small = InSmallLetters(one);
        const bool isPart = name.size() >= kLeastPart && small.find(written) != std::string::npos;
        const size_t distance = isPart ? 0 : Distance(small, written);
        if (distance < least && distance <= std::max(one.size(), name.size()) / 2) {
            least = distance;
            nearest = one;
        }
    }
    return nearest;
}

}  // namespace TARN::DevStandbyMgr
