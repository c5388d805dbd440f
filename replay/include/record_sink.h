#ifndef REPLAY_RECORD_SINK_H
#define REPLAY_RECORD_SINK_H

#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "host_reason.h"
#include "log_service.h"
#include "standby_message.h"
#include "trace.h"

namespace TARN::Replay {

/// What a run amounted to.
struct Summary {
    uint64_t messages = 0;  ///< messages that reached the strategies
    uint64_t calls = 0;     ///< operations that change something
    uint64_t logs = 0;      ///< log lines written
    int64_t virtualMs = 0;  ///< from start to end
};

/// Takes what happens in a run, in the order in which it happens. `t` is the wall clock in milliseconds.
class RecordSink {
public:
    virtual ~RecordSink() = default;

    /// The least level of which log lines are wanted, NONE for no lines at all; asked when the phone is put up.
    [[nodiscard]] virtual LogLevel LeastLog() const noexcept = 0;
    virtual void OnBegin(const Trace& trace) = 0;
    virtual void OnStep(const Step& step) = 0;  ///< before the step takes effect
    virtual void OnLog(int64_t t, const LogLine& line) = 0;
    /// Whether calls of an operation are wanted; only then OnCall is called.
    [[nodiscard]] virtual bool WantsCall(std::string_view /*operation*/) const noexcept { return true; }
    virtual void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                        const nlohmann::ordered_json& result) = 0;
    virtual void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) = 0;
    /// Whether the host's own reasons are wanted; only then OnReason is called.
    [[nodiscard]] virtual bool WantsReasons() const noexcept { return false; }
    virtual void OnReason(int64_t /*t*/, const DevStandbyMgr::HostReason& /*reason*/) {}
    /// One of the service's files holds other content now; no part of a record.
    virtual void OnFile(int64_t /*t*/, const std::string& /*path*/) {}
    virtual void OnDump(int64_t t, const std::string& text) = 0;
    virtual void OnEnd(int64_t t, const Summary& summary) = 0;
};

}  // namespace TARN::Replay

#endif  // REPLAY_RECORD_SINK_H
