#include "time_argument.h"

#include <optional>

#include "json_fields.h"
#include "moment.h"
#include "time_zone.h"

namespace TARN::Cli {

int64_t ReadTimeArgument(const std::string& option, const std::string& text, const Replay::Trace& trace) {
    using DevStandbyMgr::InputError;
    using DevStandbyMgr::Refuse;
    using Replay::TimeZone;
    trace.timezone.Use();
    std::optional<int64_t> t;
    try {
        t = Replay::ReadMoment(text, trace.start);
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
