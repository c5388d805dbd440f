#ifndef STORY_REPORT_PAGE_H
#define STORY_REPORT_PAGE_H

#include <string_view>

namespace TARN::Story {

/// The page without its night: holds "@TITLE@" where the title goes and "@DATA@" where the data goes.
extern const std::string_view kPage;

}  // namespace TARN::Story

#endif  // STORY_REPORT_PAGE_H
