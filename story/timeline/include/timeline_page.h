#ifndef STORY_TIMELINE_PAGE_H
#define STORY_TIMELINE_PAGE_H

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "event.h"

namespace TARN::Story {

struct PageOptions {
    bool isColored = false;
    size_t columns = 0;  ///< the terminal's width, at which long lines go on below; 0: an event is always one line
};

/// Sets the timeline: columns, a heading for each day, colour, a line where the local clock is changed, and one line
/// for a line that repeats within a day.
class TimelinePage {
public:
    TimelinePage(std::ostream& output, const PageOptions& options) : output_(output), options_(options) {}

    /// A line of its own, outside the columns.
    void Title(std::string_view text);
    void Plain(std::string_view text);

    /// Two columns, the left one `width` wide. The right one goes on below in lines that a page holds, `hang` farther
    /// in.
    void Row(std::string_view name, size_t width, std::string_view text, size_t hang = 0);

    /// Time has come so far: a later change of the clock is told.
    void StartAt(int64_t t) { told_ = t; }

    void Write(const Event& event);

    /// Writes what is still held back.
    void Finish();

private:
    struct Line;

    void Print(const Event& event, size_t repeats, int64_t last);
    void PrintClockChanges(int64_t t);
    void PrintDay(const std::string& day);
    void PrintLine(const Line& line);

    std::ostream& output_;
    PageOptions options_;
    std::string day_;
    std::string time_;
    std::optional<int64_t> told_;  ///< the instant up to which changes of the clock are told
    std::optional<Event> held_;    ///< the latest line, until the next one is another
    size_t repeats_ = 0;
    int64_t lastRepeat_ = 0;
};

}  // namespace TARN::Story

#endif  // STORY_TIMELINE_PAGE_H
