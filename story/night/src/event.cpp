#include "event.h"

#include <array>

#include "night.h"

namespace TARN::Story {

namespace {

constexpr std::array<std::string_view, kSubjects> kSubjectNames = {
    "screen", "charger", "power",     "alarm",   "device", "task",     "state",   "night", "sleep",  "freeze",
    "lock",   "clean",   "bluetooth", "wifi",    "modem",  "firewall", "push",    "timer", "exempt", "service",
    "fault",  "file",    "dump",      "message", "debug",  "info",     "warning", "error"};
constexpr std::array<std::string_view, 5> kOutcomeNames = {"happened", "done", "kept", "failed", "noted"};
constexpr std::array<std::string_view, kAspects> kAspectNames = {"running",  "frozen", "clean",     "exempt",
                                                                 "firewall", "locks",  "stretching"};

}  // namespace

std::string_view NameOf(Subject subject) noexcept {
    return kSubjectNames[static_cast<size_t>(subject)];
}

std::string_view NameOf(Outcome outcome) noexcept {
    return kOutcomeNames[static_cast<size_t>(outcome)];
}

std::string_view NameOf(Aspect aspect) noexcept {
    return kAspectNames[static_cast<size_t>(aspect)];
}

}  // namespace TARN::Story
