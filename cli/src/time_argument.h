#ifndef CLI_TIME_ARGUMENT_H
#define CLI_TIME_ARGUMENT_H

#include <cstdint>
#include <string>

#include "trace.h"

namespace TARN::Cli {

/// The moment of a trace that a person names, in milliseconds of the wall clock: a time of day, "02:13" or "02:13:05",
/// the first one of the trace; a local time, "2026-03-02T02:13", with or without seconds; "+2h10m" after the start;
/// milliseconds. Throws InputError, behind the option's name, for any other text and for a time that the trace does not
/// hold. The trace's time zone is in use from then on.
[[nodiscard]] int64_t ReadTimeArgument(const std::string& option, const std::string& text, const Replay::Trace& trace);

}  // namespace TARN::Cli

#endif  // CLI_TIME_ARGUMENT_H
