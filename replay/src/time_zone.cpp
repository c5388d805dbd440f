#include "time_zone.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <optional>
#include <regex>
#include <string_view>

#include "json_fields.h"

namespace TARN::Replay {

namespace {

using DevStandbyMgr::Refuse;

constexpr int64_t kMsPerSecond = 1000;
constexpr int kBaseYear = 1900;

bool IsInDatabase(const std::string& name) {
    static const std::regex kName("[A-Za-z0-9_+-]+(/[A-Za-z0-9_+-]+)*");
    if (!std::regex_match(name, kName)) {
        return false;
    }
    constexpr std::string_view kMagic = "TZif";
    std::ifstream file("/usr/share/zoneinfo/" + name, std::ios::binary);
    std::array<char, kMagic.size()> head{};
    return file.read(head.data(), head.size()) && std::string_view(head.data(), head.size()) == kMagic;
}

bool IsPosix(const std::string& text) {
    static const std::regex kZone(
        "(<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})[+-]?[0-9]{1,2}(:[0-9]{1,2}){0,2}"
        "((<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})([+-]?[0-9]{1,2}(:[0-9]{1,2}){0,2})?"
        "(,(M[0-9]{1,2}\\.[0-9]\\.[0-9]|J?[0-9]{1,3})(/[+-]?[0-9]{1,3}(:[0-9]{1,2}){0,2})?){0,2})?");
    return text.size() < 100 && std::regex_match(text, kZone);
}

/// The epoch second at which the local clock shows `local`, taken as summer time or not; nothing when it never does.
std::optional<std::time_t> EpochOf(const std::tm& local, int isDst) {
    std::tm candidate = local;
    candidate.tm_isdst = isDst;
    const std::time_t seconds = std::mktime(&candidate);
    std::tm shown{};
    localtime_r(&seconds, &shown);
    const bool isSame = shown.tm_year == local.tm_year && shown.tm_mon == local.tm_mon &&
                        shown.tm_mday == local.tm_mday && shown.tm_hour == local.tm_hour &&
                        shown.tm_min == local.tm_min && shown.tm_sec == local.tm_sec;
    return isSame ? std::optional(seconds) : std::nullopt;
}

}  // namespace

TimeZone::TimeZone(const std::string& name) : name_(name), variable_(name) {
    if (IsInDatabase(name)) {
        return;
    }
    if (name == "UTC") {
        variable_ = "UTC0";
    } else if (!IsPosix(name)) {
        Refuse("timezone", DevStandbyMgr::Quote(name), "a tz database name or a POSIX TZ string");
    }
}

void TimeZone::Use() const {
    ::setenv("TZ", variable_.c_str(), 1);
    ::tzset();
}

int64_t TimeZone::ParseLocal(const std::string& text) {
    static const std::regex kLocal(R"((\d{4})-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)(?:\.(\d{3}))?)");
    constexpr const char* kExpected = "a local time such as \"2026-03-01T22:30:00\"";
    std::smatch parts;
    if (!std::regex_match(text, parts, kLocal)) {
        Refuse("", DevStandbyMgr::Quote(text), kExpected);
    }
    std::tm local{};
    local.tm_year = std::stoi(parts[1]) - kBaseYear;
    local.tm_mon = std::stoi(parts[2]) - 1;
    local.tm_mday = std::stoi(parts[3]);
    local.tm_hour = std::stoi(parts[4]);
    local.tm_min = std::stoi(parts[5]);
    local.tm_sec = std::stoi(parts[6]);
    std::optional<std::time_t> first;
    for (const int isDst : {1, 0}) {
        const auto seconds = EpochOf(local, isDst);
        if (seconds && (!first || *seconds < *first)) {
            first = seconds;
        }
    }
    if (!first) {
        Refuse("", DevStandbyMgr::Quote(text) + " does not exist in this time zone", "a local time that does");
    }
    return static_cast<int64_t>(*first) * kMsPerSecond + (parts[7].matched ? std::stoi(parts[7]) : 0);
}

std::string TimeZone::Format(int64_t wallMs, const char* format) {
    const std::time_t seconds = wallMs / kMsPerSecond - (wallMs % kMsPerSecond < 0 ? 1 : 0);
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &local)};
}

}  // namespace TARN::Replay
