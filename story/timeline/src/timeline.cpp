#include "timeline.h"

#include "night_summary.h"
#include "phrases.h"
#include "time_zone.h"
#include "timeline_page.h"
#include "use_folder.h"

namespace TARN::Story {

namespace {

constexpr size_t kHeadColumn = 12;
constexpr size_t kSummaryColumn = 18;

/// From when to when; with the zone's names of the two where the clock is changed in between.
std::string FromTo(const Night& night) {
    using Replay::TimeZone;
    const bool isOneDay = TimeZone::Format(night.start, "%F") == TimeZone::Format(night.end, "%F");
    const std::string zone = TimeZone::OffsetMs(night.start) == TimeZone::OffsetMs(night.end) ? "" : " %Z";
    const std::string format = "%a %-d %b %Y %H:%M" + zone;
    return TimeZone::Format(night.start, format.c_str()) + " – " +
           TimeZone::Format(night.end, isOneDay ? ("%H:%M" + zone).c_str() : format.c_str());
}

/// How long a trace is; whole days as such.
std::string Length(int64_t ms) {
    constexpr int64_t kDayMs = 24L * 3600 * 1000;
    const int64_t days = ms / kDayMs;
    return days > 1 && ms % kDayMs == 0 ? Count(days, "day") : Duration(ms);
}

}  // namespace

struct Timeline::Parts {
    Parts(std::ostream& output, const TimelineOptions& options)
        : page(output, {.isColored = options.isColored, .columns = options.columns}),
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
    my_->page.StartAt(night.start);
    for (const HeadFact& fact : night.head) {
        my_->page.Row(fact.name, kHeadColumn, fact.text);
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
        my_->page.Row(line.name, kSummaryColumn, line.text, line.hang);
    }
}

}  // namespace TARN::Story
