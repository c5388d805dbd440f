#ifndef CLI_INPUTS_H
#define CLI_INPUTS_H

#include <zlib.h>

#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>

#include "player.h"
#include "trace.h"

namespace TARN::Cli {

/// An opened file, "-" being standard input, whose beginning can be looked at before it is read. What gzip packed is
/// unpacked on the way.
class Input : private std::streambuf {
public:
    /// Throws InputError when it cannot be opened. `expected` says what should be there.
    Input(const std::string& name, const std::string& expected);
    ~Input() override;
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    /// What it is called in messages.
    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    [[nodiscard]] std::istream& Stream() noexcept { return stream_; }

    /// Throws InputError if what was read so far ended before its time: a torn archive, a failing disk.
    void Check() const;

    /// Goes back to the beginning of what is no pipe, and answers whether it did.
    [[nodiscard]] bool Rewind();

    /// The first line that is neither blank nor a comment, before anything is read; empty when there is none, and only
    /// its beginning when it is of unlikely length.
    [[nodiscard]] std::string_view FirstLine();

private:
    int_type underflow() override;
    bool ReadMore();

    struct Close {
        void operator()(gzFile file) const noexcept { ::gzclose(file); }
    };

    std::string name_;
    std::unique_ptr<gzFile_s, Close> file_;
    std::string held_;  ///< read from the source and not handed on yet
    std::istream stream_;
};

/// A trace that was read to its end and can be played, however long: the steps of a long one are read again while it is
/// played. What is wrong with it is found before, unless it changes in between; what was added to it meanwhile is left
/// out.
class PlayableTrace {
public:
    /// Calls `begin` with the trace without its steps, then `look` with each step. Throws InputError for the first
    /// fault.
    using Begin = std::function<void(const Replay::Trace& head)>;
    using Look = std::function<void(const Replay::Step& step)>;
    PlayableTrace(const std::string& name, const Begin& begin, const Look& look);

    /// The trace; the steps only where they are few.
    [[nodiscard]] const Replay::Trace& Head() const noexcept { return head_; }
    [[nodiscard]] Replay::Trace& Head() noexcept { return head_; }

    /// Plays it. Throws InputError if it can no longer be read to where it ended.
    void Play(const Replay::PlayOptions& options, Replay::RecordSink& sink);

private:
    std::unique_ptr<Input> input_;
    Replay::Trace head_;
    bool isWhole_ = true;  ///< all steps are kept
    size_t lines_ = 0;     ///< of steps
};

/// Reads the trace that an input is, and its lines if they are asked for. Throws InputError.
[[nodiscard]] Replay::Trace ReadInput(Input& input, Replay::TraceLines* lines = nullptr);

/// Reads one trace, "-" being standard input. Throws InputError.
[[nodiscard]] Replay::Trace ReadInput(const std::string& name);

/// The same with a configuration file, if it has a name, laid over it.
[[nodiscard]] Replay::Trace ReadInput(const std::string& name, const std::string& config);

}  // namespace TARN::Cli

#endif  // CLI_INPUTS_H
