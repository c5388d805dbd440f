#include "phrases.h"

#include <algorithm>

#include "time_zone.h"

namespace TARN::Replay {

namespace {

constexpr size_t kMostNames = 4;
constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kSecondsPerMinute = 60;
constexpr int64_t kMinutesPerHour = 60;

}  // namespace

std::string Count(int64_t number, std::string_view noun) {
    const bool isOne = number == 1;
    const bool endsInS = !noun.empty() && noun.back() == 's';
    return std::to_string(number) + " " + std::string(noun) + (isOne ? "" : endsInS ? "es" : "s");
}

std::string Names(const std::vector<std::string>& names) {
    // One name more is shorter than "and 1 more".
    const size_t shown = names.size() <= kMostNames + 1 ? names.size() : kMostNames;
    std::string text;
    for (size_t i = 0; i < shown; ++i) {
        const bool isLast = i + 1 == names.size();
        text += (i == 0 ? "" : isLast ? " and " : ", ") + names[i];
    }
    return shown == names.size() ? text : text + " and " + std::to_string(names.size() - shown) + " more";
}

std::string Duration(int64_t ms) {
    const int64_t seconds = ms / kMsPerSecond;
    if (seconds < kSecondsPerMinute) {
        return std::to_string(seconds) + " s";
    }
    const int64_t minutes = (seconds + kSecondsPerMinute / 2) / kSecondsPerMinute;
    if (minutes < kMinutesPerHour) {
        return std::to_string(minutes) + " min";
    }
    const std::string rest = std::to_string(minutes % kMinutesPerHour);
    return std::to_string(minutes / kMinutesPerHour) + " h " + (rest.size() < 2 ? "0" : "") + rest + " min";
}

std::string Clock(int64_t t) {
    return TimeZone::Format(t, "%H:%M");
}

std::string Because(std::string sentence, std::string_view reason) {
    return reason.empty() ? sentence : std::move(sentence.append(": ").append(reason));
}

}  // namespace TARN::Replay
