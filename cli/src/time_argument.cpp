#include "time_argument.h"

#include <algorithm>
#include <optional>

#include "json_fields.h"
#include "moment.h"
#include "time_zone.h"

namespace TARN::Cli {

namespace {

/// A time of day that the trace's night does not have because the clocks go forward there is refused as that.
void RefuseSkipped(const std::string& text, const Replay::Trace& trace) {
    constexpr int64_t kDayMs = 24L * 3600 * 1000;
    for (const int64_t t : {trace.start, std::min(trace.start + kDayMs, trace.end)}) {
        (void)Replay::ReadMoment(Replay::TimeZone::Format(t, "%FT") + text, t);
    }
}

}  // namespace

int64_t ReadTimeArgument(const std::string& option, const std::string& text, const Replay::Trace& trace) {
    using DevStandbyMgr::InputError;
    using DevStandbyMgr::Refuse;
    using Replay::TimeZone;
    trace.timezone.Use();
    std::optional<int64_t> t;
    try {
        t = Replay::ReadMoment(text, trace.start);
        if (t && *t > trace.end) {
            RefuseSkipped(text, trace);
        }
    } catch (const InputError& error) {
        throw InputError(option + ": " + error.what());
    }
    if (!t) {
        Refuse(option, DevStandbyMgr::Quote(text),
               "a time such as 02:13, 2026-03-02T02:13:00, +2h10m, or milliseconds");
    }
    if (*t < trace.start || *t > trace.end) {
        constexpr char kWhole[] = "%FT%T";
        Refuse(option, text + " is not within the trace",
               "a time from " + TimeZone::Format(trace.start, kWhole) + " to " + TimeZone::Format(trace.end, kWhole));
    }
    return *t;
}

}  // namespace TARN::Cli
