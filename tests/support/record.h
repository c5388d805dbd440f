#ifndef TESTS_RECORD_H
#define TESTS_RECORD_H

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "record_sink.h"

namespace TARN::Tests {

/// What a run recorded, as text, in order:
///   `debug freeze_strategy: now is thaw, do not need to StopFreeze`
///   `call SuspendManagerClient.OperateNativeProcesses {"processes":[...]} -> [0]`
///   `deliver 2 {"CURRENT_STATE":4,"PREVIOUS_STATE":2}` and `deliver 1 COMMON_EVENT_SCREEN_OFF null`
///   `dump "text"`
/// Other strategies may add lines of their own at any time, so a test asks for the sources it speaks of.
class Record {
public:
    using Texts = std::vector<std::string>;

    /// The lines of any of these sources, each the beginning of a source file's name ("freeze_strategy"), of an
    /// operation ("SuspendManagerClient"), or of "deliver 2 " and "dump".
    [[nodiscard]] Texts Of(std::initializer_list<std::string_view> sources) const;

    /// What one source file logged: `debug now is thaw...`.
    [[nodiscard]] Texts LogsOf(std::string_view file) const;

    /// The operations whose name begins so, without the word `call`.
    [[nodiscard]] Texts Calls(std::string_view operation = {}) const;

    /// The messages with these identifiers, or all, without the word `deliver`.
    [[nodiscard]] Texts Deliveries(std::initializer_list<int32_t> eventIds = {}) const;

    [[nodiscard]] Texts Dumps() const;

    /// The part of the record whose local time begins so: `At("22:30:00")` or, the minute, `At("22:30")`.
    [[nodiscard]] Record At(std::string_view time) const;

    /// The same record with each line behind its local time: `22:30:00 deliver...`, milliseconds where there are any.
    [[nodiscard]] Record Timed() const;

    Replay::Summary summary;

private:
    friend class RecordingSink;

    struct Line {
        std::string time;  ///< local, HH:MM:SS[.mmm]
        std::string kind;  ///< level of a log line, else call, deliver, dump
        std::string source;
        std::string text;   ///< what follows kind (and for a log line, source)
        std::string stamp;  ///< what Timed() puts in front
    };

    template <class Accept, class Render>
    [[nodiscard]] Texts Collect(const Accept& accept, const Render& render) const;

    std::vector<Line> lines_;
};

/// Writes a Record. The run's time zone must be in use.
class RecordingSink : public Replay::RecordSink {
public:
    explicit RecordingSink(Record& record) : record_(record) {}

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnBegin(const Replay::Trace& /*trace*/) override {}
    void OnStep(const Replay::Step& /*step*/) override {}
    void OnLog(int64_t t, const LogLine& line) override;
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override;
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override;
    void OnDump(int64_t t, const std::string& text) override;
    void OnEnd(int64_t t, const Replay::Summary& summary) override;

private:
    void Add(int64_t t, std::string kind, std::string source, std::string text);

    Record& record_;
};

}  // namespace TARN::Tests

#endif  // TESTS_RECORD_H
