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
    std::string_view name;
    std::string_view color;
};

constexpr std::array kLooks = {
    Look{Subject::SCREEN, "screen", kHand},
    Look{Subject::CHARGER, "charger", kHand},
    Look{Subject::POWER, "power", kHand},
    Look{Subject::ALARM, "alarm", kHand},
    Look{Subject::DEVICE, "device", kHand},
    Look{Subject::TASK, "task", kHand},
    Look{Subject::STATE, "state", kHost},
    Look{Subject::NIGHT, "night", kHost},
    Look{Subject::SLEEP, "sleep", kSleep},
    Look{Subject::FREEZE, "freeze", kProcess},
    Look{Subject::LOCK, "lock", kProcess},
    Look{Subject::CLEAN, "clean", kProcess},
    Look{Subject::BLUETOOTH, "bluetooth", kNetwork},
    Look{Subject::WIFI, "wifi", kNetwork},
    Look{Subject::MODEM, "modem", kNetwork},
    Look{Subject::FIREWALL, "firewall", kNetwork},
    Look{Subject::PUSH, "push", kNetwork},
    Look{Subject::TIMER, "timer", kTimer},
    Look{Subject::EXEMPTION, "exempt", kHost},
    Look{Subject::SERVICE, "service", kTrace},
    Look{Subject::FAULT, "fault", kTrace},
    Look{Subject::FILE, "file", kTrace},
    Look{Subject::DUMP, "dump", kTrace},
    Look{Subject::MESSAGE, "message", kTrace},
    Look{Subject::DEBUG_LOG, "debug", kDim},
    Look{Subject::INFO_LOG, "info", kDim},
    Look{Subject::WARNING, "warning", kTimer},
    Look{Subject::ERROR, "error", kRed},
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

/// Text that a terminal shows and does not obey: names come from traces.
std::string Tame(std::string_view text) {
    std::string tame(text);
    std::replace_if(
        tame.begin(), tame.end(), [](char c) { return (static_cast<unsigned char>(c) < ' ') || c == '\x7f'; }, '?');
    return tame;
}

}  // namespace

void TimelinePage::Title(std::string_view text) {
    output_ << (isColored_ ? kBold : "") << Tame(text) << (isColored_ ? kReset : "") << '\n';
}

void TimelinePage::Plain(std::string_view text) {
    output_ << Tame(text) << '\n';
}

void TimelinePage::Write(const Entry& entry) {
    const bool isRepeat = held_ && held_->subject == entry.subject && held_->text == entry.text &&
                          held_->tone != Tone::QUIET && entry.tone != Tone::QUIET;
    if (isRepeat) {
        ++repeats_;
        lastRepeat_ = entry.t;
        return;
    }
    Finish();
    held_ = entry;
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

void TimelinePage::Print(const Entry& entry, size_t repeats, int64_t last) {
    PrintDay(entry.t);
    const Look& look = kLooks[static_cast<size_t>(entry.subject)];
    std::string time = Replay::TimeZone::Format(entry.t, kTimeFormat);
    const bool isSameTime = time == time_;
    const std::string_view all = entry.tone == Tone::FAILURE ? kRed : entry.tone == Tone::QUIET ? kDim : "";
    const auto paint = [this](std::string_view color) { output_ << (isColored_ ? color : ""); };
    paint(all);
    paint(isSameTime && all.empty() ? kDim : "");
    output_ << time << "  ";
    paint(isSameTime && all.empty() ? kReset : "");
    paint(all.empty() ? look.color : "");
    output_ << look.name << std::string(kSubjectColumn - std::min(kSubjectColumn, look.name.size()), ' ');
    paint(all.empty() && !look.color.empty() ? kReset : "");
    output_ << Tame(entry.text);
    if (repeats > 0) {
        output_ << " (" << Times(static_cast<int64_t>(repeats) + 1) << " until "
                << Replay::TimeZone::Format(last, kTimeFormat) << ')';
    }
    paint(all.empty() ? "" : kReset);
    output_ << '\n';
    time_ = std::move(time);
}

}  // namespace TARN::Story
