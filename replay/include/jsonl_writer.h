#ifndef REPLAY_JSONL_WRITER_H
#define REPLAY_JSONL_WRITER_H

#include <ostream>
#include <string>
#include <string_view>

#include "record_sink.h"

namespace TARN::Replay {

/// Writes a run as JSON Lines, one object for each thing that happened, for programs.
class JsonlWriter : public RecordSink {
public:
    /// `hasReasons`: the host's own reasons are written too. `trace`: what each line names as its trace; empty: none.
    explicit JsonlWriter(std::ostream& output, bool hasReasons = false, const std::string& trace = {});

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnBegin(const Trace& /*trace*/) override {}
    void OnStep(const Step& /*step*/) override {}
    void OnLog(int64_t t, const LogLine& line) override;
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override;
    [[nodiscard]] bool WantsReasons() const noexcept override { return hasReasons_; }
    void OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) override;
    void OnDump(int64_t t, const std::string& text) override;
    void OnEnd(int64_t t, const Summary& summary) override;

private:
    // A line is put together as text; only what is rare or of any shape becomes a JSON value first.
    void Begin(int64_t t, std::string_view kind);
    void End();
    void Append(std::string_view json);
    void AppendNumber(int64_t number);
    void AppendText(std::string_view text);
    void AppendJson(const nlohmann::ordered_json& value);

    std::ostream& output_;
    bool hasReasons_;
    std::string trace_;  ///< the member that ends each line; empty: none
    std::string line_;
};

}  // namespace TARN::Replay

#endif  // REPLAY_JSONL_WRITER_H
