#ifndef SHELL_BENCH_H
#define SHELL_BENCH_H

#include <ostream>
#include <string>
#include <utility>

#include "night_reader.h"
#include "phone_at_hand.h"
#include "shell.h"
#include "timeline.h"

namespace TARN::Shell {

/// Tells the events of a night as lines of the timeline; dumps are told by the commands that ask for them.
class News : public Story::NightView {
public:
    News(std::ostream& output, bool isColored) : timeline_(output, {.isColored = isColored, .isUnfolded = true}) {}

    void OnHead(const Story::Night& /*night*/) override {}
    void OnEvent(const Story::Night& night, const Story::Event& event) override;
    void OnEnd(const Story::Night& /*night*/) override {}

    /// Tells nothing before it is listened to.
    void Listen(bool isListening) { isListening_ = isListening; }

    /// A state that stays for the reason told last time is told again: somebody asks.
    void RepeatStates(bool areRepeated) { areStatesRepeated_ = areRepeated; }
    void Flush() { timeline_.Flush(); }

private:
    Story::Timeline timeline_;
    bool isListening_ = false;
    bool areStatesRepeated_ = false;
};

/// Hears what happens on the phone: makes a night of it, keeps the last dump, hands it on to a witness.
class Hearing : public Replay::RecordSink {
public:
    Hearing(Story::NightView& view, Replay::RecordSink* witness)
        : reader_({.leastLog = std::nullopt, .view = &view}), witness_(witness) {}

    [[nodiscard]] const Story::Night& Night() const noexcept { return reader_.Result(); }
    void Settle() { reader_.Settle(); }

    /// What was dumped since the last call.
    [[nodiscard]] std::string TakeDump() { return std::exchange(dump_, {}); }

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    [[nodiscard]] bool WantsReasons() const noexcept override { return true; }
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
    template <class Call>
    void Each(const Call& call);

    Story::NightReader reader_;
    std::string dump_;
    Replay::RecordSink* witness_;
};

/// What the commands work on.
struct Bench {
    Bench(const Replay::Trace& trace, const Replay::TraceLines& lines, ShellOptions shellOptions, std::ostream& stream);

    /// All that happens now has happened: tells what is not told yet.
    void TellNews();

    /// Tells everything from the beginning.
    void TellAll();

    ShellOptions options;
    std::ostream& output;
    News news;
    Hearing hearing;
    PhoneAtHand phone;
    bool isLeaving = false;
};

}  // namespace TARN::Shell

#endif  // SHELL_BENCH_H
