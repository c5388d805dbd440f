#include "timeline_page.h"

#include <algorithm>
#include <array>

#include "phrases.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

// One colour for each family of subjects; failures take over the whole line.
constexpr std::string_view kReset = "\033[0m";
constexpr std::string_view kBold = "\033[1m";
constexpr std::string_view kDim = "\033[2m";
constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kHand;                  // what the person and the world do
constexpr std::string_view kHost = "\033[34m";     // what the host decides
constexpr std::string_view kSleep = "\033[1;32m";  // the user's sleep
constexpr std::string_view kProcess = "\033[36m";
constexpr std::string_view kNetwork = "\033[35m";
constexpr std::string_view kTimer = "\033[33m";
constexpr std::string_view kTrace = "\033[1m";  // what the trace does to the service

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
    Look{Subject::DEBUG_LOG, kDim},     Look{Subject::INFO_LOG, kDim},  Look{Subject::WARNING, kTimer},
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

constexpr size_t kSubjectColumn = 11;
constexpr char kDayFormat[] = "%a %-d %b %Y";
constexpr char kTimeFormat[] = "%H:%M:%S";

/// The log and a dump's text: there for whoever looks for it.
bool IsQuiet(const Event& event) {
    return event.outcome == Outcome::NOTED && (event.subject == Subject::DUMP || event.subject >= Subject::DEBUG_LOG);
}

std::string Sentence(const Event& event) {
    return Because(event.text, event.reason);
}

}  // namespace

void TimelinePage::Title(std::string_view text) {
    output_ << (isColored_ ? kBold : "") << Tame(text) << (isColored_ ? kReset : "") << '\n';
}

void TimelinePage::Plain(std::string_view text) {
    output_ << Tame(text) << '\n';
}

void TimelinePage::Write(const Event& event) {
    const bool isRepeat =
        held_ && held_->subject == event.subject && Sentence(*held_) == Sentence(event) && !IsQuiet(event);
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

void TimelinePage::PrintDay(int64_t t) {
    std::string day = Replay::TimeZone::Format(t, kDayFormat);
    if (day != day_) {
        day_ = std::move(day);
        time_.clear();
        output_ << '\n';
        Title(day_);
    }
}

void TimelinePage::Print(const Event& event, size_t repeats, int64_t last) {
    PrintDay(event.t);
    const Look& look = kLooks[static_cast<size_t>(event.subject)];
    std::string time = Replay::TimeZone::Format(event.t, kTimeFormat);
    const bool isSameTime = time == time_;
    const std::string_view all = event.outcome == Outcome::FAILED ? kRed : IsQuiet(event) ? kDim : "";
    const auto paint = [this](std::string_view color) { output_ << (isColored_ ? color : ""); };
    paint(all);
    paint(isSameTime && all.empty() ? kDim : "");
    output_ << time << "  ";
    paint(isSameTime && all.empty() ? kReset : "");
    paint(all.empty() ? look.color : "");
    output_ << NameOf(event.subject)
            << std::string(kSubjectColumn - std::min(kSubjectColumn, NameOf(event.subject).size()), ' ');
    paint(all.empty() && !look.color.empty() ? kReset : "");
    output_ << Tame(Sentence(event));
    if (repeats > 0) {
        output_ << " (" << Times(static_cast<int64_t>(repeats) + 1) << " until "
                << Replay::TimeZone::Format(last, kTimeFormat) << ')';
    }
    paint(all.empty() ? "" : kReset);
    output_ << '\n';
    time_ = std::move(time);
}

}  // namespace TARN::Story
