#include "losses.h"

#include <algorithm>

#include "json_fields.h"

namespace TARN::Authoring {

namespace {

constexpr size_t kMostNames = 10'000;

/// The text of a name for a line of ours: no control characters, not long, in quotes only where that tells something.
std::string Tame(const std::string& name) {
    const std::string quoted = DevStandbyMgr::Quote(name);
    const bool isPlain = quoted.size() == name.size() + 2 && quoted.find(' ') == std::string::npos;
    return isPlain ? name : quoted;
}

}  // namespace

void Losses::Add(const std::string& name) {
    if (const auto found = counts_.find(name); found != counts_.end()) {
        ++found->second;
    } else if (counts_.size() < kMostNames) {
        counts_.emplace(name, 1);
    } else {
        ++others_;
    }
}

std::string Losses::Tell(size_t most) const {
    std::vector<std::pair<std::string, uint64_t>> sorted(counts_.begin(), counts_.end());
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    std::string text;
    uint64_t rest = others_;
    for (size_t i = 0; i < sorted.size(); ++i) {
        if (i < most) {
            text.append(i == 0 ? "" : ", ").append(std::to_string(sorted[i].second)).append(" of ");
            text.append(Tame(sorted[i].first));
        } else {
            rest += sorted[i].second;
        }
    }
    if (rest > 0) {
        const size_t kinds = sorted.size() - std::min(most, sorted.size());
        text += " and " + std::to_string(rest) + " more, of " + (others_ > 0 ? "over " : "") + std::to_string(kinds) +
                " other kind" + (kinds == 1 ? "" : "s");
    }
    return text;
}

}  // namespace TARN::Authoring
