#ifndef STORY_TIMELINE_ENTRY_H
#define STORY_TIMELINE_ENTRY_H

#include <cstdint>
#include <string>

namespace TARN::Story {

/// What a line of the timeline is about; its second column.
enum class Subject : uint8_t {
    SCREEN,
    CHARGER,
    POWER,
    ALARM,
    DEVICE,
    TASK,
    STATE,
    NIGHT,
    SLEEP,
    FREEZE,
    LOCK,
    CLEAN,
    BLUETOOTH,
    WIFI,
    MODEM,
    FIREWALL,
    PUSH,
    TIMER,
    EXEMPTION,
    SERVICE,
    FAULT,
    FILE,
    DUMP,
    MESSAGE,
    DEBUG_LOG,
    INFO_LOG,
    WARNING,
    ERROR,
};

enum class Tone : uint8_t {
    PLAIN,
    FAILURE,  ///< something did not work
    QUIET,    ///< the plugin's log, a dump's text
};

/// What a line means for folding a stretch of plain use.
enum class Use : uint8_t {
    NONE,     ///< never folded
    ROUTINE,  ///< goes with every use of the phone
    SCREEN_ON,
    SCREEN_OFF,
    UNLOCKED,
    PLUGGED,
    UNPLUGGED,
};

/// One line of the timeline.
struct Entry {
    int64_t t;  ///< wall clock, milliseconds
    Subject subject;
    std::string text;
    Tone tone = Tone::PLAIN;
    Use use = Use::NONE;
};

}  // namespace TARN::Story

#endif  // STORY_TIMELINE_ENTRY_H
