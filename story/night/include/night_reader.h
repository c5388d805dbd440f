#ifndef STORY_NIGHT_READER_H
#define STORY_NIGHT_READER_H

#include <memory>
#include <optional>

#include "night.h"
#include "record_sink.h"

namespace TARN::Story {

struct ReadOptions {
    std::optional<LogLevel>
        leastLog;               ///< the least level of the plugin's log that becomes events of its own; nothing: none
    NightView* view = nullptr;  ///< looks on while it is read
    /// Whether all of the night is kept. Otherwise, so that any length takes the same memory, it is in the end only
    /// what a summary or a row needs: no events, readings or curves, no values with the events that the view sees, and
    /// of the lanes what they amount to, and the intervals of sleep.
    bool isKept = true;
};

/// Makes a Night of what happens in one run.
class NightReader : public Replay::RecordSink {
public:
    explicit NightReader(const ReadOptions& options = {});
    ~NightReader() override;

    /// The night; whole once the run is over.
    [[nodiscard]] const Night& Result() const noexcept;

    /// All that happens at the present instant has happened, though time does not go on: it is entered into the night.
    void Settle();

    /// Every level: refusals and their reasons are told from the plugin's log.
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    [[nodiscard]] bool WantsReasons() const noexcept override { return true; }
    [[nodiscard]] bool WantsCall(std::string_view operation) const noexcept override;
    void OnBegin(const Replay::Trace& trace) override;
    void OnStep(const Replay::Step& step) override;
    void OnLog(int64_t t, const LogLine& line) override;
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override;
    void OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) override;
    void OnDump(int64_t t, const std::string& text) override;
    void OnEnd(int64_t t, const Replay::Summary& summary) override;

private:
    struct Storytellers;
    std::unique_ptr<Storytellers> my_;
};

}  // namespace TARN::Story

#endif  // STORY_NIGHT_READER_H
