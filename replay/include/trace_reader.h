#ifndef REPLAY_TRACE_READER_H
#define REPLAY_TRACE_READER_H

#include <istream>
#include <span>
#include <string>
#include <vector>

#include "json_value.h"
#include "trace.h"

namespace TARN::Replay {

/// Reads a trace line by line, in memory that does not grow with it. All of it throws InputError
/// "name:line: what is wrong; expected ..." for the first fault.
class TraceReader {
public:
    /// Reads the header; its time zone is in use from then on. The input outlives the reader.
    TraceReader(std::istream& input, std::string name);
    TraceReader(const TraceReader&) = delete;
    TraceReader& operator=(const TraceReader&) = delete;

    /// The trace without its steps. `end`, where the header names none, is the time of the last step so far.
    [[nodiscard]] const Trace& Head() const noexcept { return head_; }

    /// The steps of the next line, to be used or taken until the next call; none when the trace is over.
    [[nodiscard]] std::span<Step> Next();

    /// The header's line before the first Next; then one for each step of the last one, which says it in full.
    [[nodiscard]] std::vector<std::string> Lines() const;

private:
    /// Goes to the next line that says something; false at the end.
    bool NextLine();
    const DevStandbyMgr::JsonValue& Parse();
    void CheckOrder(int64_t t) const;

    std::istream& input_;
    Trace head_;
    bool hasEnd_ = false;
    int64_t last_ = 0;             ///< time of the last step, or the start
    Simulated::PhoneFacts facts_;  ///< what later steps lean on
    size_t number_ = 0;            ///< of the line
    std::string line_;
    DevStandbyMgr::JsonDocument document_;
    std::vector<Step> steps_;
};

/// Reads one line: a step, or the steps it stands for, all at one time. The time zone must be in use. Throws InputError
/// "what is wrong; expected ...".
[[nodiscard]] std::vector<WrittenStep> ReadStepLine(const std::string& line, const StepContext& context);

}  // namespace TARN::Replay

#endif  // REPLAY_TRACE_READER_H
