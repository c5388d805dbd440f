#ifndef STORY_EVENT_H
#define STORY_EVENT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TARN::Story {

/// What an event is about.
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
inline constexpr size_t kSubjects = static_cast<size_t>(Subject::ERROR) + 1;

/// A subject's name as people read it and programs write it: "bluetooth".
[[nodiscard]] std::string_view NameOf(Subject subject) noexcept;

/// What an event came to.
enum class Outcome : uint8_t {
    HAPPENED,  ///< the person, the world or the trace did it
    DONE,      ///< the host or the plugin did it
    KEPT,      ///< the host or the plugin looked at it and left it as it was
    FAILED,    ///< tried, and it did not work
    NOTED,     ///< something was said that changes nothing
};

/// An outcome as programs write it: "kept".
[[nodiscard]] std::string_view NameOf(Outcome outcome) noexcept;

/// What an event means for folding a stretch of plain use.
enum class Use : uint8_t {
    NONE,     ///< never folded
    ROUTINE,  ///< goes with every use of the phone
    SCREEN_ON,
    SCREEN_OFF,
    UNLOCKED,
    PLUGGED,
    UNPLUGGED,
};

/// One of the values that decided, as people read it: "still for", "12 min".
struct Value {
    std::string name;
    std::string text;
};

inline constexpr uint32_t kNoEvent = UINT32_MAX;
inline constexpr int64_t kNoTime = INT64_MAX;

/// One thing that happened, was done, or was decided against, told whole: text, then ": " and the reason.
struct Event {
    int64_t t = 0;  ///< wall clock, milliseconds
    Subject subject = Subject::SERVICE;
    Outcome outcome = Outcome::HAPPENED;
    Use use = Use::NONE;
    bool isRepeat = false;      ///< says again what the event of the subject before it said; a timeline leaves it out
    uint32_t cause = kNoEvent;  ///< the event that set it off, by its place in the night
    std::string text;           ///< "stays on: a device is connected"
    std::string reason;  ///< "screen off for half an hour at night"; empty: none is known, or it lies in the text
    std::vector<Value> values;  ///< what decided it
    std::string next;           ///< when it may come about after all; empty: not known, or nothing to wait for
    int64_t nextBy = kNoTime;   ///< wall clock, milliseconds: by then `next` has come or was called off
};

}  // namespace TARN::Story

#endif  // STORY_EVENT_H
