#include "timeline.h"

#include <algorithm>
#include <sstream>

#include "call_stories.h"
#include "fact_stories.h"
#include "log_stories.h"
#include "message_stories.h"
#include "night_summary.h"
#include "phone_picture.h"
#include "teller.h"
#include "time_zone.h"
#include "timeline_page.h"
#include "use_folder.h"

namespace TARN::Story {

namespace {

constexpr size_t kSummaryColumn = 18;

std::string FromTo(const Replay::Trace& trace) {
    const char* const format = "%a %-d %b %Y %H:%M";
    const bool isOneDay = Replay::TimeZone::Format(trace.start, "%F") == Replay::TimeZone::Format(trace.end, "%F");
    return Replay::TimeZone::Format(trace.start, format) + " – " +
           Replay::TimeZone::Format(trace.end, isOneDay ? "%H:%M" : format);
}

/// How long a trace is; whole days as such.
std::string Length(int64_t ms) {
    constexpr int64_t kDayMs = 24L * 3600 * 1000;
    const int64_t days = ms / kDayMs;
    return days > 1 && ms % kDayMs == 0 ? Count(days, "day") : Duration(ms);
}

std::string Strategies(const DevStandbyMgr::StandbyConfig& host) {
    std::string names;
    for (const std::string& name : host.strategies) {
        names += (names.empty() ? "" : ", ") + name;
    }
    return "strategies " + (names.empty() ? "none" : names);
}

std::string Host(const DevStandbyMgr::StandbyConfig& host) {
    const auto powerOff = host.halfHourSwitches.find("poweroff");
    const bool isPowerOff = powerOff != host.halfHourSwitches.end() && powerOff->second;
    return std::string("host ") + (host.mode == DevStandbyMgr::HostMode::AUTOMATIC ? "automatic" : "scripted") +
           ", power-off strategy " + (isPowerOff ? "on" : "off");
}

}  // namespace

struct Timeline::Storytellers {
    Storytellers(std::ostream& output, const TimelineOptions& options)
        : page(output, options.isColored),
          folder(options.isUnfolded, [this](const Entry& entry) { page.Write(entry); }),
          teller([this](Entry entry) { folder.Add(std::move(entry)); }),
          sleep(teller, night),
          messages(teller, phone, sleep),
          calls(teller, night, phone, sleep),
          logs(teller, night, calls, sleep, options.leastLog) {}

    /// What was going on is over when time goes on.
    void MoveTo(int64_t t) {
        if (t != teller.Now()) {
            sleep.Settle();
            teller.MoveTo(t);
        }
    }

    void SetFacts(const Replay::SetStep& step, bool isStart) {
        TellFacts(teller, step, isStart);
        calls.Radios().OnFacts(step, isStart);
        phone.Apply(step);
    }

    void Do(const Replay::SetStep& step) { SetFacts(step, /*isStart=*/false); }

    void Do(const Replay::RestartStep& step) {
        sleep.Settle();
        sleep.OnRestart();
        teller.Tell(Subject::SERVICE, step.isCrash ? "crashes and starts again" : "stops and starts again");
    }

    void Do(const Replay::FileStep& step) {
        teller.Tell(Subject::FILE, step.name + (step.text ? " is written behind the service's back"
                                                          : " is removed behind the service's back"));
    }

    void Do(const Replay::DumpStep& step) {
        std::string words;
        for (const std::string& word : step.words) {
            words += (words.empty() ? "" : " ") + word;
        }
        teller.Tell(Subject::DUMP, std::move(words));
        teller.SetCause(Cause::DUMP);
    }

    // Messages and broadcasts are told when they reach the strategies.
    void Do(const Replay::MessageStep& /*step*/) {}
    void Do(const Replay::BroadcastStep& /*step*/) {}

    TimelinePage page;
    UseFolder folder;
    Teller teller;
    NightSummary night;
    PhonePicture phone;
    SleepStory sleep;
    MessageStories messages;
    CallStories calls;
    LogStories logs;
    int64_t start = 0;
};

Timeline::Timeline(std::ostream& output, const TimelineOptions& options)
    : my_(std::make_unique<Storytellers>(output, options)) {}

Timeline::~Timeline() = default;

void Timeline::OnBegin(const Replay::Trace& trace) {
    my_->start = trace.start;
    my_->page.Title(trace.name);
    my_->page.Plain(FromTo(trace) + ", " + Length(trace.end - trace.start) + ", " + trace.timezone.Name());
    my_->page.Plain(Strategies(trace.host));
    my_->page.Plain(Host(trace.host));
    my_->MoveTo(trace.start);
    my_->SetFacts(trace.device, /*isStart=*/true);
}

void Timeline::OnStep(const Replay::Step& step) {
    my_->MoveTo(step.t);
    std::visit([this](const auto& what) { my_->Do(what); }, step.what);
}

void Timeline::OnLog(int64_t t, const LogLine& line) {
    my_->MoveTo(t);
    my_->logs.OnLog(line);
}

void Timeline::OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                      const nlohmann::ordered_json& result) {
    my_->MoveTo(t);
    my_->calls.OnCall(operation, arguments, result);
}

void Timeline::OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) {
    my_->MoveTo(t);
    my_->sleep.Settle();
    my_->messages.OnDeliver(message);
}

void Timeline::OnDump(int64_t /*t*/, const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.empty()) {
            my_->teller.Tell(Subject::DUMP, "│ " + line, Tone::QUIET);
        }
    }
}

void Timeline::OnEnd(int64_t t, const Replay::Summary& summary) {
    my_->sleep.Settle();
    my_->teller.Finish();
    my_->folder.Finish();
    my_->page.Finish();
    my_->page.Plain("");
    my_->page.Title("Summary");
    for (const NightSummary::Line& line : my_->night.Lines(my_->start, t, summary)) {
        my_->page.Plain(line.name + std::string(kSummaryColumn - std::min(kSummaryColumn, line.name.size()), ' ') +
                        line.text);
    }
}

}  // namespace TARN::Story
