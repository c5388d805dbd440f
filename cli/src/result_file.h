#ifndef CLI_RESULT_FILE_H
#define CLI_RESULT_FILE_H

#include <fstream>
#include <optional>
#include <ostream>
#include <string>

namespace TARN::Cli {

/// The file that is being written goes with the program when a signal ends it. One at a time in a process.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
};

/// Takes that file away at once; for a handler of a signal.
void RemoveUnfinished() noexcept;

/// A file that a run is to leave behind. It takes the place of what is there only when it is whole: until then the
/// bytes are in a file beside it. A device or a pipe is written to directly; "-" is standard output.
class ResultFile {
public:
    /// Throws RunError when it cannot be written.
    explicit ResultFile(const std::string& name);
    ~ResultFile();
    ResultFile(const ResultFile&) = delete;
    ResultFile& operator=(const ResultFile&) = delete;

    [[nodiscard]] std::ostream& Stream() noexcept { return stream_; }

    /// The file is whole. Throws RunError when a byte could not be written; what was there stays.
    void Finish();

private:
    [[noreturn]] void Fail(int error) const;

    std::string name_;    ///< as the user gave it
    std::string target_;  ///< the file itself
    std::string beside_;  ///< where the bytes are meanwhile; empty: in the target, or it is finished
    std::optional<UnfinishedFile> unfinished_;
    std::ofstream stream_;
};

}  // namespace TARN::Cli

#endif  // CLI_RESULT_FILE_H
