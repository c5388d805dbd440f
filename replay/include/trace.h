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
    int64_t t;  ///< wall clock, milliseconds
    std::variant<SetStep, MessageStep, BroadcastStep, DumpStep, RestartStep, FileStep> what;
};

/// One phone over one stretch of time.
struct Trace {
    std::string name;  ///< where it was read from
    TimeZone timezone{"UTC"};
    int64_t start = 0;
    int64_t end = 0;
    int64_t bootNs = 0;
    DevStandbyMgr::StandbyConfig host;
    SetStep device;
    std::vector<Step> steps;
};

/// The lines of a trace, without comments and blank ones: the header's, and one for each step.
struct TraceLines {
    std::string header;
    std::vector<std::string> steps;
};

/// Reads a whole trace; `lines`, if wanted, get what it was read from. Throws InputError "name:line: what is wrong;
/// expected ..." for the first fault.
[[nodiscard]] Trace ReadTrace(std::istream& input, const std::string& name, TraceLines* lines = nullptr);

/// Reads one step's line. A time zone must be in use. Throws InputError "what is wrong; expected ...".
[[nodiscard]] Step ReadStepLine(const std::string& line, DevStandbyMgr::HostMode mode);

}  // namespace TARN::Replay

#endif  // REPLAY_TRACE_H
