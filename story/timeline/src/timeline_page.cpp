#include "timeline_page.h"

#include <algorithm>
#include <array>

#include "clock_change.h"
#include "phrases.h"
#include "time_zone.h"
#include "wrap.h"

namespace TARN::Story {

namespace {

// One colour for each family of subjects, as far from black as from white, for light terminals and dark ones; failures
// take over the whole line.
constexpr std::string_view kReset = "\033[0m";
constexpr std::string_view kBold = "\033[1m";
constexpr std::string_view kDim = "\033[2m";
constexpr std::string_view kRed = "\033[38;5;167m";
constexpr std::string_view kHand;                       // what the person and the world do
constexpr std::string_view kHost = "\033[38;5;32m";     // what the host decides
constexpr std::string_view kSleep = "\033[1;38;5;64m";  // the user's sleep
constexpr std::string_view kProcess = "\033[38;5;30m";
constexpr std::string_view kNetwork = "\033[38;5;133m";
constexpr std::string_view kTimer = "\033[38;5;130m";
constexpr std::string_view kTrace = "\033[1m";  // what the trace does to the service, and the clock
constexpr std::string_view kWarning = "\033[1;38;5;130m";

struct Look {
    Subject subject;
    std::string_view color;
};

constexpr std::array kLooks = {
    Look{Subject::SCREEN, kHand},       Look{Subject::CHARGER, kHand},  Look{Subject::POWER, kHand},
    Look{Subject::ALARM, kHand},        Look{Subject::DEVICE, kHand},   Look{Subject::TASK, kHand},
    Look{Subject::STATE, kHost},        Look{Subject::NIGHT, kHost},    Look{Subject::SLEEP, kSleep},
    Look{Subject::FREEZE, kProcess},    Look{Subject::LOCK, kProcess},  Look{Subject::CLEAN, kProcess},
    Look{Subject::BLUETOOTH, kNetwork}, Look{Subject::WIFI, kNetwork},  Look{Subject::MODEM, kNetwork},
    Look{Subject::FIREWALL, kNetwork},  Look{Subject::PUSH, kNetwork},  Look{Subject::TIMER, kTimer},
    Look{Subject::EXEMPTION, kHost},    Look{Subject::SERVICE, kTrace}, Look{Subject::FAULT, kTrace},
    Look{Subject::FILE, kTrace},        Look{Subject::DUMP, kTrace},    Look{Subject::MESSAGE, kTrace},
    Look{Subject::DEBUG_LOG, kDim},     Look{Subject::INFO_LOG, kDim},  Look{Subject::WARNING, kWarning},
    Look{Subject::ERROR, kRed},
};

constexpr bool AreInOrder() {
    for (size_t i = 0; i < kLooks.size(); ++i) {
        if (static_cast<size_t>(kLooks[i].subject) != i) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());

constexpr size_t kTimeColumn = 10;
constexpr size_t kSubjectColumn = 11;
/// Where a page has no width of its own, its rows are no longer than this.
constexpr size_t kRowColumns = 100;
/// A column that would be narrower is not wrapped.
constexpr size_t kNarrowest = 20;
constexpr char kDayFormat[] = "%a %-d %b %Y";
constexpr char kTimeFormat[] = "%H:%M:%S";

std::string Column(std::string_view text, size_t width) {
    return std::string(text) + std::string(width - std::min(width, text.size()), ' ');
}

/// How wide a column is that begins at `from` in a page of `columns`; 0: without end.
size_t WidthFrom(size_t from, size_t columns) {
    return columns < from + kNarrowest ? 0 : columns - from;
}

/// The log and a dump's text: there for whoever looks for it. Warnings and errors are for everybody.
bool IsQuiet(const Event& event) {
    return event.outcome == Outcome::NOTED && (event.subject == Subject::DUMP || event.subject == Subject::DEBUG_LOG ||
                                               event.subject == Subject::INFO_LOG);
}

std::string Sentence(const Event& event) {
    return Because(event.text, event.reason);
}

}  // namespace

/// What stands in one line, or goes on below.
struct TimelinePage::Line {
    std::string time;
    std::string_view subject;
    std::string_view color;  ///< of the subject
    std::string_view all;    ///< of the whole line; empty: none
    std::string text;
};

void TimelinePage::Title(std::string_view text) {
    output_ << (options_.isColored ? kBold : "") << Tame(text) << (options_.isColored ? kReset : "") << '\n';
}

void TimelinePage::Plain(std::string_view text) {
    output_ << Tame(text) << '\n';
}

void TimelinePage::Row(std::string_view name, size_t width, std::string_view text, size_t hang) {
    const std::string tame = Tame(text);
    const size_t columns = options_.columns == 0 ? kRowColumns : std::min(kRowColumns, options_.columns);
    std::string left = Column(Tame(name), width);
    for (const std::string_view line : Wrap(tame, WidthFrom(width, columns), hang)) {
        output_ << left << line << '\n';
        left.assign(width + hang, ' ');
    }
}

void TimelinePage::Write(const Event& event) {
    const bool isRepeat = held_ && held_->subject == event.subject && Sentence(*held_) == Sentence(event) &&
                          !IsQuiet(event) && AreOfOneDay(held_->t, event.t);
    if (isRepeat) {
        ++repeats_;
        lastRepeat_ = event.t;
        return;
    }
    Finish();
    held_ = event;
}

void TimelinePage::Finish() {
    if (held_) {
        Print(*held_, repeats_, lastRepeat_);
        held_.reset();
        repeats_ = 0;
    }
}

void TimelinePage::PrintDay(const std::string& day) {
    if (day != day_) {
        day_ = day;
        time_.clear();
        output_ << '\n';
        Title(day_);
    }
}

/// The line stands in the day that ends or begins with the change, so that no day is left and entered again.
void TimelinePage::PrintClockChanges(int64_t t) {
    while (const auto change = told_ ? FindClockChange(*told_, t) : std::nullopt) {
        PrintDay(Replay::TimeZone::Format(change->IsBack() ? change->t - 1 : change->t, kDayFormat));
        PrintLine({change->Before(kTimeFormat), "clock", kTrace, "", change->Sentence()});
        told_ = change->t;
    }
    told_ = t;
}

void TimelinePage::PrintLine(const Line& line) {
    constexpr size_t kText = kTimeColumn + kSubjectColumn;
    const bool isSameTime = line.time == time_;
    const auto paint = [this](std::string_view color) { output_ << (options_.isColored ? color : ""); };
    const auto painted = [&](std::string_view color, const std::string& text) {
        paint(line.all.empty() ? color : "");
        output_ << text;
        paint(line.all.empty() && !color.empty() ? kReset : "");
    };
    paint(line.all);
    painted(isSameTime ? kDim : "", Column(line.time, kTimeColumn));
    painted(line.color, Column(line.subject, kSubjectColumn));
    bool isFirst = true;
    for (const std::string_view piece : Wrap(line.text, WidthFrom(kText, options_.columns))) {
        output_ << (isFirst ? "" : '\n' + std::string(kText, ' ')) << piece;
        isFirst = false;
    }
    paint(line.all.empty() ? "" : kReset);
    output_ << '\n';
    time_ = line.time;
}

void TimelinePage::Print(const Event& event, size_t repeats, int64_t last) {
    PrintClockChanges(event.t);
    PrintDay(Replay::TimeZone::Format(event.t, kDayFormat));
    std::string text = Tame(Sentence(event));
    if (repeats > 0) {
        text += " (" + Times(static_cast<int64_t>(repeats) + 1) + " until " +
                Replay::TimeZone::Format(last, kTimeFormat) + ")";
    }
    PrintLine({Replay::TimeZone::Format(event.t, kTimeFormat), NameOf(event.subject),
               kLooks[static_cast<size_t>(event.subject)].color,
               event.outcome == Outcome::FAILED ? kRed
               : IsQuiet(event)                 ? kDim
                                                : "",
               std::move(text)});
}

}  // namespace TARN::Story
