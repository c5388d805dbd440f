#ifndef STORY_WHY_H
#define STORY_WHY_H

#include <array>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "night.h"

namespace TARN::Story {

/// What can be asked about.
enum class About : uint8_t { STATE, SLEEP, SCREEN, BLUETOOTH, WIFI, MODEM, NETWORK, FREEZE, LOCKS, TIMERS, CLEAN };
inline constexpr size_t kAbouts = static_cast<size_t>(About::CLEAN) + 1;

/// Its word: "bluetooth".
[[nodiscard]] std::string_view WordOf(About about) noexcept;
[[nodiscard]] std::optional<About> AboutOf(std::string_view word) noexcept;

struct WhyQuestion {
    std::optional<About> about;  ///< nothing: all of them in brief
    std::string app;             ///< a process's name, a bundle, a uid or a pid; then `about` does not count
};

/// An event of the night with what set it off.
struct Told {
    Event event;
    std::vector<Event> causes;  ///< the nearest first
};

/// Something that was looked at and left as it was, or a try that failed; what came to the same is told once.
struct Refusal {
    Told told;          ///< the last time
    int64_t first = 0;  ///< when it came to the same first
    size_t times = 1;
};

/// How deep SLEEP is.
struct PhaseAnswer {
    std::string name;  ///< "DEEP"
    int64_t number = 0;
    int64_t since = 0;
};

/// How one thing stands at the moment that was asked for.
struct SubjectAnswer {
    About about = About::STATE;
    std::string state;                 ///< the lane's value, kNotKnown; empty for what has no state
    int64_t number = 0;                ///< the lane's number
    std::optional<PhaseAnswer> phase;  ///< of STATE, in SLEEP
    std::optional<int64_t> since;      ///< nothing: since before the night began, or not known
    std::optional<Told> change;        ///< what made it so
    std::optional<Told> adjustment;    ///< what made the number so, if that came later
    std::vector<Refusal> refusals;     ///< since then, the latest last
    std::optional<int64_t> lastLook;   ///< of SLEEP: when the detector judged last; nothing: not yet
    std::string next;                  ///< when it may change, or change after all; empty: not known
    std::string lacking;               ///< why nothing is to change it: what would is not there; else empty
    std::vector<std::string> who;      ///< whom it concerns, by name: on the trust list, frozen, proxied, killed
};

/// How one aspect of an application stands.
struct AspectAnswer {
    Aspect aspect = Aspect::RUNNING;
    std::string value;
    std::optional<int64_t> since;  ///< nothing: since before the night began
    std::string reason;            ///< of the change
    std::optional<Told> change;    ///< the event that tells of it
    std::string reasonNow;         ///< another reason for which it is still so; else empty
    std::optional<int64_t> reasonSince;
    std::string failure;  ///< the last try to change it that did not work: "could not be thawed"; else empty
    std::optional<int64_t> failedAt;
};

struct AppAnswer {
    App app;
    std::vector<AspectAnswer> aspects;  ///< those of which the record says something
    bool isFirewallOn = false;          ///< so that it matters who is on the trust list
};

struct WhyAnswer {
    int64_t t = 0;
    bool areDatesSaid = false;  ///< the night is longer than a day, so a time of day alone says too little
    bool isBrief = false;       ///< all subjects, a line or two each
    std::vector<SubjectAnswer> subjects;
    std::vector<AppAnswer> apps;  ///< one for each process that the name fits
};

/// Answers for the end of the millisecond `t`, which lies within the night. The night's time zone must be in use.
/// Throws InputError for an application that the night does not know; the message names the nearest that it knows.
[[nodiscard]] WhyAnswer Ask(const Night& night, int64_t t, const WhyQuestion& question);

/// The answer in plain sentences.
void Tell(const WhyAnswer& answer, std::ostream& output);

/// The answer for programs; times are wall clock milliseconds.
[[nodiscard]] nlohmann::ordered_json ToJson(const WhyAnswer& answer);

}  // namespace TARN::Story

#endif  // STORY_WHY_H
