#ifndef STORY_REPORT_H
#define STORY_REPORT_H

#include <ostream>
#include <string>
#include <vector>

#include "night.h"

namespace TARN::Story {

/// A night on the page, and what tells it from the other one there.
struct ReportSide {
    std::string label;
    const Night* night;  ///< whole; outlives the writing
};

/// Writes a page that shows one night, or two under each other with what differs between them: one HTML file that needs
/// nothing but a browser. Puts the zone of each night to use.
void WriteReport(const std::vector<ReportSide>& sides, std::ostream& output);

}  // namespace TARN::Story

#endif  // STORY_REPORT_H
