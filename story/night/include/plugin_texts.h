#ifndef STORY_PLUGIN_TEXTS_H
#define STORY_PLUGIN_TEXTS_H

#include <cstdint>
#include <span>
#include <string_view>

#include "event.h"

namespace TARN::Story {

/// What a line of the log means to a story.
enum class Meaning : uint8_t {
    TOLD_BY_CALL,   ///< says what a call beside it says too
    NOTHING_OWED,   ///< a restore finds nothing to bring back: everyday, unless the radio is off
    KEPT,           ///< the plugin or the host left something as it was
    KEPT_RADIO,     ///< ... a radio, while it was to go off
    KEPT_AIRPLANE,  ///< ... for airplane mode, so that no power-off begins
    KEPT_TIMERS,    ///< ... the timers, while they were to be stretched
    FAILED,         ///< something did not work
    FAILED_OFF,     ///< ... which matters only while a radio is off
    FAILED_UNTOLD,  ///< ... unless its instant told of the subject already
    NOTED,          ///< said, nothing done
    STARTS,         ///< what follows comes of the service starting
    STOPS,          ///< ... of its stopping
    FULL_SAVING,    ///< ... of the timer of full power saving
    FORGOTTEN,      ///< ... of the ledger: "forgotten: %s is off since %ld, switched off by %s"
    CLEANS,         ///< ... of a clean for the sleeping user
    SPARES,         ///< a clean passes over an application: "continuous task type: %u, uid: %d"
    JUDGES,         ///< the sleep detector's verdict: "...: %d, wakeup time: %ld"
    WAKEUP_NEAR,    ///< ... which the expected wake-up overrules
    HEARS_AUDIO,    ///< ... audio
    HEARS_CALL,     ///< ... a call
    SEES_SPORT,     ///< ... sport
};

/// A line of the log, by its source and how it begins, and what a story makes of it.
struct PluginText {
    std::string_view file;  ///< without ending
    std::string_view text;  ///< empty: any warning or error of the file
    Meaning meaning = Meaning::TOLD_BY_CALL;
    Subject subject = Subject::SERVICE;
    std::string_view told = {};  ///< in a person's words
    std::string_view next = {};  ///< when it may come about after all
};

/// Every text by which a story recognises a line, sorted by file. Warnings and errors that are not here are told as
/// they stand.
[[nodiscard]] std::span<const PluginText> PluginTexts() noexcept;

/// What is told where the native processes cannot be read.
inline constexpr std::string_view kNativesLeftOut =
    "the natives' running locks are left as they are: the native processes cannot be read";

/// The first entry of the file whose text the line begins with; null for none.
[[nodiscard]] const PluginText* FindPluginText(std::string_view file, std::string_view line) noexcept;

}  // namespace TARN::Story

#endif  // STORY_PLUGIN_TEXTS_H
