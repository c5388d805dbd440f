#ifndef REPLAY_TRACE_H
#define REPLAY_TRACE_H

#include <cstdint>
#include <istream>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "facts.h"
#include "standby_config.h"
#include "standby_message.h"
#include "time_zone.h"
#include "want.h"

namespace TARN::Replay {

/// Facts that the host keeps: what is engaged changes, the maps by member.
struct HostFactsChange {
    std::optional<uint32_t> condition;
    std::map<int32_t, bool> deviceState;
    std::map<int32_t, std::vector<std::string>> allowList;
    std::map<int32_t, std::vector<std::string>> restrictSet;
};

/// The facts change; nobody is told by the trace.
struct SetStep {
    Simulated::FactsChange phone;
    HostFactsChange host;
};

/// The host dispatches a standby message.
struct MessageStep {
    DevStandbyMgr::StandbyMessage message;
};

/// Another party publishes a system broadcast.
struct BroadcastStep {
    AAFwk::Want want;
};

/// The host's dump command.
struct DumpStep {
    std::vector<std::string> words;
};

/// The service stops and starts again, or crashes and starts again.
struct RestartStep {
    bool isCrash;
};

/// One of the service's files is written behind its back, or removed.
struct FileStep {
    std::string name;
    std::optional<std::string> text;
};

struct Step {
    int64_t t = 0;  ///< wall clock, milliseconds
    std::variant<SetStep, MessageStep, BroadcastStep, DumpStep, RestartStep, FileStep> what;
    size_t line = 0;           ///< where the trace says so; several steps may stand in one line
    bool isTimeOfDay = false;  ///< the trace names no day for it
};

/// One phone over one stretch of time.
struct Trace {
    std::string name;  ///< where it was read from
    size_t headerLine = 0;
    TimeZone timezone{"UTC"};
    int64_t start = 0;
    int64_t end = 0;
    int64_t bootNs = 0;
    DevStandbyMgr::StandbyConfig host;
    SetStep device;
    std::vector<Step> steps;
};

/// The lines of a trace, without comments and blank ones: the header's, and one for each step, which says it in full
/// where the trace is short.
struct TraceLines {
    std::string header;
    std::vector<std::string> steps;
};

/// What the line of a step is read against.
struct StepContext {
    DevStandbyMgr::HostMode mode;
    int64_t start;                       ///< the trace's; "+2h" is two hours after it
    int64_t from;                        ///< a time of day is the first from here on
    const Simulated::PhoneFacts& facts;  ///< of the phone before the step
};

/// A step, and a line that says it in full.
struct WrittenStep {
    Step step;
    std::string line;
};

/// Reads a whole trace; `lines`, if wanted, get what it was read from. Throws InputError as TraceReader does.
[[nodiscard]] Trace ReadTrace(std::istream& input, const std::string& name, TraceLines* lines = nullptr);

}  // namespace TARN::Replay

#endif  // REPLAY_TRACE_H
