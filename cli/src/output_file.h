#ifndef CLI_OUTPUT_FILE_H
#define CLI_OUTPUT_FILE_H

#include <functional>
#include <memory>
#include <ostream>
#include <streambuf>

namespace TARN::Cli {

/// Opens what the caller closed of the three standard streams, so that no file of ours takes its number. A
/// standard output that was closed stays one that refuses every byte, and a standard input one that cannot be read.
void KeepStandardStreams();

/// Throws InputError when standard input was closed.
void RequireStandardInput();

/// Standard output, written in large pieces and checked. Nothing leaves before a piece is full or Finish.
class OutputFile : private std::streambuf {
public:
    OutputFile();
    ~OutputFile() override = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    [[nodiscard]] std::ostream& Stream() noexcept { return stream_; }
    [[nodiscard]] bool IsTerminal() const;
    /// How wide the terminal is; 0 where it is none, or does not say.
    [[nodiscard]] size_t Columns() const;
    [[nodiscard]] bool IsBroken() const noexcept { return error_ != 0; }

    /// Is called before each piece is written.
    void BeforeWriting(std::function<void()> action) { beforeWriting_ = std::move(action); }

    /// Forgets what has not been written yet.
    void Discard();

    /// Writes the rest. Complains and returns the exit status of a failed run when a byte could not be written.
    [[nodiscard]] int Finish();

private:
    int_type overflow(int_type next) override;
    int sync() override;
    /// Makes room by writing whole lines, so that what others write to the terminal stands between lines.
    void WriteLines();
    void Write(size_t bytes);

    std::unique_ptr<char[]> buffer_;
    std::ostream stream_;
    std::function<void()> beforeWriting_;
    int error_ = 0;
};

}  // namespace TARN::Cli

#endif  // CLI_OUTPUT_FILE_H
