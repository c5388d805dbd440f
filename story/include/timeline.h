#ifndef STORY_TIMELINE_H
#define STORY_TIMELINE_H

#include <memory>
#include <optional>
#include <ostream>

#include "record_sink.h"

namespace TARN::Story {

struct TimelineOptions {
    bool isColored = false;
    bool isUnfolded = false;           ///< tells every screen-on, also where the phone is merely used
    std::optional<LogLevel> leastLog;  ///< the least level of the plugin's log that is shown; nothing: none
};

/// Tells a run as a timeline for people: local time, what it is about, a sentence with its reason; and at the
/// end what the run amounted to. One timeline tells one run.
class Timeline : public Replay::RecordSink {
public:
    Timeline(std::ostream& output, const TimelineOptions& options);
    ~Timeline() override;

    /// Every level: refusals and their reasons are told from the plugin's log.
    [[nodiscard]] bool WantsLog(LogLevel /*level*/) const noexcept override { return true; }
    void OnBegin(const Replay::Trace& trace) override;
    void OnStep(const Replay::Step& step) override;
    void OnLog(int64_t t, const LogLine& line) override;
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override;
    void OnDump(int64_t t, const std::string& text) override;
    void OnEnd(int64_t t, const Replay::Summary& summary) override;

private:
    struct Storytellers;
    std::unique_ptr<Storytellers> my_;
};

}  // namespace TARN::Story

#endif  // STORY_TIMELINE_H
