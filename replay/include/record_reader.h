#ifndef REPLAY_RECORD_READER_H
#define REPLAY_RECORD_READER_H

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TARN::Replay {

/// One line of a record.
struct RecordLine {
    int64_t t = 0;     ///< wall clock, milliseconds
    std::string kind;  ///< "log", "call", "deliver", "dump", "reason", "summary", or the key of another version
    std::string text;  ///< the line as it stands, without its end
};

/// Reads what JsonlWriter wrote, one line at a time. A record may hold several runs; a summary ends each.
class RecordReader {
public:
    /// `name` is where the record comes from, for messages. The input outlives the reader. Without `hasReasons` the
    /// lines of the host's own reasons, which not every record has, are passed over.
    RecordReader(std::istream& input, std::string name, bool hasReasons = true);

    /// The next line, nothing at the end. Throws InputError "name:line: what is wrong; expected ..." for what is no
    /// line of a record, goes back in time, or is torn: cut within a line or before a run's summary.
    [[nodiscard]] std::optional<RecordLine> Next();

private:
    [[nodiscard]] std::optional<RecordLine> Read();
    [[nodiscard]] bool ReadText(std::string& text);
    [[noreturn]] void Fail(const std::string& what, const std::string& expected) const;

    std::istream& input_;
    std::string name_;
    bool hasReasons_;
    uint64_t number_ = 0;          ///< of the line
    std::optional<int64_t> last_;  ///< time of the line before within the run; nothing between two runs
};

/// Whether a text is a record's line of a kind that is known here.
[[nodiscard]] bool IsRecordLine(std::string_view text);

}  // namespace TARN::Replay

#endif  // REPLAY_RECORD_READER_H
