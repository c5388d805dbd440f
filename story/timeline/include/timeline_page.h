#ifndef STORY_TIMELINE_PAGE_H
#define STORY_TIMELINE_PAGE_H

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "event.h"

namespace TARN::Story {

/// Sets the timeline: columns, a heading for each day, colour, and one line for a line that repeats.
class TimelinePage {
public:
    TimelinePage(std::ostream& output, bool isColored) : output_(output), isColored_(isColored) {}

    /// A line of its own, outside the columns.
    void Title(std::string_view text);
    void Plain(std::string_view text);

    void Write(const Event& event);

    /// Writes what is still held back.
    void Finish();

private:
    void Print(const Event& event, size_t repeats, int64_t last);
    void PrintDay(int64_t t);

    std::ostream& output_;
    bool isColored_;
    std::string day_;
    std::string time_;
    std::optional<Event> held_;  ///< the latest line, until the next one is another
    size_t repeats_ = 0;
    int64_t lastRepeat_ = 0;
};

}  // namespace TARN::Story

#endif  // STORY_TIMELINE_PAGE_H
