#include "time_reader.h"

#include <optional>
#include <string_view>
#include <utility>

#include "json_fields.h"
#include "moment.h"
#include "time_zone.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;

/// The last millisecond of the year 9999; times lie between its negative and it.
constexpr int64_t kLatestMs = 253'402'300'799'999;

/// "2026-03-..." and nothing that is counted from another time.
bool IsLocalTime(std::string_view text) {
    constexpr size_t kYearDigits = 4;
    return text.size() > kYearDigits && text[kYearDigits] == '-';
}

/// What `read` makes of the text; digits alone are nothing, for they might be anything.
template <class Read>
int64_t ReadText(const std::string& text, std::string_view where, const char* expected, const Read& read) {
    std::optional<int64_t> t;
    try {
        if (text.find_first_of(":+-") != std::string::npos) {
            t = read(text);
        }
    } catch (const InputError& error) {
        throw InputError(std::string(where) + ": " + error.what());
    }
    if (!t || *t < -kLatestMs || *t > kLatestMs) {
        Refuse(where, Quote(text), expected);
    }
    return *t;
}

std::optional<int64_t> ReadLocal(const std::string& text) {
    return IsLocalTime(text) ? ReadMoment(text, 0) : std::nullopt;
}

}  // namespace

int64_t ReadTime(const JsonValue& value, std::string_view where) {
    if (!value.IsString()) {
        return ReadInteger(value, where, -kLatestMs, kLatestMs);
    }
    return ReadText(std::string(value.String()), where, "a local time such as \"2026-03-01T22:30:00\", or milliseconds",
                    ReadLocal);
}

int64_t ReadTimeOn(const JsonValue& value, std::string_view where, int64_t start, int64_t from) {
    if (!value.IsString()) {
        return ReadTime(value, where);
    }
    return ReadText(std::string(value.String()), where,
                    "a time such as \"22:30\", \"2026-03-01T22:30:00\", \"+2h10m\" after the start, or milliseconds",
                    [=](const std::string& text) { return ReadMoment(text, text.starts_with('+') ? start : from); });
}

int64_t ReadTimeAfter(const JsonValue& value, std::string_view where, int64_t now) {
    if (!value.IsString()) {
        return ReadTime(value, where);
    }
    return ReadText(std::string(value.String()), where,
                    "a time such as \"06:30\", \"2026-03-02T06:30:00\", \"+8h\" from then, or milliseconds",
                    [=](const std::string& text) { return ReadMoment(text, text.starts_with('+') ? now : now + 1); });
}

int64_t ReadTimeBefore(const JsonValue& value, std::string_view where, int64_t now) {
    if (!value.IsString()) {
        return ReadInteger(value, where);
    }
    return ReadText(std::string(value.String()), where,
                    "a time such as \"21:55\", \"2026-03-01T21:55:00\", \"-20m\" before then, or milliseconds",
                    [=](const std::string& text) { return ReadPastMoment(text, now); });
}

bool IsWrittenTime(const std::string& text) {
    try {
        return text.find(':') != std::string::npos && ReadMoment(text, 0);
    } catch (const InputError&) {
        return true;  // one that the clock leaves out
    }
}

bool IsAbsolute(const JsonValue& time) {
    return !time.IsString() || IsLocalTime(time.String());
}

bool IsTimeOfDay(const JsonValue& time) {
    return !IsAbsolute(time) && !time.String().starts_with('+');
}

}  // namespace TARN::Replay
