#include "phrases.h"

#include <algorithm>

#include "time_zone.h"

namespace TARN::Story {

namespace {

/// Names go on up to this length.
constexpr size_t kNamesLength = 44;
constexpr int64_t kMsPerSecond = 1000;
constexpr int64_t kSecondsPerMinute = 60;
constexpr int64_t kMinutesPerHour = 60;

}  // namespace

std::string Count(int64_t number, std::string_view noun) {
    const bool isOne = number == 1;
    const bool endsInS = !noun.empty() && noun.back() == 's';
    return std::to_string(number) + " " + std::string(noun) + (isOne ? "" : endsInS ? "es" : "s");
}

std::string Times(int64_t number) {
    return number == 1 ? "once" : number == 2 ? "twice" : std::to_string(number) + " times";
}

std::string Names(const std::vector<std::string>& names) {
    std::string text;
    for (size_t i = 0; i < names.size(); ++i) {
        const bool isLast = i + 1 == names.size();
        if (i > 0 && !isLast && text.size() + names[i].size() > kNamesLength) {
            return text + " and " + std::to_string(names.size() - i) + " more";
        }
        text += (i == 0 ? "" : isLast ? " and " : ", ") + names[i];
    }
    return text;
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
    const std::string hours = std::to_string(minutes / kMinutesPerHour) + " h";
    const std::string rest = std::to_string(minutes % kMinutesPerHour);
    return rest == "0" ? hours : hours + (rest.size() < 2 ? " 0" : " ") + rest + " min";
}

std::string LengthOf(int64_t seconds) {
    return seconds == 1800 ? "half an hour" : Duration(seconds * kMsPerSecond);
}

std::string Clock(int64_t t) {
    return Replay::TimeZone::Format(t, "%H:%M");
}

std::string LocalTime(int64_t t) {
    std::string text = Replay::TimeZone::Format(t, "%FT%T%z");
    return text.insert(text.size() - 2, ":");
}

std::string Because(std::string sentence, std::string_view reason) {
    return reason.empty() ? sentence : std::move(sentence.append(": ").append(reason));
}

}  // namespace TARN::Story
