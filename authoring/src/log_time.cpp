#include "log_time.h"

#include <charconv>
#include <ctime>
#include <string_view>
#include <utility>

#include "json_fields.h"

namespace TARN::Authoring {

namespace {

constexpr int kBaseYear = 1900;

/// Reads a text from its beginning.
class Cursor {
public:
    explicit Cursor(std::string_view text) : text_(text) {}

    /// Exactly so many digits.
    bool Digits(size_t count, int& target) {
        const std::string_view part = text_.substr(0, count);
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), target);
        if (part.size() != count || error != std::errc() || end != part.data() + count || part.front() == '-') {
            return false;
        }
        text_.remove_prefix(count);
        return true;
    }
    bool OneOf(std::string_view chars, char* found = nullptr) {
        if (text_.empty() || chars.find(text_.front()) == std::string_view::npos) {
            return false;
        }
        if (found != nullptr) {
            *found = text_.front();
        }
        text_.remove_prefix(1);
        return true;
    }
    /// The digits behind a decimal point, as thousandths; finer ones are dropped.
    bool Thousandths(int& target) {
        int digits = 0;
        target = 0;
        for (int digit = 0; Digits(1, digit);) {
            ++digits;
            target = digits <= 3 ? target * 10 + digit : target;
        }
        for (int i = digits; i < 3; ++i) {
            target *= 10;
        }
        return digits > 0;
    }
    [[nodiscard]] bool IsAtEnd() const { return text_.empty(); }

private:
    std::string_view text_;
};

std::optional<int64_t> ReadNumber(const std::string& text, bool isSeconds) {
    int64_t number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    const int64_t unit = isSeconds ? kSecondMs : 1;
    if (error != std::errc() || number < -kLatestMs / unit || number > kLatestMs / unit) {
        return std::nullopt;
    }
    Cursor rest({end, static_cast<size_t>(last - end)});
    int thousandths = 0;
    const bool isWhole = rest.IsAtEnd() || (rest.OneOf(".,") && rest.Thousandths(thousandths) && rest.IsAtEnd());
    if (!isWhole) {
        return std::nullopt;
    }
    const int64_t fraction = isSeconds ? thousandths : 0;
    return number * unit + (text.front() == '-' ? -fraction : fraction);
}

std::optional<int64_t> ReadIso(const std::string& text, LocalClock& clock, int64_t from) {
    Cursor cursor(text);
    ClockTime time;
    if (!cursor.Digits(4, time.year) || !cursor.OneOf("-") || !cursor.Digits(2, time.month) || !cursor.OneOf("-") ||
        !cursor.Digits(2, time.day) || !cursor.OneOf("T ") || !cursor.Digits(2, time.hour) || !cursor.OneOf(":") ||
        !cursor.Digits(2, time.minute)) {
        return std::nullopt;
    }
    if (cursor.OneOf(":") && (!cursor.Digits(2, time.second) || (cursor.OneOf(".,") && !cursor.Thousandths(time.ms)))) {
        return std::nullopt;
    }
    if (cursor.IsAtEnd()) {
        return clock.Read(time, from);
    }
    int hours = 0;
    int minutes = 0;
    char sign = '+';
    if (!cursor.OneOf("Zz") && !(cursor.OneOf("+-", &sign) && cursor.Digits(2, hours) &&
                                 (cursor.IsAtEnd() || ((void)cursor.OneOf(":"), cursor.Digits(2, minutes))))) {
        return std::nullopt;
    }
    const auto utc = AsUtc(time);
    const int64_t offset = hours * kHourMs + minutes * kMinuteMs;
    return utc && cursor.IsAtEnd() ? std::optional(*utc - (sign == '-' ? -offset : offset)) : std::nullopt;
}

std::optional<int64_t> ReadPattern(const std::string& text, const std::string& pattern, LocalClock& clock,
                                   int64_t from) {
    std::tm fields{};
    fields.tm_mday = 1;
    const char* end = ::strptime(text.c_str(), pattern.c_str(), &fields);
    if (end == nullptr || end != text.c_str() + text.size()) {
        return std::nullopt;
    }
    ClockTime time;
    time.year = fields.tm_year + kBaseYear;
    time.month = fields.tm_mon + 1;
    time.day = fields.tm_mday;
    time.hour = fields.tm_hour;
    time.minute = fields.tm_min;
    time.second = fields.tm_sec;
    if (pattern.find("%z") == std::string::npos) {
        return clock.Read(time, from);
    }
    const auto utc = AsUtc(time);
    return utc ? std::optional(*utc - fields.tm_gmtoff * kSecondMs) : std::nullopt;
}

}  // namespace

LogTime::LogTime(std::string format, const std::string& where) : format_(std::move(format)) {
    const bool isPattern = format_.find('%') != std::string::npos && format_.find("%s") == std::string::npos;
    if (format_ != "ms" && format_ != "s" && format_ != "iso" && !isPattern) {
        DevStandbyMgr::Refuse(where, DevStandbyMgr::Quote(format_),
                              "\"ms\", \"s\", \"iso\" or a pattern such as \"%d.%m.%Y %H:%M:%S\"");
    }
}

std::optional<int64_t> LogTime::Read(const std::string& text, LocalClock& clock, int64_t from) const {
    std::optional<int64_t> t;
    if (format_ == "ms" || format_ == "s") {
        t = ReadNumber(text, format_ == "s");
    } else {
        t = format_ == "iso" ? ReadIso(text, clock, from) : ReadPattern(text, format_, clock, from);
    }
    return t && *t > -kLatestMs && *t < kLatestMs ? t : std::nullopt;
}

std::string LogTime::Expected() const {
    if (format_ == "ms" || format_ == "s") {
        return format_ == "s" ? "seconds since 1970" : "milliseconds since 1970";
    }
    return format_ == "iso" ? "a time such as 2026-03-01T22:30:00 or 2026-03-01T21:30:00Z" : "a time as " + format_;
}

}  // namespace TARN::Authoring
