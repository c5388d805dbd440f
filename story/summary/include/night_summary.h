#ifndef STORY_NIGHT_SUMMARY_H
#define STORY_NIGHT_SUMMARY_H

#include <string>
#include <vector>

#include "night.h"

namespace TARN::Story {

/// A line of the summary, left column and right column.
struct SummaryLine {
    std::string name;
    std::string text;
};

/// What a night amounted to, in a few lines for people.
[[nodiscard]] std::vector<SummaryLine> Summarise(const Night& night);

}  // namespace TARN::Story

#endif  // STORY_NIGHT_SUMMARY_H
