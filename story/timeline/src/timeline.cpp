#include "timeline.h"

#include <algorithm>

#include "night_summary.h"
#include "phrases.h"
#include "time_zone.h"
#include "timeline_page.h"
#include "use_folder.h"

namespace TARN::Story {

namespace {

constexpr size_t kHeadColumn = 12;
constexpr size_t kSummaryColumn = 18;

std::string FromTo(const Night& night) {
    const char* const format = "%a %-d %b %Y %H:%M";
    const bool isOneDay = Replay::TimeZone::Format(night.start, "%F") == Replay::TimeZone::Format(night.end, "%F");
    return Replay::TimeZone::Format(night.start, format) + " – " +
           Replay::TimeZone::Format(night.end, isOneDay ? "%H:%M" : format);
}

/// How long a trace is; whole days as such.
std::string Length(int64_t ms) {
    constexpr int64_t kDayMs = 24L * 3600 * 1000;
    const int64_t days = ms / kDayMs;
    return days > 1 && ms % kDayMs == 0 ? Count(days, "day") : Duration(ms);
}

std::string Column(const std::string& name, size_t width) {
    return name + std::string(width - std::min(width, name.size()), ' ');
}

}  // namespace

struct Timeline::Parts {
    Parts(std::ostream& output, const TimelineOptions& options)
        : page(output, options.isColored),
          folder(options.isUnfolded, [this](const Event& event) { page.Write(event); }) {}

    TimelinePage page;
    UseFolder folder;
};

Timeline::Timeline(std::ostream& output, const TimelineOptions& options)
    : my_(std::make_unique<Parts>(output, options)) {}

Timeline::~Timeline() = default;

void Timeline::OnHead(const Night& night) {
    my_->page.Title(night.name);
    my_->page.Plain(FromTo(night) + ", " + Length(night.end - night.start) + ", " + night.timezone);
    for (const HeadFact& fact : night.head) {
        my_->page.Plain(Column(fact.name, kHeadColumn) + fact.text);
    }
}

void Timeline::OnEvent(const Night& /*night*/, const Event& event) {
    if (!event.isRepeat) {
        my_->folder.Add(event);
    }
}

void Timeline::Flush() {
    my_->folder.Finish();
    my_->page.Finish();
}

void Timeline::OnEnd(const Night& night) {
    Flush();
    my_->page.Plain("");
    my_->page.Title("Summary");
    for (const SummaryLine& line : Summarise(night)) {
        my_->page.Plain(Column(line.name, kSummaryColumn) + line.text);
    }
}

}  // namespace TARN::Story
