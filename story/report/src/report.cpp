#include "report.h"

#include <filesystem>
#include <string_view>

#include "night_data.h"
#include "page.h"

namespace TARN::Story {

namespace {

std::string EscapedForHtml(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::string TitleOf(const std::vector<ReportSide>& sides) {
    std::string title;
    for (const ReportSide& side : sides) {
        title.append(title.empty() ? "" : " and ").append(std::filesystem::path(side.label).filename().string());
    }
    return title;
}

/// What `text` holds before `mark`; the text goes on behind it.
std::string_view CutBefore(std::string_view& text, std::string_view mark) {
    const size_t at = text.find(mark);
    const std::string_view before = text.substr(0, at);
    text.remove_prefix(at + mark.size());
    return before;
}

}  // namespace

void WriteReport(const std::vector<ReportSide>& sides, std::ostream& output) {
    std::string_view page = kPage;
    output << CutBefore(page, "@TITLE@") << EscapedForHtml(TitleOf(sides));
    output << CutBefore(page, "@DATA@") << DataOf(sides) << page;
}

}  // namespace TARN::Story
