#ifndef AUTHORING_LOG_TIME_H
#define AUTHORING_LOG_TIME_H

#include <cstdint>
#include <optional>
#include <string>

#include "local_clock.h"

namespace TARN::Authoring {

/// How a log writes its times: "ms" or "s" since the epoch, "iso", which is a date and a time with or without an offset
/// from UTC, or a pattern of strptime, "%d.%m.%Y %H:%M:%S".
class LogTime {
public:
    /// Throws InputError, in the name `where`, for a format that is none of these.
    LogTime(std::string format, const std::string& where);

    /// The wall clock, in milliseconds; nothing for a text of another form and a time that never was. Of a local time
    /// that comes twice the first from `from` on.
    [[nodiscard]] std::optional<int64_t> Read(const std::string& text, LocalClock& clock, int64_t from) const;

    /// What it expects, for messages.
    [[nodiscard]] std::string Expected() const;

private:
    std::string format_;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_LOG_TIME_H
