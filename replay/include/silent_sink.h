#ifndef REPLAY_SILENT_SINK_H
#define REPLAY_SILENT_SINK_H

#include <cstdint>
#include <string>
#include <string_view>

#include "record_sink.h"

namespace TARN::Replay {

/// Looks on and wants nothing; for those that want one thing.
class SilentSink : public RecordSink {
public:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::NONE; }
    [[nodiscard]] bool WantsCall(std::string_view /*operation*/) const noexcept override { return false; }
    void OnBegin(const Trace& /*trace*/) override {}
    void OnStep(const Step& /*step*/) override {}
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnCall(int64_t /*t*/, std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
    void OnDeliver(int64_t /*t*/, const DevStandbyMgr::StandbyMessage& /*message*/) override {}
    void OnDump(int64_t /*t*/, const std::string& /*text*/) override {}
    void OnEnd(int64_t /*t*/, const Summary& /*summary*/) override {}
};

}  // namespace TARN::Replay

#endif  // REPLAY_SILENT_SINK_H
