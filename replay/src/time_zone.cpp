#include "time_zone.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <regex>
#include <string_view>
#include <utility>

#include "digits.h"
#include "json_fields.h"

namespace TARN::Replay {

namespace {

using DevStandbyMgr::Refuse;

constexpr int64_t kMsPerSecond = 1000;
constexpr int kBaseYear = 1900;

/// No zone's name is longer; longer text is not worth a look.
constexpr size_t kLongestName = 100;

bool IsInDatabase(const std::string& name) {
    const auto isPart = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '_' || c == '+' || c == '-';
    };
    for (size_t i = 0; i <= name.size(); ++i) {
        const bool endsPart = i == name.size() || name[i] == '/';
        if (endsPart ? i == 0 || name[i - 1] == '/' : !isPart(name[i])) {
            return false;
        }
    }
    constexpr std::string_view kMagic = "TZif";
    std::ifstream file("/usr/share/zoneinfo/" + name, std::ios::binary);
    std::array<char, kMagic.size()> head{};
    return file.read(head.data(), head.size()) && std::string_view(head.data(), head.size()) == kMagic;
}

/// std offset [dst [offset] [,rule,rule]]
bool IsPosix(const std::string& text) {
    static const std::string kAbbreviation = "(<[A-Za-z0-9+-]{3,}>|[A-Za-z]{3,})";
    static const std::string kOffset = "[+-]?(2[0-4]|[01]?[0-9])(:[0-5][0-9]){0,2}";
    static const std::string kRule =
        ",(M(1[0-2]|[1-9])\\.[1-5]\\.[0-6]|J(36[0-5]|3[0-5][0-9]|[12][0-9]{2}|[1-9][0-9]?)|"
        "(36[0-5]|3[0-5][0-9]|[12][0-9]{2}|[1-9]?[0-9]))(/[+-]?[0-9]{1,3}(:[0-5][0-9]){0,2})?";
    static const std::regex kZone(kAbbreviation + kOffset + "(" + kAbbreviation + "(" + kOffset + ")?(" + kRule +
                                  kRule + ")?)?");
    return std::regex_match(text, kZone);
}

/// The second that an instant lies in.
std::time_t SecondsOf(int64_t wallMs) {
    return wallMs / kMsPerSecond - (wallMs % kMsPerSecond < 0 ? 1 : 0);
}

std::tm AskLocal(std::time_t seconds) {
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

/// Counts the zones that were in use.
std::atomic<uint32_t> zonesUsed = 0;

/// A quarter of an hour, throughout which the local clock goes on in one day without a jump. Who asks for local times
/// asks for near ones, and what libc does for each is dear.
struct Quarter {
    uint32_t zone = 0;
    std::time_t begin = 0;
    std::time_t end = 0;
    std::tm local{};  ///< at the beginning
};

constexpr std::time_t kQuarter = 900;
constexpr int kMinute = 60;
constexpr int kHour = 3600;

Quarter QuarterOf(std::time_t seconds) {
    Quarter quarter;
    quarter.zone = zonesUsed;
    quarter.begin = seconds - (seconds % kQuarter + kQuarter) % kQuarter;
    quarter.local = AskLocal(quarter.begin);
    const std::tm last = AskLocal(quarter.begin + kQuarter - 1);
    const bool isEven = last.tm_gmtoff == quarter.local.tm_gmtoff && last.tm_mday == quarter.local.tm_mday &&
                        last.tm_zone == quarter.local.tm_zone;
    quarter.end = quarter.begin + (isEven ? kQuarter : 0);
    return quarter;
}

std::tm Local(std::time_t seconds) {
    thread_local Quarter quarter;
    thread_local std::time_t lastAsked = 0;
    if (quarter.zone != zonesUsed || seconds < quarter.begin || seconds >= quarter.end) {
        const bool isNear = std::abs(seconds - std::exchange(lastAsked, seconds)) < kQuarter;
        quarter = isNear ? QuarterOf(seconds) : Quarter();
        return AskLocal(seconds);
    }
    std::tm local = quarter.local;
    const int second =
        local.tm_hour * kHour + local.tm_min * kMinute + local.tm_sec + static_cast<int>(seconds - quarter.begin);
    local.tm_hour = second / kHour;
    local.tm_min = second / kMinute % kMinute;
    local.tm_sec = second % kMinute;
    return local;
}

bool ShowsSame(const std::tm& a, const std::tm& b) {
    return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday && a.tm_hour == b.tm_hour &&
           a.tm_min == b.tm_min && a.tm_sec == b.tm_sec;
}

/// The first epoch second at which the local clock shows `local`; nothing when it never does. The zone's offsets
/// of the day before and the day after are all that can hold then.
std::optional<std::time_t> EpochOf(const std::tm& local) {
    constexpr std::time_t kDay = 86'400;
    std::tm fields = local;
    const std::time_t asUtc = timegm(&fields);
    std::optional<std::time_t> first;
    for (const std::time_t near : {asUtc - kDay, asUtc + kDay}) {
        const std::time_t seconds = asUtc - Local(near).tm_gmtoff;
        if (ShowsSame(Local(seconds), local) && (!first || seconds < *first)) {
            first = seconds;
        }
    }
    return first;
}

}  // namespace

TimeZone::TimeZone(const std::string& name) : name_(name), variable_(name) {
    if (name.size() <= kLongestName && IsInDatabase(name)) {
        return;
    }
    if (name == "UTC") {
        variable_ = "UTC0";
    } else if (name.size() > kLongestName || !IsPosix(name)) {
        Refuse("timezone", DevStandbyMgr::Quote(name), "a tz database name or a POSIX TZ string");
    }
}

void TimeZone::Use() const {
    ::setenv("TZ", variable_.c_str(), 1);
    ::tzset();
    ++zonesUsed;
}

int64_t TimeZone::ParseLocal(const std::string& text) {
    constexpr const char* kExpected = "a local time such as \"2026-03-01T22:30:00\"";
    const bool hasMs = Matches(text, "dddd-dd-ddTdd:dd:dd.ddd");
    if (!hasMs && !Matches(text, "dddd-dd-ddTdd:dd:dd")) {
        Refuse("", DevStandbyMgr::Quote(text), kExpected);
    }
    const auto number = [&text](size_t at, size_t digits) {
        return static_cast<int>(NumberOf(std::string_view(text).substr(at, digits)));
    };
    std::tm local{};
    local.tm_year = number(0, 4) - kBaseYear;
    local.tm_mon = number(5, 2) - 1;
    local.tm_mday = number(8, 2);
    local.tm_hour = number(11, 2);
    local.tm_min = number(14, 2);
    local.tm_sec = number(17, 2);
    const std::optional<std::time_t> first = EpochOf(local);
    if (!first) {
        Refuse("", DevStandbyMgr::Quote(text) + " does not exist in this time zone", "a local time that does");
    }
    return static_cast<int64_t>(*first) * kMsPerSecond + (hasMs ? number(20, 3) : 0);
}

std::string TimeZone::Format(int64_t wallMs, const char* format) {
    const std::tm local = Local(SecondsOf(wallMs));
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &local)};
}

int64_t TimeZone::OffsetMs(int64_t wallMs) {
    return static_cast<int64_t>(Local(SecondsOf(wallMs)).tm_gmtoff) * kMsPerSecond;
}

bool TimeZone::IsSameDay(int64_t a, int64_t b) {
    const std::tm first = Local(SecondsOf(a));
    const std::tm second = Local(SecondsOf(b));
    return first.tm_mday == second.tm_mday && first.tm_mon == second.tm_mon && first.tm_year == second.tm_year;
}

std::optional<int64_t> TimeZone::FindChange(int64_t from, int64_t to) {
    const int64_t before = OffsetMs(from);
    if (OffsetMs(to) == before) {
        return std::nullopt;
    }
    while (to - from > 1) {
        const int64_t middle = from + (to - from) / 2;
        (OffsetMs(middle) == before ? from : to) = middle;
    }
    return to;
}

}  // namespace TARN::Replay
