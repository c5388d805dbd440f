#ifndef STORY_NIGHT_SUMMARY_H
#define STORY_NIGHT_SUMMARY_H

#include <cstddef>
#include <string>
#include <vector>

#include "night.h"

namespace TARN::Story {

/// A line of the summary, left column and right column.
struct SummaryLine {
    std::string name;
    std::string text;
    size_t hang = 0;  ///< how far in the text goes on below where it is too long
};

/// What a night amounted to, in a few lines for people. The sums are those of the true intervals; only what is listed
/// of them is chosen for the eye.
[[nodiscard]] std::vector<SummaryLine> Summarise(const Night& night);

}  // namespace TARN::Story

#endif  // STORY_NIGHT_SUMMARY_H
