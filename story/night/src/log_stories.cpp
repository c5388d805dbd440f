#include "log_stories.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "log_names.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

constexpr Subject SubjectOf(LogLevel level) {
    switch (level) {
        case LogLevel::DEBUG:
            return Subject::DEBUG_LOG;
        case LogLevel::INFO:
            return Subject::INFO_LOG;
        case LogLevel::WARN:
            return Subject::WARNING;
        default:
            return Subject::ERROR;
    }
}

/// A text without its numbers: what two lines of one kind share.
std::string Kind(std::string_view text) {
    std::string kind(text);
    std::replace_if(
        kind.begin(), kind.end(), [](char c) { return c >= '0' && c <= '9'; }, '#');
    return kind;
}

/// What a radio was switched off by, in a person's words.
struct SwitchedOff {
    std::string_view by;
    std::string_view words;
};
constexpr std::array kSwitchedOff = {
    SwitchedOff{"SCREEN_OFF_HALF_HOUR", "as the screen was long off at night"},
    SwitchedOff{"STATE_TRANSIT", "in deep standby at night"},
    SwitchedOff{"DEVICE_STATE_CHANGED", "when nothing used it any more"},
    SwitchedOff{"USER_SLEEP_STATE_CHANGED", "as the user slept"},
    SwitchedOff{"a timer", "by full power saving"},
};

std::string_view Behind(std::string_view line, std::string_view mark) {
    const size_t at = line.find(mark);
    return at == std::string_view::npos ? std::string_view() : line.substr(at + mark.size());
}

/// The reason that a line of the ledger gives.
std::string WhyForgotten(std::string_view line) {
    const std::string_view by = Behind(line, "switched off by ");
    const int64_t sinceMs = std::atoll(std::string(Behind(line, " is off since ")).c_str());
    const auto* known =
        std::find_if(kSwitchedOff.begin(), kSwitchedOff.end(), [&](const SwitchedOff& one) { return one.by == by; });
    return "the ledger: forgotten since " + Clock(sinceMs) + ", switched off " +
           (known == kSwitchedOff.end() ? "by " + std::string(by) : std::string(known->words));
}

}  // namespace

void LogStories::OnLog(const LogLine& line) {
    const bool isShown = leastLog_ && line.level >= *leastLog_;
    if (isShown) {
        Show(line);
    }
    const PluginText* text = FindPluginText(Replay::SourceName(line.file), line.text);
    if (text != nullptr && (!text->text.empty() || line.level >= LogLevel::WARN)) {
        Tell(*text, line);
    } else if (line.level >= LogLevel::WARN && !isShown) {
        Complain(line);
    }
}

void LogStories::Tell(const PluginText& text, const LogLine& line) {
    const auto write = [&](Outcome outcome) {
        const Scribe::Id id = scribe_.WriteNew(text.subject, outcome, std::string(text.told));
        Event& event = scribe_.At(id);
        event.next = text.next;
        if (line.level >= LogLevel::WARN && outcome == Outcome::FAILED) {
            event.isRepeat = !complaints_.insert(Replay::TimeZone::Format(event.t, "%F ") + event.text).second;
        }
    };
    switch (text.meaning) {
        case Meaning::TOLD_BY_CALL:
            break;
        case Meaning::NOTHING_OWED:
            calls_.Radios().OnNothingOwed(text.subject);
            break;
        case Meaning::KEPT:
            write(Outcome::KEPT);
            break;
        case Meaning::KEPT_RADIO:
        case Meaning::KEPT_AIRPLANE:
            calls_.Radios().OnKept(text);
            break;
        case Meaning::KEPT_TIMERS: {
            const bool isLit = scribe_.Value(LaneId::SCREEN) == "on";
            const bool isPlugged = scribe_.Value(LaneId::CHARGER) == "plugged";
            const Scribe::Id id =
                scribe_.WriteNew(text.subject, Outcome::KEPT,
                                 isLit && isPlugged ? "not stretched: charging, and the screen is on"
                                 : isLit            ? "not stretched: the screen is on"
                                 : isPlugged        ? "not stretched: charging"
                                                    : "not stretched: taken as charging, or its screen as on");
            scribe_.At(id).next = text.next;
            scribe_.At(id).use = Use::ROUTINE;
            break;
        }
        case Meaning::FAILED:
            write(Outcome::FAILED);
            break;
        case Meaning::FAILED_OFF:
            if (calls_.Radios().IsAnyOff()) {
                write(Outcome::FAILED);
            }
            break;
        case Meaning::FAILED_UNTOLD:
            if (!scribe_.HasWritten(text.subject)) {
                write(Outcome::FAILED);
            }
            break;
        case Meaning::NOTED:
            write(Outcome::NOTED);
            break;
        case Meaning::STARTS:
            scribe_.SetCause(Cause::START);
            break;
        case Meaning::STOPS:
            scribe_.SetCause(Cause::STOP);
            break;
        case Meaning::FULL_SAVING:
            scribe_.SetCause(Cause::FULL_POWER_SAVE, scribe_.Last(Subject::SCREEN));
            break;
        case Meaning::FORGOTTEN:
            scribe_.SetCause(Cause::LEDGER, WhyForgotten(line.text), scribe_.Last(text.subject));
            break;
        case Meaning::CLEANS:
            scribe_.SetCause(Cause::SLEEP_CLEAN, scribe_.Last(Subject::SLEEP));
            calls_.Processes().BeginClean(/*isSparingUsed=*/false);
            break;
        case Meaning::SPARES: {
            unsigned type = 0;
            int uid = -1;
            if (std::sscanf(std::string(line.text).c_str(), "continuous task type: %u, uid: %d", &type, &uid) == 2) {
                calls_.Processes().Spare(uid);
            }
            break;
        }
        case Meaning::JUDGES:
        case Meaning::WAKEUP_NEAR:
        case Meaning::HEARS_AUDIO:
        case Meaning::HEARS_CALL:
        case Meaning::SEES_SPORT:
            sleep_.OnJudgement(text.meaning, line.text);
            break;
    }
}

void LogStories::Show(const LogLine& line) {
    std::string text = "[" + std::string(line.file) + "(" + line.function + "):" + std::to_string(line.line) + "] ";
    scribe_.Write(SubjectOf(line.level), Outcome::NOTED, std::move(text.append(line.text)));
}

void LogStories::Complain(const LogLine& line) {
    const std::string text = std::string(Replay::SourceName(line.file)) + ": " + std::string(line.text);
    const Scribe::Id id =
        scribe_.Write(SubjectOf(line.level), line.level == LogLevel::ERROR ? Outcome::FAILED : Outcome::NOTED, text);
    scribe_.At(id).isRepeat = !complaints_.insert(Kind(text)).second;
}

}  // namespace TARN::Story
